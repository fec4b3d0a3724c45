// Finding fields in a snapshot, and writing it again.
#include "snapshot.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <system_error>

namespace vordascope
{

namespace
{

// Takes "[12]" off the beginning of a text.
bool take_index(std::string_view &text, uint32_t &index)
{
    if (!text.starts_with('['))
        return false;
    const char *const end = text.data() + text.size();
    const auto [after, error] = std::from_chars(text.data() + 1, end, index);
    if (error != std::errc() || after == end || *after != ']')
        return false;
    text.remove_prefix(static_cast<size_t>(after + 1 - text.data()));
    return true;
}

// What the indexes behind a field's key select.
Place select(const Field &field, std::string_view indexes)
{
    Place place = {&field, 0, field.count};
    uint32_t index;
    if (indexes.empty())
        return place;
    if (field.shape == Shape::scalar || !take_index(indexes, index))
        return {};
    if (field.shape == Shape::rows) {
        if (index >= (field.count + field.columns - 1) / field.columns)
            return {};
        place.first = index * field.columns;
        place.count = std::min(field.columns, field.count - place.first);
        if (indexes.empty())
            return place;
        if (!take_index(indexes, index))
            return {};
    }
    if (!indexes.empty() || index >= place.count)
        return {};
    return {&field, place.first + index, 1};
}

// Looks below one node for a key and indexes.
Place find_in(const Snapshot &snapshot, const Node &node, std::string_view rest)
{
    for (const Member &member : node.members) {
        if (member.is_node || !rest.starts_with(snapshot.fields[member.index].key))
            continue;
        const Field &field = snapshot.fields[member.index];
        const Place place = select(field, rest.substr(field.key.size()));
        if (place.field != nullptr)
            return place;
    }
    return {};
}

} // namespace

std::string Snapshot::path(const Field &field) const
{
    const std::string &place = node_of(field).path;
    std::string result;
    result.reserve(place.size() + 1 + field.key.size());
    result += place;
    result += '.';
    result += field.key;
    return result;
}

Place find(const Snapshot &snapshot, std::string_view path)
{
    for (NodeIndex i = 1; i < snapshot.node_count(); i++) {
        const Node &node = snapshot.node(i);
        const size_t size = node.path.size();
        if (path.size() <= size || path[size] != '.' || !path.starts_with(node.path))
            continue;
        const Place place = find_in(snapshot, node, path.substr(size + 1));
        if (place.field != nullptr)
            return place;
    }
    return {};
}

void write(const Snapshot &snapshot, std::string &out)
{
    const char *p = snapshot.text.data();
    for (const Value &value : snapshot.values) {
        out.append(p, value.begin);
        if (value.kind == Kind::integer) {
            // Sign and magnitude are what the reader has understood.
            char digits[20];
            const auto end = std::to_chars(digits, std::end(digits), value.magnitude).ptr;
            if (value.negative())
                out += '-';
            out.append(digits, end);
        } else {
            out += value.text();
        }
        p = value.begin + value.size;
    }
    out.append(p, snapshot.text.data() + snapshot.text.size());
}

} // namespace vordascope
