// The recording of `vordascope live`.
#include "recording.h"

#include "stream.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace vordascope
{

namespace
{

constexpr char NOTED[] = "mark = ";
constexpr size_t KEPT_MOST = 2 * SNAPSHOT_MAX; // the newest snapshot, and what may be the next one

} // namespace

Recording::Recording(const std::string &file)
    : name_(file), fd_(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666))
{
    struct stat status;
    if (fd_ < 0 || fstat(fd_, &status) < 0)
        fail();
    else
        regular_ = S_ISREG(status.st_mode);
}

Recording::~Recording()
{
    close();
}

void Recording::fail()
{
    if (!failed_)
        complain(name_ + ": " + strerror(errno) + "; no more is written there");
    failed_ = true;
}

// Writes at a place of a file, or where the output is.
bool Recording::write_all(std::string_view bytes, uint64_t at)
{
    while (!failed_ && !bytes.empty()) {
        const ssize_t size = regular_
                                 ? pwrite(fd_, bytes.data(), bytes.size(), static_cast<off_t>(at))
                                 : ::write(fd_, bytes.data(), bytes.size());
        if (size >= 0) {
            bytes.remove_prefix(static_cast<size_t>(size));
            at += static_cast<uint64_t>(size);
        } else if (errno != EINTR) {
            fail();
        }
    }
    return !failed_;
}

void Recording::put(std::string_view bytes)
{
    if (failed_)
        return;
    newest_ += bytes;
    if (regular_ && write_all(bytes, written_))
        written_ += bytes.size();
}

void Recording::reached(std::optional<uint64_t> place)
{
    if (failed_ || (!place && newest_.size() < KEPT_MOST))
        return;
    const uint64_t gone = place ? begin_ + *place - at_ : newest_.size();
    // Captures that were joined without a line end leave no place between them.
    placed_ = place && (gone == 0 ? placed_ || at_ == 0 : newest_[gone - 1] == '\n');
    if (!regular_)
        write_all(std::string_view(newest_).substr(0, gone), 0);
    newest_.erase(0, gone);
    at_ += gone;
    if (placed_)
        write_lines(std::exchange(waiting_, {}));
}

void Recording::mark(const std::string &text)
{
    const std::string line = NOTED + text + '\n';
    if (placed_)
        write_lines(line);
    else
        waiting_ += line;
}

void Recording::write_lines(const std::string &lines)
{
    if (failed_ || lines.empty())
        return;
    if (!regular_) {
        write_all(lines, 0);
        return;
    }
    // Room first: where there is none, what is written stays as it is.
    const int error =
        posix_fallocate(fd_, static_cast<off_t>(written_), static_cast<off_t>(lines.size()));
    if (error != 0) {
        errno = error;
        fail();
    } else if (write_all(lines + newest_, written_ - newest_.size())) {
        written_ += lines.size();
    }
}

bool Recording::close()
{
    if (fd_ < 0)
        return !failed_;
    if (!regular_)
        write_all(newest_, 0);
    if (::close(fd_) != 0 && errno != EINTR)
        fail();
    fd_ = -1;
    if (!waiting_.empty())
        complain(name_ + " lacks what was noted: " + waiting_);
    return !failed_;
}

} // namespace vordascope
