// Index lines, head lines, ends.
#include "frames.h"

#include "around.h"
#include "sections.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace vordascope
{

namespace
{

constexpr std::string_view END_LINE = "; end";
constexpr std::string_view NOTED = "mark = ";
constexpr std::string_view QUOTES = ">| \t";
constexpr char NO_SNAPSHOT[] = "no snapshot follows it";

// A line without its line end, which is at `newline`, and without a mark in front.
std::string_view content(const char *begin, const char *newline)
{
    while (newline > begin && newline[-1] == '\r')
        newline--;
    std::string_view line(begin, newline);
    take(line, BYTE_ORDER_MARK);
    return line;
}

bool read_index_line(std::string_view line, uint32_t &dev_idx, uint32_t &path_idx)
{
    return take(line, "dev_idx = ") && take_number(line, dev_idx) && take(line, ", path_idx = ") &&
           take_number(line, path_idx) && line.empty();
}

// Where in a line an index line begins: at 0, or behind what stood there without a line end when
// captures were joined.
size_t index_line_in(std::string_view line)
{
    constexpr std::string_view SHORTEST = "dev_idx = 0, path_idx = 0";
    if (line.size() < SHORTEST.size())
        return std::string_view::npos;
    size_t end = line.size();
    while (end != 0 && is(line[end - 1], DIGIT))
        end--;
    if (end == line.size() || !line.substr(0, end).ends_with(", path_idx = "))
        return std::string_view::npos;
    const size_t at = line.rfind("dev_idx = ");
    uint32_t index;
    return at != std::string_view::npos && read_index_line(line.substr(at), index, index)
               ? at
               : std::string_view::npos;
}

bool read_time_line(std::string_view line, Value &time)
{
    return take(line, "time = ") && !line.empty() && is(line[0], DIGIT) &&
           read_number(line.data(), time) == line.data() + line.size();
}

bool read_number_line(std::string_view line, std::string_view key, uint64_t &number)
{
    return take(line, key) && take_number(line, number) && line.empty();
}

bool read_label_line(std::string_view line, std::string_view &key, std::string_view &value)
{
    if (!take(line, "label ") || line.empty() || !(is(line[0], LETTER) || line[0] == '_'))
        return false;
    const size_t end = line.find(" = ");
    if (end == std::string_view::npos)
        return false;
    key = line.substr(0, end);
    value = line.substr(end + 3);
    return all_of(key, KEY) && key.find_first_of("[]") == std::string_view::npos;
}

bool is_head_line(std::string_view line)
{
    Value time;
    uint64_t number;
    std::string_view key;
    std::string_view value;
    switch (line.empty() ? '\0' : line[0]) {
    case 'a':
        return read_number_line(line, "added_to = ", number);
    case 't':
        return read_time_line(line, time);
    case 'f':
        return read_number_line(line, "frame = ", number);
    case 'm':
        return line.starts_with(NOTED) || read_number_line(line, "missed = ", number);
    case 'l':
        return read_label_line(line, key, value);
    case 's':
        return read_number_line(line, "sum = ", number);
    default:
        return false;
    }
}

// Calls use(line, its number, whether it ends) for each line of a text.
template <typename Use>
void for_each_line(std::string_view text, uint64_t number, Use use)
{
    while (!text.empty()) {
        const size_t newline = text.find('\n');
        if (newline == std::string_view::npos) {
            use(text, number, false);
            return;
        }
        use(content(text.data(), text.data() + newline), number, true);
        text.remove_prefix(newline + 1);
        number++;
    }
}

// FNV-1a of what stands behind the line where a text begins. Blanks and carriage returns come and go
// on the way: at either end of a line they do not count, elsewhere any number of them as one blank.
uint32_t sum_of(std::string_view text)
{
    uint32_t sum = 2166136261;
    const auto add = [&sum](char c) { sum = (sum ^ static_cast<uint8_t>(c)) * 16777619; };
    char last = '\n';
    bool blank = false;
    text.remove_prefix(text.find('\n') + 1);
    for (const char c : text) {
        if (is(c, BLANK) || c == '\r') {
            blank = true;
            continue;
        }
        if (blank && c != '\n' && last != '\n')
            add(' ');
        add(c);
        last = c;
        blank = false;
    }
    return sum;
}

} // namespace

bool set_label(std::vector<Label> &labels, std::string_view key, std::string_view value)
{
    const auto known = std::find_if(labels.begin(), labels.end(),
                                    [key](const Label &label) { return label.key == key; });
    if (known != labels.end())
        known->value = value;
    else if (labels.size() < LABELS_MOST)
        labels.push_back({std::string(key), std::string(value)});
    else
        return false;
    return true;
}

size_t leave_out_mail(Head &head, std::string_view body)
{
    const size_t mail = find_mail(body);
    for_each_line(body.substr(mail), 0, [&head](std::string_view line, uint64_t, bool) {
        if (line.find_first_not_of(QUOTES) != std::string_view::npos)
            head.leave_out(line);
    });
    return mail;
}

char *Frames::room(size_t size)
{
    if (buffer_.size() - size_ < size && begin_.at != 0) {
        const size_t gone = begin_.at;
        memmove(buffer_.data(), buffer_.data() + gone, size_ - gone);
        size_ -= gone;
        gone_ += gone;
        for (Mark *mark : {&begin_, &scanned_, &head_, &last_, &own_head_, &body_})
            mark->at -= std::min(mark->at, gone);
    }
    if (buffer_.size() - size_ < size)
        buffer_.resize(std::max(2 * buffer_.size(), size_ + size));
    text_ = buffer_.data();
    return buffer_.data() + size_;
}

bool Frames::next(Head &head)
{
    const size_t end = find_end();
    if (end == begin_.at)
        return false;
    head.text = {text_ + begin_.at, end - begin_.at};
    head.line = begin_.line;
    head.at = gone_ + (begun_ ? own_head_.at : begin_.at);
    head.indexed = begun_;
    head.timed = head.cut = false;
    head.named = begun_ && !unnamed_;
    head.dev_idx = head.path_idx = 0;
    head.intact = false;
    head.frame.reset();
    head.added_to.reset();
    head.missed = 0;
    head.marks.clear();
    head.unread.clear();
    head.unread_count = 0;
    head.left_out = 0;
    head.left_out_first = {};
    head.body.clear();
    if (begun_) {
        read_outside(head, begin_, own_head_.at);
        read_head(head);
        const size_t body_end = ended_by_line_ ? end_line_ : left_head(end) ? head_.at : end;
        std::string_view body(text_ + body_.at, body_end - body_.at);
        if (!ended_by_line_ && quote_.empty())
            body = body.substr(0, leave_out_mail(head, body));
        head.body.push_back({body, body_.line});
        tell_of_end(head, body_.at + body.size());
        if (!ended_by_line_)
            read_outside(head, {body_end, head_.line}, end);
    } else {
        quote_.clear();
        read_outside(head, begin_, end);
    }
    // What was looked at is the end of this one, or head lines and the line behind them.
    begin_ = end == head_.at ? head_ : Mark{end, scanned_.line};
    scanned_ = head_ = last_ = begin_;
    named_ = named_ || unnamed_;
    begun_ = unnamed_ = ended_by_line_ = false;
    return true;
}

// Returns where the snapshot that begins at begin_ ends, or begin_ when that is not known yet or
// there is none.
size_t Frames::find_end()
{
    while (scanned_.at != size_) {
        const char *const begin = text_ + scanned_.at;
        const auto *const newline =
            static_cast<const char *>(memchr(begin, '\n', size_ - scanned_.at));
        const size_t next = newline != nullptr ? static_cast<size_t>(newline + 1 - text_) : size_;
        const size_t most = begun_ ? SNAPSHOT_MAX : OUTSIDE_MAX;
        if (next - begin_.at > most) {
            head_ = scanned_;
            return scanned_.at != begin_.at ? scanned_.at : begin_.at + most;
        }
        if (newline == nullptr)
            break;

        const Mark after = {next, scanned_.line + 1};
        const std::string_view line = content(begin, newline);
        // What somebody notes may read like an index line.
        const bool noted = line.starts_with(NOTED);
        const size_t index = noted ? std::string_view::npos : index_line_in(line);
        if (index != std::string_view::npos) {
            if (index != 0) {
                last_ = scanned_;
                head_ = {static_cast<size_t>(line.data() + index - text_), scanned_.line};
                const std::string_view before = line.substr(0, index);
                next_quote_ =
                    before.find_first_not_of(QUOTES) == std::string_view::npos ? before : "";
            }
            if (begun_)
                return begin_next();
            begun_ = true;
            quote_ = std::exchange(next_quote_, {});
            own_head_ = head_;
            body_ = head_ = after;
            named_ = true;
        } else if (!begun_ && !named_ && !tag_of(line).empty()) {
            begun_ = unnamed_ = true;
            quote_.clear();
            own_head_ = head_;
            body_ = {static_cast<size_t>(line.data() - text_), scanned_.line};
            head_ = after;
        } else if (begun_ && line == END_LINE) {
            ended_by_line_ = true;
            end_line_ = scanned_.at;
            scanned_ = after;
            return next;
        } else if (!is_head_line(line)) {
            last_ = scanned_;
            head_ = after;
        }
        scanned_ = after;
    }
    return ended_ ? size_ : begin_.at;
}

// Returns where the next snapshot begins, of which head_ is known: perhaps within the line before,
// when captures have been joined without a line end.
size_t Frames::begin_next()
{
    const char *const begin = text_ + last_.at;
    std::string_view line(begin, head_.at - last_.at);
    if (line.ends_with('\n'))
        line = content(begin, begin + line.size() - 1);
    for (const std::string_view key :
         {"time = ", "frame = ", "sum = ", "missed = ", "added_to = "}) {
        const size_t at = line.rfind(key);
        if (at == 0 || at == std::string_view::npos || !is_head_line(line.substr(at)))
            continue;
        const std::string_view before = line.substr(0, at);
        // A key ends so, too.
        if (all_of(before, KEY | BLANK) && is(before[0], LETTER))
            continue;
        head_ = {static_cast<size_t>(line.data() + at - text_), last_.line};
        line = before;
        break;
    }
    if (line == END_LINE) {
        ended_by_line_ = true;
        end_line_ = last_.at;
    }
    return head_.at;
}

// Tells when a snapshot lacks the end line that the others of its recording have, or is not what its
// sum says.
void Frames::tell_of_end(Head &head, size_t end)
{
    if (ended_by_line_) {
        others_end_ = true;
        others_timed_ = head.timed;
        head.intact =
            sum_ ? *sum_ == sum_of({summed_, text_ + end}) : !head.added_to || !whole_summed_;
        if (!head.added_to)
            whole_summed_ = sum_.has_value();
        if (!head.intact)
            head.tell({body_.line - 1, "", "the text of this snapshot is not what was printed"});
    } else if (sum_ || (others_end_ && (head.timed || !others_timed_))) {
        head.cut = true;
        if (text_[end - 1] == '\n')
            head.tell({body_.line - 1, "", "cut off: no end line follows this snapshot"});
    }
}

// Whether the input ends behind the head of a snapshot, as a recording does that is stopped there.
bool Frames::left_head(size_t end) const
{
    if (end == head_.at || end != size_)
        return false;
    bool timed = false;
    const std::string_view lines(text_ + head_.at, size_ - head_.at);
    for_each_line(lines, 0, [&timed](std::string_view line, uint64_t, bool ends) {
        Value time;
        timed = timed || (ends && read_time_line(line, time));
    });
    return timed;
}

// Reads the head lines and the index line.
void Frames::read_head(Head &head)
{
    sum_.reset();
    const std::string_view lines(text_ + own_head_.at, body_.at - own_head_.at);
    Unread last_time = {0, {}, NO_SNAPSHOT};
    for_each_line(lines, own_head_.line, [&](std::string_view line, uint64_t number, bool) {
        std::string_view key;
        std::string_view value = line;
        if (read_time_line(line, head.time)) {
            if (head.timed)
                head.tell(last_time);
            last_time = {number, line, last_time.why};
            head.timed = true;
        } else if (uint64_t said; read_number_line(line, "frame = ", said)) {
            head.frame = said;
        } else if (read_number_line(line, "added_to = ", said)) {
            head.added_to = said;
        } else if (read_number_line(line, "sum = ", said)) {
            sum_ = said;
            summed_ = line.data() + line.size();
        } else if (take(value, NOTED)) {
            head.marks.push_back(value);
        } else if (read_label_line(line, key, value)) {
            if (!set_label(head.labels, key, value))
                head.tell({number, line, "one label too many"});
        } else if (!read_number_line(line, "missed = ", head.missed)) {
            read_index_line(line, head.dev_idx, head.path_idx);
        }
    });
}

// Tells of text that belongs to no snapshot. It is left out when none of it can be what has become
// of one.
void Frames::read_outside(Head &head, Mark begin, size_t end) const
{
    const std::string_view lines(text_ + begin.at, end - begin.at);
    const bool last = ended_ && end == size_;
    const std::string_view before_mail = lines.substr(0, find_mail(lines));
    const bool mail =
        before_mail.find_first_not_of(" \t\r\n") == std::string_view::npos && !lines.empty();
    bool around = begun_ || (last && named_);
    for_each_line(lines, begin.line, [&](std::string_view line, uint64_t, bool ends) {
        around = around && !(ends && is_head_line(line)) && (mail || !may_be_of_vorda(line));
    });
    const uint64_t left_out = head.left_out;
    for_each_line(lines, begin.line, [&](std::string_view line, uint64_t number, bool ends) {
        const bool whole = ends || !last || head.left_out != left_out || is_prompt(line);
        if (!ends && last && !(around && whole)) {
            head.cut = true;
            head.tell({number, line, "cut off: the line does not end"});
        } else if (line.find_first_not_of(QUOTES) != std::string_view::npos && line[0] != ';') {
            if (around)
                head.leave_out(line);
            else
                head.tell({number, line,
                           ends && is_head_line(line) ? NO_SNAPSHOT : "outside of any snapshot"});
        }
    });
}

} // namespace vordascope
