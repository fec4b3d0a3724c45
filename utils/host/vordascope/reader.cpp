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
    snapshot.unread.push_back({body.line - static_cast<uint64_t>(lines), line,
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
    number_ += snapshot_.indexed;
    snapshot_.number = number_;
    grammar_.parse(snapshot_);
    return &snapshot_;
}

} // namespace vordascope
