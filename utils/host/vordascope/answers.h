// Answers as tables: for people, and as CSV.
#pragma once

#include "quantity.h"
#include "response.h"

namespace vordascope
{

// One capture's part of one path, in order: what is measured at once.
struct Recorded {
    std::string name;                         // of the capture, with the path where it has several
    std::vector<uint64_t> numbers;            // of the snapshots, in their capture
    std::vector<double> times;                // since the run's first snapshot; empty without times
    std::vector<std::vector<double>> columns; // a quantity each: a value a snapshot
    std::vector<Label> labels;                // of its first snapshot
};

// How one quantity of one of them answers.
struct Answered {
    const Recorded *recorded;
    const Quantity *quantity;
    Response response;
    size_t cause = NOWHERE; // where the quantity that is its cause departs
};

// Appends a table with a row each, and what the computed quantities are. `band` is the part that
// was asked for; `caused` tells whether there is a cause.
void put_table(const std::vector<Answered> &answers, double band, bool caused, std::string &out);

// Appends CSV with a row each. Its columns:
//   capture, field, answer (none, steady, step, recovery, moving)
//   first, last: numbers of the snapshots; numbers: how many of them have one
//   before, after, low, high, band (half its width, a distance), unit (what parts are of)
//   departure (snapshot), departure_s, delay, delay_s (behind the cause)
//   rise, rise_s, settling, settling_s: snapshots, and seconds where there is time
//   peak, peak_at, peak_part; overshoot..., undershoot...: value, snapshot, part of the unit
//   label KEY: of each of the labels in `keys`
// A cell is empty where the answer has none.
void put_csv(const std::vector<Answered> &answers, const std::vector<Label> &keys,
             std::string &out);

} // namespace vordascope
