// Printing on standard output: formatted lines, values, arrays and grids.
//
// What is printed gathers in a small buffer in front of standard output, since a call of the C
// library costs more than a short line. So a printer prints through these routines alone, and
// print_flush() stands at its end.
#pragma once

#include "decimal.h"

#include <cstddef>
#include <cstdint>
#include <functional>

// Prints as printf does.
[[gnu::format(printf, 1, 2)]] void print(const char *format, ...);

// Prints key " = " value "\n". The key, of at most 100 characters, stands in the source as in the
// output. Signed and narrow fields print as "%d" prints them, unsigned 32-bit fields as "%u".
void print_value(const char *key, int32_t value);
void print_value(const char *key, uint32_t value);

// The same with a prefix before the key, for records that print under several names.
void print_value(const char *prefix, const char *key, int32_t value);

// Prints prefix key "[" index "] = " value "\n".
void print_element(const char *prefix, const char *key, int index, int32_t value);

// Prints an array of narrow fields, an element a line.
template <typename T, size_t n>
void print_array(const char *prefix, const char *key, const T (&values)[n])
{
    static_assert(sizeof(T) < sizeof(int32_t));
    for (size_t i = 0; i < n; i++)
        print_element(prefix, key, static_cast<int>(i), values[i]);
}

// Makes room for `size` characters, at most 256, in the buffer. What is written there is printed
// by print_advance(), which takes its end.
char *print_room(size_t size);
void print_advance(char *end);

// Sends what has been printed to standard output.
void print_flush();

// The common element of a grid: a number, right-aligned in `width` columns, and ", ". Unsigned
// 32-bit fields print unsigned; `project` picks a member of a record or changes the value.
template <typename Project = std::identity>
constexpr auto cell(int width, Project project = {})
{
    return [=](char *out, const auto &element) {
        return put_element(out, +std::invoke(project, element), width);
    };
}

inline constexpr size_t CELL_MAX = 32; // characters that one element of a grid may take

// Prints values in array order as rows of `columns` elements, the last row perhaps shorter.
// `element` writes one value, its separator included, into a buffer and returns the end.
template <typename T, size_t n, typename Element>
void print_grid(const T (&values)[n], size_t columns, Element element)
{
    size_t column = 0;
    for (size_t i = 0; i < n; i++) {
        char *out = element(print_room(CELL_MAX + 1), values[i]);
        if (++column == columns || i + 1 == n) {
            *out++ = '\n';
            column = 0;
        }
        print_advance(out);
    }
}
