// Columns, and rows of CSV.
#include "series.h"

#include "select.h"

#include <algorithm>
#include <iterator>

namespace vordascope
{

namespace
{

constexpr std::string_view OWN_NAMES[] = {"time", "snapshot", "dev_idx", "path_idx"};

void put_cell(std::string_view text, std::string &out)
{
    if (text.find_first_of("\",\r\n") == std::string_view::npos) {
        out += text;
        return;
    }
    out += '"';
    for (const char c : text) {
        if (c == '"')
            out += '"';
        out += c;
    }
    out += '"';
}

std::string own_value(const Snapshot &snapshot, std::string_view name)
{
    if (name == "time")
        return snapshot.timed ? std::string(snapshot.time.text()) : "";
    if (name == "snapshot")
        return std::to_string(snapshot.number);
    return std::to_string(name == "dev_idx" ? snapshot.dev_idx : snapshot.path_idx);
}

} // namespace

bool Series::begin(const Snapshot &snapshot, const std::vector<std::string> &names,
                   std::string &error)
{
    first_ = snapshot;
    columns_.clear();
    for (const std::string &name : names) {
        const size_t before = columns_.size();
        if (std::find(std::begin(OWN_NAMES), std::end(OWN_NAMES), name) != std::end(OWN_NAMES))
            columns_.push_back({name, NONE, 0});
        else if (const Place place = find(snapshot, name); place.field != nullptr)
            add(snapshot, place);
        else
            for (const Field &field : snapshot.fields)
                if (selects(name, snapshot, field))
                    add(snapshot, {&field, 0, field.count});
        if (columns_.size() == before) {
            error = "no field " + name + ". " + suggest(snapshot, name);
            return false;
        }
    }
    return true;
}

// Adds a column for each value of a place.
void Series::add(const Snapshot &snapshot, const Place &place)
{
    const Field &field = *place.field;
    const std::string path = snapshot.path(field);
    const auto index = static_cast<FieldIndex>(&field - snapshot.fields.data());
    for (uint32_t i = place.first; i < place.first + place.count; i++) {
        std::string name = path;
        if (field.shape == Shape::rows)
            name += '[' + std::to_string(i / field.columns) + "][" +
                    std::to_string(i % field.columns) + ']';
        else if (field.shape == Shape::list)
            name += '[' + std::to_string(i) + ']';
        columns_.push_back({name, index, i});
    }
}

void Series::put_header(std::string &out) const
{
    for (const Column &column : columns_) {
        put_cell(column.name, out);
        out += ',';
    }
    out.back() = '\n';
}

void Series::put_row(const Snapshot &snapshot, std::string &out) const
{
    // The values of an array are columns side by side.
    FieldIndex last = NONE;
    const Field *field = nullptr;
    for (const Column &column : columns_) {
        if (column.field == NONE) {
            out += own_value(snapshot, column.name);
        } else {
            if (column.field != last)
                field = snapshot.same_field(first_, first_.fields[column.field]);
            last = column.field;
            if (field != nullptr && column.value < field->count)
                put_cell(snapshot.begin(*field)[column.value].text(), out);
        }
        out += ',';
    }
    out.back() = '\n';
}

} // namespace vordascope
