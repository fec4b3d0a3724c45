// Prompts, mails.
#include "around.h"

#include "number.h"
#include "sections.h"

#include <algorithm>
#include <iterator>

namespace vordascope
{

namespace
{

constexpr std::string_view DIGITS = "0123456789";
constexpr std::string_view PROMPT_ENDS = "$#>%";
constexpr size_t RULE_MIN = 5;
constexpr size_t SIGNATURE_LINES = 16; // at most, below its dashes
constexpr std::string_view SAID_AROUND[] = {"logout", "exit", "^C", "```"};

std::string_view trimmed(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r"), text.size()));
    return text.substr(0, text.find_last_not_of(" \t\r") + 1);
}

bool is_number(std::string_view word)
{
    take(word, "-");
    if (word == "nan" || word == "inf")
        return true;
    const size_t end = word.find_first_not_of(DIGITS);
    if (end == std::string_view::npos)
        return !word.empty();
    return end != 0 && word[end] == '.' && end + 1 < word.size() &&
           all_of(word.substr(end + 1), DIGIT);
}

// Whether a text begins as values do: "5", "5, ", "-5 (", "(5 6".
bool begins_with_value(std::string_view text)
{
    const bool tuple = take(text, "(");
    text = trimmed(text);
    const size_t end = std::min(text.find_first_of(" \t,();"), text.size());
    if (!is_number(text.substr(0, end)))
        return !tuple && (text == "true" || text == "false");
    text = text.substr(end);
    if (!tuple) {
        text = trimmed(text);
        return text.empty() || text[0] == ',' || text[0] == '(' || text[0] == ';';
    }
    text.remove_prefix(std::min(text.find_first_not_of(" \t,"), text.size()));
    return !text.empty() && (is(text[0], DIGIT) || text[0] == '-');
}

bool is_of_vorda(std::string_view line)
{
    const std::string_view key = key_of(line);
    if (!key.empty())
        return line[key.size()] == '=' || !category_of(key).empty() ||
               begins_with_value(trimmed(line.substr(key.size() + 1)));
    line = trimmed(line);
    const bool legend = line.size() > 3 && line[0] == '(' && is(line[1], DIGIT) &&
                        line.find(':') != std::string_view::npos && line.ends_with(')');
    return legend || line.starts_with("<#") || !section_of(line).empty() || !tag_of(line).empty() ||
           begins_with_value(line);
}

// Whether a line that looks like one of vorda may be a person's: "Phone: 5", "5, Some Street".
bool may_be_of_people(std::string_view line)
{
    const std::string_view key = key_of(line);
    return key.empty() ? is(line[0], DIGIT) : line[key.size()] == ':' && category_of(key).empty();
}

bool is_signature(std::string_view line)
{
    return line == "-- " || line == "--";
}

bool is_quoted(std::string_view line)
{
    return line.starts_with('>') || line.starts_with('|');
}

// Whether a line with a value, or of a section, may have become this one.
bool has_key(std::string_view line)
{
    return !is_quoted(line) &&
           (line.starts_with("=== ") || line.find(" =") != std::string_view::npos ||
            line.find("= ") != std::string_view::npos);
}

// Whether a row may have become this line.
bool has_row(std::string_view line)
{
    if (is_quoted(line))
        return false;
    size_t pairs = 0;
    for (size_t comma = 0; (comma = line.find(',', comma)) != std::string_view::npos; comma++) {
        const size_t next = line.find_first_not_of(" \t", comma + 1);
        pairs += comma != 0 && is(line[comma - 1], DIGIT) && next != std::string_view::npos &&
                 (is(line[next], DIGIT) || line[next] == '-');
    }
    return pairs > 1;
}

// "user@host:~# ls", "/ # ls", "$ ls"
bool asks(std::string_view line)
{
    for (size_t at = 0; (at = line.find_first_of(PROMPT_ENDS, at)) != std::string_view::npos;
         at++) {
        if (at + 1 < line.size() && line[at + 1] != ' ')
            continue;
        const std::string_view before = line.substr(0, at);
        const std::string_view name = trimmed(before);
        return name.find_first_of("=;,") == std::string_view::npos &&
               (before.find_first_of("@:/~\\") != std::string_view::npos ||
                (all_of(before, KEY) && !begins_with_value(trimmed(line.substr(at + 1)))));
    }
    return false;
}

// Whether nobody but a shell or a person writes such a line, wherever it stands.
bool is_of_people(std::string_view line)
{
    if (is_quoted(line) || line.starts_with('\33') || asks(line) ||
        (line.size() >= RULE_MIN && line.find_first_not_of("_=*~#") == std::string_view::npos) ||
        std::find(std::begin(SAID_AROUND), std::end(SAID_AROUND), line) != std::end(SAID_AROUND))
        return true;
    line = trimmed(line);
    if (line.size() < 3 || !is(line[0], LETTER) || !is(line[line.size() - 2], LETTER))
        return false;
    // A key may be cut behind a dot.
    const bool words = line.find(' ') != std::string_view::npos;
    return line.ends_with('!') || line.ends_with('?') || (line.ends_with('.') && words) ||
           (line.ends_with(',') && line.find_first_of(DIGITS) == std::string_view::npos);
}

bool is_label(std::string_view line)
{
    return line.ends_with(':') && !key_of(line).empty();
}

// Whether a line behind a blank one is no key that vorda may have begun there.
bool stands_apart(std::string_view line, bool ends)
{
    const bool words =
        std::any_of(line.begin(), line.end(),
                    [](unsigned char c) { return c >= 0x80 || (CLASSES[c] & LETTER) != 0; }) &&
        std::none_of(line.begin(), line.end(),
                     [](unsigned char c) { return c < ' ' && c != '\t'; });
    const bool key =
        all_of(line, KEY | BLANK) && (!ends || line.find('_') != std::string_view::npos);
    return words && !key && !is_label(line) && (ends || key_of(line).empty());
}

// A line that has been taken off a text.
struct Taken {
    std::string_view text; // without its end
    size_t at;             // in the text
    bool ends;
};

Taken line_before(std::string_view text, size_t end)
{
    const bool ends = text[end - 1] == '\n';
    const size_t newline = end > 1 ? text.rfind('\n', end - 2) : std::string_view::npos;
    const size_t at = newline != std::string_view::npos ? newline + 1 : 0;
    std::string_view line = text.substr(at, end - at - ends);
    while (ends && line.ends_with('\r'))
        line.remove_suffix(1);
    return {line, at, ends};
}

// Where the lines begin that stand behind the last one of vorda; those of a signature may look like
// one.
size_t end_of_vorda(std::string_view text)
{
    size_t result = text.size();
    bool behind = true;
    size_t lines = 0;
    for (size_t end = text.size(); end != 0 && (behind || lines < SIGNATURE_LINES); lines++) {
        const auto [line, at, ends] = line_before(text, end);
        end = at;
        if (is_signature(line)) {
            behind = true;
        } else if (line.starts_with(';') || is_of_vorda(line)) {
            behind = false;
            if (!may_be_of_people(line))
                break;
        }
        if (behind)
            result = at;
    }
    return result;
}

} // namespace

bool may_be_of_vorda(std::string_view line)
{
    return is_of_vorda(line) || has_key(line) || has_row(line);
}

bool is_prompt(std::string_view line)
{
    while (line.ends_with(' '))
        line.remove_suffix(1);
    return !line.empty() && PROMPT_ENDS.find(line.back()) != std::string_view::npos &&
           !line.starts_with('<') && line.find_first_of("=;") == std::string_view::npos &&
           line.find(": ") == std::string_view::npos;
}

size_t find_mail(std::string_view text)
{
    const size_t rest = end_of_vorda(text);
    size_t result = text.size();
    bool apart = false;
    for (size_t at = rest; at != text.size();) {
        const size_t newline = text.find('\n', at);
        const size_t next = newline != std::string_view::npos ? newline + 1 : text.size();
        const auto [line, begin, ends] = line_before(text.substr(0, next), next);
        at = next;
        if (trimmed(line).empty()) {
            apart = true;
            continue;
        }
        if (is_signature(line))
            return std::min(result, begin);
        if (has_key(line) || (result == text.size() && has_row(line)))
            return text.size();
        if (result == text.size() && (is_of_people(line) || (apart && stands_apart(line, ends)) ||
                                      (!ends && is_prompt(line))))
            result = begin;
        apart = apart && is_label(line);
    }
    return result;
}

} // namespace vordascope
