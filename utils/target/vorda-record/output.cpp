// Whole snapshots or nothing.
#include "output.h"

#include "asked.h"

#include <cerrno>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

// Writes what it can; returns how much, or a negated error number.
ssize_t write_some(std::string_view piece)
{
    const ssize_t size = write(STDOUT_FILENO, piece.data(), piece.size());
    if (size > 0)
        return size;
    const int error = size == 0 ? EIO : errno;
    if (error == EAGAIN) {
        pollfd out = {.fd = STDOUT_FILENO, .events = POLLOUT, .revents = 0};
        poll(&out, 1, -1);
        return asked.abort != 0 ? -EINTR : 0;
    }
    return error == EINTR && asked.abort == 0 ? 0 : -error;
}

// Takes the last bytes off a file that nobody else has written to meanwhile.
void take_back(off_t size)
{
    struct stat file = {};
    const off_t end = lseek(STDOUT_FILENO, 0, SEEK_CUR);
    if (fstat(STDOUT_FILENO, &file) == 0 && S_ISREG(file.st_mode) && file.st_size == end &&
        ftruncate(STDOUT_FILENO, end - size) == 0)
        lseek(STDOUT_FILENO, end - size, SEEK_SET);
}

} // namespace

int write_whole(std::initializer_list<std::string_view> pieces)
{
    off_t written = 0;
    for (std::string_view piece : pieces) {
        while (!piece.empty()) {
            const ssize_t size = write_some(piece);
            if (size < 0) {
                take_back(written);
                return static_cast<int>(-size);
            }
            piece.remove_prefix(static_cast<size_t>(size));
            written += size;
        }
    }
    return 0;
}
