// Columns, and rows of CSV.
#include "series.h"

#include "csv.h"
#include "select.h"

#include <algorithm>
#include <iterator>

namespace vordascope
{

namespace
{

constexpr std::string_view OWN_NAMES[] = {"time",     "frame",   "missed",   "mark",
                                          "snapshot", "dev_idx", "path_idx", "file"};
constexpr std::string_view LABEL = "label ";

bool is_own_name(std::string_view name)
{
    return name.starts_with(LABEL) ||
           std::find(std::begin(OWN_NAMES), std::end(OWN_NAMES), name) != std::end(OWN_NAMES);
}

void put_own_value(const Snapshot &snapshot, std::string_view file, std::string_view name,
                   std::string &out)
{
    if (name.starts_with(LABEL)) {
        for (const Label &label : snapshot.labels)
            if (label.key == name.substr(LABEL.size()))
                put_text_cell(label.value, out);
    } else if (name == "mark") {
        std::string all;
        for (const std::string_view mark : snapshot.marks)
            all.append(all.empty() ? "" : "; ").append(mark);
        put_text_cell(all, out);
    } else if (name == "file") {
        put_text_cell(file, out);
    } else if (name == "time") {
        out += snapshot.timed ? snapshot.time.text() : "";
    } else if (name == "frame") {
        out += snapshot.frame ? std::to_string(*snapshot.frame) : "";
    } else {
        out += std::to_string(name == "snapshot"  ? snapshot.number
                              : name == "missed"  ? snapshot.missed
                              : name == "dev_idx" ? snapshot.dev_idx
                                                  : snapshot.path_idx);
    }
}

// The value at a place of a field that may have another shape than the column's; nullptr for none.
const Value *value_at(const Snapshot &snapshot, const Field &field, Shape shape, uint32_t row,
                      uint32_t column)
{
    const uint32_t place = field.shape == Shape::rows ? row * field.columns + column : column;
    const bool there = field.shape == shape && column < field.columns && place < field.count;
    return there ? snapshot.begin(field) + place : nullptr;
}

} // namespace

bool Series::begin(const Snapshot &snapshot, const std::vector<std::string> &names,
                   std::string &error)
{
    first_ = snapshot;
    columns_.clear();
    for (const std::string &asked : names) {
        const std::string name = as_path(asked);
        const size_t before = columns_.size();
        if (is_own_name(name))
            columns_.push_back({name, NONE, 0, 0});
        else if (const Place place = find(snapshot, name); place.field != nullptr)
            add(snapshot, place);
        else
            for (const Field &field : snapshot.fields)
                if (selects(name, snapshot, field))
                    add(snapshot, {&field, 0, field.count});
        if (columns_.size() == before) {
            error = "no field " + asked + ". " + suggest(snapshot, name);
            return false;
        }
    }
    return true;
}

void Series::add(const Snapshot &snapshot, const Place &place)
{
    const Field &field = *place.field;
    const std::string path = snapshot.path(field);
    const auto index = static_cast<FieldIndex>(&field - snapshot.fields.data());
    const bool rows = field.shape == Shape::rows;
    for (uint32_t i = place.first; i < place.first + place.count; i++) {
        const uint32_t row = rows ? i / field.columns : 0;
        const uint32_t column = rows ? i % field.columns : i;
        std::string name = path;
        if (rows)
            name += '[' + std::to_string(row) + ']';
        if (field.shape != Shape::scalar)
            name += '[' + std::to_string(column) + ']';
        columns_.push_back({name, index, row, column});
    }
}

bool Series::tells_paths() const
{
    return std::any_of(columns_.begin(), columns_.end(), [](const Column &column) {
        return column.field == NONE && (column.name == "dev_idx" || column.name == "path_idx");
    });
}

void Series::put_header(std::string &out) const
{
    for (const Column &column : columns_) {
        put_cell(column.name, out);
        out += ',';
    }
    out.back() = '\n';
}

void Series::put_row(const Snapshot &snapshot, std::string_view file, std::string &out) const
{
    const size_t begin = out.size();
    // The values of an array are columns side by side.
    FieldIndex last = NONE;
    const Field *field = nullptr;
    for (const Column &column : columns_) {
        if (column.field == NONE) {
            put_own_value(snapshot, file, column.name, out);
        } else {
            const Field &first = first_.fields[column.field];
            if (column.field != last)
                field = snapshot.same_field(first_, first);
            last = column.field;
            const Value *const value = field != nullptr ? value_at(snapshot, *field, first.shape,
                                                                   column.row, column.column)
                                                        : nullptr;
            if (value != nullptr && value->kind != Kind::damaged)
                (value->number() ? put_cell : put_text_cell)(value->text(), out);
        }
        out += ',';
    }
    out.pop_back();
    out += out.size() == begin ? "\"\"\n" : "\n";
}

} // namespace vordascope
