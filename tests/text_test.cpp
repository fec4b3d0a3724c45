// Numbers and lines against what the C library makes of them, and the two places where text goes.
#include "decimal.h"
#include "harness.h"
#include "heap_text.h"
#include "sr_device.h"
#include "stdout_text.h"
#include "vorda.h"

#include <cerrno>
#include <cinttypes>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

// The linker puts this between the product and the system.
extern "C" {
ssize_t __real_write(int fd, const void *bytes, size_t size);
ssize_t __wrap_write(int fd, const void *bytes, size_t size);
}

namespace
{

// What befalls the writes to standard output.
struct Output {
    int fail_at = -1;      // the call that fails, and none after it
    int error = EINTR;     // how it fails
    size_t most = 1 << 30; // what one call takes
    bool others = false;   // every other call fails so
    std::vector<size_t> sizes = {};
} output;

} // namespace

ssize_t __wrap_write(int fd, const void *bytes, size_t size)
{
    if (fd != STDOUT_FILENO)
        return __real_write(fd, bytes, size);
    const int call = static_cast<int>(output.sizes.size());
    output.sizes.push_back(size);
    if (call == output.fail_at || (output.others && call % 2 == 0)) {
        errno = output.error;
        return -1;
    }
    return __real_write(fd, bytes, std::min(size, output.most));
}

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

using Write = std::function<void(Text &)>;

std::string kept(const Write &write)
{
    HeapText text;
    write(text);
    char *str = nullptr;
    EXPECT_EQ(text.deliver(&str), 0);
    std::string result = str;
    free(str);
    return result;
}

std::string printed(const Write &write)
{
    return captured([&] {
               StdoutText text;
               write(text);
               return 0;
           })
        .out;
}

