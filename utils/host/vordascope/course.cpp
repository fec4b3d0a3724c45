// Keeps the changes of a value.
#include "course.h"

#include "json.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace vordascope
{

namespace
{

// As many digits a double holds whatever they are.
constexpr size_t EXACT_DIGITS = 15;

struct Scaled {
    int64_t value; // in units of the last decimal
    uint8_t decimals;
};

// A printed number as an integer and the number of its decimals, where it has few enough digits and
// can be written again from that; "-0" cannot.
std::optional<Scaled> scaled(const Value &value)
{
    if (value.kind != Kind::integer && value.kind != Kind::decimal)
        return {};
    std::string_view text = value.text();
    const bool negative = value.negative();
    if (negative)
        text.remove_prefix(1);
    if (text.size() > EXACT_DIGITS + 1)
        return {};
    Scaled result = {0, 0};
    size_t digits = 0;
    for (size_t i = 0; i < text.size(); i++) {
        if (text[i] == '.') {
            result.decimals = static_cast<uint8_t>(text.size() - 1 - i);
            continue;
        }
        result.value = result.value * 10 + (text[i] - '0');
        digits++;
    }
    if (digits > EXACT_DIGITS || (negative && result.value == 0))
        return {};
    if (negative)
        result.value = -result.value;
    return result;
}

void append_signed(std::string &out, int64_t value)
{
    char digits[20];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

} // namespace

bool Course::last_is_number() const
{
    return literals_.empty() || (!numbers_.empty() && numbers_.back().at > literals_.back().at);
}

bool Course::put_number(uint32_t at, int64_t value)
{
    if (!empty() && last_is_number() && numbers_.back().value == value)
        return false;
    numbers_.push_back({at, value});
    return true;
}

bool Course::put(uint32_t at, uint64_t value)
{
    return put_number(at, static_cast<int64_t>(value));
}

bool Course::put(uint32_t at, const Value &value)
{
    const std::optional<Scaled> number = scaled(value);
    if (empty() && number)
        decimals_ = number->decimals;
    if (number && number->decimals == decimals_)
        return put_number(at, number->value);
    // Here a number is a difference, so all others are texts.
    std::string json;
    if (value.kind == Kind::boolean)
        json = value.text();
    else
        put_json_string(value.text(), json);
    if (!empty() && !last_is_number() && literals_.back().json == json)
        return false;
    literals_.push_back({at, std::move(json)});
    return true;
}

void Course::forget(uint32_t first)
{
    // The newest change before `first` is what holds there.
    const auto before = [first](auto &changes) {
        return std::find_if(changes.begin(), changes.end(),
                            [first](const auto &change) { return change.at > first; });
    };
    auto number = before(numbers_);
    auto literal = before(literals_);
    const bool have_number = number != numbers_.begin();
    const bool have_literal = literal != literals_.begin();
    if (have_number && (!have_literal || number[-1].at > literal[-1].at))
        (--number)->at = first;
    else if (have_literal)
        (--literal)->at = first;
    numbers_.erase(numbers_.begin(), number);
    literals_.erase(literals_.begin(), literal);
}

void Course::append_number(std::string &out, int64_t value) const
{
    if (decimals_ == 0)
        return append_signed(out, value);
    out += value < 0 ? "\"-" : "\"";
    std::string digits = std::to_string(value < 0 ? -value : value);
    if (digits.size() <= decimals_)
        digits.insert(0, decimals_ + 1 - digits.size(), '0');
    digits.insert(digits.size() - decimals_, 1, '.');
    (out += digits) += '"';
}

void Course::append_last(std::string &out) const
{
    if (empty())
        out += "null";
    else if (last_is_number())
        append_number(out, numbers_.back().value);
    else
        out += literals_.back().json;
}

// When the change comes that follows the first so many, and whether it is a number.
uint32_t Course::change_at(size_t number, size_t literal, bool &is_number) const
{
    is_number = literal == literals_.size() ||
                (number < numbers_.size() && numbers_[number].at < literals_[literal].at);
    return is_number ? numbers_[number].at : literals_[literal].at;
}

void Course::append(std::string &out, uint32_t first) const
{
    std::string places;
    std::string values;
    bool everywhere = true;
    uint32_t last = first;
    int64_t before = 0;
    size_t number = 0;
    size_t literal = 0;
    for (size_t i = 0; i < changes(); i++) {
        bool is_number;
        const uint32_t at = change_at(number, literal, is_number);
        everywhere = everywhere && at - first == i;
        places += i == 0 ? "" : ",";
        put_json(at - last, places);
        last = at;
        values += i == 0 ? "" : ",";
        if (is_number) {
            append_signed(values, numbers_[number].value - before);
            before = numbers_[number++].value;
        } else {
            values += literals_[literal++].json;
        }
    }
    out += '{';
    if (decimals_ != 0) {
        out += "\"decimals\":";
        put_json(decimals_, out);
        out += ',';
    }
    if (!everywhere)
        ((out += "\"at\":[") += places) += "],";
    ((out += "\"v\":[") += values) += "]}";
}

} // namespace vordascope
