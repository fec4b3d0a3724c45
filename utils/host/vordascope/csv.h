// Cells of CSV.
#pragma once

#include <string>
#include <string_view>

namespace vordascope
{

// Appends a cell, quoted where its text asks for it.
void put_cell(std::string_view text, std::string &out);

// Appends a cell of what is no number: a spreadsheet takes it for a text even where it begins like a
// formula.
void put_text_cell(std::string_view text, std::string &out);

} // namespace vordascope
