// Captures as plain HTML.
#include "plain.h"

#include "compare.h"
#include "shown.h"

#include <algorithm>

namespace vordascope
{

namespace
{

constexpr size_t CELL_BYTES = 500;

// Appends a text in which nothing is markup. Bytes that are no UTF-8 are left to the browser.
void put_text(std::string_view text, std::string &out)
{
    for (const char c : text.substr(0, CELL_BYTES)) {
        if (c == '&')
            out += "&amp;";
        else if (c == '<')
            out += "&lt;";
        else
            out += c;
    }
    if (text.size() > CELL_BYTES)
        out += "...";
}

void put_cell(const char *tag, std::string_view text, std::string &out)
{
    out.append("<").append(tag);
    put_text(text, out.append(">"));
}

std::string value_at(const Snapshot &snapshot, std::string_view path)
{
    std::string text;
    const Place place = find(snapshot, path);
    for (uint32_t i = 0; i < place.count && text.size() <= CELL_BYTES; i++) {
        text += i == 0 ? "" : ", ";
        put_shown(snapshot.begin(*place.field)[place.first + i].text(), text);
    }
    return text;
}

// `b` is nullptr where there is one snapshot alone.
void put_figures(std::string_view figures, const Snapshot &a, const Snapshot *b, std::string &out)
{
    while (!figures.empty()) {
        const std::string_view line = figures.substr(0, figures.find('\n'));
        figures.remove_prefix(std::min(line.size() + 1, figures.size()));
        const size_t tab = line.find('\t');
        const std::string_view path = line.substr(tab + 1);
        const std::string before = value_at(a, path);
        const std::string after = b != nullptr ? value_at(*b, path) : "";
        if (before.empty() && after.empty())
            continue;
        put_cell("tr><th", line.substr(0, tab), out);
        put_cell("td", before, out);
        if (b != nullptr)
            put_cell("td", after, out);
        out += '\n';
    }
}

// Appends rows of what differs. Returns whether there was room for all of them.
bool put_differences(const Comparison &comparison, std::string &out)
{
    bool room = true;
    const auto put_row = [&](std::string_view item, std::string_view name, std::string_view what) {
        room = out.size() < PLAIN_BYTES;
        if (!room)
            return;
        put_cell("tr><th", item, out);
        put_cell("td", name, out);
        put_cell("td", what, out);
        out += '\n';
    };
    for (const ItemDifferences &item : comparison.items) {
        if (const char side = item.only_side(); side != '\0') {
            put_row(item.item, "",
                    std::string("only in ") + side + " (" + std::to_string(item.fields) +
                        " fields)");
            continue;
        }
        for (const Difference &difference : item.differences)
            put_row(item.item, shown(difference.name), difference.what);
    }
    return room;
}

} // namespace

void Plain::add(const Snapshot &snapshot, uint32_t run, std::string_view file)
{
    if (!snapshot.indexed)
        return;
    std::string name(file);
    name += '#' + std::to_string(snapshot.number);
    if (snapshot.named)
        name += ": dev_idx = " + std::to_string(snapshot.dev_idx) +
                ", path_idx = " + std::to_string(snapshot.path_idx);
    if (snapshot.timed)
        name.append(", time = ").append(snapshot.time.text());
    several_ |= run != 0;
    if (first_.name.empty())
        first_ = {name, snapshot};
    (run == 0 ? before_ : last_) = {std::move(name), snapshot};
}

std::string Plain::html(std::string_view figures) const
{
    if (first_.name.empty())
        return "";
    const Shown &a = several_ ? before_ : first_;
    const Shown &b = several_ ? last_ : before_;
    const bool compared = a.name != b.name;
    std::string out = "<main><h1>Key figures</h1>\n<p>Without scripts this is all that shows. "
                      "Saved and opened from a disk, this file shows the rest.</p>\n"
                      "<table class=\"differences\"><tr><th>";
    put_cell("th", compared ? "A: " + a.name : a.name, out);
    if (compared)
        put_cell("th", "B: " + b.name, out);
    out += '\n';
    put_figures(figures, a.snapshot, compared ? &b.snapshot : nullptr, out);
    out += "</table>\n";
    if (compared) {
        Rules rules({}, {}, {});
        const Comparison result = compare(a.snapshot, b.snapshot, rules, "A", "B");
        out += "<h2>Differences</h2>\n<table class=\"differences\">";
        const bool whole = put_differences(result, out);
        const size_t differ = result.different + result.only_a + result.only_b;
        out += "</table>\n<p>" + std::to_string(differ) + " of " + std::to_string(result.compared) +
               " fields differ" +
               (whole ? ".</p>\n" : "; there is no room here for the others.</p>\n");
    }
    return out + "</main>";
}

} // namespace vordascope
