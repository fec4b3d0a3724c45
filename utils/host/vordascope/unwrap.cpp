// Widths, seams, rows.
#include "unwrap.h"

#include "sections.h"

#include <algorithm>
#include <utility>

namespace vordascope
{

namespace
{

constexpr size_t WRAPS_MIN = 2;        // lines that go on in the next one: one may be an accident
constexpr size_t WHOLE_MAX = 1000;     // of what is looked at as a whole more than once
constexpr size_t PARTS_MAX = 4;        // of a row
constexpr uint32_t VECTOR_COLUMNS = 6; // a row that vorda's vectors have
constexpr std::string_view NUMBERS = "0123456789 \t,.-()naif";

size_t columns_of(std::string_view text, size_t tab, size_t column = 0)
{
    for (const char c : text)
        column = c == '\t' ? (column / tab + 1) * tab : column + 1;
    return column;
}

bool ends_blank(std::string_view text)
{
    return !text.empty() && is(text.back(), BLANK);
}

// What a line holds besides a key: numbers alone, without words and comments?
bool is_plain(std::string_view line)
{
    return line.substr(key_of(line).size()).find_first_not_of(NUMBERS, 1) == std::string_view::npos;
}

// What stands behind the last number of a row.
std::string_view style_of(std::string_view row)
{
    row = row.substr(0, row.find(';'));
    return row.substr(row.find_last_of("0123456789)naif") + 1);
}

uint32_t count_numbers(std::string_view row)
{
    uint32_t count = 0;
    bool within = false;
    for (const char c : row.substr(0, row.find(';'))) {
        const bool part = is(c, DIGIT | LETTER) || c == '.';
        count += part && !within;
        within = part;
    }
    return count;
}

} // namespace

bool Unwrap::undo(Head &head, bool broken)
{
    broken_ = broken;
    look(head);
    text_.clear();
    text_.reserve(head.text.size()); // what points there stays valid
    parts_.clear();
    doubts_.clear();
    const uint64_t joined_before = joined_;

    const char *const body = head.body.front().text.data();
    const char *const body_end = head.body.back().text.data() + head.body.back().text.size();
    text_.append(head.text.data(), body);
    for (const Part &part : head.body)
        write(part);
    if (joined_ == joined_before && doubts_.empty())
        return false;
    const size_t end = text_.size();
    text_.append(body_end, head.text.data() + head.text.size());
    for (size_t i = 0; i < parts_.size(); i++) {
        const char *const next =
            i + 1 < parts_.size() ? parts_[i + 1].text.data() : text_.data() + end;
        parts_[i].text = {parts_[i].text.data(), next};
    }
    head.replace_body(text_, parts_);
    return true;
}

Unwrap::Form Unwrap::form_of(std::string_view line)
{
    const size_t first = line.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return Form::blank;
    const std::string_view text = line.substr(0, line.find(';'));
    const char c = line[first];
    if (c == ';' || line.find_first_not_of('-') == std::string_view::npos)
        return Form::layout;
    if (!section_of(line).empty() ||
        (line[0] == '[' && line.size() > 2 && is(line[1], LETTER) && line.back() == ']'))
        return Form::section;
    if (line.starts_with("<#"))
        return is(line[2], LETTER) ? Form::layout : Form::row;
    if ((is(c, DIGIT) || c == '-' || c == '(' || c == 'n' || c == 'i') &&
        text.find_first_not_of(NUMBERS) == std::string_view::npos &&
        text.find(')') >= text.find('('))
        return Form::row;
    if (c == '(' && first + 1 < line.size() && is(line[first + 1], DIGIT) && line.back() == ')')
        return Form::layout;
    const std::string_view key = key_of(line);
    if (key.empty())
        return Form::none;
    return line[key.size()] == ':' &&
                   line.find_first_not_of(" \t", key.size() + 1) == std::string_view::npos
               ? Form::label
               : Form::keyed;
}

// Takes a line off the beginning; one without its end stays.
bool Unwrap::take_line(Part &rest, Line &line)
{
    const size_t end = rest.text.find('\n');
    if (end == std::string_view::npos)
        return false;
    line.whole = rest.text.substr(0, end + 1);
    line.text = line.whole.substr(0, end);
    while (line.text.ends_with('\r'))
        line.text.remove_suffix(1);
    line.number = rest.line++;
    line.form = form_of(line.text);
    rest.text.remove_prefix(end + 1);
    return true;
}

// Whether the next line can only be the rest of one of that form, that ends in `line`.
bool Unwrap::goes_on(Form form, bool plain, std::string_view line, const Line &next)
{
    if (next.form == Form::none && (form >= Form::keyed || form == Form::layout || !plain))
        // Words go on in words, numbers in numbers.
        return !plain || NUMBERS.find(next.text[0]) < NUMBERS.find('n') || next.text[0] == ';';
    if (next.form == Form::row || next.form == Form::keyed || next.form == Form::none) {
        if (form == Form::keyed)
            return next.form == Form::row;
        return form == Form::none && all_of(line, KEY); // within a key
    }
    return false;
}

// Finds the width, where lines were broken, and whether that can be undone.
void Unwrap::look(const Head &head)
{
    longest_ = {};
    breaks_ = Breaks::unknown;
    Line line;
    for (Part part : head.body)
        while (take_line(part, line))
            for (size_t i = 0; i < TABS.size(); i++)
                longest_[i] = std::max(longest_[i], columns_of(line.text, TABS[i]));

    size_t wraps = 0;
    size_t exact = 0;
    size_t blanks = 0;
    bool within_words = false;
    for (Part part : head.body) {
        Line before;
        for (; take_line(part, line); before = line) {
            if (!goes_on(before.form, is_plain(before.text), before.text, line) ||
                !near(before.text, line.text))
                continue;
            wraps++;
            blanks += ends_blank(before.text);
            if (beyond(before.text, line.text.substr(0, 1))) {
                exact++;
                within_words = within_words || (is(before.text.back(), DIGIT | LETTER) &&
                                                is(line.text[0], DIGIT | LETTER));
            }
        }
    }
    undoing_ = wraps >= WRAPS_MIN;
    if (exact < wraps)
        breaks_ = blanks == wraps ? Breaks::behind_blanks
                  : blanks == 0   ? Breaks::at_blanks
                                  : Breaks::between_words;
    else if (within_words)
        breaks_ = Breaks::anywhere;
}

// Whether a line with something behind it is longer than all lines are.
bool Unwrap::beyond(std::string_view line, std::string_view next) const
{
    for (size_t i = 0; i < TABS.size(); i++)
        if (columns_of(next, TABS[i], columns_of(line, TABS[i])) > longest_[i])
            return true;
    return false;
}

bool Unwrap::may_break(std::string_view line) const
{
    return line.size() >= WRAP_MIN &&
           (ends_blank(line) ? breaks_ != Breaks::at_blanks : breaks_ != Breaks::behind_blanks);
}

// Whether a line may have been broken before what cannot begin one. How many blanks have been taken
// away there is not known.
bool Unwrap::near(std::string_view line, std::string_view next) const
{
    constexpr std::string_view WORD = "                ";
    static_assert(WORD.size() == WRAP_WORD);
    return may_break(line) && beyond(line, breaks_ == Breaks::anywhere ? next.substr(0, 1) : WORD);
}

// Whether a line may have been broken before what can begin one.
bool Unwrap::full(std::string_view line, std::string_view next) const
{
    // Where blanks are kept the first word is known, or that there is but a blank.
    const bool kept = breaks_ == Breaks::behind_blanks;
    return (!kept && near(line, next)) ||
           (breaks_ != Breaks::anywhere && may_break(line) &&
            beyond(line, next.substr(0, std::min(next.find_first_of(" \t"), next.size() - 1) + 1)));
}

void Unwrap::write(Part part)
{
    last_ = {};
    form_ = Form::blank;
    label_ = {};
    renumber_ = true;
    Line line;
    while (take_line(part, line)) {
        if (!rows_.empty()) {
            const Line &row = rows_.back().line;
            if (line.form == Form::row || line.form == Form::blank ||
                (undoing_ && goes_on(Form::row, is_plain(row.text), row.text, line) &&
                 near(row.text, line.text))) {
                add_row(line);
                continue;
            }
            close_rows();
        }
        if (undoing_ && goes_on(form_, plain_, last_.text, line) && near(last_.text, line.text) &&
            !(within_key() && !beyond(last_.text, line.text.substr(0, 1))))
            join(line);
        else if (line.form == Form::row)
            add_row(line);
        else
            begin_line(line);
    }
    close_rows();
    if (!part.text.empty())
        begin_line({part.text, part.text, part.line, Form::blank});
    finish_line();
}

// Whether the line was broken within its key, where no blank has been.
bool Unwrap::within_key() const
{
    return form_ == Form::none && all_of(last_.text, KEY);
}

void Unwrap::begin_line(const Line &line)
{
    const bool broken_before = broken_ || undoing_;
    if (broken_before && line.form == Form::none && form_ == Form::keyed)
        text_doubted_ = true;
    // It may be the rest of a comment.
    const bool rest =
        broken_before && line.form == Form::keyed &&
        (undoing_ ? !plain_ && full(last_.text, line.text) : near(last_.text, line.text));
    finish_line();
    doubted_ = rest;
    if (std::exchange(renumber_, false))
        parts_.push_back({std::string_view(text_).substr(text_.size()), line.number});
    begin_ = text_.size();
    text_ += line.whole;
    number_ = line.number;
    last_ = line;
    form_ = line.form;
    plain_ = is_plain(line.text);
    if (form_ == Form::label)
        label_ = line.text;
    else if (form_ == Form::keyed || form_ == Form::section)
        label_ = {};
}

void Unwrap::finish_line()
{
    if (doubted_ || text_doubted_)
        doubts_.push_back({{text_.data() + begin_, text_.size() - begin_}, number_, !doubted_});
    doubted_ = false;
    text_doubted_ = false;
}

void Unwrap::join(const Line &next)
{
    const bool blank =
        !within_key() && !ends_blank(last_.text) && !is(next.text[0], BLANK) &&
        (breaks_ >= Breaks::between_words || !beyond(last_.text, next.text.substr(0, 1)));
    text_.resize(text_.size() - (last_.whole.size() - last_.text.size()));
    if (blank)
        text_ += ' ';
    text_ += next.whole;
    const std::string_view line = std::string_view(text_).substr(begin_);
    if (form_ == Form::none && line.size() < WHOLE_MAX)
        form_ = form_of(line.substr(0, line.find_first_of("\r\n")));
    plain_ = plain_ && is_plain(next.text);
    text_doubted_ = true;
    last_ = next;
    renumber_ = true;
    joined_++;
    width_ = std::max(width_, longest_[0]);
}

// Keeps a row until all those are there that it stands among.
void Unwrap::add_row(const Line &line)
{
    if (!rows_.empty()) {
        Row &before = rows_.back();
        const bool open = undoing_ || !broken_ ? full(before.line.text, line.text)
                                               : near(before.line.text, line.text);
        before.seam = before.line.form == Form::blank || line.form == Form::blank ? Seam::end
                      : line.form != Form::row                                    ? Seam::none
                      : open                                                      ? Seam::open
                                                                                  : Seam::end;
    }
    rows_.push_back({line, count_numbers(line.text), Seam::end});
}

// Settles which rows certainly go on in the next one. Returns whether others may.
bool Unwrap::settle_seams(bool tuples)
{
    const std::string_view style = style_of(rows_.back().line.text);
    bool open = false;
    for (size_t i = 0; i + 1 < rows_.size(); i++) {
        const std::string_view text = rows_[i].line.text;
        Seam &seam = rows_[i].seam;
        if (seam == Seam::open && tuples) // between two of them it does no harm
            seam = Seam::end;
        else if (seam == Seam::open && undoing_ && style_of(text) != style)
            seam = Seam::none;
        if (seam == Seam::none && breaks_ < Breaks::between_words && is(text.back(), DIGIT) &&
            is(rows_[i + 1].line.text[0], DIGIT))
            rows_[i + 1].count--;
        open = open || seam == Seam::open;
    }
    return open;
}

// Joins the rows that have been kept, or doubts them.
void Unwrap::close_rows()
{
    if (rows_.empty())
        return;
    // Blank lines within them may be what is left of a row.
    const auto blank = [](const Row &row) { return row.line.form == Form::blank; };
    std::vector<Row> blanks;
    for (; blank(rows_.back()); rows_.pop_back())
        blanks.push_back(rows_.back());
    const bool gap = rows_.front().line.text.size() >= WRAP_MIN &&
                     std::any_of(rows_.begin(), rows_.end(), blank);
    const bool tuples = rows_.front().line.text.find_first_of("(<") != std::string_view::npos;
    const bool open = settle_seams(tuples);
    uint32_t all = 0;
    uint32_t length = 0; // of the rows to be made
    for (const Row &row : rows_) {
        all += row.count;
        if (length == 0 && row.seam != Seam::none)
            length = all;
    }
    const bool vector = vector_of(all);
    if (vector)
        length = all;
    else if (open && undoing_)
        length = columns();
    const bool high = !tuples && !vector && is_high(length, all);
    bool doubted = undoing_ ? length == 0 || high : open && (broken_ || (high && halves(length)));

    doubted = doubted || (gap && !tuples && (undoing_ || broken_ || high));
    bool joins = false;
    const bool joining = undoing_ && !doubted;
    uint32_t count = 0;
    for (const Row &row : rows_) {
        if (joins)
            join(row.line);
        else
            begin_line(row.line);
        doubted_ = doubted_ || std::exchange(doubted, false);
        count = joins ? count + row.count : row.count;
        joins = joining && (row.seam == Seam::none || (row.seam == Seam::open && count != length));
    }
    for (; !blanks.empty(); blanks.pop_back())
        begin_line(blanks.back().line);
    rows_.clear();
}

// Whether the rows are the values of a vector, of which the label says how many there are.
bool Unwrap::vector_of(uint32_t count) const
{
    std::string_view index = key_of(label_);
    index.remove_prefix(std::min(index.rfind('[') + 1, index.size()));
    uint32_t size = 0;
    return take_number(index, size) && index.starts_with(']') && size == count;
}

// Whether rows of so many columns can be made.
bool Unwrap::make(const std::vector<Row> &rows, uint32_t columns)
{
    uint32_t count = 0;
    for (const Row &row : rows) {
        count += row.count;
        const bool last = &row == &rows.back();
        if (row.seam != Seam::none && count == columns)
            count = 0;
        else if (count > columns || (row.seam == Seam::end && !(last && columns == VECTOR_COLUMNS)))
            return false;
    }
    return true;
}

// The columns of the one grid that can be made of the rows, or 0.
uint32_t Unwrap::columns() const
{
    uint32_t sum = 0;
    for (const Row &row : rows_) {
        sum += row.count;
        if (row.seam == Seam::end)
            break;
    }
    uint32_t found = 0;
    uint32_t columns = 0;
    for (const Row &row : rows_) {
        columns += row.count;
        if (row.count != 0 && row.seam != Seam::none && sum % columns == 0 &&
            make(rows_, columns)) {
            // A single row may as well be several and a shorter one.
            if (found != 0 || &row == &rows_.back())
                return 0;
            found = columns;
        }
        if (row.seam == Seam::end)
            break;
    }
    return found;
}

// Whether long rows are at least twice as many as their columns: no map that vorda prints is so, but
// halves of one are.
bool Unwrap::is_high(uint32_t columns, uint32_t count) const
{
    return columns != VECTOR_COLUMNS && columns != 0 && count / columns / 2 >= columns &&
           rows_.front().line.text.size() >= WRAP_MIN;
}

// Whether rows may be parts of others.
bool Unwrap::halves(uint32_t columns) const
{
    const size_t count = rows_.size();
    for (size_t parts = 2; parts <= PARTS_MAX; parts++) {
        bool fits = count % parts == 0;
        for (size_t i = 0; fits && i < count; i++)
            fits =
                rows_[i].count == columns && ((i + 1) % parts == 0 || rows_[i].seam == Seam::open);
        if (fits)
            return true;
    }
    return false;
}

} // namespace vordascope
