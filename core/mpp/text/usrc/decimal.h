// Decimal numbers written straight into a buffer: what most of the output is made of.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

inline constexpr size_t DECIMAL_MAX = 11; // characters of the longest 32-bit number, "-2147483648"

// "00" to "99": two digits a division.
inline constexpr auto DIGIT_PAIRS = [] {
    std::array<char, 200> pairs = {};
    for (size_t i = 0; i < 100; i++) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

constexpr int decimal_length(uint32_t value)
{
    int length = 1;
    for (; value >= 1000; value /= 1000)
        length += 3;
    return length + (value >= 10) + (value >= 100);
}

// Writes `value` right-aligned in at least `width` columns, as "%*u" does, without a terminating
// zero. `out` must have room for the larger of `width` and DECIMAL_MAX characters. Returns the end
// of what was written.
inline char *put_decimal(char *out, uint32_t value, int width = 0, bool negative = false)
{
    const int length = decimal_length(value) + negative;
    for (; width > length; width--)
        *out++ = ' ';
    if (negative)
        *out = '-';

    char *const end = out + length;
    char *digit = end;
    for (; value >= 100; value /= 100)
        memcpy(digit -= 2, &DIGIT_PAIRS[size_t{value % 100} * 2], 2);
    if (value >= 10)
        memcpy(digit - 2, &DIGIT_PAIRS[size_t{value} * 2], 2);
    else
        *--digit = static_cast<char>('0' + value);
    return end;
}

// The same for a signed value, as "%*d" does.
inline char *put_decimal(char *out, int32_t value, int width = 0)
{
    const auto bits = static_cast<uint32_t>(value);
    return value < 0 ? put_decimal(out, 0 - bits, width, true) : put_decimal(out, bits, width);
}
