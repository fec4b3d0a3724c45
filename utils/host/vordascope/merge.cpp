// Exchanging the sections of a snapshot.
#include "merge.h"

#include "sections.h"

#include <algorithm>
#include <map>
#include <utility>

namespace vordascope
{

namespace
{

struct Line {
    std::string_view text; // with its end
    uint64_t number;       // in the input
};

std::string_view without_end(std::string_view line)
{
    while (line.ends_with('\n') || line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

void split_lines(const Part &part, std::vector<Line> &lines)
{
    uint64_t number = part.line;
    for (std::string_view rest = part.text; !rest.empty(); number++) {
        const std::string_view line =
            rest.substr(0, std::min(rest.find('\n'), rest.size() - 1) + 1);
        lines.push_back({line, number});
        rest.remove_prefix(line.size());
    }
}

// Lines that stand one behind another, in the text and in the input, become one part again.
std::vector<Part> join_lines(const std::vector<Line> &lines)
{
    std::vector<Part> parts;
    uint64_t next = 0;
    for (const Line &line : lines) {
        if (!parts.empty() && line.number == next &&
            parts.back().text.data() + parts.back().text.size() == line.text.data())
            parts.back().text = {parts.back().text.data(),
                                 parts.back().text.size() + line.text.size()};
        else
            parts.push_back({line.text, line.number});
        next = line.number + 1;
    }
    return parts;
}

// "@ FIRST-LAST HEADINGS" or "@ NUMBER HEADINGS", above the lines that take the place of these.
struct Run {
    uint32_t first;
    uint32_t last;
    std::string_view headings; // " [Heading] label:"
};

bool read_run(std::string_view line, Run &run)
{
    if (!take(line, "@ ") || !take_number(line, run.first))
        return false;
    run.last = run.first;
    if (take(line, "-") && !take_number(line, run.last))
        return false;
    run.headings = line;
    return run.first != 0 && run.last >= run.first && (line.empty() || line[0] == ' ');
}

// The headings above a line: one in brackets, and the label below it.
class Headings
{
public:
    void pass(std::string_view line)
    {
        line = without_end(line);
        if (line.starts_with('[') && line.ends_with(']')) {
            brackets_ = line;
            label_ = {};
        } else if (line.ends_with(':')) {
            label_ = line;
        }
    }

    // Whether there are no others in " [Heading] label:".
    bool hold(std::string_view said) const
    {
        for (const std::string_view heading : {brackets_, label_}) {
            std::string_view rest = said;
            if (!heading.empty() && take(rest, " ") && take(rest, heading))
                said = rest;
        }
        return said.empty();
    }

private:
    std::string_view brackets_;
    std::string_view label_;
};

bool is_section_line(std::string_view line)
{
    line = without_end(line);
    return !section_of(line).empty() || !tag_of(line).empty();
}

// Whether what follows the section line is not its text, but runs of lines that changed in it.
bool holds_runs(std::string_view text)
{
    return is_section_line(text.substr(0, text.find('\n'))) &&
           text.substr(text.find('\n') + 1).starts_with("@ ");
}

// Lets changed lines take the place of those of a section; both begin with the line that names it,
// if it has one. Returns false when they do not fit.
bool exchange_lines(std::vector<Line> &lines, const std::vector<Line> &changed)
{
    const size_t above = !lines.empty() && is_section_line(lines[0].text); // line 1 is behind it
    Headings headings;
    size_t passed = above;
    for (size_t i = 1; i < changed.size();) {
        Run run;
        if (!read_run(without_end(changed[i++].text), run))
            return false;
        const size_t first = above + run.first - 1;
        const size_t count = run.last - run.first + 1;
        if (first < passed || first + count > lines.size() || count > changed.size() - i)
            return false;
        for (; passed < first; passed++)
            headings.pass(lines[passed].text);
        if (!headings.hold(run.headings))
            return false;
        for (; passed < first + count; passed++) {
            lines[passed] = changed[i++];
            headings.pass(lines[passed].text);
        }
    }
    return true;
}

} // namespace

const char *Merge::complete(Head &head)
{
    if (!head.indexed)
        return nullptr;
    if (head.added_to) {
        const bool follows = known_ && head.added_to == frame_ && head.dev_idx == dev_idx_ &&
                             head.path_idx == path_idx_;
        known_ = false;
        if (!follows)
            return "left out: the snapshot that it is added to is not before it";
        if (!head.intact)
            return "left out: it is not there in full";
        if (!add(head))
            return "left out: it does not fit the snapshot that it is added to";
    }
    // A snapshot that is not there in full is no state to add to.
    known_ = head.frame && head.intact;
    if (!known_)
        return nullptr;
    dev_idx_ = head.dev_idx;
    path_idx_ = head.path_idx;
    frame_ = *head.frame;
    if (!head.added_to) {
        text_ = head.body.front().text;
        line_ = head.body.front().line;
        units_.clear();
    }
    return nullptr;
}

// Makes an added snapshot whole. Returns false when it does not fit the state before it.
bool Merge::add(Head &head)
{
    if (units_.empty())
        split({text_, line_}, units_);
    std::vector<Unit> changed;
    for (const Part &part : head.body)
        split(part, changed);
    if (!make_whole(changed))
        return false;
    replace(changed);
    write(head);
    return true;
}

// Lets sections of which only some lines are said have all of them.
bool Merge::make_whole(std::vector<Unit> &changed) const
{
    std::vector<Unit> whole;
    for (const Unit &unit : changed) {
        if (!holds_runs(unit.part.text)) {
            whole.push_back(unit);
            continue;
        }
        std::vector<Line> lines;
        for (const Unit &before : units_)
            if (before.name == unit.name)
                split_lines(before.part, lines);
        std::vector<Line> runs;
        split_lines(unit.part, runs);
        if (!exchange_lines(lines, runs))
            return false;
        for (const Part &part : join_lines(lines))
            whole.push_back({unit.name, part});
    }
    changed.swap(whole);
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

    std::vector<Part> parts;
    for (const Unit &unit : units_)
        parts.push_back(unit.part);
    head.replace_body(next_, parts);
    text_.swap(next_); // an index line is too long to be moved by that
}

} // namespace vordascope
