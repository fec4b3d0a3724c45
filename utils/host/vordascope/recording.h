// What `vordascope live` has read, on disk: byte for byte, and a line "mark = TEXT" for each thing
// that was noted, where it belongs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vordascope
{

// A line belongs before the head lines of a snapshot that has been written already. The bytes from
// there on are kept: a file gets them once more behind the line; what is no regular file gets them
// only when the next snapshot is there. What is noted where no snapshot is waits for one, and is
// told at the end when none has come. Writing takes as long as the file does. An error is told, and
// nothing is written from then on.
class Recording
{
public:
    // Writes `file` anew.
    explicit Recording(const std::string &file);
    ~Recording();
    Recording(const Recording &) = delete;
    Recording &operator=(const Recording &) = delete;

    // Whether an error has been told.
    bool failed() const { return failed_; }

    // The input goes on with these bytes.
    void put(std::string_view bytes);

    // An input begins, whose places count from the bytes that come next.
    void begin() { begin_ = at_ + newest_.size(); }

    // The newest snapshot begins at this place of the input; nowhere when what came is none, or
    // cannot be told from bytes.
    void reached(std::optional<uint64_t> place);

    // Notes a text, one line, at the newest snapshot.
    void mark(const std::string &text);

    // Ends the file. Returns whether all of it has been written.
    bool close();

private:
    void write_lines(const std::string &lines);
    bool write_all(std::string_view bytes, uint64_t at);
    void fail();

    std::string name_;
    int fd_;
    bool failed_ = false;
    bool regular_ = false;
    uint64_t written_ = 0; // bytes of the file
    std::string newest_;   // bytes that were read from the newest snapshot on
    bool placed_ = false;  // and there can be a line before them
    std::string waiting_;  // lines that have no place yet
    uint64_t at_ = 0;      // bytes that were read before them
    uint64_t begin_ = 0;   // bytes that were read before this input
};

} // namespace vordascope
