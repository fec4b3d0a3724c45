// The lines of a snapshot.
#include "grammar.h"

#include "sections.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

namespace vordascope
{

namespace
{

constexpr uint32_t WRAPPED_COLUMNS = 6; // a vector's values a row

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

// What a snapshot says of itself, so no category can have these names.
constexpr std::string_view RESERVED[] = {"vorda_json", "dev_idx", "path_idx", "time",   "cut",
                                         "unread",     "frame",   "missed",   "labels", "marks"};

// The end of a line without its line end, which is at `newline`.
const char *content_end(const char *begin, const char *newline)
{
    while (newline > begin && newline[-1] == '\r')
        newline--;
    return newline;
}

} // namespace

void Grammar::parse(Snapshot &snapshot)
{
    s_ = &snapshot;
    s_->clear();
    section_ = rows_ = elements_ = open_text_ = NONE;
    label_ = {};
    open_section(NONE);

    last_ = touched_ = NONE;
    length_ = longest_ = wrapped_ = 0;
    strange_ = high_ = false;
    for (const Part &part : s_->body)
        read_part(part);
    // Whether more rows or elements would follow nobody knows.
    if (s_->cut && last_ != NONE && (last_ == rows_ || last_ == elements_))
        damage(last_);
    close_rows();
}

void Grammar::doubt(const std::vector<Doubt> &doubts)
{
    auto line = doubts.begin();
    for (FieldIndex field = 0; field < s_->fields.size(); field++) {
        const Value &first = *s_->begin(s_->fields[field]);
        while (line != doubts.end() && line->line.data() + line->line.size() <= first.begin)
            ++line;
        if (line == doubts.end())
            return;
        if (first.begin < line->line.data() || first.kind == Kind::damaged ||
            (line->text_only && first.number()))
            continue;
        damage(field);
        s_->tell({line->number, line->line.substr(0, line->line.find_first_of("\r\n")),
                  "may have been wrapped, which damages it", field});
    }
}

void Grammar::read_part(const Part &part)
{
    const char *p = part.text.data();
    const char *const part_end = p + part.text.size();
    for (uint64_t number = part.line; p != part_end; number++) {
        const char *const begin = p;
        const auto *const newline =
            static_cast<const char *>(memchr(p, '\n', static_cast<size_t>(part_end - p)));
        if (newline == nullptr) {
            read_cut_line({p, part_end}, number);
            break;
        }
        p = newline + 1;
        const char *const end = content_end(begin, newline);
        before_ = std::exchange(length_, static_cast<size_t>(end - begin));
        longest_ = std::max(longest_, length_);

        text_begins_ = false;
        touched_ = NONE;
        const Line line = read_line(begin, end);
        if (line == Line::data)
            last_ = touched_;
        else
            use(line, number, {begin, end});
        if (line != Line::blank && line != Line::shapeless && !text_begins_)
            open_text_ = NONE;
    }
}

// Settles what becomes of a line that has been read, and of the field that it touches.
void Grammar::use(Line line, uint64_t number, std::string_view text)
{
    switch (line) {
    case Line::blank:
        return;
    case Line::layout:
    case Line::data:
    case Line::label:
        last_ = touched_;
        return;
    case Line::unread:
        last_ = NONE;
        s_->tell({number, text, why_});
        return;
    case Line::shapeless:
        if (open_text_ != NONE) {
            Value &value = s_->values[s_->fields[open_text_].first];
            value.kind = Kind::text;
            value.size = static_cast<uint32_t>(text.data() + text.size() - value.begin);
            return;
        }
        strange_ = strange_ || before_ >= WRAP_MIN;
        // The rest of a line of numbers that was cut within one of them?
        if (last_ == NONE || text.find_first_of("0123456789,") != text.find_first_not_of(" \t-(")) {
            last_ = NONE;
            s_->tell({number, text, why_});
            return;
        }
        touched_ = last_;
        break;
    case Line::broken:
        break;
    }
    wrapped_ = std::max(wrapped_, before_);
    // It is told once, however much of the field follows.
    last_ = touched_;
    if (s_->damaged(s_->fields[last_]))
        return;
    damage(last_);
    s_->tell({number, text, "does not go on as its field began, which is damaged", last_});
}

void Grammar::damage(FieldIndex field)
{
    if (field == rows_)
        close_rows();
    if (field == elements_)
        elements_ = NONE;
    const Field &damaged = s_->fields[field];
    for (uint32_t i = 0; i < damaged.count; i++)
        s_->values[damaged.first + i].kind = Kind::damaged;
}

// A last line without its end may have lost digits.
void Grammar::read_cut_line(std::string_view line, uint64_t number)
{
    s_->cut = true;
    FieldIndex field = NONE;
    std::string_view key = key_of(line);
    std::string_view value = line.substr(std::min(key.size() + 1, line.size()));
    take(value, " ");
    const bool keyed = !key.empty() && line[key.size()] == '=';
    while (!key.empty() && is(key.back(), BLANK))
        key.remove_suffix(1);
    if (keyed && elements_ != NONE && key.starts_with(s_->fields[elements_].key)) {
        field = elements_;
    } else if (keyed && open_key(key)) {
        Run run;
        run.first = static_cast<uint32_t>(s_->values.size());
        run.count = 1;
        field = add_field(key, run, Shape::scalar);
        if (field != NONE)
            s_->values.push_back(
                {value.data(), static_cast<uint32_t>(value.size()), Kind::damaged, 0});
    } else if (!keyed) {
        field = last_;
    }
    if (field != NONE)
        damage(field);
    last_ = NONE;
    s_->tell({number, line, "cut off: the line does not end", field});
}

Grammar::Line Grammar::read_line(const char *p, const char *end)
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
Grammar::Line Grammar::read_section(const char *p, const char *end)
{
    const std::string_view name = section_of({p, static_cast<size_t>(end - p)});
    if (name.empty())
        return shapeless("no section");
    const size_t dot = name.find('.');
    NodeIndex node = category(name.substr(0, dot));
    if (node != NONE && dot != std::string_view::npos)
        node = dot + 1 < name.size() ? s_->take_child(node, name.substr(dot + 1), false) : NONE;
    open_section(node);
    return node != NONE ? Line::data : unread("a section of a name that is taken");
}

// "[CAPITALS]" and "[Other words]"
Grammar::Line Grammar::read_tag(const char *p, const char *end)
{
    if (const std::string_view tag = tag_of({p, static_cast<size_t>(end - p)}); !tag.empty()) {
        std::string item(tag);
        for (char &c : item)
            if (is(c, UPPER))
                c = static_cast<char>(c - 'A' + 'a');
        for (const Tag &other : TAGS)
            if (other.tag == tag)
                item = other.item;
        const NodeIndex intl = category("intl");
        const NodeIndex node = intl != NONE ? s_->take_child(intl, item, false) : NONE;
        open_section(node);
        return node != NONE ? Line::data : unread("a section of a name that is taken");
    }
    std::string_view name(p + 1, static_cast<size_t>(end - p - 1));
    if (!name.ends_with(']') || !is(name.front(), LETTER) || !all_of(name, KEY | BLANK))
        return shapeless("no heading");
    name.remove_suffix(1);
    if (section_ == NONE)
        return unread("outside of any section");
    open_section(section_);
    heading_ = name;
    place_ = NONE;
    return Line::data;
}

// "key = value", "words: value", "label:"
Grammar::Line Grammar::read_keyed(const char *p, const char *end)
{
    const char *separator = p;
    while (is(*separator, KEY | BLANK))
        separator++;
    const bool keyed = separator < end &&
                       (*separator == '=' ||
                        (*separator == ':' && (separator + 1 == end || is(separator[1], BLANK))));
    if (!keyed) {
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

    if (!open_key(key))
        return Line::unread;

    const size_t before = s_->values.size();
    Run run;
    run.first = static_cast<uint32_t>(before);
    if (value < end &&
        (*value == '(' ? read_tuples(value, end, run) : read_numbers(value, end, run))) {
        const Line line = add_scalar_or_list(key, run);
        if (line != Line::data)
            s_->values.resize(before);
        return line;
    }
    const bool broken_list =
        s_->values.size() - before > 1 && run.columns == 0 && !key.ends_with("path");
    s_->values.resize(before);
    // A text begins behind one blank; others are its own.
    const Line line = add_other(key, separator + 1 + (separator[1] == ' '), end);
    return broken_list && line == Line::data
               ? broken(static_cast<FieldIndex>(s_->fields.size() - 1))
               : line;
}

// Gets ready for a field of that key, off which it takes the category. Returns false, with why_
// set, where there can be none.
bool Grammar::open_key(std::string_view &key)
{
    close_rows();
    take_prefix(key);
    if (section_ == NONE) {
        why_ = "outside of any section";
        return false;
    }
    if (!label_.empty()) {
        block_ = label_;
        block_keeps_labels_ = false;
        label_ = {};
        place_ = NONE;
    }
    return true;
}

Grammar::Line Grammar::read_label(std::string_view key)
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
Grammar::Line Grammar::read_row(const char *p, const char *end)
{
    const char *const first = skip_blanks(p);
    if (first >= end)
        return Line::blank;

    const size_t before = s_->values.size();
    Run run;
    run.first = static_cast<uint32_t>(before);
    if (*first == '(' ? read_tuples(first, end, run) : read_numbers(first, end, run)) {
        const Line line = add_row(run);
        if (line != Line::data)
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
            return add_legend(text);
    }
    return shapeless("neither a key nor a row");
}

// What the value of the line before means.
Grammar::Line Grammar::add_legend(std::string_view legend)
{
    if (last_ != NONE) {
        std::string_view &note = s_->fields[last_].note;
        const char *const begin = note.empty() ? legend.data() : note.data();
        note = {begin, static_cast<size_t>(legend.data() + legend.size() - begin)};
        touched_ = last_;
    }
    return Line::layout;
}

// "<# 3> (1, 2, 3)", or the table's head "<#bin>(x, y)"
Grammar::Line Grammar::read_numbered_row(const char *p, const char *end)
{
    std::string_view line(p, end);
    const auto skip = [&line] {
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    };
    if (!take(line, "<#"))
        return shapeless("neither a key nor a row");
    skip();
    if (!line.empty() && is(line[0], LETTER))
        return Line::layout;

    const size_t before = s_->values.size();
    Run run;
    run.first = static_cast<uint32_t>(before);
    uint32_t number = 0;
    Line result = shapeless("neither a key nor a row");
    if (take_number(line, number) && take(line, ">")) {
        skip();
        if (line.starts_with('(') && read_tuples(line.data(), end, run) &&
            run.count == run.columns) {
            const uint32_t next = rows_ != NONE ? s_->fields[rows_].count / run.columns : 0;
            result = number == next || rows_ == NONE ? add_row(run) : broken(rows_);
        }
    }
    if (result != Line::data)
        s_->values.resize(before);
    return result;
}

Grammar::Line Grammar::add_row(const Run &run)
{
    if (rows_ == NONE) {
        if (label_.empty())
            return last_ != NONE ? broken(last_) : unread("a row without a label");
        rows_ = add_field(label_, run, Shape::rows);
        if (rows_ == NONE)
            return Line::unread;
        label_ = {};
        Field &field = s_->fields[rows_];
        field.columns = run.columns != 0 ? run.columns : run.count;
        field.shape = run.columns != 0 ? Shape::rows : Shape::list;
        touched_ = rows_;
        return Line::data;
    }
    // The shape is that of the first row until close_rows(): a list stands for plain numbers.
    Field &field = s_->fields[rows_];
    const bool tuples = field.shape == Shape::rows;
    if (tuples ? run.columns != field.columns
               : run.columns != 0 || run.count > field.columns || field.count % field.columns != 0)
        return broken(rows_);
    field.count += run.count;
    touched_ = rows_;
    return Line::data;
}

// Settles whether the rows that have been read are a vector or a map.
void Grammar::close_rows()
{
    if (rows_ == NONE)
        return;
    Field &field = s_->fields[rows_];
    rows_ = NONE;
    if (field.shape == Shape::rows)
        return;

    bool vector = field.columns == WRAPPED_COLUMNS || field.count <= field.columns;
    const size_t open = field.key.rfind('[');
    if (!vector && open != std::string_view::npos) {
        std::string_view index = field.key.substr(open + 1);
        uint32_t size = 0;
        vector = take_number(index, size) && index == "]" && size == field.count;
    }
    field.shape = vector ? Shape::list : Shape::rows;
    if (vector)
        field.columns = field.count;
    const Value *const row = s_->begin(field);
    high_ = high_ || (!vector && field.count / field.columns / 2 >= field.columns &&
                      row[field.columns].begin - row->begin >= ptrdiff_t{WRAP_MIN});
}

Grammar::Line Grammar::add_scalar_or_list(std::string_view key, const Run &run)
{
    if (run.columns == 0 && !run.list && key.ends_with(']')) {
        const size_t open = key.rfind('[');
        if (open != std::string_view::npos && open != 0) {
            std::string_view rest = key.substr(open + 1);
            uint32_t index = 0;
            if (take_number(rest, index) && rest == "]")
                return add_element(key.substr(0, open), index, run);
        }
    }
    const Shape shape = run.columns != 0 ? Shape::rows : run.list ? Shape::list : Shape::scalar;
    touched_ = add_field(key, run, shape);
    return touched_ != NONE ? Line::data : Line::unread;
}

// "base[index] = value"
Grammar::Line Grammar::add_element(std::string_view base, uint32_t index, const Run &run)
{
    if (elements_ != NONE && index != 0) {
        Field &field = s_->fields[elements_];
        if (field.node == place() && field.key == base && field.count == index) {
            field.columns = ++field.count;
            touched_ = elements_;
            return Line::data;
        }
    }
    if (index != 0) {
        const NodeIndex node = place();
        const FieldIndex known = node != NONE ? s_->field(node, base) : NONE;
        return known != NONE ? broken(known) : unread("an element out of order");
    }
    const FieldIndex field = add_field(base, run, Shape::list);
    if (field == NONE)
        return Line::unread;
    s_->fields[field].note = {}; // it would be one of many
    elements_ = touched_ = field;
    return Line::data;
}

// true, false, text, nothing.
Grammar::Line Grammar::add_other(std::string_view key, const char *begin, const char *end)
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
    // A file's name can hold line ends.
    if (kind != Kind::boolean && key.ends_with("path")) {
        open_text_ = field;
        text_begins_ = true;
    } else if (kind == Kind::empty) {
        touched_ = field;
    }
    return Line::data;
}

// Adds a field at the current place. Returns NONE, with why_ set, when its path is taken.
FieldIndex Grammar::add_field(std::string_view key, const Run &run, Shape shape)
{
    elements_ = NONE;
    const NodeIndex node = place();
    if (node == NONE) {
        why_ = "in a block of a name that is taken";
        return NONE;
    }
    const FieldIndex field = s_->add_field({key, run.note, node, run.first, run.count,
                                            run.columns != 0 ? run.columns : run.count, shape});
    if (field == NONE)
        why_ = "a second field of this name";
    return field;
}

// Numbers separated by commas, and what may stand behind them.
bool Grammar::read_numbers(const char *p, const char *end, Run &run)
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
bool Grammar::read_tuples(const char *p, const char *end, Run &run)
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

const char *Grammar::read_tuple(const char *p, Run &run)
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
void Grammar::open_section(NodeIndex node)
{
    close_rows();
    elements_ = NONE;
    section_ = node;
    heading_ = capitals_ = block_ = label_ = {};
    place_ = node;
}

// Takes the category off a key that opens its section itself.
void Grammar::take_prefix(std::string_view &key)
{
    const std::string_view name = category_of(key);
    if (name.empty())
        return;
    const NodeIndex node = category(name);
    if (node != section_ || place_ != node || !label_.empty())
        open_section(node);
    key.remove_prefix(name.size() + 1);
}

NodeIndex Grammar::category(std::string_view name)
{
    if (std::find(std::begin(RESERVED), std::end(RESERVED), name) != std::end(RESERVED))
        return NONE;
    return s_->take_child(0, name, false);
}

// The node where the next field belongs, or NONE when the name of a block is taken.
NodeIndex Grammar::place()
{
    if (place_ != NONE)
        return place_;
    NodeIndex node = section_;
    for (const std::string_view name : {heading_, capitals_, block_})
        if (node != NONE && !name.empty())
            node = s_->take_child(node, name, true);
    place_ = node;
    return node;
}

} // namespace vordascope
