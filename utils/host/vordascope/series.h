// Fields over time, as CSV: a row a snapshot, a column a field.
#pragma once

#include "snapshot.h"

namespace vordascope
{

// A column is one value: an array asked for by its name gives a column for each of its values. The
// first snapshot settles the columns; where a later one lacks a field or has no value at that place
// of an array, the row has an empty cell.
//
// Besides fields, these names can be asked for: time, frame, missed (how many frames before it were
// not seen), mark (what was noted there), snapshot (its number in the input), dev_idx, path_idx,
// file, and "label KEY".
//
// A row that would be an empty line is "", which no reader of CSV drops. A text that a spreadsheet
// would take for a formula has a ' before it.
class Series
{
public:
    // Settles the columns: paths of fields, with an index perhaps, or patterns of fields. Returns
    // whether all of them are there; otherwise `error` says which one is not and what is near.
    bool begin(const Snapshot &snapshot, const std::vector<std::string> &names, std::string &error);

    // Whether rows say which path they are of.
    bool tells_paths() const;

    // Appends a line with the columns' names.
    void put_header(std::string &out) const;

    // Appends the row of a snapshot of that capture: its values as printed.
    void put_row(const Snapshot &snapshot, std::string_view file, std::string &out) const;

private:
    struct Column {
        std::string name; // as it stands in the header
        FieldIndex field; // in the first snapshot, or NONE: what the snapshot says of itself
        uint32_t row;     // place of the value: of Shape::rows
        uint32_t column;  // of the others too
    };

    void add(const Snapshot &snapshot, const Place &place);

    Snapshot first_;
    std::vector<Column> columns_;
};

} // namespace vordascope
