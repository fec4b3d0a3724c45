// Answers whose times are known in closed form, as a camera would print them: in whole numbers,
// with noise or without.
#include "response.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <vector>

using namespace vordascope;

namespace
{

constexpr size_t REST = 40; // snapshots before the change

// `answer(t)` t snapshots after the change, 0 before it; `level` and `size` make values of it.
std::vector<double> record(size_t count, double level, double size, double noise,
                           const std::function<double(double)> &answer, unsigned seed = 1)
{
    std::mt19937 random(seed);
    std::normal_distribution<double> normal;
    std::vector<double> values;
    for (size_t i = 0; i < count; i++) {
        const double t = static_cast<double>(i) - REST;
        values.push_back(
            std::round(level + (t < 0 ? 0 : size * answer(t)) + noise * normal(random)));
    }
    return values;
}

std::function<double(double)> first_order(double tau)
{
    return [tau](double t) { return 1 - std::exp(-t / tau); };
}

std::function<double(double)> second_order(double damping, double omega)
{
    return [damping, omega](double t) {
        const double root = std::sqrt(1 - damping * damping);
        return 1 - std::exp(-damping * omega * t) *
                       (std::cos(root * omega * t) + damping / root * std::sin(root * omega * t));
    };
}

double operator-(const Peak &peak, double part)
{
    return peak.part - part;
}

TEST(Response, MeasuresStepsWhoseTimesAreKnown)
{
    for (const double noise : {0., 10.}) {
        for (const double size : {1000., -700.}) {
            SCOPED_TRACE(testing::Message() << "noise " << noise << ", size " << size);
            const double slack = noise == 0 ? 1 : 5;
            // 95 % after 3 tau, 10 to 90 % in tau ln 9; the band is left after tau ln(1/0.95).
            Response r = measure(record(200, 1000, size, noise, first_order(10)));
            EXPECT_EQ(r.kind, Answer::step);
            EXPECT_NEAR(r.before, 1000, 1 + noise / 2);
            EXPECT_NEAR(r.after, 1000 + size, 2 + noise / 2);
            EXPECT_NEAR(r.scale, std::fabs(size), 2 + noise);
            EXPECT_EQ(r.departure, REST + 1);
            EXPECT_EQ(r.before_count, r.departure);
            EXPECT_NEAR(double(r.settled), REST + 30, slack);
            EXPECT_NEAR(double(r.rise_end - r.rise_begin), 10 * std::log(9.), slack);
            EXPECT_EQ(r.overshoot.at, NOWHERE);

            // Overshoot and undershoot by the damping; the ringing's envelope ends the settling.
            r = measure(record(250, 1000, size, noise, second_order(0.3, 0.2)));
            const double swing = std::exp(-M_PI * 0.3 / std::sqrt(1 - 0.09));
            EXPECT_EQ(r.kind, Answer::step);
            EXPECT_NEAR(r.overshoot - swing, 0, 0.01 + 3 * noise / std::fabs(size));
            EXPECT_NEAR(r.undershoot - swing * swing, 0, 0.01 + 3 * noise / std::fabs(size));
            EXPECT_NEAR(double(r.overshoot.at), REST + M_PI / (0.2 * std::sqrt(1 - 0.09)), slack);
            EXPECT_NEAR(double(r.settled), REST + 51, slack); // by its formula, solved
            // A wider band is reached earlier.
            const std::vector<double> values =
                record(250, 1000, size, noise, second_order(0.3, 0.2));
            EXPECT_LT(measure(values, {.band = 0.15}).settled, r.settled - 10);
        }
    }
}

TEST(Response, HoldsInNoise)
{
    int right = 0;
    for (unsigned seed = 0; seed < 500; seed++) {
        const Response r = measure(record(220, 1000, 1000, 15, first_order(8), seed));
        right += r.kind == Answer::step && std::fabs(double(r.departure) - REST - 1) <= 1 &&
                 std::fabs(double(r.settled) - REST - 24) <= 8 && std::fabs(r.after - 2000) < 10 &&
                 r.overshoot.part < 0.01;
    }
    EXPECT_GE(right, 450);
}

TEST(Response, GivesNoSettlingWhereTheEndIsNotAtRest)
{
    const auto kind = [](size_t count, double noise, const std::function<double(double)> &answer) {
        const Response r = measure(record(count, 1000, 1000, noise, answer));
        EXPECT_EQ(r.kind == Answer::moving, r.settled == NOWHERE);
        EXPECT_EQ(r.kind == Answer::moving, std::isnan(r.after));
        return r.kind;
    };
    // A selection that ends while the value climbs, however slowly.
    for (const double taus : {0.5, 1., 2., 3., 4.})
        EXPECT_EQ(kind(REST + size_t(20 * taus), 0, first_order(20)), Answer::moving) << taus;
    EXPECT_EQ(kind(REST + 7 * 20, 0, first_order(20)), Answer::step);
    EXPECT_EQ(kind(REST + 40, 10, first_order(20)), Answer::moving);
    // Slow wobbles, of any part of a period and at any phase, and hunting.
    for (const double period : {50., 170., 240., 500., 900.})
        for (const double phase : {0., 0.8, 1.57, 2.4, 3.14, 4., 4.7, 5.5})
            for (const double noise : {0., 8.})
                EXPECT_EQ(kind(REST + 200, noise,
                               [=](double t) {
                                   return 0.4 * (std::sin(2 * M_PI * t / period + phase) -
                                                 std::sin(phase));
                               }),
                          Answer::moving)
                    << period << ' ' << phase << ' ' << noise;
    EXPECT_EQ(kind(101, 0, [](double t) { return int(t) % 2 * 0.2; }), Answer::moving);
    EXPECT_EQ(kind(100, 0, [](double t) { return int(t) % 4 < 2 ? 0 : 0.2; }), Answer::moving);
    EXPECT_EQ(kind(100, 0, [](double t) { return t / 500; }), Answer::moving);
}

TEST(Response, MeasuresRecoveriesAgainstTheValueBefore)
{
    for (const double noise : {0., 8.}) {
        // A dip of 60 % whose last twelfth is left at 5.12 times its peak's time.
        const auto dip = [](double t) { return -t / 6 * std::exp(1 - t / 6); };
        Response r = measure(record(200, 1000, 600, noise, dip));
        EXPECT_EQ(r.kind, Answer::recovery);
        EXPECT_NEAR(r.scale, 1000, noise);
        EXPECT_NEAR(r.band, 50, 1);
        EXPECT_NEAR(r.peak - 0.6, 0, 0.03);
        EXPECT_NEAR(double(r.peak.at), REST + 6, 2);
        EXPECT_NEAR(double(r.settled), REST + 6 * 5.12, noise == 0 ? 1 : 5);
        EXPECT_EQ(r.overshoot.at, NOWHERE);

        // One that swings through: a quarter and three quarters of a period are its extremes.
        const auto swing = [](double t) { return std::exp(-0.04 * t) * std::sin(0.2 * t); };
        r = measure(record(220, 1000, 600, noise, swing));
        EXPECT_EQ(r.kind, Answer::recovery);
        EXPECT_GT(r.peak.value, 1000);
        EXPECT_NEAR(r.overshoot - 0.6 * 0.425, 0, 0.03);
        EXPECT_LT(r.overshoot.value, 1000);
        EXPECT_NEAR(double(r.overshoot.at), REST + 3 * M_PI / 2 / 0.2, 3);
        EXPECT_NEAR(r.undershoot - 0.6 * 0.227, 0, 0.03);
    }
    // Stops have no value that a part of them could be of.
    std::vector<double> stops(100, 20.25);
    std::fill(stops.begin() + 40, stops.begin() + 60, 19.75);
    EXPECT_EQ(measure(stops, {.unit = 1}).kind, Answer::recovery);
    EXPECT_DOUBLE_EQ(measure(stops, {.unit = 1}).peak.part, 0.5);
    stops.assign(100, 4);
    std::fill(stops.begin() + 40, stops.end(), 5);
    EXPECT_DOUBLE_EQ(measure(stops, {.unit = 1}).band, 0.05);
    // Where the value before is 0, its parts are of the excursion.
    const Response r = measure(record(200, 0, 600, 0, [](double t) { return std::exp(-t / 10); }));
    EXPECT_EQ(r.kind, Answer::recovery);
    EXPECT_NEAR(double(r.settled), REST + 30, 2);
    EXPECT_EQ(r.peak.part, 1);
}

TEST(Response, TellsASmallStepFromARest)
{
    const auto steps = [](std::vector<double> values) {
        const Response r = measure(values);
        return std::string(name_of(r.kind)) + ' ' + std::to_string(r.strays);
    };
    const auto jump = [](double from, double to) {
        return record(60, from, to - from, 0, [](double) { return 1; });
    };
    EXPECT_EQ(steps(jump(1000, 1000)), "steady 0");
    EXPECT_EQ(steps(jump(0, 0)), "steady 0");
    EXPECT_EQ(steps(record(200, 1000, 0, 12, first_order(1))), "steady 0");
    EXPECT_EQ(steps(jump(1000, 1001)), "steady 0"); // the last digit
    EXPECT_EQ(steps(jump(4800, 5000)), "step 0");
    EXPECT_EQ(steps(jump(1, 2)), "step 0");
    EXPECT_EQ(steps(record(150, 4800, 200, 0, second_order(0.3, 0.3))), "step 0"); // beyond 5040
    std::vector<double> values = jump(1000, 1000);
    values[30] = 16383; // a single one, and two
    EXPECT_EQ(steps(values), "steady 1");
    values[31] = 16383;
    EXPECT_EQ(steps(values), "recovery 0");
    EXPECT_EQ(steps({1, 2, 3}), "none 0");
    EXPECT_EQ(steps(std::vector<double>(9, NAN)), "none 0");

    // A jump has been made where it shows; snapshots without a number keep their places.
    values = jump(8000, 40000);
    values[3] = values[REST + 1] = NAN;
    const Response r = measure(values);
    EXPECT_EQ(r.count, 58);
    EXPECT_EQ(r.departure, REST);
    EXPECT_EQ(r.settled, REST);
    EXPECT_EQ(r.rise_end, REST);
    // Against a reference, what lies before the change is no rest.
    EXPECT_EQ(measure(values, {.before = 4000}).departure, 0);
    EXPECT_EQ(measure(values, {.before = 4000}).scale, 36000);
    EXPECT_EQ(measure(values, {.before = 40000}).kind, Answer::recovery);
}

} // namespace
