// Arithmetic with decimal digits, as on paper.
#include "decimal.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace vordascope
{

namespace
{

constexpr int EXPONENT_MOST = 400;

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

void trim(Decimal &number)
{
    number.digits.erase(0, number.digits.find_first_not_of('0'));
    number.negative = number.negative && !number.zero();
}

// The digits with at least so many of them behind the point, and so many in all.
std::string widened(const Decimal &number, size_t decimals, size_t size)
{
    std::string digits = number.digits + std::string(decimals - number.decimals, '0');
    return std::string(size - digits.size(), '0') + digits;
}

// Two numbers as digits of one length, their points above each other.
struct Aligned {
    std::string a;
    std::string b;
    size_t decimals;
};

Aligned align(const Decimal &a, const Decimal &b)
{
    const size_t decimals = std::max(a.decimals, b.decimals);
    const size_t size =
        std::max(a.digits.size() + decimals - a.decimals, b.digits.size() + decimals - b.decimals);
    return {widened(a, decimals, size), widened(b, decimals, size), decimals};
}

} // namespace

std::optional<Decimal> read_decimal(std::string_view text)
{
    Decimal number;
    if (text.starts_with('-')) {
        number.negative = true;
        text.remove_prefix(1);
    }
    bool point = false;
    size_t count = 0;
    size_t i = 0;
    for (; i < text.size() && (is_digit(text[i]) || (text[i] == '.' && !point)); i++) {
        if (text[i] == '.') {
            point = true;
            continue;
        }
        number.digits += text[i];
        number.decimals += point;
        count++;
    }
    if (count == 0 || text[i - 1] == '.')
        return {};
    if (i < text.size()) {
        int exponent = 0;
        const char *const end = text.data() + text.size();
        const auto [after, error] = std::from_chars(text.data() + i + 1, end, exponent);
        if ((text[i] != 'e' && text[i] != 'E') || error != std::errc() || after != end ||
            std::abs(exponent) > EXPONENT_MOST)
            return {};
        const size_t shift = exponent > 0 ? static_cast<size_t>(exponent) : 0;
        number.digits.append(shift - std::min(shift, number.decimals), '0');
        number.decimals -= std::min(shift, number.decimals);
        number.decimals += exponent < 0 ? static_cast<size_t>(-exponent) : 0;
    }
    trim(number);
    return number;
}

Decimal subtract(const Decimal &a, const Decimal &b)
{
    const Aligned two = align(a, b);
    Decimal result;
    result.decimals = two.decimals;
    const bool add = a.negative != b.negative;
    const bool swap = !add && two.a < two.b;
    result.negative = a.negative != swap;
    const std::string &minuend = swap ? two.b : two.a;
    const std::string &other = swap ? two.a : two.b;
    result.digits.assign(minuend.size() + 1, '0');
    int carry = 0;
    for (size_t i = minuend.size(); i-- > 0;) {
        const int digit = other[i] - '0';
        const int sum = minuend[i] - '0' + (add ? digit : -digit) + carry;
        carry = sum > 9 ? 1 : sum < 0 ? -1 : 0;
        result.digits[i + 1] = static_cast<char>('0' + sum - 10 * carry);
    }
    result.digits[0] = static_cast<char>('0' + carry);
    trim(result);
    return result;
}

Decimal multiply(const Decimal &a, const Decimal &b)
{
    Decimal result;
    result.negative = a.negative != b.negative;
    result.decimals = a.decimals + b.decimals;
    result.digits.assign(a.digits.size() + b.digits.size(), '0');
    for (size_t i = a.digits.size(); i-- > 0;) {
        int carry = 0;
        for (size_t j = b.digits.size(); j-- > 0;) {
            char &place = result.digits[i + j + 1];
            const int sum = place - '0' + (a.digits[i] - '0') * (b.digits[j] - '0') + carry;
            place = static_cast<char>('0' + sum % 10);
            carry = sum / 10;
        }
        if (!b.digits.empty())
            result.digits[i] = static_cast<char>('0' + carry);
    }
    trim(result);
    while (result.decimals > 0 && (result.zero() || result.digits.back() == '0')) {
        result.digits.resize(result.digits.size() - !result.zero());
        result.decimals--;
    }
    return result;
}

int compare(const Decimal &a, const Decimal &b)
{
    if (a.negative != b.negative)
        return a.negative ? -1 : 1;
    const Aligned two = align(a, b);
    const int order = two.a.compare(two.b);
    return a.negative ? -order : order;
}

double to_double(const Decimal &number)
{
    std::string text;
    put(number, text);
    return strtod(text.c_str(), nullptr);
}

void put(const Decimal &number, std::string &out)
{
    if (number.negative)
        out += '-';
    const size_t size = number.digits.size();
    const size_t whole = size - std::min(size, number.decimals);
    out += whole == 0 ? "0" : number.digits.substr(0, whole);
    if (number.decimals == 0)
        return;
    out += '.';
    out.append(number.decimals - (size - whole), '0');
    out.append(number.digits, whole);
}

} // namespace vordascope
