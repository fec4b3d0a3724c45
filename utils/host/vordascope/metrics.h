// Fields as metrics, in the text form of OpenMetrics, which Prometheus and its node exporter read:
//
//     # TYPE vorda_field gauge
//     # HELP vorda_field What vorda prints of a field.
//     vorda_field{dev_idx="0",path_idx="0",host="cam1",field="share.fps"} 25.00
//     # EOF
//
// One metric holds all fields, each by its path in a label: what a newer vorda prints appears under
// its own name, and no two names become one.
#pragma once

#include "snapshot.h"

#include <map>

namespace vordascope
{

class Metrics
{
public:
    // At most `most` fields of a path. Those that one of the patterns selects, of which only single
    // numbers, true and false are taken; without patterns, those of share and stat.
    Metrics(std::vector<std::string> patterns, size_t most);

    // Takes the place of the snapshot of that capture and path that was there before. `when` is
    // when the capture was written, in seconds since 1970. `file` becomes a label unless it is
    // empty.
    void add(const Snapshot &snapshot, std::string_view file, double when);

    // How many fields have been left out, in the path that has most of them.
    size_t left_out() const { return left_out_; }

    void put(std::string &out) const;

private:
    struct Path {
        std::string labels; // dev_idx="0",…
        std::string time;
        std::string frame;
        double when;
        std::vector<std::pair<std::string, std::string>> fields; // paths and values
    };

    bool selected(const Snapshot &snapshot, const Field &field) const;

    std::vector<std::string> patterns_;
    size_t most_;
    size_t left_out_ = 0;
    std::map<std::string, Path> paths_; // by capture, device and path
};

} // namespace vordascope
