// Snapshots: what the reader makes of a text, and how fields are found in them.
#pragma once

#include "number.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vordascope
{

enum class Shape : uint8_t {
    scalar, // one value
    list,   // values in a line, elements line by line, or a vector wrapped into rows
    rows,   // rows of `columns` values, the last one perhaps shorter; tuples are rows
};

// Index of a node or a field in the tables of its snapshot.
using NodeIndex = uint32_t;
using FieldIndex = uint32_t;
constexpr uint32_t NONE = UINT32_MAX;

// A field: a key and its values, which stand one after another in the snapshot's table.
struct Field {
    std::string_view key;  // as printed, without the blanks around it and a final index
    std::string_view note; // what stands behind its value: "(Dual sensors)", "; u1.4 [0, 31]", or
                           // alone in the line below
    NodeIndex node;        // what it belongs to
    uint32_t first;        // place of its first value
    uint32_t count;        // how many it has, at least one
    uint32_t columns;      // of Shape::rows; of other shapes the count
    Shape shape;
};

// A member of a node: another node, or a field.
struct Member {
    uint32_t index;
    bool is_node;
};

// What holds fields: the snapshot itself (which holds none directly), a category, an item, a block.
struct Node {
    NodeIndex parent;            // its own index for the snapshot
    bool block;                  // stands below an item
    std::string name;            // its own: "Gwd RGL"
    std::vector<Member> members; // in order of appearance
};

// A line that was not understood.
struct Unread {
    uint64_t line;           // its number in the input, from 1
    std::string_view text;   // without its end
    const char *why;         // what is wrong with it, for people
    FieldIndex field = NONE; // which it damages
};

// Of more unread lines in a snapshot only the number is told.
constexpr size_t UNREAD_MAX = 10000;

// What somebody has said of a capture: "label site = roof".
struct Label {
    std::string key;
    std::string value;

    bool operator==(const Label &) const = default;
};

// So many labels may be given within a capture.
constexpr size_t LABELS_MOST = 256;

// Whole lines, and the number of the first in the input.
struct Part {
    std::string_view text;
    uint64_t line;
};

// What a snapshot says of itself, and its text.
struct Head {
    // All of it, from the end of the one before it. Of an added snapshot that has been made whole:
    // its own head, and the sections of which it is made.
    std::string_view text;
    std::vector<Part> body; // what follows the index line up to the end line
    uint64_t line = 1;      // number of its first line in the input
    uint64_t at = 0;        // where its head lines begin, in bytes of the input as it was decoded
    uint64_t number = 0;    // which one of its input it is, from 1
    bool indexed = false;   // is a snapshot; false for text that belongs to none
    bool named = false;     // has an index line; an attribute text may be without
    bool timed = false;     // `time` is there
    bool cut = false;       // ends within a line, or without the end line that others have
    bool intact = false;    // ends with its end line, and has the sum that it says
    uint32_t dev_idx = 0;
    uint32_t path_idx = 0;
    Value time = {};                     // in seconds, on the camera's clock
    std::optional<uint64_t> frame;       // the camera's frame counter
    uint64_t missed = 0;                 // frames that nobody saw between the one before and this
    std::optional<uint64_t> added_to;    // the text holds only what changed since that frame
    std::vector<Label> labels;           // of the capture so far
    std::vector<std::string_view> marks; // what was changed then
    std::vector<Unread> unread;          // the first UNREAD_MAX
    uint64_t unread_count = 0;
    uint64_t left_out = 0; // lines of a prompt or a mail around the captures, and the first of them
    std::string_view left_out_first;

    void leave_out(std::string_view text_line)
    {
        if (left_out++ == 0)
            left_out_first = text_line;
    }

    void tell(const Unread &gap)
    {
        if (++unread_count <= UNREAD_MAX)
            unread.push_back(gap);
    }

    // Lets what points into the text point to another place: move(pointer) says where.
    template <typename Move>
    void move_text(std::string_view to, Move move)
    {
        const auto view = [&move](std::string_view &part) {
            if (!part.empty())
                part = {move(part.data()), part.size()};
        };
        if (timed)
            time.begin = move(time.begin);
        for (std::string_view &mark : marks)
            view(mark);
        for (Unread &gap : unread)
            view(gap.text);
        for (Part &part : body)
            view(part.text);
        view(left_out_first);
        text = to;
    }

    // Lets it have another text, which is the same before and behind the body.
    void replace_body(std::string_view to, const std::vector<Part> &parts);
};

// A snapshot that has been read. It points into its text: that of a reader lasts until the reader
// goes on, a copy has a text of its own.
//
// Nodes and fields have names that are unique among the members of their node, so that a node and a
// key name a field whatever characters they hold. A path joins them with dots for people; two
// fields may have one path ("a.b" and "c", "a" and "b.c").
class Snapshot : public Head
{
public:
    Snapshot() = default;
    Snapshot(const Snapshot &other);
    Snapshot(Snapshot &&) = default;
    Snapshot &operator=(const Snapshot &other) { return *this = Snapshot(other); }
    Snapshot &operator=(Snapshot &&) = default;
    ~Snapshot() = default;

    std::vector<Field> fields; // in order of appearance
    std::vector<Value> values; // in order of appearance

    // node(0) is the snapshot itself. A parent stands before its children.
    const Node &node(NodeIndex index) const { return nodes_[index]; }
    size_t node_count() const { return node_count_; }

    const Value *begin(const Field &field) const { return values.data() + field.first; }

    // Whether a field is not there in full; then all its values are Kind::damaged.
    bool damaged(const Field &field) const { return begin(field)->kind == Kind::damaged; }

    // The member of that name, or NONE. Takes the same time however many members there are.
    NodeIndex child(NodeIndex parent, std::string_view name) const;
    FieldIndex field(NodeIndex node, std::string_view key) const;

    // The node, or the field, that has the same names in this snapshot as in the other one.
    NodeIndex same_node(const Snapshot &other, NodeIndex node) const;
    const Field *same_field(const Snapshot &other, const Field &field) const;

    // "stat.awb.Gwd RGL": the names from the category down. With a line end between them, which no
    // name holds, they name one node alone.
    std::string path(NodeIndex node, char between = '.') const;
    // "stat.awb.Gwd RGL.r channel".
    std::string path(const Field &field) const;
    // "stat.awb": vorda's own name of the item.
    std::string item(const Field &field) const;
    // "Gwd RGL": the blocks alone, joined by " / ".
    std::string block(const Field &field) const;

private:
    friend class Grammar;
    friend struct SlotsOf; // tests count what a look-up may cost

    struct Slot {
        uint32_t hash;
        uint32_t member; // index * 2 + is_node, or NONE
    };
    // The members whose slots are taken by too many others.
    struct Less {
        using is_transparent = void;
        template <typename A, typename B>
        bool operator()(const A &a, const B &b) const
        {
            return a.first != b.first ? a.first < b.first : a.second < b.second;
        }
    };
    using Crowd = std::map<std::pair<NodeIndex, std::string>, uint32_t, Less>;

    void clear();
    NodeIndex add_node(NodeIndex parent, std::string_view name, bool block);
    // Adds a field, unless its node has a member of that name: then it returns NONE.
    FieldIndex add_field(const Field &field);
    // The node of that name, which comes into being when needed, or NONE when a field has the name.
    NodeIndex take_child(NodeIndex parent, std::string_view name, bool block);

    uint32_t look_up(NodeIndex parent, std::string_view name) const;
    uint32_t look_up(NodeIndex parent, std::string_view name, uint32_t hash) const;
    bool is_member(uint32_t member, NodeIndex parent, std::string_view name) const;
    void enter(NodeIndex parent, std::string_view name, uint32_t hash, uint32_t member);
    void grow();

    std::vector<Node> nodes_; // those behind node_count_ are kept for their memory
    size_t node_count_ = 0;
    std::vector<Slot> slots_;
    size_t used_ = 0;
    Crowd crowd_;
    std::vector<char> own_text_; // of a copy
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
