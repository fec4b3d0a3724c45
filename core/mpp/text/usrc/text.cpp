// The lines of a text.
#include "text.h"

#include "decimal.h"

#include <algorithm>
#include <cstring>

namespace
{

template <typename Value>
char *put_value(char *out, Value value)
{
    *out++ = ' ';
    *out++ = '=';
    *out++ = ' ';
    return put_decimal(out, value);
}

} // namespace

void Text::put(std::string_view piece)
{
    while (!piece.empty()) { // an empty one may have no place
        const size_t size = std::min(piece.size(), static_cast<size_t>(end_ - at_));
        memcpy(at_, piece.data(), size);
        at_ += size;
        piece.remove_prefix(size);
        if (!piece.empty())
            make_room_(*this);
    }
}

void Text::put(const char *piece)
{
    put(std::string_view(piece));
}

void Text::put(int32_t number)
{
    at_ = put_decimal(room(), number);
}

void Text::put(uint32_t number)
{
    at_ = put_decimal(room(), number);
}

void Text::put(Padded number)
{
    at_ = number.signed_ ? put_decimal(room(), as_signed(number.bits_), number.width_)
                         : put_decimal(room(), number.bits_, number.width_);
}

void Text::value(const char *key, int32_t value)
{
    put(key);
    at_ = put_value(room(), value);
    *at_++ = '\n';
}

void Text::value(const char *key, uint32_t value)
{
    put(key);
    at_ = put_value(room(), value);
    *at_++ = '\n';
}

void Text::value(const char *key, int32_t value, const char *end)
{
    put(key);
    at_ = put_value(room(), value);
    put(end);
}

void Text::value(const char *prefix, const char *key, int32_t number)
{
    put(prefix);
    value(key, number);
}

void Text::elements(const char *prefix, const char *key, const Values &values)
{
    elements(prefix, key, values, "\n");
}

void Text::elements(const char *prefix, const char *key, const Values &values, const char *end)
{
    for (size_t i = 0; i < values.size(); i++) {
        put(prefix, key, "[", static_cast<int32_t>(i), "]");
        closed_run(" = ", values.part(i, 1), 0, end);
    }
}

void Text::closed_run(const char *key, const Values &values)
{
    closed_run(key, values, 0);
}

void Text::closed_run(const char *prefix, const char *key, const Values &values)
{
    put(prefix);
    closed_run(key, values);
}

void Text::closed_run(const char *key, const Values &values, uint8_t width, const char *end)
{
    open_run(key, values, width, "");
    at_ -= sizeof(", ") - 1; // the last separator gives way to `end`
    put(end);
}

void Text::open_run(const char *key, const Values &values)
{
    open_run(key, values, 0);
}

void Text::open_run(const char *key, const Values &values, uint8_t width, const char *end)
{
    put(key);
    values.for_each([this, width](auto element) {
        char *out = put_decimal(room(), element, width);
        *out++ = ',';
        *out++ = ' ';
        at_ = out;
    });
    put(end);
}

void Text::grid(const Values &values, size_t columns, uint8_t width)
{
    for (size_t i = 0; i < values.size(); i += columns)
        open_run("", values.part(i, columns), width);
}

char *Text::room()
{
    if (static_cast<size_t>(end_ - at_) < ROOM)
        make_room_(*this);
    return at_;
}
