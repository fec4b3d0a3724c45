// Rules from captures that are known to be good: what never changes is exact, what does may change
// as far as it did.
#pragma once

#include "rules.h"

#include <map>

namespace vordascope
{

// Its memory is in proportion to one snapshot.
class Learner
{
public:
    void add(const Snapshot &snapshot);

    uint64_t snapshots() const { return snapshots_; }

    // Appends the rules: by item, one for what is constant and one for each field that is not, with
    // how far its values were apart. Tolerances and ranges are wider than that by `margin`, a part
    // of the distance.
    void put_rules(const Decimal &margin, std::string &out) const;

private:
    // The least and the greatest of a value that varies.
    struct Spread {
        Decimal low;
        Decimal high;
    };
    // What is known of a field of the first snapshot.
    struct Known {
        uint64_t count = 1;                // snapshots that have it
        std::map<uint32_t, Spread> spread; // of its values that vary, by their places
        const char *varies = nullptr;      // what else does, that no tolerance covers
    };

    void add(const Field &first, const Snapshot &snapshot, const Field &field, Known &known);
    bool constant(const Known &known) const;
    void put_rule(const Field &field, const Known &known, const Decimal &margin,
                  std::string &out) const;
    void put_spread(const Field &field, const Known &known, const Decimal &margin,
                    std::string &out) const;

    Snapshot first_;
    std::vector<Known> known_;                // of its fields
    std::map<std::string, uint64_t> further_; // fields that it lacks, by their paths
    uint64_t snapshots_ = 0;
};

} // namespace vordascope
