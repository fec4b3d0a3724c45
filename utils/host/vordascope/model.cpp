// Collects snapshots into the model of the page.
#include "model.h"

#include "json.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>

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

// The next multiple of `step`.
uint32_t round_up(uint32_t at, uint32_t step)
{
    return (at + step - 1) / step * step;
}

// Drops what stands before snapshot `first`; what holds there stays, from there on.
template <typename Change>
void forget_before(std::vector<Change> &changes, uint32_t first)
{
    auto behind = std::find_if(changes.begin(), changes.end(),
                               [first](const Change &change) { return change.at > first; });
    if (behind == changes.begin())
        return;
    (--behind)->at = first;
    changes.erase(changes.begin(), behind);
}

void append_member(std::string &out, std::string_view name, uint64_t value)
{
    ((out += '"') += name) += "\":";
    put_json(value, out);
    out += ',';
}

std::string counted(uint64_t count, const char *what)
{
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

// The paths of a snapshot's nodes, with line ends between the names, so that each is that of one node
// alone; empty where it is longer than NAME_BYTES.
std::vector<std::string> paths_of_nodes(const Snapshot &snapshot)
{
    std::vector<std::string> paths(snapshot.node_count());
    for (NodeIndex i = 1; i < paths.size(); i++) {
        const Node &node = snapshot.node(i);
        const std::string &above = paths[node.parent];
        if (node.parent == 0)
            paths[i] = node.name;
        else if (!above.empty())
            paths[i] = above + '\n' + node.name;
        if (paths[i].size() > NAME_BYTES)
            paths[i] = {};
    }
    return paths;
}

} // namespace

void Model::begin_file(std::string_view name)
{
    files_.push_back({std::string(name), 0});
    open_runs_.clear();
}

void Model::note(std::string_view text)
{
    notes_.push_back({static_cast<uint32_t>(files_.size() - 1), std::string(text)});
}

void Model::note_undone(const std::vector<std::string> &notices)
{
    for (const std::string &notice : notices)
        note("Of this file: " + notice + ".");
}

void Model::add_unread(const Snapshot &snapshot)
{
    const auto file = static_cast<uint32_t>(files_.size() - 1);
    unread_count_ += snapshot.unread_count;
    for (const Unread &unread : snapshot.unread) {
        if (unread_.size() == UNREAD_SHOWN)
            break;
        std::string text;
        if (unread.field != NONE)
            text = snapshot.path(snapshot.fields[unread.field]) + ": ";
        text += unread.text.substr(0, UNREAD_BYTES);
        if (unread.text.size() > UNREAD_BYTES)
            text += "...";
        unread_.push_back({file, unread.line, std::move(text), unread.why});
    }
}

// The run that a snapshot belongs to, a new one where it has to begin.
std::optional<uint32_t> Model::run_of(const Snapshot &snapshot)
{
    const uint64_t key = uint64_t{snapshot.dev_idx} << 32 | snapshot.path_idx;
    const auto open = open_runs_.find(key);
    if (open != open_runs_.end()) {
        const Run &run = runs_[open->second];
        const bool time_goes_back = snapshot.timed && seconds(snapshot.time.text()) < run.last_time;
        if (!time_goes_back && snapshot.frame.value_or(run.last_frame) >= run.last_frame)
            return open->second;
    }
    if (runs_.size() == RUNS_MOST) {
        snapshots_left_out_++;
        return {};
    }
    const auto index = static_cast<uint32_t>(runs_.size());
    Run run;
    run.file = static_cast<uint32_t>(files_.size() - 1);
    run.dev_idx = snapshot.dev_idx;
    run.path_idx = snapshot.path_idx;
    runs_.push_back(std::move(run));
    open_runs_[key] = index;
    return index;
}

// Returns whether they are others than before.
bool Model::add_labels(Run &run, const Snapshot &snapshot)
{
    if (run.labels == snapshot.labels)
        return false;
    run.labels = snapshot.labels;
    return true;
}

// What a snapshot says of itself.
void Model::add_origin(Run &run, const Snapshot &snapshot)
{
    const uint32_t at = run.end++;
    run.number.put(at, snapshot.number);
    run.timed = run.timed && snapshot.timed;
    if (snapshot.timed) {
        run.time.put(at, snapshot.time);
        run.last_time = seconds(snapshot.time.text());
    }
    run.framed = run.framed && snapshot.frame.has_value();
    if (snapshot.frame) {
        run.frame.put(at, *snapshot.frame);
        run.last_frame = *snapshot.frame;
    }
    if (snapshot.missed > 0)
        run.missed.emplace_back(at, snapshot.missed);
    for (const std::string_view mark : snapshot.marks)
        run.marks.emplace_back(at, mark);
    if (snapshot.cut)
        run.cut.push_back(at);
    files_[run.file].snapshots++;
}

