// Bytes to the texts of snapshots: where each begins and ends, and what it says of itself.
#pragma once

#include "snapshot.h"

namespace vordascope
{

inline constexpr size_t SNAPSHOT_MAX = size_t{8} << 20;
inline constexpr size_t OUTSIDE_MAX = size_t{1} << 20;       // of text that belongs to no snapshot
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF"; // some editors begin a file with it

// Gives a label its value, anew if it has one. Returns whether there is room for it.
bool set_label(std::vector<Label> &labels, std::string_view key, std::string_view value);

// Leaves out the prompt or the mail behind a body. Returns where it begins.
size_t leave_out_mail(Head &head, std::string_view body);

// Splits an input, as a Reader does; see there. Its buffer holds one snapshot and what was given
// beyond it.
class Frames
{
public:
    Frames() = default;
    Frames(const Frames &) = delete;
    Frames &operator=(const Frames &) = delete;

    // Takes a text that is there as a whole, and outlives this.
    void read(std::string_view whole)
    {
        text_ = whole.data();
        size_ = whole.size();
        ended_ = true;
    }

    char *room(size_t size);
    void fill(size_t size) { size_ += size; }
    void end() { ended_ = true; }
    bool ended() const { return ended_; }

    // Finds the next snapshot and sets all of `head` but its number; it must be the same one each
    // time, since labels stay. Returns false when more input is needed, or after end() there are no
    // more.
    bool next(Head &head);

    // What stands in front of each line of that one, when it is quoted in a text that is not.
    std::string_view quote() const { return quote_; }

private:
    struct Mark {
        size_t at;     // place in the text
        uint64_t line; // its number in the input
    };

    size_t find_end();
    void read_head(Head &head);
    bool left_head(size_t end) const;
    size_t begin_next();
    void tell_of_end(Head &head, size_t end);
    void read_outside(Head &head, Mark begin, size_t end) const;

    std::vector<char> buffer_;
    const char *text_ = nullptr; // the buffer, or the whole text
    size_t size_ = 0;
    uint64_t gone_ = 0; // bytes that were before the buffer
    bool ended_ = false;
    Mark begin_ = {0, 1};   // of the snapshot that comes next
    Mark scanned_ = {0, 1}; // the line up to which its end has been looked for
    Mark head_ = {0, 1};    // the first of the head lines directly before that one, or that one
    Mark last_ = {0, 1};    // the line before that
    bool begun_ = false;    // the index line has been seen
    bool unnamed_ = false;  // no, but the tag of an attribute text
    bool named_ = false;    // the input has had either
    Mark own_head_ = {};    // then: the head lines before it, and what follows it
    Mark body_ = {};
    std::optional<uint64_t> sum_; // what it says of the text from `summed_` to its end line
    const char *summed_ = nullptr;
    bool whole_summed_ = false;  // the last one that is not added has said it
    bool ended_by_line_ = false; // and the end line, which begins at `end_line_`
    size_t end_line_ = 0;
    bool others_end_ = false; // snapshots before it have had an end line
    bool others_timed_ = false;
    std::string quote_;      // of the snapshot that has begun
    std::string next_quote_; // of the next one, when that has been seen
};

} // namespace vordascope
