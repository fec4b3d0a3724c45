// The buffer in front of standard output.
#include "print.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace
{

constexpr size_t KEY_MAX = 100;

char buffer[256];
static_assert(2 * KEY_MAX + 2 + DECIMAL_MAX + VALUE_LINE_MAX <= sizeof(buffer));
char *buffer_end = buffer;

char *put_text(char *out, const char *text)
{
    return std::copy_n(text, std::min(strlen(text), KEY_MAX), out);
}

template <typename Value>
void print_line(char *out, const char *key, Value value)
{
    print_advance(put_value_line(out, key, std::min(strlen(key), KEY_MAX), value));
}

} // namespace

void print(const char *format, ...)
{
    print_flush();
    va_list args;
    va_start(args, format);
    vprintf(format, args);
    va_end(args);
}

void print_value(const char *key, int32_t value)
{
    print_line(print_room(KEY_MAX + VALUE_LINE_MAX), key, value);
}

void print_value(const char *key, uint32_t value)
{
    print_line(print_room(KEY_MAX + VALUE_LINE_MAX), key, value);
}

void print_value(const char *prefix, const char *key, int32_t value)
{
    print_line(put_text(print_room(2 * KEY_MAX + VALUE_LINE_MAX), prefix), key, value);
}

void print_element(const char *prefix, const char *key, int index, int32_t value)
{
    char *out = print_room(2 * KEY_MAX + 2 + DECIMAL_MAX + VALUE_LINE_MAX);
    out = put_text(put_text(out, prefix), key);
    *out++ = '[';
    out = put_decimal(out, index);
    print_line(out, "]", value);
}

char *print_room(size_t size)
{
    if (buffer_end + size > std::end(buffer))
        print_flush();
    return buffer_end;
}

void print_advance(char *end)
{
    buffer_end = end;
}

void print_flush()
{
    fwrite(buffer, 1, static_cast<size_t>(buffer_end - buffer), stdout);
    buffer_end = buffer;
}
