// The grammar of vorda's text, as reader.h describes it: the lines of one snapshot to its fields.
#pragma once

#include "unwrap.h"

namespace vordascope
{

class Grammar
{
public:
    // Reads the body of a snapshot, of which the head is given, and adds to its unread lines.
    void parse(Snapshot &snapshot);

    // Whether lines of that snapshot may have been wrapped; and whether that has broken a field.
    bool wrapped() const { return broken() || strange_ || high_; }
    bool broken() const { return wrapped_ >= WRAP_MIN && wrapped_ + WRAP_WORD >= longest_; }

    // Damages the fields of that snapshot that stand in such lines.
    void doubt(const std::vector<Doubt> &doubts);

private:
    // What a line turned out to be. `broken` goes on with a field as no line of vorda does.
    enum class Line : uint8_t { blank, layout, data, label, shapeless, unread, broken };

    // Values in one line: of a field, of a row.
    struct Run {
        uint32_t first = 0;
        uint32_t count = 0;
        uint32_t columns = 0; // of tuples; 0: plain numbers
        bool list = false;
        std::string_view note;
    };

    void read_part(const Part &part);
    void use(Line line, uint64_t number, std::string_view text);
    void read_cut_line(std::string_view line, uint64_t number);
    bool open_key(std::string_view &key);
    void damage(FieldIndex field);
    Line read_line(const char *p, const char *end);
    Line read_section(const char *p, const char *end);
    Line read_tag(const char *p, const char *end);
    Line read_keyed(const char *p, const char *end);
    Line read_label(std::string_view key);
    Line read_row(const char *p, const char *end);
    Line read_numbered_row(const char *p, const char *end);
    Line add_legend(std::string_view legend);
    Line add_row(const Run &run);
    Line add_scalar_or_list(std::string_view key, const Run &run);
    Line add_element(std::string_view base, uint32_t index, const Run &run);
    Line add_other(std::string_view key, const char *begin, const char *end);
    FieldIndex add_field(std::string_view key, const Run &run, Shape shape);

    bool read_numbers(const char *p, const char *end, Run &run);
    bool read_tuples(const char *p, const char *end, Run &run);
    const char *read_tuple(const char *p, Run &run);

    void open_section(NodeIndex node);
    void take_prefix(std::string_view &key);
    void close_rows();
    NodeIndex category(std::string_view name);
    NodeIndex place();

    // A line of no form that vorda prints: it may belong to a text.
    Line shapeless(const char *why)
    {
        why_ = why;
        return Line::shapeless;
    }

    // A line that has a form but no place.
    Line unread(const char *why)
    {
        why_ = why;
        return Line::unread;
    }

    // A line that belongs to a field, but not so.
    Line broken(FieldIndex field)
    {
        touched_ = field;
        return Line::broken;
    }

    Snapshot *s_ = nullptr;

    // Where the next field belongs: below the section, the names that are not empty. `place_` is
    // their node, which comes into being with its first field.
    NodeIndex section_ = NONE;
    std::string_view heading_;
    std::string_view capitals_;
    std::string_view block_;
    bool block_keeps_labels_ = false; // further labels stand within the block
    NodeIndex place_ = NONE;

    std::string_view label_;      // a label without rows so far
    FieldIndex rows_ = NONE;      // the field that further rows belong to
    FieldIndex elements_ = NONE;  // the field that a further element belongs to
    FieldIndex open_text_ = NONE; // the file's name that an unreadable line belongs to
    bool text_begins_ = false;    // with the line that is being read
    FieldIndex touched_ = NONE;   // the field that the line belongs to
    FieldIndex last_ = NONE;      // the one that the line before belongs to
    const char *why_ = nullptr;

    size_t length_ = 0; // of the line, and of the one before
    size_t before_ = 0;
    size_t longest_ = 0;
    size_t wrapped_ = 0;   // the longest that went on as no line of vorda does
    bool strange_ = false; // a line may be the rest of one that long
    bool high_ = false;    // a map of long rows is higher than any is
};

} // namespace vordascope
