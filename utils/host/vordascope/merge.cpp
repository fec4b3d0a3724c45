// Exchanging the sections of a snapshot.
#include "merge.h"

#include "sections.h"

#include <map>
#include <utility>

namespace vordascope
{

bool Merge::complete(Head &head)
{
    if (!head.indexed)
        return true;
    const bool follows =
        known_ && head.added_to == frame_ && head.dev_idx == dev_idx_ && head.path_idx == path_idx_;
    if (head.added_to && !follows) {
        known_ = false;
        return false;
    }
    if (head.added_to) {
        if (units_.empty())
            split({text_, line_}, units_);
        std::vector<Unit> changed;
        for (const Part &part : head.body)
            split(part, changed);
        replace(changed);
        write(head);
    }
    // A snapshot that is not there in full is no state to add to.
    known_ = head.frame && !head.cut && head.text.ends_with('\n');
    if (!known_)
        return true;
    dev_idx_ = head.dev_idx;
    path_idx_ = head.path_idx;
    frame_ = *head.frame;
    if (!head.added_to) {
        text_ = head.body.front().text;
        line_ = head.body.front().line;
        units_.clear();
    }
    return true;
}

// Appends the units of a text: what stands before the first section is one, too.
void Merge::split(const Part &part, std::vector<Unit> &units)
{
    const char *p = part.text.data();
    const char *const end = p + part.text.size();
    std::string_view name;
    const char *begin = p;
    uint64_t begin_line = part.line;
    const auto close = [&](const char *at) {
        if (at != begin)
            units.push_back({std::string(name), {{begin, at}, begin_line}});
    };
    for (uint64_t number = part.line; p != end; number++) {
        const std::string_view rest(p, end);
        const size_t newline = rest.find('\n');
        std::string_view line = rest.substr(0, newline);
        while (line.ends_with('\r'))
            line.remove_suffix(1);
        std::string_view opened;
        if (line.starts_with('='))
            opened = section_of(line);
        else if (line.starts_with('['))
            opened = tag_of(line).empty() ? "" : line;
        else if (line.starts_with('s') || line.starts_with('v'))
            opened = category_of(key_of(line));
        if (!opened.empty() && opened != name) {
            close(p);
            name = opened;
            begin = p;
            begin_line = number;
        }
        p = newline != std::string_view::npos ? p + newline + 1 : end;
    }
    close(end);
}

// Lets changed units take the place of those of their name; new ones follow what they follow.
void Merge::replace(std::vector<Unit> &changed)
{
    std::map<std::string_view, std::vector<Part>> texts;
    for (const Unit &unit : changed)
        texts[unit.name].push_back(unit.part);
    std::map<std::string_view, bool> stands;
    for (const Unit &unit : units_)
        stands.emplace(unit.name, false);

    std::vector<Unit> result;
    const auto put = [&](std::string_view name) {
        for (const Part &part : texts[name])
            result.push_back({std::string(name), part});
    };
    const auto put_new = [&](size_t i) {
        for (; i < changed.size() && stands.emplace(changed[i].name, true).second; i++)
            put(changed[i].name);
    };
    std::map<std::string_view, size_t> follows; // behind the last unit of that name among changed
    for (size_t i = 0; i < changed.size(); i++)
        follows[changed[i].name] = i + 1;
    for (const Unit &unit : units_) {
        if (!texts.contains(unit.name)) {
            result.push_back(unit);
        } else if (!std::exchange(stands[unit.name], true)) {
            put(unit.name);
            put_new(follows[unit.name]);
        }
    }
    for (size_t i = 0; i < changed.size(); i++)
        put_new(i);
    units_.swap(result);
}

// Writes the text of all units below the head, and lets everything point there.
void Merge::write(Head &head)
{
    const std::string_view old = head.text;
    const char *const body = head.body.front().text.data();
    const auto head_size = static_cast<size_t>(body - old.data());
    size_t size = old.size();
    for (const Unit &unit : units_)
        size += unit.part.text.size();
    next_.clear();
    next_.reserve(size); // what points there stays valid
    next_.append(old.data(), head_size);
    for (Unit &unit : units_) {
        const size_t at = next_.size();
        next_ += unit.part.text;
        unit.part.text = {next_.data() + at, unit.part.text.size()};
    }
    const char *const body_end = body + head.body.front().text.size();
    next_.append(body_end, old.data() + old.size());

    head.body.clear();
    head.move_text(next_, [&](const char *p) {
        return p < body ? next_.data() + (p - old.data())
                        : next_.data() + next_.size() - (old.data() + old.size() - p);
    });
    for (Unit &unit : units_)
        head.body.push_back(unit.part);
    text_.swap(next_); // an index line is too long to be moved by that
}

} // namespace vordascope