// The number of a field's name; `node` is the path of what it belongs to.
std::optional<uint32_t> Model::name_of(const Snapshot &snapshot, const Field &field,
                                       const std::string &node)
{
    std::string path = node + '\n' + std::string(field.key);
    const auto known = name_of_.find(path);
    if (known != name_of_.end())
        return known->second;
    if (names_.size() == NAMES_MOST)
        return {};
    const auto index = static_cast<uint32_t>(names_.size());
    names_.push_back({node, snapshot.item(field), snapshot.block(field), std::string(field.key)});
    name_of_.emplace(std::move(path), index);
    return index;
}

Model::Column *Model::column_of(Run &run, const Snapshot &snapshot, const Field &field,
                                const std::string &node, size_t expected)
{
    // Fields come in the same order in nearly every snapshot.
    if (expected < run.columns.size()) {
        Column &column = run.columns[expected];
        const Name &name = names_[column.name];
        if (name.key == field.key && name.node == node)
            return &column;
    }
    const std::optional<uint32_t> name = name_of(snapshot, field, node);
    if (!name)
        return nullptr;
    const auto known = run.column_of.find(*name);
    if (known != run.column_of.end())
        return &run.columns[known->second];
    if (fields_ == FIELDS_MOST)
        return nullptr;
    fields_++;
    run.column_of.emplace(*name, static_cast<uint32_t>(run.columns.size()));
    Column column = {};
    column.name = *name;
    column.kind = kind_of(snapshot, field);
    column.note = field.note;
    column.note_stays = true;
    column.step = 1;
    run.columns.push_back(std::move(column));
    return &run.columns.back();
}

// Keeps the newest picture where it is due.
void Model::sample(Column &column, uint32_t at)
{
    if (!column.newest_due || at % column.step != 0)
        return;
    column.pictures.push_back({at, std::move(column.newest)});
    column.newest_due = false;
}

void Model::add_picture(Column &column, uint32_t at, std::string json) const
{
    if (!column.newest_due && !column.pictures.empty() && column.pictures.back().json == json)
        return;
    column.newest = std::move(json);
    column.newest_due = true;
    sample(column, at);
    while (column.pictures.size() > pictures_) {
        // Steps are powers of two, so that a picture of one field is there for all that have the
        // same or a smaller step.
        column.step *= 2;
        std::vector<Picture> all = std::move(column.pictures);
        column.pictures.clear();
        for (Picture &picture : all) {
            const uint32_t place = round_up(picture.at, column.step);
            if (place > at) {
                column.newest = std::move(picture.json);
                column.newest_due = true;
            } else if (!column.pictures.empty() && column.pictures.back().at == place) {
                column.pictures.back().json = std::move(picture.json);
            } else {
                column.pictures.push_back({place, std::move(picture.json)});
            }
        }
    }
}

// Takes in the value that a field has in snapshot `at`. Returns whether it is another one.
bool Model::add_field(Column &column, uint32_t at, const Snapshot &snapshot, const Field &field)
{
    constexpr Form FORMS[] = {Form::scalar, Form::list, Form::rows};
    const Form form = field.count > SHORT ? Form::is_long : FORMS[static_cast<int>(field.shape)];
    const FormChange change = {at, field.count, field.columns, form};
    const bool came = column.forms.empty() || column.until < at;
    if (came && !column.forms.empty())
        column.forms.push_back({column.until, 0, 0, Form::absent});
    column.until = at + 1;
    column.note_stays = column.note_stays && column.note == field.note;

    const std::string_view text = text_of(snapshot, field);
    const bool other_form = came || !(column.forms.back() == change);
    if (!other_form && column.text == text) {
        sample(column, at);
        return false;
    }
    if (other_form)
        column.forms.push_back(change);
    column.text = text;
    if (std::strcmp(column.kind, kind_of(snapshot, field)) != 0)
        column.kind = "text";

    if (form == Form::is_long) {
        std::string json;
        put_json(snapshot, field, NumberForm::javascript, json);
        add_picture(column, at, std::move(json));
        return true;
    }
    bool changed = other_form;
    if (column.parts.size() < field.count)
        column.parts.resize(field.count);
    const Value *const values = snapshot.begin(field);
    for (uint32_t i = 0; i < field.count; i++)
        changed = column.parts[i].put(at, values[i]) || changed;
    return changed;
}

