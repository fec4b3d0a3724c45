// Compares two snapshots field by field.
#pragma once

#include "rules.h"

namespace vordascope
{

// How a field differs.
struct Difference {
    std::string name; // "Gwd RGL / r channel"
    std::string what; // "8000 -> 40000  (+32000, +400 %)"
    bool warning = false;
    std::string every = {}; // where asked for, each value of an array that differs, see put_every()
};

// What differs in one item.
struct ItemDifferences {
    std::string item; // "stat.awb"
    std::vector<Difference> differences;
    size_t fields = 0; // that the rules select, in either snapshot
    size_t only_a = 0;
    size_t only_b = 0;

    bool same() const;

    // 'A' or 'B': all of several fields are in that snapshot alone; 0 where they are not.
    char only_side() const;
};

struct Comparison {
    size_t compared = 0;  // fields that the rules select
    size_t different = 0; // of these: in both, with other values
    size_t only_a = 0;
    size_t only_b = 0;
    size_t warned = 0; // differ, but that is no failure
    size_t unread = 0; // lines that are not understood and stand in one snapshot alone
    std::vector<ItemDifferences> items; // of which the rules select something, in order

    bool same() const { return different + only_a + only_b + unread == 0; }
};

// Compares the fields of two snapshots by the names of their nodes and keys; what the snapshots say
// of themselves is not compared. Unless the rules leave fields out by `--only`, so are the lines
// that are not understood. Calls the snapshots `name_a` and `name_b`.
// With `every`, tells of arrays each value that differs.
Comparison compare(const Snapshot &a, const Snapshot &b, Rules &rules, std::string_view name_a,
                   std::string_view name_b, bool every = false);

// Holds one snapshot against the ranges of the rules: fields without one are not `compared`.
Comparison hold(const Snapshot &snapshot, Rules &rules);

// Appends what differs, an item a paragraph:
//
//     share
//       inttime      8000 -> 40000  (+32000, +400 %)
//       colormatrix  3 of 9 values, most [0][1]: -552 -> -600  (-48, -8.7 %)
//         [0][1]  -552 -> -600  (-48, -8.7 %)      of each value, where asked for
//       old_key      only in a.txt: 7
//     cfg.hdr: only in b.txt (24 fields)
void put_report(const Comparison &comparison, std::string_view name_a, std::string_view name_b,
                std::string &out);
void put_report(const ItemDifferences &item, std::string_view name_a, std::string_view name_b,
                std::string &out);

// Appends how two fields with these values differ: "8000 -> 40000  (+32000, +400 %)"; nothing when
// they do not. Returns whether they do.
bool put_difference(const Value *values_a, const Field &field_a, const Value *values_b,
                    const Field &field_b, const Rule &rule, std::string &out);

// Appends a line for each value of two arrays that differs: "[0][1]  -552 -> -600  (-48, -8.7 %)";
// nothing for scalars, and where the shapes are not the same.
void put_every(const Value *values_a, const Field &field_a, const Value *values_b,
               const Field &field_b, const Rule &rule, std::string &out);

} // namespace vordascope
