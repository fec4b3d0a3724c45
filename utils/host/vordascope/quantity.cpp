// Numbers of snapshots, and computed ones.
#include "quantity.h"

#include "select.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <limits>

namespace vordascope
{

namespace
{

constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();

// Adds a quantity for each value of a place.
void add_values(const Snapshot &snapshot, const Place &place, std::vector<Quantity> &quantities)
{
    const Field &field = *place.field;
    for (uint32_t i = place.first; i < place.first + place.count; i++) {
        std::string name = snapshot.path(field);
        if (field.shape == Shape::rows)
            name += '[' + std::to_string(i / field.columns) + ']';
        if (field.shape != Shape::scalar)
            name += '[' + std::to_string(field.shape == Shape::rows ? i % field.columns : i) + ']';
        quantities.push_back({std::move(name)});
    }
}

double number_at(const Snapshot &snapshot, std::string_view path)
{
    const Place place = find(snapshot, path);
    if (place.field == nullptr || place.count != 1)
        return NO_NUMBER;
    return number_of(snapshot.begin(*place.field)[place.first]);
}

} // namespace

double number_of(const Value &value)
{
    if (value.kind == Kind::integer) {
        const auto magnitude = static_cast<double>(value.magnitude);
        return value.negative() ? -magnitude : magnitude;
    }
    return value.number() ? strtod(std::string(value.text()).c_str(), nullptr) : NO_NUMBER;
}

std::string Computed::formula() const
{
    const std::string product = std::string(factors[0]).append(" x ").append(factors[1]);
    return stops ? "log2(" + product + ')' : product;
}

double Quantity::in(const Snapshot &snapshot) const
{
    if (computed == nullptr)
        return number_at(snapshot, name);
    double product = 1;
    for (const std::string_view factor : computed->factors)
        product *= number_at(snapshot, factor);
    if (!computed->stops)
        return product;
    return product > 0 ? std::log2(product) : NO_NUMBER;
}

bool add_quantities(const Snapshot &snapshot, const std::string &name,
                    std::vector<Quantity> &quantities, std::string &error)
{
    const size_t before = quantities.size();
    const auto *const computed = std::find_if(std::begin(COMPUTED), std::end(COMPUTED),
                                              [&](const Computed &c) { return c.name == name; });
    if (const Place place = find(snapshot, name); place.field != nullptr)
        add_values(snapshot, place, quantities);
    else if (computed != std::end(COMPUTED))
        quantities.push_back({name, computed});
    else
        for (const Field &field : snapshot.fields)
            if (selects(name, snapshot, field))
                add_values(snapshot, {&field, 0, field.count}, quantities);
    if (quantities.size() > before)
        return true;
    error = "no field " + name + ". " + suggest(snapshot, name);
    return false;
}

} // namespace vordascope