std::optional<Model::Place> Model::add(const Snapshot &snapshot, std::string *news)
{
    add_unread(snapshot);
    if (!snapshot.indexed)
        return {};
    if (!snapshot.named)
        note("It names no path, as an attribute text does; it shows as path 0 of device 0.");
    const size_t names_before = names_.size();
    const std::optional<uint32_t> index = run_of(snapshot);
    if (!index)
        return {};
    Run &run = runs_[*index];
    newest_run_ = *index;
    const uint32_t at = run.end;
    const bool labelled = add_labels(run, snapshot);
    add_origin(run, snapshot);

    const std::vector<std::string> nodes = paths_of_nodes(snapshot);
    std::string changed;
    size_t expected = 0;
    for (const Field &field : snapshot.fields) {
        // It is not there in full, so it is not there; that is told by its line.
        if (snapshot.damaged(field))
            continue;
        if (nodes[field.node].empty() || field.key.size() > NAME_BYTES) {
            long_names_++;
            continue;
        }
        Column *const column = column_of(run, snapshot, field, nodes[field.node], expected);
        if (column == nullptr) {
            fields_left_out_++;
            continue;
        }
        expected = static_cast<size_t>(column - run.columns.data()) + 1;
        if (!add_field(*column, at, snapshot, field) || news == nullptr)
            continue;
        changed += changed.empty() ? "[" : ",[";
        put_json(column->name, changed);
        changed += ',';
        put_json(snapshot, field, NumberForm::javascript, changed);
        ((changed += ",\"") += column->kind) += "\"]";
    }
    if (news != nullptr)
        append_news(*news, *index, snapshot, names_before, labelled, changed);
    return Place{*index, at};
}

// What add() has to tell of the newest snapshot of a run.
void Model::append_news(std::string &out, uint32_t index, const Snapshot &snapshot,
                        size_t names_before, bool labelled, std::string_view changed) const
{
    const Run &run = runs_[index];
    const uint32_t at = run.end - 1;
    out += '{';
    append_member(out, "run", index);
    append_member(out, "snapshot", at - run.first);
    if (at == 0) {
        out += "\"begin\":{\"file\":";
        put_json_string(files_[run.file].name, out);
        out += ',';
        append_member(out, "dev_idx", run.dev_idx);
        append_member(out, "path_idx", run.path_idx);
        out.back() = '}';
        out += ',';
    }
    append_member(out, "number", snapshot.number);
    out += "\"time\":";
    if (snapshot.timed)
        put_json_string(snapshot.time.text(), out);
    else
        out += "null";
    out += ",\"frame\":";
    if (snapshot.frame)
        put_json(*snapshot.frame, out);
    else
        out += "null";
    out += ',';
    append_member(out, "missed", snapshot.missed);
    out += "\"marks\":";
    append_list(out, snapshot.marks.size(),
                [&](size_t i) { put_json_string(snapshot.marks[i], out); });
    if (labelled) {
        out += ",\"labels\":";
        append_labels(out, run);
    }
    out += snapshot.cut ? ",\"cut\":true" : ",\"cut\":false";
    out += ",\"names\":";
    append_list(out, names_.size() - names_before,
                [&](size_t i) { append_name(out, names_before + i); });
    ((out += ",\"fields\":[") += changed) += "],\"gone\":[";
    bool first = true;
    for (const Column &column : run.columns) {
        if (column.until != at || column.forms.empty())
            continue;
        out += first ? "" : ",";
        first = false;
        put_json(column.name, out);
    }
    out += "]}";
}

std::optional<Model::Place> Model::mark(std::string_view text)
{
    if (runs_.empty() || runs_[newest_run_].first == runs_[newest_run_].end)
        return {};
    Run &run = runs_[newest_run_];
    run.marks.emplace_back(run.end - 1, text);
    return Place{newest_run_, run.end - 1 - run.first};
}

void Model::forget(Place before)
{
    Run &run = runs_[before.run];
    run.first = std::min(before.snapshot, run.end);
    const uint32_t first = run.first;
    if (first == run.end) {
        fields_ -= run.columns.size();
        run.columns.clear();
        run.column_of.clear();
    }
    for (Course *course : {&run.number, &run.time, &run.frame})
        course->forget(first);
    std::erase_if(run.missed, [first](const auto &entry) { return entry.first < first; });
    std::erase_if(run.marks, [first](const auto &entry) { return entry.first < first; });
    std::erase_if(run.cut, [first](uint32_t at) { return at < first; });
    for (Column &column : run.columns) {
        forget_before(column.forms, first);
        forget_before(column.pictures, first);
        for (Course &part : column.parts)
            part.forget(first);
    }
}

