// Compares two snapshots field by field.
#pragma once

#include "snapshot.h"

namespace vordascope
{

// What is compared, and what counts as the same.
struct Rules {
    std::vector<std::string> only;   // patterns of the fields to compare; none: all fields
    std::vector<std::string> ignore; // patterns of fields that are left out
    double absolute = 0;             // numbers that are no farther apart are the same
    double relative = 0;             // so are those apart by this part of the larger one
};

// How many fields the rules select, and how many of these differ.
struct Comparison {
    size_t compared = 0;
    size_t different = 0; // in both, with other values
    size_t only_a = 0;
    size_t only_b = 0;

    bool same() const { return different == 0 && only_a == 0 && only_b == 0; }
};

// Compares the fields of two snapshots by their paths; their indexes and times are not compared.
// Appends what differs, an item a paragraph, and calls the snapshots `name_a` and `name_b` there:
//
//     share
//       inttime      8000 -> 40000  (+32000, +400 %)
//       colormatrix  3 of 9 values, most [0][1]: -552 -> -600  (-48, -8.7 %)
//       old_key      only in a.txt: 7
//     cfg.hdr: only in b.txt (24 fields)
Comparison compare(const Snapshot &a, const Snapshot &b, const Rules &rules,
                   std::string_view name_a, std::string_view name_b, std::string &out);

} // namespace vordascope
