// Section lines, tags, prefixes.
#include "sections.h"

#include "number.h"

#include <algorithm>

namespace vordascope
{

std::string_view section_of(std::string_view line)
{
    constexpr std::string_view OPEN = "=== ";
    constexpr std::string_view CLOSE = " ===";
    if (!line.starts_with(OPEN) || !line.ends_with(CLOSE) ||
        line.size() <= OPEN.size() + CLOSE.size())
        return {};
    line.remove_prefix(OPEN.size());
    line.remove_suffix(CLOSE.size());
    return is(line.front(), LETTER) && all_of(line, KEY) ? line : "";
}

std::string_view tag_of(std::string_view line)
{
    if (line.size() < 3 || line.front() != '[' || line.back() != ']' || !is(line[1], LETTER))
        return {};
    line = line.substr(1, line.size() - 2);
    return all_of(line, UPPER | DIGIT | MARK) ? line : "";
}

std::string_view category_of(std::string_view key)
{
    for (const std::string_view prefix : {"share.", "vinfo."})
        if (key.starts_with(prefix) && key.size() > prefix.size())
            return prefix.substr(0, prefix.size() - 1);
    return {};
}

std::string_view key_of(std::string_view line)
{
    size_t size = 0;
    while (size < line.size() && is(line[size], KEY | BLANK))
        size++;
    if (size == line.size() || !(is(line[0], LETTER) || line[0] == '_'))
        return {};
    const bool keyed =
        line[size] == '=' ||
        (line[size] == ':' && (size + 1 == line.size() || is(line[size + 1], BLANK)));
    return keyed ? line.substr(0, size) : "";
}

} // namespace vordascope
