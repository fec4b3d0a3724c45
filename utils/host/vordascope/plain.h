// What a page shows where no script runs: key figures, and how two snapshots differ.
#pragma once

#include "snapshot.h"

#include <string>
#include <string_view>

namespace vordascope
{

// Keeps, of all snapshots that go by, the two that are shown: of one run its first and its last, of
// several runs the last of the first one and the last of the last one.
class Plain
{
public:
    // Takes a snapshot; `run` is the number of its run, which never goes back to an earlier one but
    // the first, and `file` the name of its capture, any bytes.
    void add(const Snapshot &snapshot, uint32_t run, std::string_view file);

    // HTML that needs neither scripts nor styles; nothing of a capture is markup in it. No text when
    // there was no snapshot. `figures` are the key figures, "title\tpath\n" each. However much
    // differs, the text takes no more than PLAIN_BYTES and one row.
    std::string html(std::string_view figures) const;

private:
    struct Shown {
        std::string name; // "before.txt#1: dev_idx = 0, path_idx = 0, time = 3.04"
        Snapshot snapshot;
    };

    Shown first_;  // of the first run
    Shown before_; // the last of the first run
    Shown last_;   // of the runs behind it
    bool several_ = false;
};

constexpr size_t PLAIN_BYTES = 200000;

} // namespace vordascope
