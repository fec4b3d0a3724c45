// The grammar of vorda's text.
#include "reader.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace vordascope
{

namespace
{

constexpr uint32_t NONE = UINT32_MAX;
constexpr uint32_t WRAPPED_COLUMNS = 6; // a vector's values a row
constexpr std::string_view END_LINE = "; end";
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF"; // some editors begin a file with it

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

bool is(char c, uint8_t classes)
{
    return (CLASSES[static_cast<unsigned char>(c)] & classes) != 0;
}

// Whether every character is of these classes; so is none at all.
bool all_of(std::string_view text, uint8_t classes)
{
    return std::all_of(text.begin(), text.end(), [classes](char c) { return is(c, classes); });
}

const char *skip_blanks(const char *p)
{
    while (*p == ' ' || *p == '\t')
        p++;
    return p;
}

// Tags of attribute texts that are not the item's name in capitals.
struct Tag {
    std::string_view tag;
    std::string_view item;
};
constexpr Tag TAGS[] = {
    {"BSP_DPC", "dpc"},
    {"HDRAE", "hdr_ae"},
    {"REGIONAL_STAT", "rgl_stat"},
    {"TRAIL_SUPPRESS", "ts"},
};

// Categories that print without section lines.
constexpr std::string_view PREFIXES[] = {"share.", "vinfo."};

// What a snapshot says of itself, so no category can have these names.
constexpr std::string_view RESERVED[] = {"vorda_json", "dev_idx", "path_idx",
                                         "time",       "cut",     "unread"};

// Reads what read_number() leaves: nan, inf, decimals, integers of many digits.
const char *read_rare_number(const char *p, Value &value)
{
    value = {p, 0, Kind::decimal, 0};
    p += *p == '-';
    const char *const digits = p;
    uint64_t magnitude = 0;
    bool exact = true;
    for (; is(*p, DIGIT); p++)
        exact = exact && !__builtin_mul_overflow(magnitude, 10, &magnitude) &&
                !__builtin_add_overflow(magnitude, static_cast<unsigned>(*p - '0'), &magnitude);
    if (p == digits) {
        // Up to the end of the line at most: it differs from both.
        if (strncmp(p, "nan", 3) != 0 && strncmp(p, "inf", 3) != 0)
            return nullptr;
        value.kind = Kind::not_finite;
        p += 3;
    } else if (*digits == '0' && p - digits > 1) {
        return nullptr;
    } else if (*p == '.' && is(p[1], DIGIT)) {
        p++;
        while (is(*p, DIGIT))
            p++;
    } else if (exact && (digits == value.begin || magnitude <= uint64_t{1} << 63)) {
        value.kind = Kind::integer;
        value.magnitude = magnitude;
    }
    value.size = static_cast<uint32_t>(p - value.begin);
    return p;
}

// Reads a number at `p`; what ends it must be readable. Returns its end, or nullptr when there is
// none. Numbers with needless zeros are none, so that each can go into JSON as it stands.
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

bool read_uint32(const char *&p, uint32_t &result)
{
    Value value;
    const char *const end = is(*p, DIGIT) ? read_number(p, value) : nullptr;
    if (end == nullptr || value.kind != Kind::integer || value.magnitude > UINT32_MAX)
        return false;
    result = static_cast<uint32_t>(value.magnitude);
    p = end;
    return true;
}

// Takes a fixed piece of text.
bool take(const char *&p, const char *end, std::string_view piece)
{
    if (static_cast<size_t>(end - p) < piece.size() || memcmp(p, piece.data(), piece.size()) != 0)
        return false;
    p += piece.size();
    return true;
}

bool read_index_line(const char *p, const char *end, uint32_t &dev_idx, uint32_t &path_idx)
{
    return take(p, end, "dev_idx = ") && read_uint32(p, dev_idx) && take(p, end, ", path_idx = ") &&
           read_uint32(p, path_idx) && p == end;
}

bool read_time_line(const char *p, const char *end, Value &time)
{
    return take(p, end, "time = ") && is(*p, DIGIT) && read_number(p, time) == end;
}

// The end of a line without its line end, which is at `newline`.
const char *content_end(const char *begin, const char *newline)
{
    while (newline > begin && newline[-1] == '\r')
        newline--;
    return newline;
}

uint32_t hash_of(std::string_view name, uint32_t seed)
{
    constexpr uint64_t MIX = 0x9e3779b97f4a7c15;
    uint64_t hash = (seed + 1) * MIX ^ name.size();
    size_t i = 0;
    for (uint64_t word; i + sizeof(word) <= name.size(); i += sizeof(word)) {
        memcpy(&word, name.data() + i, sizeof(word));
        hash = (hash ^ word) * MIX;
        hash ^= hash >> 32;
    }
    uint64_t rest = 0;
    memcpy(&rest, name.data() + i, name.size() - i);
    hash = (hash ^ rest) * MIX;
    return static_cast<uint32_t>(hash >> 32);
}

} // namespace

// Reads the text of one snapshot, line by line, into a Snapshot.
class Parser
{
public:
    // Fills all but text, line and number, which are given. Returns the number of the line that
    // follows the text.
    uint64_t parse(Snapshot &snapshot);

private:
    // What a line turned out to be.
    enum class Line : uint8_t { blank, layout, data, label, shapeless, unread };

    // Values in one line: of a field, of a row.
    struct Run {
        uint32_t first = 0;
        uint32_t count = 0;
        uint32_t columns = 0; // of tuples; 0: plain numbers
        bool list = false;
        std::string_view note;
    };

    struct Slot {
        uint32_t hash;
        uint32_t member; // index * 2 + is_node, or NONE
    };

    Line read_line(const char *p, const char *end);
    Line read_section(const char *p, const char *end);
    Line read_tag(const char *p, const char *end);
    Line read_keyed(const char *p, const char *end);
    Line read_label(std::string_view key);
    Line read_row(const char *p, const char *end);
    Line read_numbered_row(const char *p, const char *end);
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
    NodeIndex child(NodeIndex parent, std::string_view name, Level level);
    NodeIndex add_node(NodeIndex parent, std::string_view name, Level level);
    NodeIndex place();

    Slot *look_up(NodeIndex parent, std::string_view name, uint32_t hash);
    void enter(Slot *slot, uint32_t hash, uint32_t member);
    void grow();

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

    Snapshot *s_ = nullptr;
    std::vector<Slot> slots_;
    size_t used_ = 0;
    uint64_t line_ = 0; // number of the line that is being read

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
    FieldIndex open_text_ = NONE; // the field that an unreadable line belongs to
    uint64_t text_line_ = 0;      // where that field begins
    const char *why_ = nullptr;
};

uint64_t Parser::parse(Snapshot &snapshot)
{
    s_ = &snapshot;
    s_->indexed = s_->timed = s_->cut = false;
    s_->fields.clear();
    s_->values.clear();
    s_->unread.clear();
    s_->node_count_ = 0;
    slots_.assign(std::max<size_t>(slots_.size(), 64), Slot{0, NONE});
    used_ = 0;
    add_node(0, "", Level::snapshot);
    section_ = rows_ = elements_ = open_text_ = NONE;
    label_ = {};
    open_section(NONE);

    const char *p = s_->text.data();
    const char *const text_end = p + s_->text.size();
    if (s_->line == 1 && s_->text.starts_with(BYTE_ORDER_MARK))
        p += BYTE_ORDER_MARK.size();
    bool time_before = false; // the line before is a time line
    Value time = {};
    for (line_ = s_->line; p != text_end; line_++) {
        const char *const begin = p;
        const auto *const newline =
            static_cast<const char *>(memchr(p, '\n', static_cast<size_t>(text_end - p)));
        if (newline == nullptr) {
            s_->cut = true;
            s_->unread.push_back({line_, {p, text_end}, "cut off: the line does not end"});
            break;
        }
        p = newline + 1;
        const char *const end = content_end(begin, newline);

        Line line;
        if (s_->indexed) {
            line = p == text_end && read_time_line(begin, end, time)
                       ? unread("a time without a snapshot")
                       : read_line(begin, end);
        } else if (read_index_line(begin, end, s_->dev_idx, s_->path_idx)) {
            s_->indexed = true;
            if (time_before) {
                s_->timed = true;
                s_->time = time;
                s_->unread.pop_back();
            }
            line = Line::data;
        } else {
            time_before = read_time_line(begin, end, time);
            line = skip_blanks(begin) >= end ? Line::blank
                   : *begin == ';'           ? Line::layout
                                             : unread("outside of any snapshot");
        }

        if (line == Line::shapeless && open_text_ != NONE) {
            Value &text = s_->values[s_->fields[open_text_].first];
            text.kind = Kind::text;
            text.size = static_cast<uint32_t>(end - text.begin);
            continue;
        }
        if (line == Line::shapeless || line == Line::unread)
            s_->unread.push_back({line_, {begin, end}, why_});
        if (line != Line::blank && text_line_ != line_)
            open_text_ = NONE;
    }
    close_rows();
    return line_;
}

Parser::Line Parser::read_line(const char *p, const char *end)
{
    if (p == end)
        return Line::blank;
    if (is(*p, LETTER) || *p == '_')
        return read_keyed(p, end);
    switch (*p) {
    case ';':
        return Line::layout;
    case '=':
        return read_section(p, end);
    case '[':
        return read_tag(p, end);
    case '<':
        return read_numbered_row(p, end);
    default:
        return read_row(p, end);
    }
}

// "=== cat.item ==="
Parser::Line Parser::read_section(const char *p, const char *end)
{
    constexpr std::string_view OPEN = "=== ";
    constexpr std::string_view CLOSE = " ===";
    std::string_view name(p, static_cast<size_t>(end - p));
    if (!name.starts_with(OPEN) || !name.ends_with(CLOSE) ||
        name.size() <= OPEN.size() + CLOSE.size())
        return shapeless("no section");
    name = name.substr(OPEN.size(), name.size() - OPEN.size() - CLOSE.size());
    if (!is(name.front(), LETTER) || !all_of(name, KEY))
        return shapeless("no section");

    const size_t dot = name.find('.');
    NodeIndex node = category(name.substr(0, dot));
    if (node != NONE && dot != std::string_view::npos)
        node = dot + 1 < name.size() ? child(node, name.substr(dot + 1), Level::item) : NONE;
    open_section(node);
    return node != NONE ? Line::data : unread("a section of a name that is taken");
}

// "[CAPITALS]" and "[Other words]"
Parser::Line Parser::read_tag(const char *p, const char *end)
{
    std::string_view name(p + 1, static_cast<size_t>(end - p - 1));
    if (!name.ends_with(']') || name.size() < 2 || !is(name.front(), LETTER))
        return shapeless("no heading");
    name.remove_suffix(1);

    if (all_of(name, UPPER | DIGIT | MARK)) {
        std::string item(name);
        for (char &c : item)
            if (is(c, UPPER))
                c = static_cast<char>(c - 'A' + 'a');
        for (const Tag &tag : TAGS)
            if (tag.tag == name)
                item = tag.item;
        const NodeIndex intl = category("intl");
        const NodeIndex node = intl != NONE ? child(intl, item, Level::item) : NONE;
        open_section(node);
        return node != NONE ? Line::data : unread("a section of a name that is taken");
    }
    if (!all_of(name, KEY | BLANK))
        return shapeless("no heading");
    if (section_ == NONE)
        return unread("outside of any section");
    open_section(section_);
    heading_ = name;
    place_ = NONE;
    return Line::data;
}

// "key = value", "words: value", "label:"
Parser::Line Parser::read_keyed(const char *p, const char *end)
{
    const char *separator = p;
    while (is(*separator, KEY | BLANK))
        separator++;
    if (separator >= end || (*separator != '=' && *separator != ':')) {
        if (std::string_view(p, end) == "Unable to acquire corresponding window cfg.")
            return Line::layout;
        return shapeless("neither a key nor a label");
    }
    const char *key_end = separator;
    while (is(key_end[-1], BLANK))
        key_end--;
    std::string_view key(p, key_end);
    const char *const value = skip_blanks(separator + 1);
    if (*separator == ':' && value >= end)
        return read_label(key);

    close_rows();
    take_prefix(key);
    if (section_ == NONE)
        return unread("outside of any section");
    if (!label_.empty()) {
        block_ = label_;
        block_keeps_labels_ = false;
        label_ = {};
        place_ = NONE;
    }

    const size_t before = s_->values.size();
    Run run;
    run.first = static_cast<uint32_t>(before);
    if (value < end &&
        (*value == '(' ? read_tuples(value, end, run) : read_numbers(value, end, run))) {
        const Line line = add_scalar_or_list(key, run);
        if (line == Line::unread)
            s_->values.resize(before);
        return line;
    }
    s_->values.resize(before);
    // A text begins behind one blank; others are its own.
    return add_other(key, separator + 1 + (separator[1] == ' '), end);
}

Parser::Line Parser::read_label(std::string_view key)
{
    close_rows();
    take_prefix(key);
    if (section_ == NONE)
        return unread("outside of any section");
    if (all_of(key, UPPER | DIGIT | MARK) && !key.ends_with(']')) {
        capitals_ = key;
        block_ = label_ = {};
        place_ = NONE;
        return Line::label;
    }
    if (!label_.empty()) {
        block_ = label_;
        block_keeps_labels_ = true;
        place_ = NONE;
    } else if (!block_.empty() && !block_keeps_labels_) {
        block_ = {};
        place_ = NONE;
    }
    label_ = key;
    return Line::label;
}

// A row of what a label has named, a legend, or dashes.
Parser::Line Parser::read_row(const char *p, const char *end)
{
    const char *const first = skip_blanks(p);
    if (first >= end)
        return Line::blank;

    const size_t before = s_->values.size();
    Run run;
    run.first = static_cast<uint32_t>(before);
    if (*first == '(' ? read_tuples(first, end, run) : read_numbers(first, end, run)) {
        const Line line = add_row(run);
        if (line == Line::unread)
            s_->values.resize(before);
        return line;
    }
    s_->values.resize(before);

    const std::string_view text(p, end);
    if (text.find_first_not_of('-') == std::string_view::npos)
        return Line::layout;
    // "(0: normal, 1: disable)"
    if (text.size() > 3 && text[0] == '(' && is(text[1], DIGIT) && text.ends_with(')')) {
        const size_t colon = text.find_first_not_of("0123456789", 1);
        if (text[colon] == ':')
            return Line::layout;
    }
    return shapeless("neither a key nor a row");
}

// "<# 3> (1, 2, 3)", or the table's head "<#bin>(x, y)"
Parser::Line Parser::read_numbered_row(const char *p, const char *end)
{
    if (!take(p, end, "<#"))
        return shapeless("neither a key nor a row");
    p = skip_blanks(p);
    if (is(*p, LETTER))
        return Line::layout;

    const size_t before = s_->values.size();
    Run run;
    run.first = static_cast<uint32_t>(before);
    uint32_t number = 0;
    Line line = shapeless("neither a key nor a row");
    if (read_uint32(p, number) && take(p, end, ">")) {
        p = skip_blanks(p);
        if (p < end && *p == '(' && read_tuples(p, end, run) && run.count == run.columns) {
            const uint32_t next = rows_ != NONE ? s_->fields[rows_].count / run.columns : 0;
            line = number == next ? add_row(run) : unread("a row out of order");
        }
    }
    if (line != Line::data)
        s_->values.resize(before);
    return line;
}

Parser::Line Parser::add_row(const Run &run)
{
    if (rows_ == NONE) {
        if (label_.empty())
            return unread("a row without a label");
        rows_ = add_field(label_, run, Shape::rows);
        if (rows_ == NONE)
            return Line::unread;
        label_ = {};
        Field &field = s_->fields[rows_];
        field.columns = run.columns != 0 ? run.columns : run.count;
        field.shape = run.columns != 0 ? Shape::rows : Shape::list;
        return Line::data;
    }
    // The shape is that of the first row until close_rows(): a list stands for plain numbers.
    Field &field = s_->fields[rows_];
    const bool tuples = field.shape == Shape::rows;
    if (tuples ? run.columns != field.columns
               : run.columns != 0 || run.count > field.columns || field.count % field.columns != 0)
        return unread("a row of another length");
    field.count += run.count;
    return Line::data;
}

// Settles whether the rows that have been read are a vector or a map.
void Parser::close_rows()
{
    if (rows_ == NONE)
        return;
    Field &field = s_->fields[rows_];
    rows_ = NONE;
    if (field.shape == Shape::rows)
        return;

    bool vector = field.columns == WRAPPED_COLUMNS || field.count <= field.columns;
    const size_t open = field.key.rfind('[');
    if (!vector && open != std::string_view::npos && field.key.ends_with(']')) {
        const char *p = field.key.data() + open + 1;
        uint32_t size = 0;
        vector = read_uint32(p, size) && *p == ']' && size == field.count;
    }
    field.shape = vector ? Shape::list : Shape::rows;
    if (vector)
        field.columns = field.count;
}

Parser::Line Parser::add_scalar_or_list(std::string_view key, const Run &run)
{
    if (run.columns == 0 && !run.list && key.ends_with(']')) {
        const size_t open = key.rfind('[');
        if (open != std::string_view::npos && open != 0) {
            const char *p = key.data() + open + 1;
            uint32_t index = 0;
            if (read_uint32(p, index) && p + 1 == key.data() + key.size())
                return add_element(key.substr(0, open), index, run);
        }
    }
    const Shape shape = run.columns != 0 ? Shape::rows : run.list ? Shape::list : Shape::scalar;
    const FieldIndex field = add_field(key, run, shape);
    return field != NONE ? Line::data : Line::unread;
}

// "base[index] = value"
Parser::Line Parser::add_element(std::string_view base, uint32_t index, const Run &run)
{
    if (elements_ != NONE && index != 0) {
        Field &field = s_->fields[elements_];
        if (field.node == place() && field.key == base && field.count == index) {
            field.columns = ++field.count;
            return Line::data;
        }
    }
    if (index != 0)
        return unread("an element out of order");
    const FieldIndex field = add_field(base, run, Shape::list);
    if (field == NONE)
        return Line::unread;
    s_->fields[field].note = {}; // it would be one of many
    elements_ = field;
    return Line::data;
}

// true, false, text, nothing.
Parser::Line Parser::add_other(std::string_view key, const char *begin, const char *end)
{
    if (begin > end)
        begin = end;
    const std::string_view text(begin, end);
    Kind kind = Kind::text;
    if (text == "true" || text == "false")
        kind = Kind::boolean;
    else if (skip_blanks(begin) >= end)
        kind = Kind::empty;

    Run run;
    run.first = static_cast<uint32_t>(s_->values.size());
    run.count = 1;
    const FieldIndex field = add_field(key, run, Shape::scalar);
    if (field == NONE)
        return Line::unread;
    const auto size = static_cast<uint32_t>(kind == Kind::empty ? 0 : text.size());
    s_->values.push_back({begin, size, kind, 0});
    if (kind != Kind::boolean) {
        open_text_ = field;
        text_line_ = line_;
    }
    return Line::data;
}

// Adds a field at the current place. Returns NONE, with why_ set, when its path is taken.
FieldIndex Parser::add_field(std::string_view key, const Run &run, Shape shape)
{
    elements_ = NONE;
    const NodeIndex node = place();
    if (node == NONE) {
        why_ = "in a block of a name that is taken";
        return NONE;
    }
    const uint32_t hash = hash_of(key, node);
    Slot *const slot = look_up(node, key, hash);
    if (slot->member != NONE) {
        why_ = "a second field of this name";
        return NONE;
    }
    const auto index = static_cast<FieldIndex>(s_->fields.size());
    s_->fields.push_back({key, run.note, line_, node, run.first, run.count,
                          run.columns != 0 ? run.columns : run.count, shape});
    s_->nodes_[node].members.push_back({index, false});
    enter(slot, hash, index * 2);
    return index;
}

// Numbers separated by commas, and what may stand behind them.
bool Parser::read_numbers(const char *p, const char *end, Run &run)
{
    bool comma = false;
    bool blank = false;
    for (;;) {
        Value value;
        p = read_number(p, value);
        if (p == nullptr)
            return false;
        s_->values.push_back(value);
        run.count++;
        comma = *p == ',';
        p += comma;
        blank = *p == ' ' || *p == '\t';
        p = skip_blanks(p);
        if (!comma || p >= end || !(is(*p, DIGIT | LOWER) || *p == '-'))
            break;
    }
    run.list = run.count > 1 || (comma && blank);
    if (p >= end)
        return true;
    if (*p == ';' || (*p == '(' && blank && !run.list && end[-1] == ')')) {
        run.note = {p, end};
        return true;
    }
    return false;
}

// "(1,2)", "(1 2) (3 4) "
bool Parser::read_tuples(const char *p, const char *end, Run &run)
{
    while (p < end && *p == '(') {
        const uint32_t before = run.count;
        p = read_tuple(p, run);
        if (p == nullptr)
            return false;
        const uint32_t columns = run.count - before;
        if (run.columns != 0 && columns != run.columns)
            return false;
        run.columns = columns;
        p = skip_blanks(p);
    }
    if (p < end && *p == ';') {
        run.note = {p, end};
        p = end;
    }
    return p >= end;
}

const char *Parser::read_tuple(const char *p, Run &run)
{
    p++;
    for (;;) {
        Value value;
        p = read_number(skip_blanks(p), value);
        if (p == nullptr)
            return nullptr;
        s_->values.push_back(value);
        run.count++;
        p = skip_blanks(p + (*p == ','));
        if (*p == ')')
            return p + 1;
        if (!is(p[-1], BLANK) && p[-1] != ',')
            return nullptr;
    }
}

// Begins to read at an item, without heading and blocks.
void Parser::open_section(NodeIndex node)
{
    close_rows();
    elements_ = NONE;
    section_ = node;
    heading_ = capitals_ = block_ = label_ = {};
    place_ = node;
}

// Takes the category off a key that opens its section itself.
void Parser::take_prefix(std::string_view &key)
{
    for (const std::string_view prefix : PREFIXES) {
        if (key.starts_with(prefix) && key.size() > prefix.size()) {
            const NodeIndex node = category(prefix.substr(0, prefix.size() - 1));
            if (node != section_ || place_ != node || !label_.empty())
                open_section(node);
            key.remove_prefix(prefix.size());
            return;
        }
    }
}

NodeIndex Parser::category(std::string_view name)
{
    if (std::find(std::begin(RESERVED), std::end(RESERVED), name) != std::end(RESERVED))
        return NONE;
    return child(0, name, Level::category);
}

// The node of that name in `parent`, which comes into being when needed, or NONE when a field has
// the name.
NodeIndex Parser::child(NodeIndex parent, std::string_view name, Level level)
{
    const uint32_t hash = hash_of(name, parent);
    Slot *const slot = look_up(parent, name, hash);
    if (slot->member != NONE)
        return slot->member % 2 != 0 ? slot->member / 2 : NONE;
    const NodeIndex node = add_node(parent, name, level);
    s_->nodes_[parent].members.push_back({node, true});
    enter(slot, hash, node * 2 + 1);
    return node;
}

NodeIndex Parser::add_node(NodeIndex parent, std::string_view name, Level level)
{
    const auto index = static_cast<NodeIndex>(s_->node_count_++);
    if (index == s_->nodes_.size())
        s_->nodes_.emplace_back();
    Node &node = s_->nodes_[index];
    const Node &above = s_->nodes_[parent];
    node.parent = parent;
    node.level = level;
    node.members.clear();
    node.path.clear();
    node.block.clear();
    if (index != 0) {
        node.path = above.path;
        if (!node.path.empty())
            node.path += '.';
    }
    node.name_at = static_cast<uint32_t>(node.path.size());
    node.path += name;
    node.block_at = static_cast<uint32_t>(node.path.size());
    if (level == Level::block) {
        node.block_at = above.level == Level::block ? above.block_at : node.name_at;
        node.block = above.block;
        if (!node.block.empty())
            node.block += " / ";
        node.block += name;
    }
    return index;
}

// The node where the next field belongs, or NONE when the name of a block is taken.
NodeIndex Parser::place()
{
    if (place_ != NONE)
        return place_;
    NodeIndex node = section_;
    for (const std::string_view name : {heading_, capitals_, block_})
        if (node != NONE && !name.empty())
            node = child(node, name, Level::block);
    place_ = node;
    return node;
}

Parser::Slot *Parser::look_up(NodeIndex parent, std::string_view name, uint32_t hash)
{
    if (2 * used_ >= slots_.size())
        grow();
    const size_t mask = slots_.size() - 1;
    for (size_t i = hash & mask;; i = (i + 1) & mask) {
        Slot &slot = slots_[i];
        if (slot.member == NONE)
            return &slot;
        if (slot.hash != hash)
            continue;
        const uint32_t index = slot.member / 2;
        if (slot.member % 2 != 0
                ? s_->nodes_[index].parent == parent && s_->nodes_[index].name() == name
                : s_->fields[index].node == parent && s_->fields[index].key == name)
            return &slot;
    }
}

void Parser::enter(Slot *slot, uint32_t hash, uint32_t member)
{
    *slot = {hash, member};
    used_++;
}

void Parser::grow()
{
    std::vector<Slot> old(2 * slots_.size(), Slot{0, NONE});
    old.swap(slots_);
    const size_t mask = slots_.size() - 1;
    for (const Slot &slot : old) {
        if (slot.member == NONE)
            continue;
        size_t i = slot.hash & mask;
        while (slots_[i].member != NONE)
            i = (i + 1) & mask;
        slots_[i] = slot;
    }
}

Reader::Reader() : parser_(std::make_unique<Parser>()) {}

Reader::Reader(std::string_view whole) : Reader()
{
    text_ = whole.data();
    size_ = whole.size();
    ended_ = true;
}

Reader::~Reader() = default;

char *Reader::room(size_t size)
{
    if (buffer_.size() - size_ < size && begin_ != 0) {
        memmove(buffer_.data(), buffer_.data() + begin_, size_ - begin_);
        size_ -= begin_;
        scanned_ -= begin_;
        before_ -= std::min(before_, begin_);
        begin_ = 0;
    }
    if (buffer_.size() - size_ < size)
        buffer_.resize(std::max(2 * buffer_.size(), size_ + size));
    text_ = buffer_.data();
    return buffer_.data() + size_;
}

const Snapshot *Reader::next()
{
    const size_t end = find_end();
    if (end == begin_)
        return nullptr;
    snapshot_.text = {text_ + begin_, end - begin_};
    snapshot_.line = line_;
    number_ += begun_;
    snapshot_.number = number_;
    line_ = parser_->parse(snapshot_);
    begin_ = scanned_ = end;
    begun_ = false;
    return &snapshot_;
}

// Returns where the snapshot that begins at begin_ ends, or begin_ when that is not known yet or
// there is none.
size_t Reader::find_end()
{
    if (line_ == 1 && scanned_ == 0 && std::string_view(text_, size_).starts_with(BYTE_ORDER_MARK))
        scanned_ = BYTE_ORDER_MARK.size();
    while (scanned_ != size_) {
        const char *const line = text_ + scanned_;
        const auto *const newline = static_cast<const char *>(memchr(line, '\n', size_ - scanned_));
        const size_t next = newline != nullptr ? static_cast<size_t>(newline + 1 - text_) : size_;
        if (next - begin_ > SNAPSHOT_MAX)
            return scanned_ != begin_ ? scanned_ : begin_ + SNAPSHOT_MAX;
        if (newline == nullptr)
            break;

        uint32_t index;
        Value time;
        if (*line == 'd' && read_index_line(line, content_end(line, newline), index, index)) {
            if (begun_) {
                const char *const before = text_ + before_;
                const bool timed = read_time_line(before, content_end(before, line - 1), time);
                return timed ? before_ : scanned_;
            }
            begun_ = true;
        } else if (*line == ';' && begun_ &&
                   std::string_view(line, content_end(line, newline)) == END_LINE) {
            return next;
        }
        before_ = scanned_;
        scanned_ = next;
    }
    return ended_ ? size_ : begin_;
}

} // namespace vordascope
