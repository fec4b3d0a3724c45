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

} // namespace vordascope
