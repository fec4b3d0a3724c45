// From bytes to snapshots.
#include "reader.h"

#include <algorithm>
#include <cstring>

namespace vordascope
{

namespace
{

constexpr size_t SHOWN_BYTES = 60;         // of a line around the captures
constexpr size_t SLICE = size_t{64} << 10; // of bytes, which an archive may blow up

// Leaves only the line that says what this is added to.
void leave_out(Snapshot &snapshot, const char *why)
{
    const Part &body = snapshot.body.front();
    const std::string_view before(snapshot.text.data(), body.text.data());
    const size_t at = before.rfind("added_to = ");
    const auto lines = std::count(before.begin() + static_cast<ptrdiff_t>(at), before.end(), '\n');
    const std::string_view line = before.substr(at, before.find_first_of("\r\n", at) - at);
    snapshot.tell({body.line - static_cast<uint64_t>(lines), line, why});
    snapshot.indexed = snapshot.timed = false;
    snapshot.frame.reset();
    snapshot.body.clear();
}

} // namespace

Reader::Reader(std::string_view whole) : ended_(true)
{
    const std::string_view first = whole.substr(0, SLICE);
    decode_.put(first, first.size() == whole.size(), decoded_);
    if (decode_.plain()) {
        frames_.read(whole);
        return;
    }
    raw_ = whole;
    raw_begin_ = first.size();
    raw_end_ = whole.size();
    memcpy(frames_.room(decoded_.size() + 1), decoded_.data(), decoded_.size());
    frames_.fill(decoded_.size());
    if (first.size() == whole.size())
        frames_.end();
}

char *Reader::room(size_t size)
{
    direct_ = decode_.plain() && raw_begin_ == raw_end_;
    if (direct_)
        return frames_.room(size);
    raw_.erase(0, raw_begin_);
    raw_end_ -= raw_begin_;
    raw_begin_ = 0;
    if (raw_.size() < raw_end_ + size)
        raw_.resize(raw_end_ + size);
    return raw_.data() + raw_end_;
}

void Reader::fill(size_t size)
{
    if (direct_)
        frames_.fill(size);
    else
        raw_end_ += size;
}

// Decodes the next bytes. Returns false when there is nothing to do.
bool Reader::decode_more()
{
    if (frames_.ended() || (raw_begin_ == raw_end_ && !ended_))
        return false;
    const size_t size = std::min(SLICE, raw_end_ - raw_begin_);
    const bool last = ended_ && raw_begin_ + size == raw_end_;
    decoded_.clear();
    decode_.put(std::string_view(raw_).substr(raw_begin_, size), last, decoded_);
    raw_begin_ += size;
    memcpy(frames_.room(decoded_.size() + 1), decoded_.data(), decoded_.size());
    frames_.fill(decoded_.size());
    if (last)
        frames_.end();
    return true;
}

std::vector<std::string> Reader::notices() const
{
    std::vector<std::string> notices = decode_.notices();
    if (unwrap_.joined() != 0)
        notices.push_back("its lines were wrapped at " + std::to_string(unwrap_.width()) +
                          " columns, which was undone (" + std::to_string(unwrap_.joined()) +
                          " lines joined)");
    if (unquoted_any_)
        notices.emplace_back("the quotation marks of a capture within it were taken off");
    if (left_out_ != 0)
        notices.push_back("lines around the captures were left out (" + std::to_string(left_out_) +
                          "), the first: " + left_out_first_);
    return notices;
}

// Reads the snapshot, and once more when its lines have been wrapped.
void Reader::parse()
{
    const auto unread = static_cast<ptrdiff_t>(snapshot_.unread.size());
    const uint64_t unread_count = snapshot_.unread_count;
    const bool cut = snapshot_.cut;
    grammar_.parse(snapshot_);
    if (!grammar_.wrapped())
        return;
    const bool broken = grammar_.broken();
    snapshot_.unread.erase(snapshot_.unread.begin() + unread, snapshot_.unread.end());
    snapshot_.unread_count = unread_count;
    snapshot_.cut = cut;
    const bool undone = unwrap_.undo(snapshot_, broken);
    grammar_.parse(snapshot_);
    if (undone)
        grammar_.doubt(unwrap_.doubts());
}

// Takes the quotation marks off the lines of a snapshot.
void Reader::unquote()
{
    const Part quoted = snapshot_.body.front();
    const auto before = static_cast<size_t>(quoted.text.data() - snapshot_.text.data());
    unquoted_.clear();
    unquoted_.reserve(snapshot_.text.size()); // what points there stays valid
    unquoted_.append(snapshot_.text, 0, before);
    for (std::string_view rest = quoted.text; !rest.empty();) {
        const std::string_view line =
            rest.substr(0, std::min(rest.find('\n'), rest.size() - 1) + 1);
        rest.remove_prefix(line.size());
        const bool marked = line.starts_with(frames_.quote());
        unquoted_ += marked ? line.substr(frames_.quote().size()) : line;
    }
    const size_t size = unquoted_.size() - before;
    unquoted_.append(snapshot_.text, before + quoted.text.size());
    snapshot_.replace_body(unquoted_,
                           {{std::string_view(unquoted_).substr(before, size), quoted.line}});
    std::string_view &body = snapshot_.body.front().text;
    body = body.substr(0, leave_out_mail(snapshot_, body));
    unquoted_any_ = true;
}

const Snapshot *Reader::next()
{
    while (!frames_.next(snapshot_))
        if (!decode_more())
            return nullptr;
    if (!frames_.quote().empty())
        unquote();
    if (const char *why = merge_.complete(snapshot_); why != nullptr)
        leave_out(snapshot_, why);
    parse();
    // A line in brackets alone makes no attribute text.
    if (!snapshot_.named && snapshot_.fields.empty())
        snapshot_.indexed = false;
    if (left_out_ == 0 && snapshot_.left_out != 0)
        left_out_first_ = snapshot_.left_out_first.substr(0, SHOWN_BYTES);
    left_out_ += snapshot_.left_out;
    number_ += snapshot_.indexed;
    snapshot_.number = number_;
    return &snapshot_;
}

} // namespace vordascope
