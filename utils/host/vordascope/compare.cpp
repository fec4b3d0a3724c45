// The comparison of two snapshots and its report.
#include "compare.h"

#include "select.h"
#include "shown.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <unordered_map>

namespace vordascope
{

namespace
{

constexpr size_t KEY_COLUMN_MAX = 48; // keys up to this length are aligned

constexpr double ROUNDED = 1 + 4 * DBL_EPSILON; // for a product: 0.29 of 100 is 29

double to_double(const Value &value)
{
    if (value.kind == Kind::integer) {
        const auto magnitude = static_cast<double>(value.magnitude);
        return value.negative() ? -magnitude : magnitude;
    }
    return strtod(std::string(value.text()).c_str(), nullptr);
}

int decimals(const Value &value)
{
    const size_t point = value.text().find('.');
    return point == std::string_view::npos ? 0 : static_cast<int>(value.size - point - 1);
}

// Of a distance between two numbers, as many decimals as the longer of them has.
std::string distance_text(const Value &a, const Value &b, double size)
{
    char text[400];
    snprintf(text, sizeof(text), "%+.*f", std::min(std::max(decimals(a), decimals(b)), 20), size);
    return text;
}

// Two numbers apart. Exact for integers as long as the distance fits 64 bits.
struct Distance {
    double size = 0; // b - a; not finite when either is not
    bool exact = false;
    bool less = false; // b is less than a
    uint64_t magnitude = 0;
};

Distance distance(const Value &a, const Value &b)
{
    Distance result;
    result.size = to_double(b) - to_double(a);
    if (a.kind != Kind::integer || b.kind != Kind::integer) {
        // 1.10 and 1.00 are 0.10 apart, as people count, and not the binary fraction beside it.
        if (std::isfinite(result.size))
            result.size = strtod(distance_text(a, b, result.size).c_str(), nullptr);
        return result;
    }
    const bool signs_differ = a.negative() != b.negative();
    if (signs_differ) {
        result.exact = !__builtin_add_overflow(a.magnitude, b.magnitude, &result.magnitude);
        result.less = b.negative();
    } else {
        const bool larger = b.magnitude > a.magnitude;
        result.exact = true;
        result.magnitude = larger ? b.magnitude - a.magnitude : a.magnitude - b.magnitude;
        result.less = larger == a.negative();
    }
    if (result.exact)
        result.size = result.less ? -static_cast<double>(result.magnitude)
                                  : static_cast<double>(result.magnitude);
    return result;
}

bool same(const Value &a, const Value &b, const Rules &rules)
{
    if (a.text() == b.text())
        return true;
    if (!a.number() || !b.number())
        return false;
    const double apart = std::fabs(distance(a, b).size);
    if (!std::isfinite(apart))
        return false;
    const double larger = std::max(std::fabs(to_double(a)), std::fabs(to_double(b)));
    return apart <= rules.absolute || apart <= ROUNDED * rules.relative * larger;
}

void put_value(const Value &value, std::string &out)
{
    if (value.kind == Kind::empty)
        out += "(nothing)";
    else
        put_shown(value.text(), out);
}

// "8000 -> 40000  (+32000, +400 %)"
void put_change(const Value &a, const Value &b, std::string &out)
{
    put_value(a, out);
    out += " -> ";
    put_value(b, out);
    if (!a.number() || !b.number())
        return;
    const Distance apart = distance(a, b);
    if (!std::isfinite(apart.size))
        return;
    out += "  (";
    if (apart.exact) {
        out += apart.less ? '-' : '+';
        out += std::to_string(apart.magnitude);
    } else {
        out += distance_text(a, b, apart.size);
    }
    const double before = std::fabs(to_double(a));
    if (before != 0) {
        const double percent = 100 * apart.size / before;
        char text[400];
        snprintf(text, sizeof(text), std::fabs(percent) < 999.5 ? ", %+.3g %%" : ", %+.0f %%",
                 percent);
        out += text;
    }
    out += ')';
}

void put_place(const Field &field, uint32_t i, std::string &out)
{
    if (field.shape == Shape::rows)
        out += '[' + std::to_string(i / field.columns) + ']';
    out += '[' + std::to_string(field.shape == Shape::rows ? i % field.columns : i) + ']';
}

// Appends how two fields differ; nothing when they do not. Returns whether they do.
bool put_difference(const Snapshot &a, const Field &field_a, const Snapshot &b,
                    const Field &field_b, const Rules &rules, std::string &out)
{
    const Value *const values_a = a.begin(field_a);
    const Value *const values_b = b.begin(field_b);
    if (field_a.count != field_b.count) {
        out += std::to_string(field_a.count) + (field_a.count == 1 ? " value -> " : " values -> ") +
               std::to_string(field_b.count) + (field_b.count == 1 ? " value" : " values");
        return true;
    }

    uint32_t count = 0;
    uint32_t most = 0;
    double most_apart = -1;
    for (uint32_t i = 0; i < field_a.count; i++) {
        if (same(values_a[i], values_b[i], rules))
            continue;
        count++;
        double apart = std::fabs(distance(values_a[i], values_b[i]).size);
        if (std::isnan(apart))
            apart = HUGE_VAL;
        if (apart > most_apart) {
            most_apart = apart;
            most = i;
        }
    }
    if (count == 0)
        return false;
    if (field_a.shape != Shape::scalar) {
        out += std::to_string(count) + " of " + std::to_string(field_a.count) + " values, most ";
        put_place(field_a, most, out);
        out += ": ";
    }
    put_change(values_a[most], values_b[most], out);
    return true;
}

// What is to be said of one item.
struct Paragraph {
    std::string item;
    std::vector<std::pair<std::string, std::string>> lines; // of each field: its name, what differs
    size_t fields = 0;                                      // in either snapshot
    size_t only_a = 0;
    size_t only_b = 0;
};

class Report
{
public:
    Report(std::string_view name_a, std::string_view name_b) : names_{name_a, name_b} {}

