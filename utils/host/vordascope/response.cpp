// Measures answers: finds where a series rests, before and at its end, and what lies between.
#include "response.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace vordascope
{

namespace
{

constexpr size_t FEWEST = 4;       // values that can tell anything
constexpr size_t SHORTEST_END = 3; // values
constexpr size_t END_PART = 4;     // the end is this part of what follows the departure
constexpr double NOISE_MOST = 4;   // standard deviations that noise reaches
constexpr size_t STRAYS_PART = 8;  // of a rest, single values outside the band at most
constexpr double TREND_MOST = 0.2; // of the band
constexpr double EXCURSION = 3;    // of a recovery: how often what it does not come back
// Of normal noise: its deviation by the median second difference, and a median's deviation by that
// of its values over the square root of their number.
constexpr double SIGMA_OF_BEND = 0.6053;
constexpr double SIGMA_OF_MEDIAN = 1.2533;

// The numbers of a series, and where they stand in it.
struct Numbers {
    std::vector<double> values;
    std::vector<size_t> places;
    double quantum; // what their last printed digit counts; 0 where they are not printed ones

    size_t size() const { return values.size(); }
    bool outside(size_t i, double level, double band) const
    {
        return std::fabs(values[i] - level) > band;
    }
};

// A level, and how far it holds.
struct Rest {
    double level;
    size_t count;     // of how many values it is the median
    size_t departure; // where it is left; the number of values when it is not
};

// The end of a series.
struct End {
    size_t begin;
    double level, noise, spread;
    double trend; // how far its thirds are apart; 0 where noise may be all
};

double median(std::span<const double> part)
{
    std::vector<double> sorted(part.begin(), part.end());
    const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
    std::nth_element(sorted.begin(), middle, sorted.end());
    if (sorted.size() % 2 != 0)
        return *middle;
    return (*middle + *std::max_element(sorted.begin(), middle)) / 2;
}

double quantum_of(std::span<const double> values)
{
    for (const double scale : {1., 10., 100., 1000., 10000.}) {
        const auto printed = [scale](double value) {
            const double scaled = value * scale;
            return std::fabs(scaled - std::nearbyint(scaled)) <= 1e-9 * std::fabs(scaled);
        };
        if (std::all_of(values.begin(), values.end(), printed))
            return 1 / scale;
    }
    return 0;
}

Numbers numbers_of(std::span<const double> values)
{
    Numbers result = {};
    for (size_t i = 0; i < values.size(); i++) {
        if (std::isfinite(values[i])) {
            result.values.push_back(values[i]);
            result.places.push_back(i);
        }
    }
    result.quantum = quantum_of(result.values);
    return result;
}

// The first value outside the band that does not come back into it at once.
size_t departure_from(const Numbers &series, double level, double band)
{
    for (size_t i = 0; i < series.size(); i++)
        if (series.outside(i, level, band) &&
            (i + 1 == series.size() || series.outside(i + 1, level, band)))
            return i;
    return series.size();
}

// The level that lies before `until`, a place where the change is well under way, and where it is
// left. `band_of(level)` is its band.
template <typename BandOf>
Rest rest_before(const Numbers &series, size_t until, double reference, BandOf band_of)
{
    if (std::isfinite(reference))
        return {reference, 0, departure_from(series, reference, band_of(reference))};
    const auto level_of = [&series](size_t count) {
        return median(std::span(series.values).first(count));
    };
    // A part of the change that the median took in makes the rest look left too early.
    size_t count = std::max<size_t>(until, 1);
    for (;;) {
        const double level = level_of(count);
        const size_t departure = departure_from(series, level, band_of(level));
        if (departure >= count || count == 1) {
            count = std::max<size_t>(departure, 1);
            return {level_of(count), count, departure_from(series, level, band_of(level))};
        }
        count = std::min(departure == 0 ? count / 2 : departure, count - (count + 7) / 8);
        count = std::max<size_t>(count, 1);
    }
}

// The distance from `level` that two neighbours reach: a single value is none to go by.
double excursion_from(const Numbers &series, double level)
{
    double most = 0;
    for (size_t i = 0; i + 1 < series.size(); i++)
        most = std::max(most, std::min(std::fabs(series.values[i] - level),
                                       std::fabs(series.values[i + 1] - level)));
    return most;
}

// From the second differences, which a trend leaves alone.
double noise_of(std::span<const double> part)
{
    std::vector<double> bends;
    for (size_t i = 2; i < part.size(); i++)
        bends.push_back(std::fabs(part[i] - 2 * part[i - 1] + part[i - 2]));
    return SIGMA_OF_BEND * median(bends);
}

End end_of(const Numbers &series, size_t departure)
{
    const size_t all = series.size();
    const size_t after = departure < all ? all - departure : all;
    const size_t size = std::min(std::max(SHORTEST_END, after / END_PART), all);
    End end = {};
    end.begin = all - size;
    const auto values = std::span(series.values);
    const auto part = values.last(size);
    end.level = median(part);
    end.noise = noise_of(values.last(std::max(size, after / 2)));
    for (const double value : part)
        end.spread = std::max(end.spread, std::fabs(value - end.level));

    const size_t third = size / 3;
    const double first = median(part.first(third));
    const double middle = median(part.subspan((size - third) / 2, third));
    const double last = median(part.last(third));
    const double doubtful =
        NOISE_MOST * SIGMA_OF_MEDIAN * end.noise / std::sqrt(static_cast<double>(third));
    const double range = std::max({first, middle, last}) - std::min({first, middle, last});
    end.trend = range > doubtful ? range : 0;
    return end;
}

// Whether value i is outside the band no farther than noise goes, and with one neighbour at most.
bool excused(const Numbers &series, const End &end, size_t i, double level, double band)
{
    const bool before = i > 0 && series.outside(i - 1, level, band);
    const bool after = i + 1 < series.size() && series.outside(i + 1, level, band);
    return !(before && after) && std::fabs(series.values[i] - level) <= NOISE_MOST * end.noise;
}

bool rests(const Numbers &series, const End &end, double band)
{
    size_t outside = 0;
    for (size_t i = end.begin; i < series.size(); i++) {
        if (!series.outside(i, end.level, band))
            continue;
        outside++;
        const bool again = i + 1 == series.size() || series.outside(i + 1, end.level, band);
        if (again && !excused(series, end, i, end.level, band))
            return false;
    }
    if (outside > (series.size() - end.begin) / STRAYS_PART)
        return false;
    return end.trend <= std::max(TREND_MOST * band, series.quantum);
}

// From where on the series stays within the band.
size_t settled_at(const Numbers &series, const End &end, size_t departure, double level,
                  double band)
{
    for (size_t i = series.size(); i-- > departure;)
        if (series.outside(i, level, band) && !excused(series, end, i, level, band))
            return i + 1;
    return departure;
}

// The farthest value beyond a level from `from` on; `side` is 1 above it and -1 below.
Peak farthest(const Numbers &series, size_t from, double level, double side, double least)
{
    Peak peak;
    double most = least;
    for (size_t i = from; i < series.size(); i++) {
        const double beyond = side * (series.values[i] - level);
        if (beyond > most) {
            most = beyond;
            peak = {i, series.values[i], beyond};
        }
    }
    return peak;
}

// The farthest value from a level of rest, once that is left.
Peak farthest_of_both(const Numbers &series, const Rest &rest)
{
    const Peak above = farthest(series, rest.departure, rest.level, 1, 0);
    const Peak below = farthest(series, rest.departure, rest.level, -1, 0);
    return above.part >= below.part ? above : below;
}

// What noise and trend of the end come to is no swing.
double least_swing(const End &end)
{
    return std::max(NOISE_MOST * end.noise, end.trend);
}

// The overshoot on one side of a level from `from` on, and what comes after it on the other.
void add_swings(const Numbers &series, size_t from, double level, double side, double least,
                Response &response)
{
    response.overshoot = farthest(series, from, level, side, least);
    if (response.overshoot.at != NOWHERE)
        response.undershoot = farthest(series, response.overshoot.at, level, -side, least);
}

// The first value that has gone this part of a step.
size_t first_at(const Numbers &series, const Response &step, double part)
{
    const double size = step.after - step.before;
    for (size_t i = step.departure; i < series.size(); i++)
        if ((series.values[i] - step.before) / size >= part)
            return i;
    return NOWHERE;
}

// The bands by which an answer is measured, each around a level of rest.
struct Bands {
    const Numbers &series;
    const Measure &how;
    double farthest;  // from where the series begins
    double excursion; // the same, but not of a single value
    double end;

    // Of what moves, or to look by.
    double of_excursion() const
    {
        return std::max(how.band * excursion, std::min(series.quantum, excursion / 4));
    }
    double scale_of_value(double level) const
    {
        if (std::isfinite(how.unit))
            return how.unit;
        return level != 0 ? std::fabs(level) : farthest;
    }
    double of_value(double level) const
    {
        return std::max(how.band * scale_of_value(level), series.quantum);
    }
    double of_step(double level) const
    {
        const double size = std::fabs(end - level);
        return std::max(how.band * size, std::min(series.quantum, size / 4));
    }
};

void set(Response &response, Answer kind, const Rest &rest, double scale, double band)
{
    response.kind = kind;
    response.before = rest.level;
    response.before_count = rest.count;
    response.departure = rest.departure;
    response.scale = scale;
    response.band = band;
}

bool take_recovery(const Numbers &series, const Bands &bands, const End &end, const Rest &rest,
                   Response &response)
{
    const double band = bands.of_value(rest.level);
    const double off = std::fabs(end.level - rest.level);
    const double excursion = excursion_from(series, rest.level);
    if (off > band || excursion <= band || excursion < EXCURSION * off || !rests(series, end, band))
        return false;
    set(response, Answer::recovery, rest, bands.scale_of_value(rest.level), band);
    response.after = end.level;
    response.settled = settled_at(series, end, rest.departure, rest.level, band);
    response.peak = farthest_of_both(series, rest);
    const double side = response.peak.value > rest.level ? -1 : 1;
    add_swings(series, response.peak.at, rest.level, side, std::max(least_swing(end), off),
               response);
    return true;
}

bool take_step(const Numbers &series, const Bands &bands, const End &end, const Rest &rest,
               Response &response)
{
    const double band = bands.of_step(rest.level);
    const double size = std::fabs(end.level - rest.level);
    const bool clear = series.quantum > 0 && bands.how.band * size >= series.quantum;
    if (size == 0 || rest.departure == series.size() ||
        (size <= bands.how.band * bands.scale_of_value(rest.level) && !clear) ||
        !rests(series, end, band))
        return false;
    set(response, Answer::step, rest, size, band);
    response.after = end.level;
    response.settled = settled_at(series, end, rest.departure, end.level, band);
    response.rise_begin = first_at(series, response, 0.1);
    response.rise_end = first_at(series, response, 0.9);
    response.peak = farthest_of_both(series, rest);
    add_swings(series, rest.departure, end.level, end.level > rest.level ? 1 : -1, least_swing(end),
               response);
    return true;
}

bool take_steady(const Numbers &series, const Bands &bands, const Rest &rest, Response &response)
{
    const double band = bands.of_value(rest.level);
    size_t strays = 0;
    for (const double value : series.values)
        strays += std::fabs(value - rest.level) > band;
    if (rest.departure != series.size() || strays > series.size() / STRAYS_PART)
        return false;
    set(response, Answer::steady, rest, bands.scale_of_value(rest.level), band);
    response.strays = strays;
    response.peak = farthest_of_both(series, {rest.level, rest.count, 0});
    return true;
}

// Distances as parts of the scale, places as those of the whole series.
void finish(const Numbers &series, Response &response)
{
    for (Peak *peak : {&response.peak, &response.overshoot, &response.undershoot})
        peak->part = response.scale > 0 ? peak->part / response.scale : 0;
    for (size_t *place :
         {&response.end, &response.departure, &response.rise_begin, &response.rise_end,
          &response.settled, &response.peak.at, &response.overshoot.at, &response.undershoot.at})
        *place = *place < series.size() ? series.places[*place] : NOWHERE;
}

} // namespace

const char *name_of(Answer kind)
{
    static constexpr const char *NAMES[] = {"none", "steady", "step", "recovery", "moving"};
    return NAMES[static_cast<size_t>(kind)];
}

double median_of(std::span<const double> values)
{
    const Numbers series = numbers_of(values);
    return series.size() != 0 ? median(series.values) : UNKNOWN;
}

Response measure(std::span<const double> values, const Measure &how)
{
    Numbers series = numbers_of(values);
    if (std::isfinite(how.unit)) // computed: no digit of it was ever printed
        series.quantum = 0;
    Response response;
    response.count = series.size();
    if (series.size() == 0)
        return response;
    const auto [low, high] = std::minmax_element(series.values.begin(), series.values.end());
    response.low = *low;
    response.high = *high;
    if (series.size() < FEWEST)
        return response;

    // Roughly, by the size of the excursion: where the change is, and the end behind it.
    const double begin =
        std::isfinite(how.before) ? how.before : median(std::span(series.values).first(3));
    const double farthest = std::max(*high - begin, begin - *low);
    const double excursion = excursion_from(series, begin);
    Bands bands = {series, how, farthest, excursion > 0 ? excursion : farthest, 0};
    const size_t change = departure_from(series, begin, bands.excursion / 2);
    const auto rest_by = [&](auto band_of) {
        return rest_before(series, change, how.before, band_of);
    };
    const Rest rough = rest_by([&](double) { return bands.of_excursion(); });
    const End end = end_of(series, rough.departure);
    bands.end = end.level;
    response.noise = end.noise;
    response.spread = end.spread;
    response.end = end.begin;

    const Rest by_value = rest_by([&](double level) { return bands.of_value(level); });
    const Rest by_step = rest_by([&](double level) { return bands.of_step(level); });
    if (!take_recovery(series, bands, end, by_value, response) &&
        !take_step(series, bands, end, by_step, response) &&
        !take_steady(series, bands, by_value, response)) {
        set(response, Answer::moving, rough, bands.excursion, bands.of_excursion());
        response.peak = farthest_of_both(series, rough);
    }
    finish(series, response);
    return response;
}

} // namespace vordascope
