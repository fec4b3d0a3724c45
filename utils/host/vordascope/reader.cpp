// Frames to snapshots.
#include "reader.h"

namespace vordascope
{

const Snapshot *Reader::next()
{
    if (!frames_.next(snapshot_))
        return nullptr;
    grammar_.parse(snapshot_);
    return &snapshot_;
}

} // namespace vordascope
