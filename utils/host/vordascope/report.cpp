// Bakes a model into the page.
#include "report.h"

#include <zlib.h>

#include <cstdint>

#ifdef VORDASCOPE_PAGE
// The files themselves become part of the program: one binary to copy, and no path to look for.
#define VORDASCOPE_EMBED(name, file)                                     \
    asm(".section .rodata\n"                                             \
        ".global " name "_begin\n" name "_begin: .incbin \"" file "\"\n" \
        ".global " name "_end\n" name "_end:\n"                          \
        ".previous\n")
VORDASCOPE_EMBED("vordascope_page", VORDASCOPE_PAGE);
VORDASCOPE_EMBED("vordascope_figures", VORDASCOPE_FIGURES);
extern "C" const char vordascope_page_begin[], vordascope_page_end[], vordascope_figures_begin[],
    vordascope_figures_end[];
#endif

namespace vordascope
{

namespace
{

constexpr std::string_view PLACE = "<div id=\"page\">";
constexpr std::string_view CAPTURES = "<script type=\"application/octet-stream\" id=\"captures\">";

void append_base64(std::string &out, std::string_view bytes)
{
    constexpr char DIGITS[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (size_t at = 0; at < bytes.size(); at += 3) {
        const std::string_view group = bytes.substr(at, 3);
        uint32_t bits = 0;
        for (size_t i = 0; i < 3; i++)
            bits = bits << 8 | (i < group.size() ? static_cast<uint8_t>(group[i]) : 0U);
        for (size_t i = 0; i < 4; i++)
            out += i <= group.size() ? DIGITS[bits >> (18 - 6 * i) & 63] : '=';
    }
}

} // namespace

std::string_view empty_page()
{
#ifdef VORDASCOPE_PAGE
    return {vordascope_page_begin, vordascope_page_end};
#else
    return {};
#endif
}

std::string_view page_figures()
{
#ifdef VORDASCOPE_PAGE
    return {vordascope_figures_begin, vordascope_figures_end};
#else
    return {};
#endif
}

std::optional<std::string> page_with(std::string_view page, std::string_view model,
                                     std::string_view plain)
{
    const size_t shown = page.find(PLACE) + PLACE.size();
    const size_t captures = page.find(CAPTURES) + CAPTURES.size();
    if (shown < PLACE.size() || captures < shown)
        return {};

    uLongf size = compressBound(model.size());
    std::string deflated(size, '\0');
    if (compress(reinterpret_cast<Bytef *>(deflated.data()), &size,
                 reinterpret_cast<const Bytef *>(model.data()), model.size()) != Z_OK)
        return {};
    deflated.resize(size);

    std::string out;
    out.reserve(page.size() + plain.size() + deflated.size() / 3 * 4 + 4);
    out.append(page, 0, shown).append(plain).append(page, shown, captures - shown);
    append_base64(out, deflated);
    out.append(page, captures);
    return out;
}

std::string live_page(std::string_view page)
{
    constexpr std::string_view POLICY = "default-src 'none'";
    const size_t policy = page.find(POLICY);
    const size_t captures = page.find(CAPTURES);
    if (policy == std::string_view::npos || captures == std::string_view::npos || captures < policy)
        return "";
    std::string out(page.substr(0, captures + CAPTURES.size()));
    out.insert(policy + POLICY.size(), "; connect-src 'self'");
    out += "live";
    out += page.substr(captures + CAPTURES.size());
    return out;
}

} // namespace vordascope
