// Messages about captures.
#include "captures.h"

namespace vordascope
{

std::string plural(uint64_t count, const char *what)
{
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

void warn_of_unread(const Input &input, uint64_t unread)
{
    if (unread > 0)
        complain(input.name() + ": " + plural(unread, "line") +
                 " not understood; see vordascope check");
}

int no_snapshot(const Input &input)
{
    complain(input.name() + ": no snapshot; it would begin with a line "
                            "\"dev_idx = ..., path_idx = ...\"");
    return TROUBLE;
}

} // namespace vordascope
