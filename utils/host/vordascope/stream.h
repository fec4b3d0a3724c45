// The ends of vordascope: captures in, text out.
#pragma once

#include "reader.h"

#include <chrono>

namespace vordascope
{

// Prints "vordascope: " and a message on standard error. It needs no memory, and what a capture or
// a name put into the message cannot steer the terminal.
void complain(std::string_view message);

// Reads a file that is not a capture as a whole. Returns whether that could be done; if not, a
// message has been printed.
bool read_file(const std::string &file, std::string &text);

// A line on standard error that tells how far long work has come, when that is a terminal.
class Progress
{
public:
    // `rows`: where standard output is the same terminal, its rows are progress enough; without it
    // the line has to end() before anything is written.
    explicit Progress(bool rows = true);
    ~Progress() { end(); }
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    // Whether it is time to show something.
    bool due();
    void show(const std::string &text);
    // The work has come to its end: the line disappears.
    void end();

private:
    bool on_;
    bool shown_ = false;
    std::chrono::steady_clock::time_point next_;
};

// Besides "-", the name of standard input as a file.
constexpr char STANDARD_INPUT[] = "/dev/stdin";

bool is_standard_input(std::string_view file);

// The snapshots of a file, one after another, as they arrive.
class Input
{
public:
    // `file` is a path, or names standard input. Tells on standard error how far it has come,
    // when that is a terminal and reading takes long. Fails where standard output goes to the same
    // file, which would be overwritten or never end.
    // `labels` are those that the capture has besides its own.
    explicit Input(const std::string &file, const std::vector<Label> &labels = {});
    ~Input();
    Input(const Input &) = delete;
    Input &operator=(const Input &) = delete;

    // As people know it, printable.
    const std::string &name() const { return name_; }

    // As it was given, for output that takes any bytes.
    const std::string &file() const { return file_; }

    // Whether it is no file that has been written before, and when that was or is, in seconds since
    // 1970.
    bool live() const { return !regular_; }
    double written() const;

    // Returns the next snapshot, which stays valid until the next call, or nullptr: the input ends,
    // or it has failed.
    const Snapshot *next();

    // What had to be undone, as Reader::notices() has it; it is printed when next() has no more, or at
    // the end of this.
    std::vector<std::string> notices() const { return reader_.notices(); }

    // Whether the file could not be opened or read; a message has been printed, which ends in
    // error().
    bool failed() const { return !error_.empty(); }
    const std::string &error() const { return error_; }

private:
    void fill();
    void fail(std::string why);
    void tell_undone();

    Progress progress_;
    std::string file_;
    std::string name_;
    int fd_;
    std::string error_;
    bool regular_ = false;
    double written_ = 0; // of a regular file
    uint64_t size_ = 0;  // of a regular file; 0 when that is not known
    uint64_t read_ = 0;
    uint64_t snapshots_ = 0;
    Reader reader_;
    size_t noticed_ = 0; // notices of the reader that have been printed
};

// Standard output, or a file.
class Output
{
public:
    Output() = default;

    // Writes `file` anew. A message is printed when that cannot be done.
    explicit Output(const std::string &file);
    ~Output();
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    // Writes all of `text` at once. Returns whether more can be written: not when the reader has
    // left, nor after an error, which it prints.
    bool write(std::string_view text);
    bool writable() const { return open_; }

    // Ends the output; some file systems tell only then that there was no room. Returns whether
    // all of it has been written, or the reader has left. An error is printed.
    bool close();

    // Whether an error has been printed. A reader that leaves early is none.
    bool failed() const { return failed_; }

private:
    void fail();

    std::string name_ = "standard output";
    int fd_ = 1;
    bool open_ = true;
    bool failed_ = false;
};

} // namespace vordascope
