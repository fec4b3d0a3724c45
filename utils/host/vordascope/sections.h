// The lines that open a section, for whoever reads sections and whoever exchanges them.
#pragma once

#include <string_view>

namespace vordascope
{

// "=== cat.item ===": "cat.item"; of other lines nothing.
std::string_view section_of(std::string_view line);

// "[CAPITALS]": "CAPITALS"; of other lines nothing.
std::string_view tag_of(std::string_view line);

// "share.key = value": "share", a category that prints without section lines; of other keys
// nothing.
std::string_view category_of(std::string_view key);

// The key of "key = value", "words: value" or "label:", with the blanks behind it; of other lines
// nothing.
std::string_view key_of(std::string_view line);

// Whether a line is of a form that vorda prints and few others write: a section, a tag, a value, a
// row of numbers. Words with a colon may be a mail's as well.
bool is_of_vorda(std::string_view line);

// Whether a line that does not end is what a shell asks with, "user@host:~# ", and no part of a
// line of vorda.
bool is_prompt(std::string_view line);

} // namespace vordascope
