// Bytes in printable form.
#include "shown.h"

namespace vordascope
{

namespace
{

constexpr size_t SHOWN_MAX = 120; // characters of a text

} // namespace

std::string_view shown(char c, char (&room)[4])
{
    constexpr char HEX[] = "0123456789abcdef";
    if (c >= ' ' && c <= '~') {
        room[0] = c;
        return {room, 1};
    }
    const auto byte = static_cast<unsigned char>(c);
    room[0] = '\\';
    room[1] = 'x';
    room[2] = HEX[byte >> 4];
    room[3] = HEX[byte & 0xF];
    return {room, sizeof(room)};
}

void put_shown(std::string_view text, std::string &out)
{
    char room[4];
    for (const char c : text.substr(0, SHOWN_MAX))
        out += shown(c, room);
    if (text.size() > SHOWN_MAX)
        out += "...";
}

std::string shown(std::string_view text)
{
    char room[4];
    std::string result;
    for (const char c : text)
        result += shown(c, room);
    return result;
}

} // namespace vordascope
