// Fields as metrics.
#include "metrics.h"

#include "select.h"

#include <algorithm>
#include <cstdio>
#include <set>

namespace vordascope
{

namespace
{

// Appends a text as the value of a label. Bytes above 0x7F become the code points of the same value,
// so that any bytes are UTF-8.
void put_label_value(std::string_view text, std::string &out)
{
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\\' || c == '"')
            out += '\\';
        if (c == '\n') {
            out += "\\n";
        } else if (byte > 0x7F) {
            out += static_cast<char>(0xC0 | byte >> 6);
            out += static_cast<char>(0x80 | (byte & 0x3F));
        } else {
            out += c;
        }
    }
}

void put_label(std::string_view name, std::string_view value, std::string &out)
{
    if (!out.empty())
        out += ',';
    out.append(name).append("=\"");
    put_label_value(value, out);
    out += '"';
}

// A name that Prometheus takes, and that no other label has.
std::string label_name(std::string_view key, std::set<std::string> &taken)
{
    std::string name(key);
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '.' || c == '-'; }, '_');
    if (name.starts_with("__")) // reserved there
        name.insert(0, "label");
    while (!taken.insert(name).second)
        name += '_';
    return name;
}

std::string labels_of(const Snapshot &snapshot, std::string_view file)
{
    std::string labels;
    std::set<std::string> taken = {"dev_idx", "path_idx", "file", "field"};
    put_label("dev_idx", std::to_string(snapshot.dev_idx), labels);
    put_label("path_idx", std::to_string(snapshot.path_idx), labels);
    if (!file.empty())
        put_label("file", file, labels);
    for (const Label &label : snapshot.labels)
        put_label(label_name(label.key, taken), label.value, labels);
    return labels;
}

// A number as it is to be written; empty for what is none.
std::string written_of(const Value &value)
{
    const std::string_view text = value.text();
    switch (value.kind) {
    case Kind::boolean:
        return text == "true" ? "1" : "0";
    case Kind::not_finite:
        return text.ends_with("nan") ? "NaN" : value.negative() ? "-Inf" : "+Inf";
    case Kind::integer:
    case Kind::decimal:
        return std::string(text);
    default:
        return "";
    }
}

void put_head(const char *name, const char *help, std::string &out)
{
    out.append("# TYPE ").append(name).append(" gauge\n# HELP ").append(name).append(" ");
    out.append(help).append("\n");
}

void put_sample(const char *name, const std::string &labels, std::string_view value,
                std::string &out)
{
    out.append(name).append("{").append(labels).append("} ").append(value).append("\n");
}

} // namespace

Metrics::Metrics(std::vector<std::string> patterns, size_t most)
    : patterns_(std::move(patterns)), most_(most)
{
    for (std::string &pattern : patterns_)
        pattern = as_path(pattern);
    if (patterns_.empty())
        patterns_ = {"share", "stat"};
}

bool Metrics::selected(const Snapshot &snapshot, const Field &field) const
{
    return std::any_of(patterns_.begin(), patterns_.end(), [&](const std::string &pattern) {
        return selects(pattern, snapshot, field);
    });
}

void Metrics::add(const Snapshot &snapshot, std::string_view file, double when)
{
    std::string key(file);
    key += '\0' + std::to_string(snapshot.dev_idx) + ',' + std::to_string(snapshot.path_idx);
    Path &path = paths_[key];
    path.labels = labels_of(snapshot, file);
    path.time = snapshot.timed ? snapshot.time.text() : "";
    path.frame = snapshot.frame ? std::to_string(*snapshot.frame) : "";
    path.when = when;
    path.fields.clear();
    size_t left_out = 0;
    std::set<std::string> taken;
    for (const Field &field : snapshot.fields) {
        std::string number =
            field.shape == Shape::scalar ? written_of(*snapshot.begin(field)) : std::string();
        if (number.empty() || !selected(snapshot, field))
            continue;
        std::string name = snapshot.path(field);
        if (path.fields.size() == most_)
            left_out++;
        else if (taken.insert(name).second) // two fields may have one path
            path.fields.emplace_back(std::move(name), std::move(number));
    }
    left_out_ = std::max(left_out_, left_out);
}

void Metrics::put(std::string &out) const
{
    put_head("vorda_field", "What vorda prints of a field.", out);
    for (const auto &[key, path] : paths_) {
        for (const auto &[field, number] : path.fields) {
            std::string labels = path.labels;
            put_label("field", field, labels);
            put_sample("vorda_field", labels, number, out);
        }
    }
    put_head("vorda_snapshot_timestamp_seconds",
             "When the newest snapshot was written: its age is the time without that.", out);
    for (const auto &[key, path] : paths_) {
        char when[32];
        snprintf(when, sizeof(when), "%.3f", path.when);
        put_sample("vorda_snapshot_timestamp_seconds", path.labels, when, out);
    }
    put_head("vorda_snapshot_time_seconds", "When it was taken, on the camera's own clock.", out);
    for (const auto &[key, path] : paths_)
        if (!path.time.empty())
            put_sample("vorda_snapshot_time_seconds", path.labels, path.time, out);
    put_head("vorda_snapshot_frame", "The camera's frame counter then.", out);
    for (const auto &[key, path] : paths_)
        if (!path.frame.empty())
            put_sample("vorda_snapshot_frame", path.labels, path.frame, out);
    out += "# EOF\n";
}

} // namespace vordascope
