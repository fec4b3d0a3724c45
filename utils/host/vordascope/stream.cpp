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

constexpr std::chrono::milliseconds FIRST_PROGRESS(1000);
constexpr std::chrono::milliseconds NEXT_PROGRESS(200);

bool progress_shown = false;

void clear_progress()
{
    if (progress_shown)
        fputs("\r\33[K", stderr);
    progress_shown = false;
}

} // namespace

void complain(std::string_view message)
{
    clear_progress();
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

Progress::Progress(bool rows)
    : on_(isatty(STDERR_FILENO) != 0 && !(rows && isatty(STDOUT_FILENO) != 0)),
      next_(std::chrono::steady_clock::now() + FIRST_PROGRESS)
{
}

bool Progress::due()
{
    const auto now = on_ ? std::chrono::steady_clock::now() : next_;
    if (!on_ || now < next_)
        return false;
    next_ = now + NEXT_PROGRESS;
    return true;
}

void Progress::show(const std::string &text)
{
    clear_progress();
    fputs(text.c_str(), stderr);
    progress_shown = shown_ = true;
}

void Progress::end()
{
    if (shown_)
        clear_progress();
    shown_ = false;
}

Input::Input(const std::string &file, const std::vector<Label> &labels)
    : file_(is_standard_input(file) ? "standard input" : file), name_(shown(file_)),
      fd_(is_standard_input(file) ? STDIN_FILENO : open(file.c_str(), O_RDONLY | O_CLOEXEC))
{
    for (const Label &label : labels)
        reader_.add_label(label);
    struct stat status = {};
    struct stat output = {};
    if (fd_ < 0) {
        fail(strerror(errno));
    } else if (fstat(fd_, &status) == 0 && S_ISREG(status.st_mode)) {
        regular_ = true;
        size_ = static_cast<uint64_t>(status.st_size);
        written_ = static_cast<double>(status.st_mtim.tv_sec) +
                   static_cast<double>(status.st_mtim.tv_nsec) / 1e9;
        if (fstat(STDOUT_FILENO, &output) == 0 && output.st_dev == status.st_dev &&
            output.st_ino == status.st_ino)
            fail("this capture is also where the output goes");
    }
}

double Input::written() const
{
    const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
    return regular_ ? written_ : now.count();
}

Input::~Input()
{
    tell_undone(); // who wants one snapshot reads no further
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
    progress_.end();
    tell_undone();
    return nullptr;
}

void Input::tell_undone()
{
    const std::vector<std::string> notices = reader_.notices();
    for (; noticed_ < notices.size(); noticed_++)
        complain(name_ + ": " + shown(notices[noticed_]));
}

void Input::fill()
{
    if (progress_.due())
        progress_.show(name_ + ": " + std::to_string(snapshots_) +
                       (snapshots_ == 1 ? " snapshot, " : " snapshots, ") +
                       std::to_string(read_ / 1000000) + " MB" +
                       (size_ != 0 ? ", " + std::to_string(100 * read_ / size_) + " %" : ""));
    char *const room = reader_.room(Reader::PIECE);
    ssize_t size;
    do
        size = read(fd_, room, Reader::PIECE);
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

void Input::fail(std::string why)
{
    error_ = std::move(why);
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
