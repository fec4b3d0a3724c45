#include "csv.h"

namespace vordascope
{

void put_cell(std::string_view text, std::string &out)
{
    if (text.find_first_of("\",\r\n") == std::string_view::npos) {
        out += text;
        return;
    }
    out += '"';
    for (const char c : text)
        out.append(c == '"' ? 2 : 1, c);
    out += '"';
}

void put_text_cell(std::string_view text, std::string &out)
{
    if (!text.empty() && std::string_view("=+-@\t\r").find(text[0]) != std::string_view::npos)
        put_cell('\'' + std::string(text), out);
    else
        put_cell(text, out);
}

} // namespace vordascope