std::vector<Model::Note> Model::limits_reached() const
{
    std::vector<Note> notes;
    for (const Run &run : runs_) {
        size_t thinned = 0;
        uint32_t step = 1;
        for (const Column &column : run.columns) {
            thinned += column.step > 1;
            step = std::max(step, column.step);
        }
        if (thinned > 0)
            notes.push_back({run.file, "One of " + std::to_string(step) + " snapshots has the " +
                                           counted(thinned, "field") + " of more than " +
                                           std::to_string(SHORT) +
                                           " values that change; all others are complete."});
    }
    if (long_names_ > 0)
        notes.push_back({{},
                         counted(long_names_, "value") +
                             " left out: there are names of more than " +
                             std::to_string(NAME_BYTES) + " bytes."});
    const bool names = names_.size() == NAMES_MOST;
    if (fields_left_out_ > 0)
        notes.push_back({{},
                         counted(fields_left_out_, "value") + " left out: there are more than " +
                             std::to_string(names ? NAMES_MOST : FIELDS_MOST) +
                             (names ? " names of fields." : " fields.")});
    if (snapshots_left_out_ > 0)
        notes.push_back({{},
                         counted(snapshots_left_out_, "snapshot") +
                             " left out: there are more than " + std::to_string(RUNS_MOST) +
                             " runs."});
    return notes;
}

std::vector<std::string> Model::left_out() const
{
    std::vector<std::string> texts;
    for (const Note &note : limits_reached())
        texts.push_back((note.file ? files_[*note.file].name + ": " : "") + note.text);
    return texts;
}

void Model::append_name(std::string &out, size_t name) const
{
    const Name &names = names_[name];
    out += '[';
    put_json_string(names.item, out);
    out += ',';
    put_json_string(names.block, out);
    out += ',';
    put_json_string(names.key, out);
    out += ']';
}

void Model::append_pictures(std::string &out, const Run &run, const Column &column)
{
    append_member(out, "step", column.step);
    out += "\"at\":[";
    uint32_t last = run.first;
    for (const Picture &picture : column.pictures) {
        out += last == run.first && &picture == column.pictures.data() ? "" : ",";
        put_json(picture.at - last, out);
        last = picture.at;
    }
    if (column.newest_due) {
        out += column.pictures.empty() ? "" : ",";
        put_json(column.until - 1 - last, out);
    }
    out += "],\"v\":[";
    for (const Picture &picture : column.pictures) {
        out += &picture == column.pictures.data() ? "" : ",";
        out += picture.json;
    }
    if (column.newest_due)
        (out += column.pictures.empty() ? "" : ",") += column.newest;
    out += ']';
}

// The value of a field that is the same in every snapshot.
void Model::append_value_of(std::string &out, const Column &column)
{
    const FormChange &form = column.forms.front();
    if (form.form == Form::is_long) {
        out += column.newest_due ? column.newest : column.pictures.front().json;
        return;
    }
    const auto part = [&](size_t i) { column.parts[i].append_last(out); };
    if (form.form == Form::scalar)
        return part(0);
    if (form.form == Form::list)
        return append_list(out, form.count, part);
    const size_t rows = (form.count + form.columns - 1) / form.columns;
    append_list(out, rows, [&](size_t row) {
        const size_t from = row * form.columns;
        append_list(out, std::min<size_t>(form.columns, form.count - from),
                    [&](size_t i) { part(from + i); });
    });
}

void Model::append_column(std::string &out, const Run &run, const Column &column)
{
    out += '{';
    append_member(out, "name", column.name);
    ((out += "\"kind\":\"") += column.kind) += "\",";
    if (column.note_stays && !column.note.empty()) {
        out += "\"note\":";
        put_json_string(column.note, out);
        out += ',';
    }
    const bool stays = column.forms.size() == 1 && column.forms.front().at <= run.first &&
                       column.until == run.end && column.pictures.size() + column.newest_due <= 1 &&
                       std::all_of(column.parts.begin(), column.parts.end(),
                                   [](const Course &part) { return part.changes() == 1; });
    if (stays) {
        out += "\"value\":";
        append_value_of(out, column);
        out += '}';
        return;
    }
    const auto append_form = [&](size_t i) {
        constexpr const char *WORDS[] = {"null", "\"scalar\"", "\"list\"", "\"rows\"", "\"long\""};
        const bool ends = i == column.forms.size();
        const FormChange &form = column.forms[ends ? 0 : i];
        out += '[';
        put_json((ends ? column.until : form.at) - run.first, out);
        (out += ',') += ends ? "null" : WORDS[static_cast<int>(form.form)];
        if (!ends && (form.form == Form::list || form.form == Form::rows)) {
            out += ',';
            put_json(form.count, out);
        }
        if (!ends && form.form == Form::rows) {
            out += ',';
            put_json(form.columns, out);
        }
        out += ']';
    };
    out += "\"form\":";
    append_list(out, column.forms.size() + (column.until < run.end), append_form);
    if (!column.parts.empty()) {
        out += ",\"parts\":";
        append_list(out, column.parts.size(),
                    [&](size_t i) { column.parts[i].append(out, run.first); });
    }
    if (!column.pictures.empty() || column.newest_due) {
        out += ',';
        append_pictures(out, run, column);
    }
    out += '}';
}

