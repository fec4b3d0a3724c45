// One snapshot as read from vorda's text: where its fields stand, what they hold, what was not
// understood.
//
//     Snapshot            dev_idx, path_idx, time
//       Node "stat"         category; of share and vinfo it is the item as well
//         Node "stat.awb"     item
//           Node "stat.awb.Gwd RGL"   block or heading, perhaps within another
//             Field "r channel"         rows of values
//
// A snapshot owns its tables and points into the text that it was read from. It stays valid as long
// as that text does: for those of a Reader, until the reader's next call.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vordascope
{

enum class Kind : uint8_t {
    integer,    // exact in 64 bits: -9223372036854775808 to 18446744073709551615
    decimal,    // with a decimal point, or an integer of more than 64 bits
    not_finite, // nan, inf, with or without a sign
    boolean,    // true, false
    text,       // anything else
    empty,      // nothing behind the "="
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

enum class Shape : uint8_t {
    scalar, // one value
    list,   // values in a line, elements line by line, or a vector wrapped into rows
    rows,   // rows of `columns` values, the last one perhaps shorter; tuples are rows
};

// Index of a node or a field in the tables of its snapshot.
using NodeIndex = uint32_t;
using FieldIndex = uint32_t;

// A field: a key and its values, which stand one after another in the snapshot's table.
struct Field {
    std::string_view key;  // as printed, without the blanks around it and a final index
    std::string_view note; // what stands behind its value: "(Dual sensors)", "; u1.4 [0, 31]"
    uint64_t line;         // number of its first line in the input, from 1
    NodeIndex node;        // what it belongs to
    uint32_t first;        // place of its first value
    uint32_t count;        // how many it has
    uint32_t columns;      // of Shape::rows; of other shapes the count
    Shape shape;
};

enum class Level : uint8_t { snapshot, category, item, block };

// A member of a node: another node, or a field.
struct Member {
    uint32_t index;
    bool is_node;
};

// What holds fields: the snapshot itself (which holds none directly), a category, an item, a block.
struct Node {
    NodeIndex parent; // its own index for the snapshot
    Level level;
    uint32_t name_at;  // where its own name begins in `path`
    uint32_t block_at; // where the name of its outermost block begins, or the length of `path`
    std::string path;  // "stat.awb.Gwd RGL": the names from the category down, joined by "."
    std::string block; // "Gwd RGL": the blocks alone, joined by " / "
    std::vector<Member> members; // in order of appearance

    std::string_view name() const { return std::string_view(path).substr(name_at); }
    // "stat.awb": vorda's own name of the item.
    std::string_view item() const
    {
        const std::string_view all = path;
        return all.substr(0, block_at < all.size() ? block_at - 1 : block_at);
    }
};

// A line that was not understood.
struct Unread {
    uint64_t line;         // its number in the input, from 1
    std::string_view text; // without its end
    const char *why;       // what is wrong with it, for people
};

struct Snapshot {
    std::string_view text; // all of it, from the end of the one before it
    uint64_t line = 1;     // number of its first line in the input
    uint64_t number = 0;   // which one of its input it is, from 1
    bool indexed = false;  // begins with an index line; false for text that belongs to no snapshot
    bool timed = false;    // a time line stands before the index line
    bool cut = false;      // the input ends within a line
    uint32_t dev_idx = 0;
    uint32_t path_idx = 0;
    Value time = {};
    std::vector<Field> fields; // in order of appearance
    std::vector<Value> values; // in order of appearance
    std::vector<Unread> unread;

    // nodes[0] is the snapshot itself. A parent stands before its children.
    const Node &node(NodeIndex index) const { return nodes_[index]; }
    const Node &node_of(const Field &field) const { return nodes_[field.node]; }
    size_t node_count() const { return node_count_; }

    const Value *begin(const Field &field) const { return values.data() + field.first; }

    // "stat.awb.Gwd RGL.r channel", unique within a snapshot.
    std::string path(const Field &field) const;

private:
    friend class Parser;
    std::vector<Node> nodes_; // those behind node_count_ are kept for their memory
    size_t node_count_ = 0;
};

// A field, or some of its values.
struct Place {
    const Field *field = nullptr; // nullptr: there is no such field, row or value
    uint32_t first = 0;           // place of the first value within the field
    uint32_t count = 0;
};

// Looks a field up by its path, which may end in one index ("[3]": an element of a list, a row of
// rows) or two ("[3][4]": an element of rows).
Place find(const Snapshot &snapshot, std::string_view path);

// Appends the text of a snapshot, written again from its values and what stands between them.
// It is equal to snapshot.text, unless the reader has lost something.
void write(const Snapshot &snapshot, std::string &out);

} // namespace vordascope
