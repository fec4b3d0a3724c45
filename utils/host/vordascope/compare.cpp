// The comparison of two snapshots and its report.
#include "compare.h"

#include "shown.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace vordascope
{

namespace
{

constexpr size_t KEY_COLUMN_MAX = 48; // keys up to this length are aligned
constexpr size_t UNREAD_SHOWN_MAX = 5;
constexpr char UNREAD[] = "lines that are not understood";

// b - a, where both are numbers, and finite.
std::optional<Decimal> distance(const Value &a, const Value &b)
{
    if (!a.number() || !b.number())
        return {};
    const std::optional<Decimal> first = read_decimal(a.text());
    const std::optional<Decimal> second = read_decimal(b.text());
    if (!first || !second)
        return {};
    return subtract(*second, *first);
}

void put_value(const Value &value, std::string &out)
{
    if (value.kind == Kind::empty)
        out += "(nothing)";
    else
        put_shown(value.text(), out);
}

// "8.7", "1000", "1.11e-14": three digits, or as many as stand before the point. (What the page loads
// is smaller by a tenth without the library's printf.)
void put_percent(double percent, std::string &out)
{
    constexpr int EXPONENT_MIN = -4; // smaller numbers are written with one
    constexpr double WHOLE_MAX = 1e18;
    int exponent = 0; // of ten, by which it has been divided
    double rest = percent;
    for (; rest >= WHOLE_MAX; exponent++)
        rest /= 10;
    if (rest >= 999.5) {
        out += std::to_string(static_cast<uint64_t>(std::nearbyint(rest)));
        out.append(static_cast<size_t>(exponent), '0');
        return;
    }
    for (; rest != 0 && rest < 99.95; exponent--)
        rest *= 10;
    std::string digits = std::to_string(static_cast<uint64_t>(std::nearbyint(rest)));
    exponent += static_cast<int>(digits.size()) - 1; // of the first digit
    while (digits.size() > 1 && digits.back() == '0')
        digits.pop_back();
    const bool small = exponent < EXPONENT_MIN;
    const int whole = small ? 1 : exponent + 1; // digits before the point
    if (whole <= 0)
        digits.insert(0, static_cast<size_t>(1 - whole), '0');
    const auto point = static_cast<size_t>(std::max(whole, 1));
    if (digits.size() < point)
        digits.append(point - digits.size(), '0');
    out.append(digits, 0, point);
    if (digits.size() > point)
        out.append(1, '.').append(digits, point);
    if (small)
        out += (exponent > -10 ? "e-0" : "e-") + std::to_string(-exponent);
}

// "8000 -> 40000  (+32000, +400 %)"
void put_change(const Value &a, const Value &b, std::string &out)
{
    put_value(a, out);
    out += " -> ";
    put_value(b, out);
    const std::optional<Decimal> apart = distance(a, b);
    if (!apart)
        return;
    std::string size = apart->negative ? "" : "+";
    put(*apart, size);
    out += "  (";
    put_shown(size, out);
    const double before = std::fabs(to_double(*read_decimal(a.text())));
    const double percent = 100 * to_double(*apart) / before;
    if (before != 0 && std::isfinite(before) && std::isfinite(percent)) {
        out += percent < 0 ? ", -" : ", +";
        put_percent(std::fabs(percent), out);
        out += " %";
    }
    out += ')';
}

void put_place(const Field &field, uint32_t i, std::string &out)
{
    if (field.shape == Shape::rows)
        out += '[' + std::to_string(i / field.columns) + ']';
    out += '[' + std::to_string(field.shape == Shape::rows ? i % field.columns : i) + ']';
}

std::string shape_of(const Field &field)
{
    if (field.shape == Shape::scalar)
        return "a single value";
    if (field.shape == Shape::list)
        return field.count == 1 ? "a list of 1 value" : std::to_string(field.count) + " values";
    const uint32_t whole = field.count / field.columns;
    const uint32_t rest = field.count % field.columns;
    return std::to_string(whole) + " x " + std::to_string(field.columns) +
           (rest != 0 ? " and " + std::to_string(rest) : "") + " values";
}

// "3 of 9 values, most [0][1]: "; of a single value nothing.
void put_count(const Field &field, uint32_t count, const char *which, uint32_t place,
               std::string &out)
{
    if (field.shape == Shape::scalar)
        return;
    out += std::to_string(count) + " of " + std::to_string(field.count) + " values, " + which + ' ';
    put_place(field, place, out);
    out += ": ";
}

// Appends how the values differ. The shapes are the same.
bool put_values(const Value *a, const Value *b, const Field &field, const Rule &rule,
                std::string &out)
{
    uint32_t count = 0;
    uint32_t most = 0;
    std::optional<Decimal> most_apart;
    bool settled = false; // nothing is farther apart than what is no number
    for (uint32_t i = 0; i < field.count; i++) {
        if (same(a[i], b[i], rule))
            continue;
        if (count++ == 0)
            most = i;
        if (settled)
            continue;
        std::optional<Decimal> apart = distance(a[i], b[i]);
        settled = !apart;
        if (apart)
            apart->negative = false;
        if (settled || !most_apart || compare(*apart, *most_apart) > 0) {
            most = i;
            most_apart = std::move(apart);
        }
    }
    if (count == 0)
        return false;
    put_count(field, count, "most", most, out);
    put_change(a[most], b[most], out);
    return true;
}

// "Gwd RGL / r channel": the name of a field within its item.
std::string name_in_item(const Snapshot &snapshot, const Field &field)
{
    std::string name = snapshot.block(field);
    if (!name.empty())
        name += " / ";
    return name.append(field.key);
}

void put_range(const Rule &rule, std::string &out)
{
    if (rule.low)
        put(rule.low->exact, out);
    out += "..";
    if (rule.high)
        put(rule.high->exact, out);
}

// Appends how a field leaves the range of its rule; nothing when it does not. Returns whether it
// does.
bool put_out_of_range(const Snapshot &snapshot, const Field &field, const Rule &rule,
                      std::string &out)
{
    if (!rule.ranged())
        return false;
    const Value *const values = snapshot.begin(field);
    uint32_t count = 0;
    uint32_t first = 0;
    for (uint32_t i = 0; i < field.count; i++)
        if (!in_range(values[i], rule) && count++ == 0)
            first = i;
    if (count == 0)
        return false;
    put_count(field, count, "first", first, out);
    put_value(values[first], out);
    out += " is outside of ";
    put_range(rule, out);
    return true;
}

// Appends how two fields differ, or leave their range. Returns whether they do.
bool put_difference(const Snapshot &a, const Field &field_a, const Snapshot &b,
                    const Field &field_b, const Rule &rule, std::string &out)
{
    if (a.damaged(field_a) != b.damaged(field_b)) {
        out += a.damaged(field_a) ? "damaged in the first" : "damaged in the second";
        return true;
    }
    if (rule.compares() &&
        put_difference(a.begin(field_a), field_a, b.begin(field_b), field_b, rule, out))
        return true;
    return put_out_of_range(b, field_b, rule, out);
}

// A comparison that is being made.
class Comparing
{
public:
    Comparing(const Snapshot &a, const Snapshot &b, Rules &rules, std::string_view name_a,
              std::string_view name_b, bool every)
        : sides_{&a, &b}, rules_(rules), names_{name_a, name_b}, every_(every)
    {
    }

    Comparison run()
    {
        const Snapshot &a = *sides_[0];
        const Snapshot &b = *sides_[1];
        std::vector<bool> met(b.fields.size());
        for (const Field &field : a.fields) {
            const Field *const other = b.same_field(a, field);
            if (other != nullptr)
                met[static_cast<size_t>(other - b.fields.data())] = true;
            const Rule &rule = rules_.of(a, field);
            if (rule.ignore)
                continue;
            if (other == nullptr) {
                put_only(0, field, rule);
                continue;
            }
            ItemDifferences &item = item_of(0, field);
            std::string what;
            if (put_difference(a, field, b, *other, rule, what))
                (rule.warn ? result_.warned : result_.different)++;
            std::string every;
            if (every_ && rule.compares() && !a.damaged(field) && !b.damaged(*other))
                put_every(a.begin(field), field, b.begin(*other), *other, rule, every);
            if (!what.empty())
                item.differences.push_back(
                    {name_in_item(a, field), std::move(what), rule.warn, std::move(every)});
        }
        for (size_t i = 0; i < b.fields.size(); i++) {
            if (met[i])
                continue;
            const Rule &rule = rules_.of(b, b.fields[i]);
            if (!rule.ignore)
                put_only(1, b.fields[i], rule);
        }
        if (!rules_.chosen())
            put_unread();
        return std::move(result_);
    }

    // Of one side alone: what leaves its range.
    Comparison run_alone()
    {
        const Snapshot &snapshot = *sides_[0];
        for (const Field &field : snapshot.fields) {
            const Rule &rule = rules_.of(snapshot, field);
            if (rule.ignore || !rule.ranged())
                continue;
            ItemDifferences &item = item_of(0, field);
            std::string what;
            if (!put_out_of_range(snapshot, field, rule, what))
                continue;
            (rule.warn ? result_.warned : result_.different)++;
            item.differences.push_back({name_in_item(snapshot, field), std::move(what), rule.warn});
        }
        return std::move(result_);
    }

private:
    // The item of a field, which is compared.
    ItemDifferences &item_of(int side, const Field &field)
    {
        if (side != last_side_ || field.node != last_node_) {
            last_side_ = side;
            last_node_ = field.node;
            last_ = item_named(sides_[side]->item(field));
        }
        result_.compared++;
        result_.items[last_].fields++;
        return result_.items[last_];
    }

    size_t item_named(const std::string &name)
    {
        const auto [known, added] = places_.try_emplace(name, result_.items.size());
        if (added)
            result_.items.push_back({name, {}});
        return known->second;
    }

    void put_only(int side, const Field &field, const Rule &rule)
    {
        ItemDifferences &item = item_of(side, field);
        (side == 0 ? item.only_a : item.only_b)++;
        (rule.warn ? result_.warned : side == 0 ? result_.only_a : result_.only_b)++;
        const Snapshot &snapshot = *sides_[side];
        std::string what = "only in ";
        put_shown(names_[side], what);
        if (field.shape == Shape::scalar) {
            what += ": ";
            put_value(*snapshot.begin(field), what);
        } else {
            what += " (" + std::to_string(field.count) + " values)";
        }
        item.differences.push_back({name_in_item(snapshot, field), std::move(what), rule.warn});
    }

    void put_unread()
    {
        std::map<std::string_view, int> surplus; // how many more the second one has
        for (const Unread &line : sides_[0]->unread)
            surplus[line.text]--;
        for (const Unread &line : sides_[1]->unread)
            surplus[line.text]++;
        for (const auto &[text, count] : surplus) {
            if (count == 0)
                continue;
            result_.unread += static_cast<size_t>(std::abs(count));
            ItemDifferences &item = result_.items[item_named(UNREAD)];
            if (item.differences.size() == UNREAD_SHOWN_MAX)
                continue;
            std::string what = "only in ";
            put_shown(names_[count > 0], what);
            what += ": ";
            put_shown(text, what);
            item.differences.push_back({"", std::move(what), false});
        }
    }

    const Snapshot *sides_[2];
    Rules &rules_;
    std::string_view names_[2];
    bool every_;
    Comparison result_;
    std::map<std::string, size_t> places_;
    int last_side_ = -1;
    NodeIndex last_node_ = 0;
    size_t last_ = 0;
};

} // namespace

bool put_difference(const Value *values_a, const Field &field_a, const Value *values_b,
                    const Field &field_b, const Rule &rule, std::string &out)
{
    if (field_a.shape != field_b.shape || field_a.count != field_b.count ||
        field_a.columns != field_b.columns) {
        out += shape_of(field_a) + " -> " + shape_of(field_b);
        return true;
    }
    if (put_values(values_a, values_b, field_a, rule, out))
        return true;
    // What stands behind a value may say what the value means. Where the values are not the same in
    // full, it may also have been computed of them.
    if (field_a.note == field_b.note || values_a[0].text() != values_b[0].text())
        return false;
    put_shown(field_a.note.empty() ? "(nothing)" : field_a.note, out);
    out += " behind the value -> ";
    put_shown(field_b.note.empty() ? "(nothing)" : field_b.note, out);
    return true;
}

void put_every(const Value *values_a, const Field &field_a, const Value *values_b,
               const Field &field_b, const Rule &rule, std::string &out)
{
    if (field_a.shape == Shape::scalar || field_a.shape != field_b.shape ||
        field_a.count != field_b.count || field_a.columns != field_b.columns)
        return;
    for (uint32_t i = 0; i < field_a.count; i++) {
        if (same(values_a[i], values_b[i], rule))
            continue;
        put_place(field_a, i, out);
        out += "  ";
        put_change(values_a[i], values_b[i], out);
        out += '\n';
    }
}

bool ItemDifferences::same() const
{
    return std::all_of(differences.begin(), differences.end(),
                       [](const Difference &difference) { return difference.warning; });
}

char ItemDifferences::only_side() const
{
    if (fields < 2)
        return '\0';
    return only_a == fields ? 'A' : only_b == fields ? 'B' : '\0';
}

Comparison compare(const Snapshot &a, const Snapshot &b, Rules &rules, std::string_view name_a,
                   std::string_view name_b, bool every)
{
    return Comparing(a, b, rules, name_a, name_b, every).run();
}

Comparison hold(const Snapshot &snapshot, Rules &rules)
{
    return Comparing(snapshot, snapshot, rules, "", "", false).run_alone();
}

void put_report(const ItemDifferences &item, std::string_view name_a, std::string_view name_b,
                std::string &out)
{
    if (item.differences.empty())
        return;
    if (const char side = item.only_side(); side != '\0') {
        out += item.item + ": only in ";
        put_shown(side == 'A' ? name_a : name_b, out);
        out += " (" + std::to_string(item.fields) + " fields)\n";
        return;
    }
    size_t width = 0;
    for (const Difference &difference : item.differences)
        if (difference.name.size() <= KEY_COLUMN_MAX)
            width = std::max(width, difference.name.size());
    out += item.item + '\n';
    for (const Difference &difference : item.differences) {
        out += "  " + difference.name;
        if (width > 0) {
            out.append(difference.name.size() < width ? width - difference.name.size() : 0, ' ');
            out += "  ";
        }
        out += difference.what + (difference.warning ? "  (warning)\n" : "\n");
        for (std::string_view rest = difference.every; !rest.empty();) {
            const size_t end = rest.find('\n') + 1;
            out.append("    ").append(rest.substr(0, end));
            rest.remove_prefix(end);
        }
    }
}

void put_report(const Comparison &comparison, std::string_view name_a, std::string_view name_b,
                std::string &out)
{
    for (const ItemDifferences &item : comparison.items)
        put_report(item, name_a, name_b, out);
}

} // namespace vordascope
