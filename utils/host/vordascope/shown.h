// Texts of captures, as a terminal can show them.
#pragma once

#include <string>
#include <string_view>

namespace vordascope
{

// A character as it is shown: itself when it is printable ASCII, else \xNN, written to `room`. The
// result points to `room`.
std::string_view shown(char c, char (&room)[4]);

// Appends a text in that way, of a long one only the beginning.
void put_shown(std::string_view text, std::string &out);

// All of a text in that way, for names of files.
std::string shown(std::string_view text);

} // namespace vordascope
