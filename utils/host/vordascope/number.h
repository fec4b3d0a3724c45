// Characters, and numbers as vorda prints them.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace vordascope
{

// What a character may be part of.
enum Class : uint8_t { DIGIT = 1, UPPER = 2, LOWER = 4, MARK = 8, BLANK = 16 };
constexpr uint8_t LETTER = UPPER | LOWER;
constexpr uint8_t KEY = DIGIT | LETTER | MARK;

constexpr auto CLASSES = [] {
    std::array<uint8_t, 256> classes = {};
    for (unsigned char c = '0'; c <= '9'; c++)
        classes[c] = DIGIT;
    for (unsigned char c = 'A'; c <= 'Z'; c++)
        classes[c] = UPPER;
    for (unsigned char c = 'a'; c <= 'z'; c++)
        classes[c] = LOWER;
    for (const char c : std::string_view("_.-[]"))
        classes[static_cast<unsigned char>(c)] = MARK;
    for (const char c : std::string_view(" \t"))
        classes[static_cast<unsigned char>(c)] = BLANK;
    return classes;
}();

inline bool is(char c, uint8_t classes)
{
    return (CLASSES[static_cast<unsigned char>(c)] & classes) != 0;
}

// Whether every character is of these classes; so is none at all.
inline bool all_of(std::string_view text, uint8_t classes)
{
    return std::all_of(text.begin(), text.end(), [classes](char c) { return is(c, classes); });
}

enum class Kind : uint8_t {
    integer,    // exact in 64 bits: -9223372036854775808 to 18446744073709551615
    decimal,    // with a decimal point, or an integer of more than 64 bits
    not_finite, // nan, inf, with or without a sign
    boolean,    // true, false
    text,       // anything else
    empty,      // nothing behind the "="
    damaged,    // of a field that is not there in full, whatever is there
};

// One value, with its place in the text.
struct Value {
    const char *begin;
    uint32_t size;
    Kind kind;
    uint64_t magnitude; // of an integer; 0 otherwise

    // As printed. A text may hold any bytes, line ends included.
    std::string_view text() const { return {begin, size}; }
    bool negative() const { return size != 0 && *begin == '-'; }
    bool number() const { return kind <= Kind::not_finite; }
};

// Reads what read_number() leaves: nan, inf, decimals, integers of many digits.
const char *read_rare_number(const char *p, Value &value);

// Reads a number at `p`; what ends it must be readable, as a line end is. Returns its end, or
// nullptr when there is none. Numbers with needless zeros are none, so that each can go into JSON
// as it stands.
inline const char *read_number(const char *const begin, Value &value)
{
    constexpr size_t SAFE_DIGITS = 18; // cannot exceed 64 bits
    const char *p = begin + (*begin == '-');
    const char *const digits = p;
    uint64_t magnitude = 0;
    for (; is(*p, DIGIT); p++)
        magnitude = magnitude * 10 + static_cast<unsigned>(*p - '0');
    const auto length = static_cast<size_t>(p - digits);
    if (length - 1 >= SAFE_DIGITS || *p == '.' || (*digits == '0' && length > 1))
        return read_rare_number(begin, value);
    value = {begin, static_cast<uint32_t>(p - begin), Kind::integer, magnitude};
    return p;
}

// Takes an integer without a sign off the beginning of a text.
bool take_number(std::string_view &text, uint64_t &result);
bool take_number(std::string_view &text, uint32_t &result);

// Takes a fixed piece off the beginning of a text.
inline bool take(std::string_view &text, std::string_view piece)
{
    if (!text.starts_with(piece))
        return false;
    text.remove_prefix(piece.size());
    return true;
}

} // namespace vordascope
