// Finding a snapshot in a capture.
#include "side.h"

#include <charconv>
#include <unistd.h>

namespace vordascope
{

Side::Side(const std::string &argument) : file_(argument)
{
    const size_t hash = argument.rfind('#');
    if (hash == std::string::npos || access(argument.c_str(), F_OK) == 0)
        return;
    const std::string after = argument.substr(hash + 1);
    if (after != "last" &&
        (after.empty() || after.find_first_not_of("0123456789") != std::string::npos))
        return;
    file_ = argument.substr(0, hash);
    wanted_ = after;
    last_ = after == "last";
    // A number that is too large is that of no snapshot.
    number_ = 0;
    std::from_chars(after.data(), after.data() + after.size(), number_);
}

bool Side::read()
{
    Input input(file_);
    name_ = input.name();
    while (const Snapshot *snapshot = input.next()) {
        if (!snapshot->indexed || (!last_ && snapshot->number != number_))
            continue;
        snapshot_ = *snapshot;
        if (!last_)
            break;
    }
    if (input.failed())
        error_ = input.error();
    else if (snapshot_.number == 0 && (number_ == 1 || last_))
        error_ = "no snapshot";
    else if (snapshot_.number == 0)
        error_ = "no snapshot " + wanted_;
    if (error_ == "no snapshot")
        no_snapshot(input);
    else if (!error_.empty() && !input.failed())
        complain(name_ + ": " + error_);
    if (!error_.empty())
        return false;
    name_ += '#' + std::to_string(snapshot_.number);
    warn_of_unread(input, snapshot_.unread_count);
    return true;
}

} // namespace vordascope
