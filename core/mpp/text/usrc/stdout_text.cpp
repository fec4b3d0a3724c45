// Writing to standard output.
#include "stdout_text.h"

#include <cerrno>
#include <unistd.h>

namespace
{

bool failed; // standard output has refused something

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
            failed = size == 0 || errno != EINTR;
    }
    self.at_ = self.buffer_;
}
