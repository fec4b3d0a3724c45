// Building of attribute texts: one buffer that grows with the text.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>

// An array of integers of at most 32 bits, whatever their width and sign. Each prints as an
// int32_t, so unsigned words print signed.
class AttrValues
{
public:
    template <std::integral T, size_t n>
    AttrValues(const T (&values)[n])
        : first_(values), shape_(n * KINDS | sizeof(T) / 2 * HALF | std::signed_integral<T>)
    {
        static_assert(sizeof(T) <= sizeof(int32_t));
    }

    size_t size() const { return shape_ / KINDS; }
    int32_t operator[](size_t i) const;

    // The `count` values that begin at `from`, or as many as there are.
    AttrValues part(size_t from, size_t count) const;

private:
    // How an element is stored; KINDS is above them all.
    enum Kind : uint32_t { BYTE = 0, SIGNED = 1, HALF = 2, WORD = 4, KINDS = 8 };

    const void *first_;
    uint32_t shape_; // size * KINDS | Kind
};

// An attribute text under construction. Appending costs time in proportion to what is appended.
//
// The text lies in a buffer of the system allocator that at least doubles whenever it is full. When
// it cannot grow, the builder frees it and stays failed: what follows appends nothing, and
// deliver() reports the failure. So nothing needs to be checked between the first piece and the
// delivery.
//
// A run is the line of an array: the key as it stands in the text (blanks and "=" included), the
// elements, and the end of the line.
class AttrText
{
public:
    AttrText() = default;
    ~AttrText();
    AttrText(const AttrText &) = delete;
    AttrText &operator=(const AttrText &) = delete;

    // Appends a piece as it stands.
    void append(const char *piece);

    // Appends a piece formatted as by printf.
    [[gnu::format(printf, 2, 3)]] void put(const char *format, ...);

    // key " = 1\n"
    void value(const char *key, int32_t value);

    // key "1, 2, 3\n"
    void closed_run(const char *key, const AttrValues &values);

    // key index " = 1, 2, 3\n"
    void closed_run(const char *key, int index, const AttrValues &values);

    // key "1, 2, 3, \n"
    void open_run(const char *key, const AttrValues &values);

    // key " 1,  2,  3, " end, every element right-aligned in at least `width` columns
    void padded_run(const char *key, const AttrValues &values, int width, const char *end = "\n");

    // key " 1, 2, 3,\n"
    void spaced_run(const char *key, const AttrValues &values);

    // Padded runs of `columns` elements, the last one perhaps shorter, each with the key that
    // put_key(int row) puts.
    template <typename PutKey>
    void wrapped_run(const AttrValues &values, size_t columns, int width, PutKey put_key)
    {
        for (size_t i = 0; i < values.size(); i += columns) {
            put_key(static_cast<int>(i / columns));
            padded_run("", values.part(i, columns), width);
        }
    }

    // The open runs of a table's rows: key row " = 1, 2, 3, ", and then `row_end`, or `end` after
    // the last row.
    template <typename T, size_t columns, size_t n>
    void indexed_rows(const char *key, const T (&rows)[n][columns], const char *end = "\n",
                      const char *row_end = "\n")
    {
        for (size_t i = 0; i < n; i++) {
            indexed_key(key, static_cast<int>(i));
            padded_run("", rows[i], 0, i + 1 < n ? row_end : end);
        }
    }

    // Hands the text over: returns 0 with a terminated text in *str that the caller releases with
    // free(), or -1 with nullptr there after a failure. The builder is then empty.
    int32_t deliver(char **str);

private:
    char *reserve(size_t size);
    void advance(const char *end) { length_ = static_cast<size_t>(end - text_); }
    void indexed_key(const char *key, int index);

    template <typename Put>
    void elements(const AttrValues &values, size_t most, Put put);
    void fail();

    char *text_ = nullptr;
    size_t length_ = 0;
    size_t capacity_ = 0;
    bool failed_ = false;
};
