// Rows of answers.
#include "answers.h"

#include "csv.h"
#include "shown.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <iterator>

namespace vordascope
{

namespace
{

using Row = std::vector<std::string>;

constexpr char NOTHING[] = "-";

// A number in so many digits at most; a logarithm in three decimals.
std::string shown_number(const Answered &answer, double number)
{
    if (!std::isfinite(number))
        return NOTHING;
    const bool stops = answer.quantity->computed != nullptr && answer.quantity->computed->stops;
    char text[64];
    snprintf(text, sizeof(text), stops ? "%.3f" : "%.10g", number);
    return text;
}

std::string percent(double part)
{
    char text[64];
    snprintf(text, sizeof(text), std::fabs(part) < 9.995 ? "%.3g %%" : "%.0f %%", 100 * part);
    return text;
}

// "#31", or "#31, 1.24 s".
std::string shown_place(const Recorded &recorded, size_t at)
{
    std::string text = '#' + std::to_string(recorded.numbers[at]);
    if (!recorded.times.empty()) {
        char seconds[64];
        snprintf(seconds, sizeof(seconds), ", %.2f s", recorded.times[at]);
        text += seconds;
    }
    return text;
}

// "12", or "12 (0.48 s)": from one snapshot to another.
std::string shown_span(const Recorded &recorded, size_t from, size_t to)
{
    if (from == NOWHERE || to == NOWHERE)
        return NOTHING;
    char text[96];
    const auto count = static_cast<long long>(to) - static_cast<long long>(from);
    if (recorded.times.empty())
        snprintf(text, sizeof(text), "%lld", count);
    else
        snprintf(text, sizeof(text), "%lld (%.2f s)", count,
                 recorded.times[to] - recorded.times[from]);
    return text;
}

// "16.6 %, 61776 at #63".
std::string shown_peak(const Answered &answer, const Peak &peak)
{
    if (peak.at == NOWHERE)
        return NOTHING;
    return percent(peak.part) + ", " + shown_number(answer, peak.value) + " at #" +
           std::to_string(answer.recorded->numbers[peak.at]);
}

std::string shown_kind(const Response &response)
{
    if (response.kind == Answer::none)
        return "too few numbers";
    std::string text = name_of(response.kind);
    if (response.strays > 0)
        text += ", " + std::to_string(response.strays) + " outside";
    return text;
}

// "1600, 5 % of 32000"
std::string shown_band(const Answered &answer, double band)
{
    const Response &response = answer.response;
    if (!std::isfinite(response.band))
        return NOTHING;
    std::string text = shown_number(answer, response.band);
    if (response.band > band * response.scale * (1 + 1e-9))
        text += ", the last digit";
    else
        text += ", " + percent(band) + " of " + shown_number(answer, response.scale);
    return text;
}

Row shown_row(const Answered &answer, double band, bool caused)
{
    const Recorded &recorded = *answer.recorded;
    const Response &r = answer.response;
    const bool moved = r.kind == Answer::recovery || r.kind == Answer::moving;
    Row row = {shown(recorded.name),
               shown(answer.quantity->name),
               shown_kind(r),
               shown_number(answer, r.before),
               shown_number(answer, r.after),
               moved ? shown_peak(answer, r.peak) : NOTHING,
               r.departure != NOWHERE ? shown_place(recorded, r.departure) : NOTHING};
    if (caused)
        row.push_back(shown_span(recorded, answer.cause, r.departure));
    const std::string settled = shown_span(recorded, r.departure, r.settled);
    for (const std::string &cell :
         {shown_span(recorded, r.rise_begin, r.rise_end),
          r.kind == Answer::moving ? "not at rest" : settled, shown_peak(answer, r.overshoot),
          shown_peak(answer, r.undershoot), shown_band(answer, band)})
        row.push_back(cell);
    return row;
}

// Columns side by side; one that says the same `nothing` everywhere is left out.
void put_rows(std::vector<Row> rows, std::string &out)
{
    for (size_t column = rows[0].size(); column-- > 0;) {
        size_t width = 0;
        bool told = false;
        for (size_t i = 0; i < rows.size(); i++) {
            width = std::max(width, rows[i][column].size());
            told = told || (i > 0 && rows[i][column] != NOTHING && !rows[i][column].empty());
        }
        for (Row &row : rows) {
            if (told)
                row[column].resize(width + 2, ' ');
            else
                row[column].clear();
        }
    }
    for (const Row &row : rows) {
        std::string line;
        for (const std::string &cell : row)
            line += cell;
        line.erase(line.find_last_not_of(' ') + 1);
        out += line + '\n';
    }
}

// Text of a number with which it reads back the same; nothing for none.
std::string exact(double number)
{
    if (!std::isfinite(number))
        return "";
    char text[32];
    const auto end = std::to_chars(text, std::end(text), number);
    return {text, end.ptr};
}

// Seconds to the microsecond: no camera tells more, and the rest is what subtraction leaves.
std::string exact_seconds(double seconds)
{
    return exact(std::nearbyint(seconds * 1e6) / 1e6);
}

// Of a label; empty where it is not given.
std::string_view value_of(const std::vector<Label> &labels, std::string_view key)
{
    for (const Label &label : labels)
        if (label.key == key)
            return label.value;
    return {};
}

class CsvRow
{
public:
    explicit CsvRow(const Recorded &recorded) : recorded_(recorded) {}

