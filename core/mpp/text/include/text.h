// Writing text line by line: the one vocabulary of the category printers and the serializers.
//
// Where a text goes is decided by who begins it: StdoutText sends it to standard output, HeapText
// keeps it in memory. Writing cannot fail in a way that the writer must look after: a text that has
// lost its place drops what follows.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

// What an unsigned 32-bit field prints as where the signed conversion is used for it.
constexpr int32_t as_signed(uint32_t value)
{
    return static_cast<int32_t>(value);
}

// A number, right-aligned in at least `width` columns.
class Padded
{
public:
    Padded(int32_t number, uint8_t width)
        : bits_(static_cast<uint32_t>(number)), width_(width), signed_(true)
    {
    }
    Padded(uint32_t number, uint8_t width) : bits_(number), width_(width), signed_(false) {}

private:
    friend class Text;

    uint32_t bits_;
    uint8_t width_;
    bool signed_;
};

// An array of integers, or a table row by row: a view that owns nothing. Elements print as single
// numbers do, so unsigned words print unsigned.
class Values
{
public:
    template <std::integral T, size_t n>
    Values(const T (&values)[n])
        : first_(values), count_(n), width_(sizeof(T)), signed_(std::signed_integral<T>)
    {
        static_assert(n <= UINT16_MAX && sizeof(T) <= sizeof(uint32_t) && !std::same_as<T, int8_t>);
    }

    template <std::integral T, size_t n, size_t columns>
    Values(const T (&table)[n][columns]) : Values(table[0])
    {
        count_ = n * columns;
    }

    size_t size() const { return count_; }

    // The `count` values that begin at `from`, or as many as there are.
    Values part(size_t from, size_t count) const
    {
        Values result = *this;
        result.first_ = static_cast<const uint8_t *>(first_) + from * width_;
        result.count_ = static_cast<uint16_t>(std::min(count, count_ - from));
        return result;
    }

    // Calls each(value) with every value, as uint32_t if it is an unsigned word, else as int32_t.
    template <typename Each>
    void for_each(Each each) const
    {
        if (width_ == sizeof(uint8_t))
            visit<uint8_t>(each);
        else if (width_ == sizeof(uint16_t))
            signed_ ? visit<int16_t>(each) : visit<uint16_t>(each);
        else
            signed_ ? visit<int32_t>(each) : visit<uint32_t>(each);
    }

private:
    template <typename T, typename Each>
    void visit(Each each) const
    {
        for (const T value : std::span(static_cast<const T *>(first_), count_))
            each(+value);
    }

    const void *first_;
    uint16_t count_;
    uint8_t width_; // of a value, in bytes
    bool signed_;
};

// An array of unsigned words that prints signed.
template <size_t n>
Values as_signed(const uint32_t (&values)[n])
{
    return reinterpret_cast<const int32_t(&)[n]>(values);
}

// A text under construction.
class Text
{
public:
    Text(const Text &) = delete;
    Text &operator=(const Text &) = delete;

    // Writes a piece as it stands.
    void put(std::string_view piece);
    void put(const char *piece);
    void put(int32_t number);
    void put(uint32_t number);
    void put(Padded number);

    // Writes several pieces, texts and numbers, one after another.
    template <typename First, typename Second, typename... More>
    void put(First first, Second second, More... more)
    {
        put(first);
        put(second);
        (put(more), ...);
    }

    // key " = " value "\n"
    void value(const char *key, int32_t value);
    void value(const char *key, uint32_t value);

    // key " = " value end
    void value(const char *key, int32_t value, const char *end);

    // prefix key " = " value "\n", for records that print under several names
    void value(const char *prefix, const char *key, int32_t value);

    // An array as lines: prefix key "[" index "] = " element "\n"
    void elements(const char *prefix, const char *key, const Values &values);
    // The same with another end.
    void elements(const char *prefix, const char *key, const Values &values, const char *end);

    // An array as a run on one line. The key stands as in the text, blanks and "=" included.

    // key "1, 2, 3\n"
    void closed_run(const char *key, const Values &values);
    // prefix key "1, 2, 3\n"
    void closed_run(const char *prefix, const char *key, const Values &values);
    // key "1, 2, 3, \n"
    void open_run(const char *key, const Values &values);

    // The same with every element right-aligned in at least `width` columns, and with another end.
    void closed_run(const char *key, const Values &values, uint8_t width, const char *end = "\n");
    void open_run(const char *key, const Values &values, uint8_t width, const char *end = "\n");

    // An array as rows of `columns` elements, the last row perhaps shorter: "1, 2, 3, \n"
    void grid(const Values &values, size_t columns, uint8_t width);

protected:
    // What is written at one go at most: a padded number and what stands around it.
    static constexpr size_t ROOM = UINT8_MAX + sizeof(" = \n");

    // Moves what has been written out of the way, so that at_ has room for ROOM characters at
    // least.
    using MakeRoom = void (*)(Text &text);

    Text(char *begin, char *end, MakeRoom make_room) : at_(begin), end_(end), make_room_(make_room)
    {
    }
    ~Text() = default;

    char *at_;  // where the next character goes
    char *end_; // where the room ends

private:
    char *room();

    MakeRoom make_room_;
};
