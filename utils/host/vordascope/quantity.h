// Quantities: numbers that snapshots hold, and what is computed of them here and printed nowhere.
#pragma once

#include "snapshot.h"

namespace vordascope
{

// A quantity that follows from fields: their product, or its logarithm.
struct Computed {
    std::string_view name;
    std::string_view factors[2]; // paths of scalars
    bool stops;                  // the logarithm of the product to base 2

    // What makes it, for people.
    std::string formula() const;
};

// What auto exposure regulates, as a product and in stops.
inline constexpr Computed COMPUTED[] = {
    {"exposure", {"share.inttime", "share.sys_gain"}, false},
    {"exposure.stops", {"share.inttime", "share.sys_gain"}, true},
};

// One number a snapshot.
struct Quantity {
    std::string name; // the path of a field, with the indexes of one of its values, or a computed
                      // quantity's name
    const Computed *computed = nullptr;

    // Its number in a snapshot. NaN where there is none: a factor, the field or the value is
    // missing or no number, or a product has no logarithm.
    double in(const Snapshot &snapshot) const;
};

// Appends the quantities that a name stands for in a snapshot: the path of a field, or of one of
// its values, a pattern of fields, a computed quantity. An array stands for each of its values.
// Returns whether there is any; otherwise `error` says what is near.
bool add_quantities(const Snapshot &snapshot, const std::string &name,
                    std::vector<Quantity> &quantities, std::string &error);

// The number nearest to a value that is one; NaN for any other value.
double number_of(const Value &value);

} // namespace vordascope