    void add(const std::string &cell) { (cells_ += cell) += ','; }
    void add_text(std::string_view text)
    {
        put_text_cell(text, cells_);
        cells_ += ',';
    }
    void add_place(size_t at)
    {
        add(at != NOWHERE ? std::to_string(recorded_.numbers[at]) : "");
        add(at != NOWHERE && !recorded_.times.empty() ? exact_seconds(recorded_.times[at]) : "");
    }
    void add_span(size_t from, size_t to)
    {
        const bool there = from != NOWHERE && to != NOWHERE;
        const auto count = static_cast<int64_t>(to) - static_cast<int64_t>(from);
        add(there ? std::to_string(count) : "");
        add(there && !recorded_.times.empty()
                ? exact_seconds(recorded_.times[to] - recorded_.times[from])
                : "");
    }
    void add_peak(const Peak &peak)
    {
        const bool there = peak.at != NOWHERE;
        add(there ? exact(peak.value) : "");
        add(there ? std::to_string(recorded_.numbers[peak.at]) : "");
        add(there ? exact(peak.part) : "");
    }
    std::string line()
    {
        cells_.back() = '\n';
        return cells_;
    }

private:
    const Recorded &recorded_;
    std::string cells_;
};

} // namespace

void put_table(const std::vector<Answered> &answers, double band, bool caused, std::string &out)
{
    Row title = {"capture", "field", "answer", "before", "after", "peak", "departs"};
    if (caused)
        title.emplace_back("delay");
    for (const char *name : {"rise", "settles", "overshoot", "undershoot", "band"})
        title.emplace_back(name);
    std::vector<Row> rows = {title};
    for (const Answered &answer : answers)
        rows.push_back(shown_row(answer, band, caused));
    const bool one = std::all_of(answers.begin(), answers.end(), [&](const Answered &answer) {
        return answer.recorded == answers[0].recorded;
    });
    if (one)
        for (Row &row : rows)
            row[0].clear();
    put_rows(std::move(rows), out);

    const Computed *last = nullptr;
    for (const Answered &answer : answers) {
        const Computed *const computed = answer.quantity->computed;
        if (computed != nullptr && computed != last)
            out += answer.quantity->name + " is computed: " + computed->formula() + '\n';
        last = computed;
    }
}

void put_csv(const std::vector<Answered> &answers, const std::vector<Label> &keys, std::string &out)
{
    out += "capture,field,answer,first,last,numbers,before,after,low,high,band,unit,departure,"
           "departure_s,delay,delay_s,rise,rise_s,settling,settling_s,peak,peak_at,peak_part,"
           "overshoot,overshoot_at,overshoot_part,undershoot,undershoot_at,undershoot_part";
    for (const Label &label : keys)
        out += ",label " + label.key;
    out += '\n';
    for (const Answered &answer : answers) {
        const Recorded &recorded = *answer.recorded;
        const Response &r = answer.response;
        CsvRow row(recorded);
        row.add_text(recorded.name);
        row.add_text(answer.quantity->name);
        row.add(name_of(r.kind));
        row.add(std::to_string(recorded.numbers.front()));
        row.add(std::to_string(recorded.numbers.back()));
        row.add(std::to_string(r.count));
        for (const double number : {r.before, r.after, r.low, r.high, r.band, r.scale})
            row.add(exact(number));
        row.add_place(r.departure);
        row.add_span(answer.cause, r.departure);
        row.add_span(r.rise_begin, r.rise_end);
        row.add_span(r.departure, r.settled);
        for (const Peak &peak : {r.peak, r.overshoot, r.undershoot})
            row.add_peak(peak);
        for (const Label &label : keys)
            row.add_text(value_of(recorded.labels, label.key));
        out += row.line();
    }
}

} // namespace vordascope
