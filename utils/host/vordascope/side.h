// One snapshot of a capture, as the command line names it.
#pragma once

#include "captures.h"

namespace vordascope
{

// FILE, FILE#N for its Nth snapshot (the first when left out) or FILE#last.
class Side
{
public:
    explicit Side(const std::string &argument);

    // Reads the snapshot. Returns whether it is there; if not, a message has been printed, which
    // ends in error().
    bool read();

    const std::string &file() const { return file_; }
    const std::string &name() const { return name_; }
    const std::string &error() const { return error_; }
    const Snapshot &snapshot() const { return snapshot_; }

private:
    std::string file_;
    std::string wanted_; // as given
    bool last_ = false;
    uint64_t number_ = 1;
    std::string name_;
    std::string error_;
    Snapshot snapshot_;
};

} // namespace vordascope
