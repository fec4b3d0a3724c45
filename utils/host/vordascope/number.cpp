// Numbers that are no plain integers.
#include "number.h"

#include <charconv>
#include <cstring>
#include <system_error>

namespace vordascope
{

namespace
{

template <typename Number>
bool take_any(std::string_view &text, Number &result)
{
    if (text.empty() || !is(text[0], DIGIT) ||
        (text.size() > 1 && text[0] == '0' && is(text[1], DIGIT)))
        return false;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), result);
    if (error != std::errc())
        return false;
    text.remove_prefix(static_cast<size_t>(end - text.data()));
    return true;
}

} // namespace

const char *read_rare_number(const char *p, Value &value)
{
    value = {p, 0, Kind::decimal, 0};
    p += *p == '-';
    const char *const digits = p;
    uint64_t magnitude = 0;
    bool exact = true;
    for (; is(*p, DIGIT); p++)
        exact = exact && !__builtin_mul_overflow(magnitude, 10, &magnitude) &&
                !__builtin_add_overflow(magnitude, static_cast<unsigned>(*p - '0'), &magnitude);
    if (p == digits) {
        // Up to the end of the line at most: it differs from both.
        if (strncmp(p, "nan", 3) != 0 && strncmp(p, "inf", 3) != 0)
            return nullptr;
        value.kind = Kind::not_finite;
        p += 3;
    } else if (*digits == '0' && p - digits > 1) {
        return nullptr;
    } else if (*p == '.' && is(p[1], DIGIT)) {
        p++;
        while (is(*p, DIGIT))
            p++;
    } else if (exact && (digits == value.begin || magnitude <= uint64_t{1} << 63)) {
        value.kind = Kind::integer;
        value.magnitude = magnitude;
    }
    value.size = static_cast<uint32_t>(p - value.begin);
    return p;
}

bool take_number(std::string_view &text, uint64_t &result)
{
    return take_any(text, result);
}

bool take_number(std::string_view &text, uint32_t &result)
{
    return take_any(text, result);
}

} // namespace vordascope
