// Numbers as people write them, exact whatever their size: what two values are apart and whether a
// tolerance covers it must not depend on what a double can hold.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vordascope
{

struct Decimal {
    bool negative = false; // never of 0
    std::string digits;    // without zeros in front; none for 0
    size_t decimals = 0;   // how many digits stand behind the point; there may be fewer digits

    bool zero() const { return digits.empty(); }
};

// Reads "12", "-0.50" or "1e-3". No value for anything else, nor for an exponent beyond 400.
std::optional<Decimal> read_decimal(std::string_view text);

// a - b, with the decimals of the longer one.
Decimal subtract(const Decimal &a, const Decimal &b);

// a * b, without zeros at the end of its decimals.
Decimal multiply(const Decimal &a, const Decimal &b);

// Less than 0, 0 or more than 0, as a is less than, equal to or more than b.
int compare(const Decimal &a, const Decimal &b);

// The nearest double; infinite where there is none.
double to_double(const Decimal &number);

// Appends a number with all its decimals.
void put(const Decimal &number, std::string &out);

} // namespace vordascope
