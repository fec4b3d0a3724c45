// Summaries of many comparisons.
#include "gate.h"

#include "shown.h"

#include <algorithm>

namespace vordascope
{

namespace
{

constexpr size_t NAMES_SHOWN = 3;     // captures that a summary names
constexpr size_t FIELDS_KEPT = 10000; // of an item
constexpr size_t TEXT_MOST = 8000;    // of an item's report

// What bounds the form of CI servers: without their texts, so many cases of this size.
constexpr size_t ITEMS_IN_JUNIT = 1000;
constexpr size_t TROUBLES_SHOWN = 100;
constexpr size_t NAME_MOST = 120;
constexpr size_t CASE_MOST = 600;

void put_xml(std::string_view text, std::string &out)
{
    char room[4];
    for (const char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\n':
            out += c;
            break;
        default:
            out += shown(c, room);
        }
    }
}

void put_attribute(const char *name, std::string_view value, std::string &out)
{
    out.append(" ").append(name).append("=\"");
    put_xml(value.substr(0, NAME_MOST), out);
    out += '"';
}

void put_attribute(const char *name, uint64_t value, std::string &out)
{
    put_attribute(name, std::to_string(value), out);
}

// Appends as many lines of a text as there is room for.
void put_bounded(std::string_view text, std::string &out)
{
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        if (out.size() + end > TEXT_MOST) {
            out += out.ends_with("...\n") ? "" : "...\n";
            return;
        }
        out += text.substr(0, end);
        text.remove_prefix(end);
    }
}

} // namespace

void Gate::Captures::add(const std::string &name)
{
    if (count > 0 && name == last) // several lines of one capture
        return;
    last = name;
    if (count++ < NAMES_SHOWN)
        first.push_back(name);
}

void Gate::Captures::put(std::string &out) const
{
    for (size_t i = 0; i < first.size(); i++) {
        out += i == 0 ? "" : ", ";
        put_shown(first[i], out);
    }
    if (count > first.size())
        out += " and " + std::to_string(count - first.size()) + " more";
}

Gate::Item &Gate::item_of(const std::string &name)
{
    return items_.try_emplace(name, Item{items_.size(), 0, {}, {}, {}}).first->second;
}

void Gate::add(const std::string &name, const Comparison &comparison)
{
    captures_++;
    different_ += !comparison.same();
    std::string report;
    for (const ItemDifferences &differences : comparison.items) {
        Item &item = item_of(differences.item);
        if (differences.differences.empty())
            continue;
        for (const Difference &difference : differences.differences) {
            const std::string &field = difference.name;
            if (!difference.warning &&
                (item.fields.size() < FIELDS_KEPT || item.fields.contains(field)))
                item.fields[field].add(name);
        }
        const bool failed = !differences.same();
        item.failures += failed;
        std::string &text = failed ? item.text : item.warnings;
        if (text.size() >= TEXT_MOST)
            continue;
        report.clear();
        put_shown(name, report);
        report += ":\n";
        put_report(differences, reference_, name, report);
        put_bounded(report, text);
    }
}

void Gate::add_trouble(const std::string &name, std::string_view why)
{
    if (trouble_count_++ < TROUBLES_SHOWN)
        troubles_.emplace_back(name, why);
}

std::vector<std::pair<const std::string *, const Gate::Item *>> Gate::in_order() const
{
    std::vector<std::pair<const std::string *, const Item *>> ordered(items_.size());
    for (const auto &[name, item] : items_)
        ordered[item.place] = {&name, &item};
    return ordered;
}

void Gate::put_summary(std::string &out) const
{
    for (const auto &[name, item] : in_order()) {
        if (item->fields.empty())
            continue;
        size_t width = 0;
        for (const auto &[field, captures] : item->fields)
            width = std::max(width, std::min(field.size(), size_t{48}));
        out += *name + '\n';
        for (const auto &[field, captures] : item->fields) {
            out += "  " + field;
            out.append(width - std::min(width, field.size()), ' ');
            out += (field.empty() ? "" : "  ") + std::to_string(captures.count) +
                   (captures.count == 1 ? " capture: " : " captures: ");
            captures.put(out);
            out += '\n';
        }
    }
}

void Gate::put_junit(std::string_view timestamp, std::string_view host,
                     const std::vector<Label> &labels, std::string &out) const
{
    auto ordered = in_order();
    if (ordered.size() > ITEMS_IN_JUNIT) // no camera has so many; what fails goes first
        std::stable_partition(ordered.begin(), ordered.end(),
                              [](const auto &entry) { return entry.second->failures > 0; });
    ordered.resize(std::min(ordered.size(), ITEMS_IN_JUNIT));
    uint64_t failures = 0;
    for (const auto &[name, item] : ordered)
        failures += item->failures > 0;

    out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n<testsuite id=\"0\"";
    put_attribute("package", "vordascope", out);
    put_attribute("name", reference_, out);
    put_attribute("timestamp", timestamp, out);
    put_attribute("hostname", host, out);
    put_attribute("tests", ordered.size() + troubles_.size(), out);
    put_attribute("failures", failures, out);
    put_attribute("errors", troubles_.size(), out);
    put_attribute("time", "0", out);
    out += ">\n<properties>";
    for (const Label &label : labels) {
        out += "<property";
        put_attribute("name", label.key, out);
        put_attribute("value", label.value, out);
        out += "/>";
    }
    out += "</properties>\n";
    std::string warnings;
    std::string text;
    size_t room = JUNIT_MOST - CASE_MOST * (ordered.size() + troubles_.size() + 1) - 6 * TEXT_MOST;
    for (const auto &[name, item] : ordered) {
        out += "<testcase";
        put_attribute("classname", name->substr(0, name->find('.')), out);
        put_attribute("name", *name, out);
        put_attribute("time", "0", out);
        put_bounded(item->warnings, warnings);
        if (item->failures == 0) {
            out += "/>\n";
            continue;
        }
        out += "><failure";
        put_attribute("message",
                      std::to_string(item->failures) + " of " + std::to_string(captures_) +
                          (captures_ == 1 ? " capture differs" : " captures differ"),
                      out);
        put_attribute("type", "difference", out);
        out += '>';
        text.clear();
        put_xml(item->text, text);
        if (text.size() <= room) {
            out += text;
            room -= text.size();
        }
        out += "</failure></testcase>\n";
    }
    for (const auto &[name, why] : troubles_) {
        out += "<testcase";
        put_attribute("classname", "captures", out);
        put_attribute("name", name, out);
        put_attribute("time", "0", out);
        out += "><error";
        put_attribute("message", why, out);
        put_attribute("type", "trouble", out);
        out += "/></testcase>\n";
    }
    out += "<system-out>";
    put_xml(warnings, out);
    out += "</system-out>\n<system-err/>\n</testsuite>\n</testsuites>\n";
}

} // namespace vordascope
