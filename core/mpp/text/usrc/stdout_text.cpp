// Writing to standard output.
#include "stdout_text.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace
{

bool failed; // standard output has refused something

// Whether a write that failed with this error may go on. One that does not wait, since another
// process has opened it so, has no room yet.
bool goes_on(int error)
{
    pollfd room = {.fd = STDOUT_FILENO, .events = POLLOUT, .revents = 0};
    return error == EINTR || (error == EAGAIN && (poll(&room, 1, -1) > 0 || errno == EINTR));
}

} // namespace

// cppcheck-suppress uninitMemberVar // the buffer is written before it is read
StdoutText::StdoutText() : Text(buffer_, buffer_ + sizeof(buffer_), flush) {}

StdoutText::~StdoutText()
{
    flush(*this);
}

void StdoutText::flush(Text &text)
{
    auto &self = static_cast<StdoutText &>(text);
    const char *from = self.buffer_;
    while (!failed && from != self.at_) {
        const ssize_t size = write(STDOUT_FILENO, from, static_cast<size_t>(self.at_ - from));
        if (size > 0)
            from += size;
        else
            failed = size == 0 || !goes_on(errno);
    }
    self.at_ = self.buffer_;
}
