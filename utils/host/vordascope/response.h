// How a quantity answers to a change: what a series of values does, in numbers. The same code
// measures for `vordascope response` and, compiled for WebAssembly, for the page.
//
//     value                overshoot
//       |                   _
//       |           90 %   / \________________ after, with the band around it
//       |                 /
//       |           10 % /
//       |_______________/                      before
//                      |   |        |
//              departure   rise     settled: stays within the band from here on
//
// Pure functions of values. Places are indexes into them; who knows the times of the snapshots can
// tell seconds. Nothing is read between two snapshots: a place is true to one interval.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

namespace vordascope
{

enum class Answer : uint8_t {
    none,     // there are too few numbers to say
    steady,   // nothing leaves the band, but for single snapshots (`strays`)
    step,     // goes to another value and rests there
    recovery, // leaves, comes back to the value before and rests there
    moving,   // the end is not at rest: there is no value after and no settling
};

inline constexpr size_t NOWHERE = SIZE_MAX;
inline constexpr double UNKNOWN = std::numeric_limits<double>::quiet_NaN();

// What parts are counted in, and against what.
struct Measure {
    double band = 0.05;      // half its width: of the step, or else of the value before
    double before = UNKNOWN; // a reference instead of what lies before the departure
    double unit = UNKNOWN;   // of what a recovery's parts are, instead of the value before
};

// The farthest that a series goes to one side.
struct Peak {
    size_t at = NOWHERE; // NOWHERE: it does not go there, or no farther than its noise
    double value = UNKNOWN;
    double part = 0; // its distance, as a part of `scale`
};

// What is UNKNOWN or NOWHERE does not exist in an answer of this kind.
struct Response {
    Answer kind = Answer::none;
    size_t count = 0; // numbers among the values; the others are passed over
    double low = UNKNOWN;
    double high = UNKNOWN;

    double before = UNKNOWN; // the median of what lies before the departure, or the reference
    size_t before_count = 0; // of how many values it is the median; 0 for a reference
    double after = UNKNOWN;  // step, recovery: the median of the end
    double scale = UNKNOWN;  // 1 in parts: the size of the step; of a recovery the value before,
                             // without its sign, or the unit; where it is 0, the farthest from it;
                             // of what moves, the farthest from it that two neighbours are
    double band = UNKNOWN;   // half the width of the band, as a distance: its part of the scale,
                             // and at least what the last printed digit counts
    double noise = UNKNOWN;  // standard deviation at the end
    double spread = UNKNOWN; // the farthest from its median at the end
    size_t end = NOWHERE;    // where the end begins whose rest was examined

    size_t departure = NOWHERE;  // the first snapshot outside the band around the value before that
                                 // does not come back into it at once
    size_t rise_begin = NOWHERE; // step: the first at 10 % or beyond it
    size_t rise_end = NOWHERE;   // step: the first at 90 % or beyond it
    size_t settled = NOWHERE;    // step, recovery: from here on it stays within the band around the
                                 // value after, resp. before
    size_t strays = 0;           // steady: snapshots outside the band
    Peak peak;                   // the farthest from the value before
    Peak overshoot;              // step: beyond the value after; recovery: beyond the value before,
                                 // on the other side than the peak
    Peak undershoot;             // back on the near side again, after the overshoot
};

// Measures `values`, one a snapshot; what is not finite stands for a snapshot without a number.
//
// - The end is the last quarter of what follows the departure, at least three values. It rests when
//   it stays within the band around its median and its thirds lie within a fifth of the band: what
//   still climbs towards its value with a time constant is within 2 % of it then.
// - Values outside the band that noise explains, one or two together, do not end a rest.
// - A change that ends within the band of the value before, after an excursion of at least three
//   times its size, is a recovery. One that stays within it altogether is a step only where the
//   band of the step itself is no finer than the last printed digit; otherwise it is steady.
Response measure(std::span<const double> values, const Measure &how = {});

// The median of the numbers among values; UNKNOWN where there is none.
double median_of(std::span<const double> values);

// "step".
const char *name_of(Answer kind);

} // namespace vordascope
