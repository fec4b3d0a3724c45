// Runs of changed lines.
#include "changes.h"

#include <cstddef>

namespace
{

// The next line, with its end, which is taken off the text.
std::string_view take_line(std::string_view *text)
{
    const std::string_view line(text->data(), text->find('\n') + 1);
    text->remove_prefix(line.size());
    return line;
}

size_t count_lines(std::string_view text)
{
    size_t lines = 0;
    for (; !text.empty(); lines++)
        take_line(&text);
    return lines;
}

// The headings above a line: one in brackets, and the label below it.
class Headings
{
public:
    // `line` stands above what follows.
    void pass(std::string_view line)
    {
        std::string_view words = line;
        words.remove_suffix(1);
        if (words.starts_with('[') && words.ends_with(']')) {
            brackets_ = words;
            label_ = {};
        } else if (words.ends_with(':')) {
            label_ = words;
        }
    }

    // Writes those that `line` does not say itself.
    void put(Text &text, std::string_view line) const
    {
        if (line.starts_with('['))
            return;
        if (!brackets_.empty())
            text.put(" ", brackets_);
        const bool row = line[0] == ' ' || line[0] == '(' || line[0] == '<' || line[0] == '-' ||
                         (line[0] >= '0' && line[0] <= '9');
        if (row && !label_.empty())
            text.put(" ", label_);
    }

private:
    std::string_view brackets_;
    std::string_view label_;
};

// Lines that stand one after another.
struct Run {
    std::string_view text;
    uint32_t first = 0; // number of its first line
    uint32_t last = 0;
    Headings headings;
};

void put_run(Text &text, const Run &run)
{
    if (run.text.empty())
        return;
    text.put("@ ", run.first);
    if (run.last != run.first)
        text.put("-", run.last);
    run.headings.put(text, run.text);
    text.put("\n", run.text);
}

} // namespace

void put_changes(Text &text, std::string_view before, std::string_view now)
{
    constexpr size_t GAP = 24; // bytes between two runs that are no more than a line "@" is

    if (count_lines(before) != count_lines(now)) {
        text.put(now);
        return;
    }
    if (now.starts_with('=') || now.starts_with('[')) {
        text.put(take_line(&now));
        take_line(&before);
    } else {
        const std::string_view title(now.data(), now.find('.'));
        text.put("=== ", title, " ===\n");
    }

    Run run;
    Headings headings;
    for (uint32_t number = 1; !now.empty(); number++) {
        const std::string_view line = take_line(&now);
        if (line != take_line(&before)) {
            const char *const end = line.data() + line.size();
            const auto gap = static_cast<size_t>(line.data() - run.text.data()) - run.text.size();
            if (run.text.empty() || gap > GAP) {
                put_run(text, run);
                run = {line, number, number, headings};
            } else {
                run.text = {run.text.data(), static_cast<size_t>(end - run.text.data())};
                run.last = number;
            }
        }
        headings.pass(line);
    }
    put_run(text, run);
}
