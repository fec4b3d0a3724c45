// Added snapshots made whole.
#pragma once

#include "snapshot.h"

namespace vordascope
{

// In a recording most snapshots hold only what changed: the sections that they print replace those
// of the snapshot before, or the lines of these, and all others stay. A section is the item with its
// section line or tag, and all lines of a category that has none.
class Merge
{
public:
    // Makes the text of an added snapshot whole, and keeps that of any for the next one. Returns
    // nullptr, or why that cannot be: what is added then is a part of a state that nobody knows.
    // What `head` points to lasts until the next call, or as long as it did before.
    const char *complete(Head &head);

private:
    struct Unit {
        std::string name; // empty for what stands before the first section
        Part part;
    };

    static void split(const Part &part, std::vector<Unit> &units);
    bool add(Head &head);
    bool make_whole(std::vector<Unit> &changed) const;
    void replace(std::vector<Unit> &changed);
    void write(Head &head);

    // The state of the snapshot before, when it is known.
    bool known_ = false;
    uint32_t dev_idx_ = 0;
    uint32_t path_idx_ = 0;
    uint64_t frame_ = 0;
    std::string text_;
    uint64_t line_ = 0;       // of the text, when it is one part
    std::vector<Unit> units_; // of the text; none until they are needed
    std::string next_;        // the text that is being written
};

} // namespace vordascope
