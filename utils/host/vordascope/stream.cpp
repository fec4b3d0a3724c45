// Reading captures and writing text through file descriptors.
#include "stream.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vordascope
{

namespace
{

constexpr char STANDARD_INPUT[] = "standard input";
constexpr size_t PIECE = size_t{256} << 10;
constexpr std::chrono::milliseconds FIRST_PROGRESS(1000);
constexpr std::chrono::milliseconds NEXT_PROGRESS(200);

} // namespace

void complain(const std::string &message)
{
    fprintf(stderr, "vordascope: %s\n", message.c_str());
}

Input::Input(std::string file, bool progress)
    : name_(file == "-" ? STANDARD_INPUT : std::move(file)),
      fd_(name_ == STANDARD_INPUT ? STDIN_FILENO : open(name_.c_str(), O_RDONLY | O_CLOEXEC)),
      show_next_(std::chrono::steady_clock::now() + FIRST_PROGRESS)
{
    struct stat status = {};
    if (fd_ < 0)
        fail();
    else if (fstat(fd_, &status) == 0 && S_ISREG(status.st_mode))
        size_ = static_cast<uint64_t>(status.st_size);
    // Rows that come one by one on the same terminal are progress enough.
    progress_ = progress && isatty(STDERR_FILENO) != 0 && isatty(STDOUT_FILENO) == 0;
}

Input::~Input()
{
    clear_progress();
    if (fd_ > STDIN_FILENO)
        close(fd_);
}

const Snapshot *Input::next()
{
    while (!failed()) {
        const Snapshot *const snapshot = reader_.next();
        if (snapshot != nullptr) {
            snapshots_ += snapshot->indexed;
            return snapshot;
        }
        if (reader_.ended())
            break;
        fill();
    }
    clear_progress();
    return nullptr;
}

void Input::fill()
{
    show_progress();
    char *const room = reader_.room(PIECE);
    ssize_t size;
    do
        size = read(fd_, room, PIECE);
    while (size < 0 && errno == EINTR);
    if (size < 0) {
        fail();
    } else if (size == 0) {
        reader_.end();
    } else {
        reader_.fill(static_cast<size_t>(size));
        read_ += static_cast<uint64_t>(size);
    }
}

void Input::show_progress()
{
    if (!progress_)
        return;
    const auto now = std::chrono::steady_clock::now();
    if (now < show_next_)
        return;
    show_next_ = now + NEXT_PROGRESS;
    shown_ = true;
    fprintf(stderr, "\r%s: %llu snapshots, %llu MB", name_.c_str(),
            static_cast<unsigned long long>(snapshots_),
            static_cast<unsigned long long>(read_ / 1000000));
    if (size_ != 0)
        fprintf(stderr, ", %llu %%", static_cast<unsigned long long>(100 * read_ / size_));
}

void Input::clear_progress()
{
    if (shown_)
        fputs("\r\33[K", stderr);
    shown_ = false;
}

void Input::fail()
{
    error_ = strerror(errno);
    clear_progress();
    complain(name_ + ": " + error_);
}

Output::Output(const std::string &file)
    : name_(file), fd_(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666))
{
    if (fd_ < 0)
        fail();
}

Output::~Output()
{
    if (fd_ > STDERR_FILENO)
        close(fd_);
}

void Output::fail()
{
    open_ = false;
    failed_ = errno != EPIPE;
    if (failed_)
        complain(name_ + ": " + strerror(errno));
}

bool Output::write(std::string_view text)
{
    while (open_ && !text.empty()) {
        const ssize_t size = ::write(fd_, text.data(), text.size());
        if (size >= 0)
            text.remove_prefix(static_cast<size_t>(size));
        else if (errno != EINTR)
            fail();
    }
    return open_;
}

} // namespace vordascope
