// Numbers and lines against what the C library makes of them.
#include "decimal.h"
#include "harness.h"
#include "print.h"

#include <cinttypes>
#include <gtest/gtest.h>

namespace
{

TEST(Decimal, WritesWhatPrintfWrites)
{
    std::vector<uint32_t> values = {0, INT32_MAX, 0x80000000, UINT32_MAX};
    for (uint32_t power = 1; power != 1410065408; power *= 10) // the first power that wraps
        values.insert(values.end(), {power - 1, power, power + 1, 0 - power, 9 * power});
    for (const uint32_t value : values) {
        for (const int width : {0, 1, 2, 3, 5, 7, 11, 14}) {
            char expected[32];
            char text[32] = "...............................";
            snprintf(expected, sizeof(expected), "%*" PRIu32, width, value);
            EXPECT_EQ(std::string(text, put_decimal(text, value, width)), expected);
            snprintf(expected, sizeof(expected), "%*" PRId32, width, as_signed(value));
            EXPECT_EQ(std::string(text, put_decimal(text, as_signed(value), width)), expected);
            EXPECT_EQ(text[std::max<size_t>(DECIMAL_MAX, strlen(expected))], '.');
        }
    }
}

Result printed(const std::function<void()> &call)
{
    return captured([&] {
        call();
        print_flush();
        return 0;
    });
}

TEST(Print, KeepsTheOrderOfBufferedAndFormattedLines)
{
    const uint16_t narrow[] = {7, 65535};
    EXPECT_EQ(printed([&] {
                  print_value("a", -1);
                  print("%s\n", "b");
                  print_value("c", UINT32_MAX);
                  print_array("d", ".e", narrow);
                  print("f\n");
                  print_value("g", ".h", 2);
              }).out,
              "a = -1\nb\nc = 4294967295\nd.e[0] = 7\nd.e[1] = 65535\nf\ng.h = 2\n");
}

TEST(Print, BoundsKeysAndBuffersMoreThanFits)
{
    const std::string key(100, 'k');
    std::string expected;
    for (int i = 0; i < 100; i++)
        expected += key + " = " + std::to_string(i) + "\n";
    EXPECT_EQ(printed([&] {
                  for (int i = 0; i < 100; i++)
                      print_value((key + "more").c_str(), i);
              }).out,
              expected);
    EXPECT_EQ(printed([&] { print_element(key.c_str(), key.c_str(), INT32_MIN, INT32_MIN); }).out,
              key + key + "[-2147483648] = -2147483648\n");
}

TEST(Print, GridsEndEachRow)
{
    const uint32_t values[] = {1, 22, 333, 4444, UINT32_MAX};
    EXPECT_EQ(printed([&] { print_grid(values, 2, cell(3)); }).out,
              "  1,  22, \n333, 4444, \n4294967295, \n");
    EXPECT_EQ(printed([&] { print_grid(values, 5, cell(0, as_signed)); }).out,
              "1, 22, 333, 4444, -1, \n");

    uint8_t many[1000] = {};
    std::string row;
    for (size_t i = 0; i < 500; i++)
        row += "  0, ";
    EXPECT_EQ(printed([&] { print_grid(many, 500, cell(3)); }).out, row + "\n" + row + "\n");
}

} // namespace
