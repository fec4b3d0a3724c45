// Patterns, and names that are near to one another.
#include "select.h"

#include <algorithm>
#include <numeric>

namespace vordascope
{

namespace
{

constexpr size_t NEAR_MOST = 5;
constexpr size_t SLIP_MOST = 300; // of longer names nobody looks for a slip

// How many characters must be inserted, removed or replaced to make one text of the other.
size_t edit_distance(std::string_view a, std::string_view b)
{
    std::vector<size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < a.size(); i++) {
        size_t diagonal = row[0]++;
        for (size_t j = 0; j < b.size(); j++) {
            const size_t replaced = diagonal + (a[i] != b[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

} // namespace

bool matches(std::string_view text, std::string_view pattern)
{
    size_t t = 0;
    size_t p = 0;
    size_t star = std::string_view::npos; // behind the last `*`, and where the text went on
    size_t retry = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = ++p;
            retry = t;
        } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t])) {
            p++;
            t++;
        } else if (star != std::string_view::npos) {
            p = star;
            t = ++retry;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

bool selects(std::string_view pattern, const Snapshot &snapshot, const Field &field)
{
    const std::string path = snapshot.path(field);
    std::string_view rest = path;
    if (matches(rest, pattern))
        return true;
    rest.remove_suffix(field.key.size());
    for (NodeIndex i = field.node; i != 0; i = snapshot.node(i).parent) {
        rest.remove_suffix(1); // the dot
        if (matches(rest, pattern))
            return true;
        rest.remove_suffix(snapshot.node(i).name.size());
    }
    return false;
}

std::string as_path(std::string_view name)
{
    constexpr std::string_view BETWEEN = " / ";
    std::string path;
    while (true) {
        const size_t between = name.find(BETWEEN);
        path += name.substr(0, between);
        if (between == std::string_view::npos)
            return path;
        path += '.';
        name.remove_prefix(between + BETWEEN.size());
    }
}

std::string suggest(const Snapshot &snapshot, std::string_view wanted)
{
    std::vector<std::pair<size_t, std::string>> ranked;
    const auto rank = [&ranked, wanted](std::string path, std::string_view name) {
        if (path.size() > SLIP_MOST || wanted.size() > SLIP_MOST)
            return;
        const size_t slips = std::min(edit_distance(path, wanted), edit_distance(name, wanted));
        if (path.find(wanted) != std::string::npos)
            ranked.emplace_back(0, std::move(path));
        else if (slips <= 1 + wanted.size() / 5)
            ranked.emplace_back(slips, std::move(path));
    };
    for (NodeIndex i = 1; i < snapshot.node_count(); i++)
        rank(snapshot.path(i), snapshot.node(i).name);
    for (const Field &field : snapshot.fields)
        rank(snapshot.path(field), field.key);
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });

    std::string text;
    if (!ranked.empty()) {
        text = "Near:";
        for (size_t i = 0; i < std::min(ranked.size(), NEAR_MOST); i++)
            text += (i == 0 ? " " : ", ") + ranked[i].second;
        return text + (ranked.size() > NEAR_MOST ? ", ..." : "");
    }
    text = "There is:";
    std::string last;
    for (const Field &field : snapshot.fields) {
        std::string item = snapshot.item(field);
        if (item != last)
            text.append(" ").append(item);
        last = std::move(item);
    }
    return text;
}

} // namespace vordascope
