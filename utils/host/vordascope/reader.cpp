// From bytes to snapshots.
#include "reader.h"

#include <algorithm>

namespace vordascope
{

namespace
{

// Leaves only the line that says what this is added to.
void leave_out(Snapshot &snapshot)
{
    const Part &body = snapshot.body.front();
    const std::string_view before(snapshot.text.data(), body.text.data());
    const size_t at = before.rfind("added_to = ");
    const auto lines = std::count(before.begin() + static_cast<ptrdiff_t>(at), before.end(), '\n');
    const std::string_view line = before.substr(at, before.find_first_of("\r\n", at) - at);
    snapshot.tell({body.line - static_cast<uint64_t>(lines), line,
                   "left out: the snapshot that it is added to is not before it"});
    snapshot.indexed = snapshot.timed = false;
    snapshot.frame.reset();
    snapshot.body.clear();
}

} // namespace

const Snapshot *Reader::next()
{
    if (!frames_.next(snapshot_))
        return nullptr;
    if (!merge_.complete(snapshot_))
        leave_out(snapshot_);
    grammar_.parse(snapshot_);
    // A line in brackets alone makes no attribute text.
    if (!snapshot_.named && snapshot_.fields.empty())
        snapshot_.indexed = false;
    number_ += snapshot_.indexed;
    snapshot_.number = number_;
    return &snapshot_;
}

} // namespace vordascope