    Paragraph &of(const Snapshot &snapshot, const Field &field)
    {
        const std::string item = snapshot.item(field);
        if (paragraphs_.empty() || paragraphs_[last_].item != item) {
            const auto [known, added] = places_.try_emplace(item, paragraphs_.size());
            if (added)
                paragraphs_.push_back({item, {}});
            last_ = known->second;
        }
        return paragraphs_[last_];
    }

    static std::string name(const Snapshot &snapshot, const Field &field)
    {
        std::string name = snapshot.block(field);
        if (!name.empty())
            name += " / ";
        return name.append(field.key);
    }

    void put(std::string &out) const
    {
        for (const Paragraph &paragraph : paragraphs_)
            put(paragraph, out);
    }

    const std::string_view names_[2];

private:
    void put(const Paragraph &paragraph, std::string &out) const
    {
        if (paragraph.lines.empty())
            return;
        for (const auto &[only, name] :
             {std::pair(paragraph.only_a, names_[0]), std::pair(paragraph.only_b, names_[1])}) {
            if (only == paragraph.fields && only > 1) {
                out += paragraph.item + ": only in ";
                put_shown(name, out);
                out += " (" + std::to_string(only) + " fields)\n";
                return;
            }
        }
        size_t width = 0;
        for (const auto &[key, difference] : paragraph.lines)
            if (key.size() <= KEY_COLUMN_MAX)
                width = std::max(width, key.size());
        out += paragraph.item + '\n';
        for (const auto &[key, difference] : paragraph.lines) {
            out += "  " + key;
            out.append(key.size() < width ? width - key.size() : 0, ' ');
            out += "  " + difference + '\n';
        }
    }

    std::vector<Paragraph> paragraphs_;
    std::unordered_map<std::string, size_t> places_;
    size_t last_ = 0;
};

bool compared(const Rules &rules, const Snapshot &snapshot, const Field &field)
{
    const auto any_of = [&snapshot, &field](const std::vector<std::string> &patterns) {
        return std::any_of(patterns.begin(), patterns.end(), [&](const std::string &pattern) {
            return selects(pattern, snapshot, field);
        });
    };
    return (rules.only.empty() || any_of(rules.only)) && !any_of(rules.ignore);
}

} // namespace

Comparison compare(const Snapshot &a, const Snapshot &b, const Rules &rules,
                   std::string_view name_a, std::string_view name_b, std::string &out)
{
    Comparison result;
    Report report(name_a, name_b);
    const auto put_only = [&report](const Snapshot &snapshot, const Field &field, int side) {
        Paragraph &paragraph = report.of(snapshot, field);
        paragraph.fields++;
        (side == 0 ? paragraph.only_a : paragraph.only_b)++;
        std::string text = "only in ";
        put_shown(report.names_[side], text);
        if (field.shape == Shape::scalar) {
            text += ": ";
            put_value(*snapshot.begin(field), text);
        } else {
            text += " (" + std::to_string(field.count) + " values)";
        }
        paragraph.lines.emplace_back(Report::name(snapshot, field), text);
    };

    for (const Field &field : a.fields) {
        if (!compared(rules, a, field))
            continue;
        result.compared++;
        const Field *const other = b.same_field(a, field);
        if (other == nullptr) {
            result.only_a++;
            put_only(a, field, 0);
            continue;
        }
        Paragraph &paragraph = report.of(a, field);
        paragraph.fields++;
        std::string difference;
        if (put_difference(a, field, b, *other, rules, difference)) {
            result.different++;
            paragraph.lines.emplace_back(Report::name(a, field), difference);
        }
    }
    for (const Field &field : b.fields) {
        if (!compared(rules, b, field) || a.same_field(b, field) != nullptr)
            continue;
        result.compared++;
        result.only_b++;
        put_only(b, field, 1);
    }
    report.put(out);
    return result;
}

} // namespace vordascope