TEST(Text, WritesEachKindOfLine)
{
    const int32_t three[] = {1, -22, 333};
    const uint8_t bytes[] = {0, 200, 255};
    const int16_t halves[] = {-5, INT16_MIN, INT16_MAX};
    const uint16_t unsigned_halves[] = {7, 65535};
    const uint32_t words[] = {0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    const int32_t table[2][3] = {{1, 2, 3}, {4, 5, 6}};
    const std::pair<Write, std::string> cases[] = {
        {[](Text &) {}, ""},
        {[](Text &text) {
             text.put("a", -1, "b", UINT32_MAX, std::string_view("cd", 1), std::string_view());
         },
         "a-1b4294967295c"},
        {[](Text &text) { text.put(Padded(-1, 4), Padded(UINT32_MAX, 12), Padded(1234, 2)); },
         "  -1  42949672951234"},
        {[](Text &text) {
             text.value("a", -1);
             text.value("b", UINT32_MAX);
             text.value("c", INT32_MIN, "; d\n");
             text.value("e", ".f", uint8_t{2});
         },
         "a = -1\nb = 4294967295\nc = -2147483648; d\ne.f = 2\n"},
        {[&](Text &text) { text.elements("a", ".b", unsigned_halves); },
         "a.b[0] = 7\na.b[1] = 65535\n"},
        {[&](Text &text) { text.elements("", "a", halves, ",\n"); },
         "a[0] = -5,\na[1] = -32768,\na[2] = 32767,\n"},
        {[&](Text &text) { text.closed_run("k = ", three); }, "k = 1, -22, 333\n"},
        {[&](Text &text) { text.closed_run("p.", "k = ", bytes); }, "p.k = 0, 200, 255\n"},
        {[&](Text &text) { text.closed_run("k = ", three, 4, ",\n"); }, "k =    1,  -22,  333,\n"},
        {[&](Text &text) { text.open_run("k =", three); }, "k =1, -22, 333, \n"},
        {[&](Text &text) { text.open_run("k = ", three, 4, "; x\n"); },
         "k =    1,  -22,  333, ; x\n"},
        {[&](Text &text) { text.open_run("", words); }, "2147483647, 2147483648, 4294967295, \n"},
        {[&](Text &text) { text.open_run("", as_signed(words)); },
         "2147483647, -2147483648, -1, \n"},
        {[&](Text &text) { text.grid(three, 2, 5); }, "    1,   -22, \n  333, \n"},
        {[&](Text &text) { text.grid(table, 3, 2); }, " 1,  2,  3, \n 4,  5,  6, \n"},
        {[&](Text &text) { text.open_run("", Values(halves).part(1, 9)); }, "-32768, 32767, \n"},
    };
    for (const auto &[write, expected] : cases) {
        EXPECT_EQ(kept(write), expected);
        EXPECT_EQ(printed(write), expected);
    }
}

// Wherever the room ends, within a number, a run or a piece.
TEST(Text, IsTheSameInBothPlacesAndAnyWhereItsRoomEnds)
{
    const int32_t longest[] = {INT32_MIN, INT32_MIN, INT32_MIN};
    const std::string run = "-2147483648, -2147483648, -2147483648\n";
    const std::string padded = std::string(254, ' ') + "7";
    const std::string piece(10000, 'p');
    for (size_t before = 3700; before < 4100; before++) {
        const std::string lead(before, 'x');
        const auto write = [&](Text &text) {
            text.put(lead.c_str());
            for (int i = 0; i < 9; i++)
                text.closed_run("", longest);
            text.put(Padded(7, 255), piece.c_str());
        };
        std::string expected = lead;
        for (int i = 0; i < 9; i++)
            expected += run;
        expected += padded + piece;
        ASSERT_TRUE(kept(write) == expected) << before;
        ASSERT_TRUE(printed(write) == expected) << before;
    }
}

// What arrives of several texts one after another, in a process of their own.
std::string arrived(const Output &plan, std::vector<size_t> *sizes = nullptr)
{
    register_categories();
    static const auto ctx = snapshot_of("distinct");
    const int file = memfd_create("arrived", MFD_CLOEXEC);
    const int notes = memfd_create("sizes", MFD_CLOEXEC);
    fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        dup2(file, STDOUT_FILENO);
        output = plan;
        const int status = parse_help("vorda", "") + parse_entry(ctx.get(), "share") +
                           parse_entry(ctx.get(), "all");
        __real_write(notes, output.sizes.data(), output.sizes.size() * sizeof(size_t));
        _exit(status);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0); // what cannot be written changes no status
    std::string text(static_cast<size_t>(lseek(file, 0, SEEK_END)), '\0');
    EXPECT_EQ(pread(file, text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
    if (sizes != nullptr) {
        sizes->resize(static_cast<size_t>(lseek(notes, 0, SEEK_END)) / sizeof(size_t));
        pread(notes, sizes->data(), sizes->size() * sizeof(size_t), 0);
    }
    close(file);
    close(notes);
    return text;
}

TEST(StdoutText, WritesNothingMoreAfterTheFirstFailure)
{
    std::vector<size_t> sizes;
    const std::string whole = arrived({}, &sizes);
    ASSERT_GT(sizes.size(), 20U);
    size_t before = 0;
    for (size_t i = 0; i < sizes.size(); i++) {
        std::vector<size_t> attempts;
        const int error = i % 2 == 0 ? EIO : ENOSPC;
        EXPECT_TRUE(arrived({.fail_at = static_cast<int>(i), .error = error}, &attempts) ==
                    whole.substr(0, before))
            << i;
        EXPECT_EQ(attempts.size(), i + 1);
        before += sizes[i];
    }
    EXPECT_EQ(before, whole.size());
}

TEST(StdoutText, WaitsForAReaderThatIsSlow)
{
    const std::string whole = arrived({});
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_NONBLOCK | O_CLOEXEC), 0);
    const int room = fcntl(ends[1], F_SETPIPE_SZ, 4096);
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        output = {};
        parse_help("vorda", "");
        parse_entry(snapshot_of("distinct").get(), "share");
        parse_entry(snapshot_of("distinct").get(), "all");
        _exit(output.sizes.size() < whole.size() / 100 ? 0 : 1); // it slept in between
    }
    close(ends[1]);
    int waiting = 0;
    EXPECT_TRUE(eventually([&] { // until nothing more can be written
        return ioctl(ends[0], FIONREAD, &waiting) == 0 && waiting > room - 4096 &&
               waits_of("/proc/" + std::to_string(child)) > 0;
    }));
    fcntl(ends[0], F_SETFL, 0);
    std::string text;
    char piece[1000];
    for (ssize_t size = 0; (size = read(ends[0], piece, sizeof(piece))) > 0;)
        text.append(piece, static_cast<size_t>(size));
    close(ends[0]);
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(text == whole);
}

TEST(StdoutText, GoesOnAfterSignalsAndShortWrites)
{
    const std::string whole = arrived({});
    EXPECT_TRUE(arrived({.others = true}) == whole);
    EXPECT_TRUE(arrived({.most = 7}) == whole);
    EXPECT_TRUE(arrived({.most = 1000, .others = true}) == whole);
}

} // namespace