void Model::append_labels(std::string &out, const Run &run)
{
    out += '{';
    for (const Label &label : run.labels) {
        out += &label == run.labels.data() ? "" : ",";
        put_json_string(label.key, out);
        out += ':';
        put_json_string(label.value, out);
    }
    out += '}';
}

void Model::append_origin(std::string &out, const Run &run)
{
    out += "\"number\":";
    run.number.append(out, run.first);
    for (const auto &[name, course, known] : {std::tuple(",\"time\":", &run.time, run.timed),
                                              std::tuple(",\"frame\":", &run.frame, run.framed)}) {
        out += name;
        if (known)
            course->append(out, run.first);
        else
            out += "null";
    }
    out += ",\"missed\":";
    const auto append_by_snapshot = [&](const auto &list, auto put) {
        append_list(out, list.size(), [&](size_t i) {
            out += '[';
            put_json(list[i].first - run.first, out);
            out += ',';
            put(list[i].second, out);
            out += ']';
        });
    };
    append_by_snapshot(run.missed, [](uint64_t number, std::string &to) { put_json(number, to); });
    out += ",\"marks\":";
    append_by_snapshot(run.marks, put_json_string);
    out += ",\"labels\":";
    append_labels(out, run);
    out += ",\"cut\":";
    append_list(out, run.cut.size(), [&](size_t i) { put_json(run.cut[i] - run.first, out); });
}

void Model::append_run(std::string &out, uint32_t index) const
{
    const Run &run = runs_[index];
    out += '{';
    append_member(out, "run", index);
    append_member(out, "file", run.file);
    append_member(out, "dev_idx", run.dev_idx);
    append_member(out, "path_idx", run.path_idx);
    append_member(out, "first", run.first);
    append_member(out, "count", run.end - run.first);
    append_origin(out, run);
    out += ",\n\"fields\":[";
    bool first = true;
    for (const Column &column : run.columns) {
        if (column.until <= run.first)
            continue;
        out += first ? "" : ",\n";
        first = false;
        append_column(out, run, column);
    }
    out += "]}";
}

std::string Model::json() const
{
    std::string out = "{\"vorda_page\":2,\"files\":";
    append_list(out, files_.size(), [&](size_t i) { put_json_string(files_[i].name, out); });

    out += ",\n\"unread_count\":";
    put_json(unread_count_, out);
    out += ",\"unread\":";
    append_list(out, unread_.size(), [&](size_t i) {
        out += '{';
        append_member(out, "file", unread_[i].file);
        append_member(out, "line", unread_[i].line);
        out += "\"text\":";
        put_json_string(unread_[i].text, out);
        out += ",\"why\":";
        put_json_string(unread_[i].why, out);
        out += '}';
    });

    out += ",\n\"notes\":";
    append_notes(out);
    out += ",\n\"names\":";
    append_list(out, names_.size(), [&](size_t i) { append_name(out, i); });
    out += ",\n\"runs\":[";
    bool first = true;
    for (uint32_t i = 0; i < runs_.size(); i++) {
        if (runs_[i].first == runs_[i].end)
            continue;
        out += first ? "" : ",\n";
        first = false;
        append_run(out, i);
    }
    out += "]}\n";
    return out;
}

void Model::append_notes(std::string &out) const
{
    std::vector<Note> notes = notes_;
    for (uint32_t file = 0; file < files_.size(); file++) {
        if (files_[file].snapshots == 0 &&
            std::none_of(notes_.begin(), notes_.end(), [&](auto &n) { return n.file == file; }))
            notes.push_back({file, "There is no snapshot of vorda in it."});
    }
    for (Note &note : limits_reached())
        notes.push_back(std::move(note));
    append_list(out, notes.size(), [&](size_t i) {
        out += "{\"file\":";
        if (notes[i].file)
            put_json(*notes[i].file, out);
        else
            out += "null";
        out += ",\"text\":";
        put_json_string(notes[i].text, out);
        out += '}';
    });
}

} // namespace vordascope
