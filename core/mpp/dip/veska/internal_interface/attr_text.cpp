// The growing buffer of an attribute text.
#include "attr_text.h"

#include "decimal.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace
{

constexpr size_t FIRST_CAPACITY = 1024;

} // namespace

int32_t AttrValues::operator[](size_t i) const
{
    switch (shape_ % KINDS) {
    case BYTE:
        return static_cast<const uint8_t *>(first_)[i];
    case BYTE | SIGNED:
        return static_cast<const int8_t *>(first_)[i];
    case HALF:
        return static_cast<const uint16_t *>(first_)[i];
    case HALF | SIGNED:
        return static_cast<const int16_t *>(first_)[i];
    default:
        return static_cast<const int32_t *>(first_)[i];
    }
}

AttrValues AttrValues::part(size_t from, size_t count) const
{
    AttrValues result = *this;
    const uint32_t kind = shape_ % KINDS;
    const uint32_t width = std::max<uint32_t>(1, kind & (HALF | WORD));
    result.first_ = static_cast<const uint8_t *>(first_) + from * width;
    result.shape_ = static_cast<uint32_t>(std::min(count, size() - from)) * KINDS | kind;
    return result;
}

AttrText::~AttrText()
{
    free(text_);
}

void AttrText::put(const char *format, ...)
{
    if (failed_)
        return;

    va_list args;
    va_list again;
    va_start(args, format);
    va_copy(again, args);
    const size_t room = capacity_ - length_;
    const int result = vsnprintf(text_ + length_, room, format, args);
    if (result < 0) {
        fail();
    } else {
        const auto size = static_cast<size_t>(result);
        char *const out = reserve(size);
        if (out != nullptr) {
            if (size >= room)
                vsnprintf(out, size + 1, format, again);
            length_ += size;
        }
    }
    va_end(again);
    va_end(args);
}

void AttrText::value(const char *key, int32_t value)
{
    const size_t key_length = strlen(key);
    char *const out = reserve(key_length + VALUE_LINE_MAX);
    if (out != nullptr)
        advance(put_value_line(out, key, key_length, value));
}

void AttrText::closed_run(const char *key, const AttrValues &values)
{
    padded_run(key, values, 0, "");
    // The last separator makes place for the end of the line.
    if (!failed_)
        length_ -= sizeof(", ") - 1;
    append("\n");
}

void AttrText::closed_run(const char *key, int index, const AttrValues &values)
{
    indexed_key(key, index);
    closed_run("", values);
}

void AttrText::open_run(const char *key, const AttrValues &values)
{
    padded_run(key, values, 0);
}

void AttrText::padded_run(const char *key, const AttrValues &values, int width, const char *end)
{
    append(key);
    elements(values, std::max(DECIMAL_MAX, static_cast<size_t>(width)) + 2,
             [width](char *out, int32_t value) { return put_element(out, value, width); });
    append(end);
}

void AttrText::spaced_run(const char *key, const AttrValues &values)
{
    append(key);
    elements(values, 1 + DECIMAL_MAX + 1, [](char *out, int32_t value) {
        *out++ = ' ';
        out = put_decimal(out, value);
        *out++ = ',';
        return out;
    });
    append("\n");
}

int32_t AttrText::deliver(char **str)
{
    char *const end = reserve(0);
    if (end != nullptr)
        *end = '\0';
    *str = std::exchange(text_, nullptr);
    length_ = 0;
    capacity_ = 0;
    return end != nullptr ? 0 : -1;
}

// Makes room for `size` more characters and a terminating zero. Returns where they go, or nullptr
// when the builder has failed.
char *AttrText::reserve(size_t size)
{
    if (failed_)
        return nullptr;
    if (size >= capacity_ - length_) {
        const size_t capacity = std::max({FIRST_CAPACITY, 2 * capacity_, length_ + size + 1});
        auto *const text = static_cast<char *>(realloc(text_, capacity));
        if (text == nullptr) {
            fail();
            return nullptr;
        }
        text_ = text;
        capacity_ = capacity;
    }
    return text_ + length_;
}

void AttrText::indexed_key(const char *key, int index)
{
    append(key);
    char *const out = reserve(DECIMAL_MAX);
    if (out != nullptr)
        advance(put_decimal(out, index));
    append(" = ");
}

void AttrText::append(const char *piece)
{
    const size_t size = strlen(piece);
    char *const out = reserve(size);
    if (out == nullptr)
        return;
    advance(std::copy_n(piece, size, out));
}

// Appends each value as put(out, value) writes it, in at most `most` characters.
template <typename Put>
void AttrText::elements(const AttrValues &values, size_t most, Put put)
{
    char *out = reserve(values.size() * most);
    if (out == nullptr)
        return;
    for (size_t i = 0; i < values.size(); i++)
        out = put(out, values[i]);
    advance(out);
}

void AttrText::fail()
{
    free(text_);
    text_ = nullptr;
    length_ = 0;
    capacity_ = 0;
    failed_ = true;
}
