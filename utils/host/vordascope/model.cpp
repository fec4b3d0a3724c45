// Collects snapshots into the model of the page.
#include "model.h"

#include "json.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace vordascope
{

namespace
{

const char *kind_of(const Snapshot &snapshot, const Field &field)
{
    const Value *begin = snapshot.begin(field);
    const Value *end = begin + field.count;
    if (std::all_of(begin, end, [](const Value &value) { return value.number(); }))
        return "number";
    if (std::all_of(begin, end, [](const Value &value) { return value.kind == Kind::boolean; }))
        return "bool";
    return "text";
}

// From the first to the last byte of a field's values.
std::string_view text_of(const Snapshot &snapshot, const Field &field)
{
    const Value &first = *snapshot.begin(field);
    const Value &last = snapshot.begin(field)[field.count - 1];
    return {first.begin, static_cast<size_t>(last.begin - first.begin) + last.size};
}

// Seconds, of the text of a finite number.
double seconds(std::string_view text)
{
    double value = 0;
    double unit = 0;
    for (const char c : text) {
        if (is(c, DIGIT)) {
            value = value * 10 + (c - '0');
            unit *= 10;
        } else if (c == '.') {
            unit = 1;
        }
    }
    if (unit > 0)
        value /= unit;
    return text.starts_with('-') ? -value : value;
}

// Which of `all` snapshots are shown: `most` of them, evenly spread, the first and the last too.
std::vector<uint32_t> spread(size_t all, size_t most)
{
    const size_t count = std::min(all, most);
    std::vector<uint32_t> chosen(count);
    for (size_t i = 0; i < count; i++)
        chosen[i] = static_cast<uint32_t>(count == 1 ? 0 : i * (all - 1) / (count - 1));
    return chosen;
}

// A list of `count` elements, each of which `append` writes by its index.
template <typename Append>
void append_list(std::string &out, size_t count, Append append)
{
    out += '[';
    for (size_t i = 0; i < count; i++) {
        if (i != 0)
            out += ',';
        append(i);
    }
    out += ']';
}

} // namespace

void Model::begin_file(std::string_view name)
{
    files_.push_back({std::string(name), 0});
}

void Model::note(std::string_view text)
{
    notes_.push_back({static_cast<uint32_t>(files_.size() - 1), std::string(text)});
}

Model::Group &Model::group_of(const Snapshot &snapshot)
{
    const uint64_t key = uint64_t{snapshot.dev_idx} << 32 | snapshot.path_idx;
    const auto [found, is_new] = group_of_.emplace(key, groups_.size());
    if (is_new)
        groups_.push_back({snapshot.dev_idx, snapshot.path_idx, {}, {}, {}});
    return groups_[found->second];
}

Model::Column &Model::column_of(Group &group, const Snapshot &snapshot, const Field &field,
                                const std::string &node, size_t expected)
{
    // Fields come in the same order in nearly every snapshot.
    if (expected < group.columns.size()) {
        Column &column = group.columns[expected];
        if (column.key == field.key && column.node == node)
            return column;
    }
    const auto [found, is_new] =
        group.column_of.emplace(node + '\n' + std::string(field.key), group.columns.size());
    if (is_new) {
        group.columns.push_back({.node = node,
                                 .item = snapshot.item(field),
                                 .block = snapshot.block(field),
                                 .key = std::string(field.key),
                                 .note = std::string(field.note),
                                 .kind = kind_of(snapshot, field),
                                 .note_stays = true,
                                 .text = {},
                                 .count = 0,
                                 .columns = 0,
                                 .shape = field.shape,
                                 .until = 0,
                                 .changes = {}});
    }
    return group.columns[found->second];
}

void Model::add(const Snapshot &snapshot)
{
    const auto file = static_cast<uint32_t>(files_.size() - 1);
    unread_count_ += snapshot.unread.size();
    for (const Unread &unread : snapshot.unread) {
        if (unread_.size() == UNREAD_SHOWN)
            break;
        std::string text(unread.text.substr(0, UNREAD_BYTES));
        if (text.size() < unread.text.size())
            text += "...";
        unread_.push_back({file, unread.line, std::move(text), unread.why});
    }
    if (!snapshot.indexed)
        return;

    Group &group = group_of(snapshot);
    const auto index = static_cast<uint32_t>(group.snapshots.size());
    group.snapshots.push_back({file, snapshot.cut, snapshot.number,
                               std::string(snapshot.timed ? snapshot.time.text() : "")});
    files_.back().snapshots++;
    snapshots_++;

    std::vector<std::string> nodes(snapshot.node_count());
    for (NodeIndex i = 1; i < nodes.size(); i++)
        nodes[i] = snapshot.path(i, '\n');
    size_t expected = 0;
    for (const Field &field : snapshot.fields) {
        Column &column = column_of(group, snapshot, field, nodes[field.node], expected);
        expected = static_cast<size_t>(&column - group.columns.data()) + 1;
        column.note_stays = column.note_stays && column.note == field.note;
        if (column.until < index)
            column.changes.push_back({column.until, "null"});

        const std::string_view text = text_of(snapshot, field);
        const bool alike = column.until == index && index != 0 && column.shape == field.shape &&
                           column.count == field.count && column.columns == field.columns &&
                           column.text == text;
        column.until = index + 1;
        if (alike)
            continue;

        std::string json;
        put_json(snapshot, field, Numbers::javascript, json);
        if (column.changes.empty() || column.changes.back().json != json)
            column.changes.push_back({index, std::move(json)});
        column.text = text;
        column.shape = field.shape;
        column.count = field.count;
        column.columns = field.columns;
        if (std::strcmp(column.kind, kind_of(snapshot, field)) != 0)
            column.kind = "text";
    }
}

void Model::append_group(std::string &out, const Group &group, size_t most)
{
    const std::vector<Origin> &all = group.snapshots;
    const std::vector<uint32_t> shown = spread(all.size(), most);
    const auto append_index = [&](std::string_view name, uint32_t value) {
        ((out += '"') += name) += "\":";
        put_json(value, out);
        out += ',';
    };

    out += '{';
    append_index("dev_idx", group.dev_idx);
    append_index("path_idx", group.path_idx);
    append_index("read", static_cast<uint32_t>(all.size()));

    out += "\"file\":";
    append_list(out, shown.size(), [&](size_t i) { put_json(all[shown[i]].file, out); });
    out += ",\"number\":";
    append_list(out, shown.size(), [&](size_t i) { put_json(all[shown[i]].number, out); });

    std::vector<size_t> cut;
    for (size_t i = 0; i < shown.size(); i++) {
        if (all[shown[i]].cut)
            cut.push_back(i);
    }
    out += ",\"cut\":";
    append_list(out, cut.size(), [&](size_t i) { put_json(cut[i], out); });

    const bool timed = std::all_of(all.begin(), all.end(),
                                   [](const Origin &origin) { return !origin.time.empty(); }) &&
                       std::is_sorted(all.begin(), all.end(), [](const Origin &a, const Origin &b) {
                           return seconds(a.time) < seconds(b.time);
                       });
    out += ",\"time\":";
    if (timed)
        append_list(out, shown.size(), [&](size_t i) { out += all[shown[i]].time; });
    else
        out += "null";

    out += ",\"fields\":[";
    bool first = true;
    for (const Column &column : group.columns) {
        // The values of the snapshots shown; one that stays the same is one value.
        std::vector<std::string_view> values(shown.size(), "null");
        size_t change = 0;
        for (size_t i = 0; i < shown.size() && shown[i] < column.until; i++) {
            while (change + 1 < column.changes.size() &&
                   column.changes[change + 1].from <= shown[i])
                change++;
            values[i] = column.changes[change].json;
        }
        const bool stays = std::all_of(values.begin(), values.end(),
                                       [&](std::string_view v) { return v == values.front(); });

        out += first ? "{\"item\":" : ",\n{\"item\":";
        first = false;
        put_json_string(column.item, out);
        out += ",\"block\":";
        put_json_string(column.block, out);
        out += ",\"key\":";
        put_json_string(column.key, out);
        ((out += ",\"kind\":\"") += column.kind) += '"';
        if (column.note_stays && !column.note.empty()) {
            out += ",\"note\":";
            put_json_string(column.note, out);
        }
        out += ",\"v\":";
        append_list(out, stays ? 1 : values.size(), [&](size_t i) { out += values[i]; });
        out += '}';
    }
    out += "]}";
}

std::string Model::json(size_t most) const
{
    std::string out = "{\"vorda_page\":1,\"files\":";
    append_list(out, files_.size(), [&](size_t i) { put_json_string(files_[i].name, out); });

    out += ",\n\"unread_count\":";
    put_json(unread_count_, out);
    out += ",\"unread\":";
    append_list(out, unread_.size(), [&](size_t i) {
        out += "{\"file\":";
        put_json(unread_[i].file, out);
        out += ",\"line\":";
        put_json(unread_[i].line, out);
        out += ",\"text\":";
        put_json_string(unread_[i].text, out);
        out += ",\"why\":";
        put_json_string(unread_[i].why, out);
        out += '}';
    });

    std::vector<Note> notes = notes_;
    for (uint32_t file = 0; file < files_.size(); file++) {
        if (files_[file].snapshots == 0 &&
            std::none_of(notes_.begin(), notes_.end(), [&](auto &n) { return n.file == file; }))
            notes.push_back({file, "There is no snapshot of vorda in it."});
    }
    out += ",\n\"notes\":";
    append_list(out, notes.size(), [&](size_t i) {
        out += "{\"file\":";
        put_json(notes[i].file, out);
        out += ",\"text\":";
        put_json_string(notes[i].text, out);
        out += '}';
    });

    out += ",\n\"groups\":";
    append_list(out, groups_.size(), [&](size_t i) {
        const size_t all = groups_[i].snapshots.size();
        append_group(out, groups_[i],
                     snapshots_ <= most ? all : std::max<size_t>(all * most / snapshots_, 1));
    });
    out += "}\n";
    return out;
}

} // namespace vordascope
