// Reading captures and writing text through file descriptors.
#include "stream.h"

#include "shown.h"

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

constexpr size_t PIECE = size_t{256} << 10;
constexpr std::chrono::milliseconds FIRST_PROGRESS(1000);
constexpr std::chrono::milliseconds NEXT_PROGRESS(200);

} // namespace

void complain(std::string_view message)
{
    fputs("vordascope: ", stderr);
    char room[4];
    for (const char c : message) {
        const std::string_view piece = shown(c, room);
        fwrite(piece.data(), 1, piece.size(), stderr);
    }
    fputc('\n', stderr);
}

bool is_standard_input(std::string_view file)
{
    return file == "-" || file == STANDARD_INPUT;
}

bool read_file(const std::string &file, std::string &text)
{
    const int fd = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    ssize_t size = fd < 0 ? -1 : 1;
    while (size > 0 || (size < 0 && fd >= 0 && errno == EINTR)) {
        char piece[1 << 14];
        size = read(fd, piece, sizeof(piece));
        if (size > 0)
            text.append(piece, static_cast<size_t>(size));
    }
    if (size < 0)
        complain(file + ": " + strerror(errno));
    if (fd >= 0)
        close(fd);
    return size == 0;
}

Input::Input(const std::string &file)
    : name_(is_standard_input(file) ? "standard input" : shown(file)),
      fd_(is_standard_input(file) ? STDIN_FILENO : open(file.c_str(), O_RDONLY | O_CLOEXEC)),
      show_next_(std::chrono::steady_clock::now() + FIRST_PROGRESS)
{
    struct stat status = {};
    struct stat output = {};
    if (fd_ < 0) {
        fail(strerror(errno));
    } else if (fstat(fd_, &status) == 0 && S_ISREG(status.st_mode)) {
        size_ = static_cast<uint64_t>(status.st_size);
        if (fstat(STDOUT_FILENO, &output) == 0 && output.st_dev == status.st_dev &&
            output.st_ino == status.st_ino)
            fail("this capture is also where the output goes");
    }
    // Rows that come one by one on the same terminal are progress enough.
    progress_ = isatty(STDERR_FILENO) != 0 && isatty(STDOUT_FILENO) == 0;
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
        fail(strerror(errno));
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

void Input::fail(std::string why)
{
    error_ = std::move(why);
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
        ::close(fd_);
}

bool Output::close()
{
    if (open_ && ::close(fd_) != 0 && errno != EINTR)
        fail();
    open_ = false;
    fd_ = -1;
    return !failed_;
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
