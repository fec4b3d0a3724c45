// How far good snapshots differ.
#include "learn.h"

#include <algorithm>

namespace vordascope
{

namespace
{

Decimal negated(Decimal number)
{
    number.negative = !number.negative && !number.zero();
    return number;
}

Decimal sum(const Decimal &a, const Decimal &b)
{
    return subtract(a, negated(b));
}

void widen(Decimal &low, Decimal &high, const Decimal &number)
{
    if (compare(number, low) < 0)
        low = number;
    if (compare(number, high) > 0)
        high = number;
}

// The pattern that matches a path, in quotes where its words could be read as those of a rule.
void put_glob(std::string_view path, std::string &out)
{
    const bool quoted = path.find(' ') != std::string_view::npos;
    out += quoted ? "\"" : "";
    out += path;
    out += quoted ? "\"" : "";
}

std::string counted(uint64_t count, const char *what)
{
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

} // namespace

void Learner::add(const Snapshot &snapshot)
{
    if (snapshots_++ == 0) {
        first_ = snapshot;
        known_.resize(first_.fields.size());
        return;
    }
    size_t found = 0;
    for (size_t i = 0; i < first_.fields.size(); i++) {
        const Field *const field = snapshot.same_field(first_, first_.fields[i]);
        if (field == nullptr)
            continue;
        found++;
        known_[i].count++;
        add(first_.fields[i], snapshot, *field, known_[i]);
    }
    if (found == snapshot.fields.size())
        return;
    for (const Field &field : snapshot.fields)
        if (first_.same_field(snapshot, field) == nullptr)
            further_[snapshot.path(field)]++;
}

void Learner::add(const Field &first, const Snapshot &snapshot, const Field &field, Known &known)
{
    if (first.shape != field.shape || first.count != field.count ||
        first.columns != field.columns) {
        known.varies = "its shape";
        return;
    }
    const Value *const before = first_.begin(first);
    const Value *const values = snapshot.begin(field);
    if (first.note != field.note && before[0].text() == values[0].text())
        known.varies = "what stands behind it";
    for (uint32_t i = 0; i < field.count && known.varies == nullptr; i++) {
        if (before[i].text() == values[i].text())
            continue;
        const std::optional<Decimal> a = read_decimal(before[i].text());
        const std::optional<Decimal> b = read_decimal(values[i].text());
        if (!before[i].number() || !values[i].number() || !a || !b) {
            known.varies = "what is no number";
            return;
        }
        Spread &spread = known.spread.try_emplace(i, Spread{*a, *a}).first->second;
        widen(spread.low, spread.high, *b);
    }
}

bool Learner::constant(const Known &known) const
{
    return known.count == snapshots_ && known.varies == nullptr && known.spread.empty();
}

void Learner::put_rules(const Decimal &margin, std::string &out) const
{
    const std::vector<Field> &fields = first_.fields;
    for (size_t begin = 0; begin < fields.size();) {
        const std::string item = first_.item(fields[begin]);
        size_t end = begin;
        size_t constants = 0;
        for (; end < fields.size() && first_.item(fields[end]) == item; end++)
            constants += constant(known_[end]);
        put_glob(item, out);
        out += "  exact  # " + counted(snapshots_, "snapshot") + ", " + std::to_string(constants) +
               " of " + counted(end - begin, "field") + " constant\n";
        for (; begin < end; begin++)
            if (!constant(known_[begin]))
                put_rule(fields[begin], known_[begin], margin, out);
    }
    for (const auto &[path, count] : further_) {
        put_glob(path, out);
        out += "  ignore  # only in " + std::to_string(count) + " of " +
               counted(snapshots_, "snapshot") + '\n';
    }
}

void Learner::put_rule(const Field &field, const Known &known, const Decimal &margin,
                       std::string &out) const
{
    put_glob(first_.path(field), out);
    if (known.count < snapshots_)
        out += "  ignore  # only in " + std::to_string(known.count) + " of " +
               counted(snapshots_, "snapshot");
    else if (known.varies != nullptr)
        out += std::string("  ignore  # ") + known.varies + " varies";
    else
        put_spread(field, known, margin, out);
    out += '\n';
}

void Learner::put_spread(const Field &field, const Known &known, const Decimal &margin,
                         std::string &out) const
{
    Decimal low = known.spread.begin()->second.low;
    Decimal high = low;
    Decimal most;
    for (const auto &[place, spread] : known.spread) {
        const Decimal apart = subtract(spread.high, spread.low);
        if (compare(apart, most) > 0)
            most = apart;
        widen(low, high, spread.low);
        widen(low, high, spread.high);
    }
    bool ranged = true; // all values are numbers, those that never change too
    for (uint32_t i = 0; i < field.count; i++) {
        const Value &value = first_.begin(field)[i];
        const std::optional<Decimal> number = read_decimal(value.text());
        ranged = ranged && value.number() && number;
        if (ranged)
            widen(low, high, *number);
    }
    const Decimal wider = multiply(most, margin);
    out += "  abs=";
    put(sum(most, wider), out);
    if (ranged) {
        out += " range=";
        put(subtract(low, wider), out);
        out += "..";
        put(sum(high, wider), out);
    }
    out += "  # " + counted(snapshots_, "snapshot") + ", ";
    if (field.shape != Shape::scalar)
        out += std::to_string(known.spread.size()) + " of " + counted(field.count, "value") +
               " varied, ";
    out += "at most ";
    put(most, out);
    out += " apart";
}

} // namespace vordascope
