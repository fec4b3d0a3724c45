// How a camera answers: what recordings hold of some quantities, measured.
#include "verbs.h"

#include "answers.h"
#include "shown.h"

#include <algorithm>
#include <charconv>
#include <deque>
#include <map>
#include <optional>
#include <unistd.h>

namespace vordascope
{

namespace
{

// FILE, or FILE#I-J: some of its snapshots.
struct Selection {
    std::string file;
    std::string part; // "#I-J", as given
    uint64_t first = 1;
    uint64_t last = UINT64_MAX;
};

std::optional<Selection> read_selection(const std::string &word)
{
    const size_t hash = word.rfind('#');
    if (hash == std::string::npos || access(word.c_str(), F_OK) == 0)
        return Selection{word, ""};
    Selection selection = {word.substr(0, hash), word.substr(hash)};
    const char *const end = word.data() + word.size();
    const auto first = std::from_chars(word.data() + hash + 1, end, selection.first);
    if (first.ec != std::errc() || first.ptr == end || *first.ptr != '-')
        return {};
    if (std::string_view(first.ptr, end) == "-last")
        return selection;
    const auto last = std::from_chars(first.ptr + 1, end, selection.last);
    if (last.ec != std::errc() || last.ptr != end || selection.first > selection.last)
        return {};
    return selection;
}

// Whether a word of the command line stands for a capture and not for a field.
bool names_capture(const std::string &word)
{
    const std::optional<Selection> selection = read_selection(word);
    return selection &&
           (is_standard_input(selection->file) || access(selection->file.c_str(), F_OK) == 0);
}

// What the selected snapshots of one capture hold: a run for each path, and for each time that its
// clock or its frame counter goes back.
class Reading
{
public:
    // The cause, unless it is empty, is the last of the quantities.
    Reading(const Selection &selection, const std::vector<std::string> &fields,
            const std::string &cause, const std::vector<Label> &labels)
        : selection_(selection), fields_(fields), cause_(cause), labels_(labels)
    {
    }

    // Returns whether there is anything to measure; if not, a message has been printed.
    bool read()
    {
        Input input(selection_.file, labels_);
        name_ = input.name();
        std::string error;
        uint64_t unread = 0;
        const int status = read_all(input, [&](const Snapshot &snapshot) {
            unread += snapshot.unread_count;
            if (snapshot.indexed)
                add(snapshot, error);
            return error.empty() && snapshot.number < selection_.last;
        });
        if (status == YES && error.empty() && runs_.empty())
            error = "no snapshot from " + std::to_string(selection_.first) + " on";
        if (!error.empty())
            complain(name_ + ": " + error);
        if (status != YES || !error.empty())
            return false;
        warn_of_unread(input, unread);
        finish_runs();
        return true;
    }

    const std::deque<Recorded> &runs() const { return runs_; }
    const std::vector<Quantity> &quantities() const { return quantities_; }

private:
    // Where a path has got to.
    struct Path {
        explicit Path(size_t runs_before = 0) : runs(runs_before) {}

        Recorded *run = nullptr; // nullptr: nothing of it is selected yet
        size_t runs;
        std::optional<double> begin; // of the run, on the camera's clock
        double time = 0;
        uint64_t frame = 0;
    };

    void add(const Snapshot &snapshot, std::string &error)
    {
        Path &path = paths_[{snapshot.dev_idx, snapshot.path_idx}];
        const double time = snapshot.timed ? number_of(snapshot.time) : path.time;
        const uint64_t frame = snapshot.frame.value_or(path.frame);
        if (time < path.time || frame < path.frame)
            path = Path(path.runs);
        path.time = time;
        path.frame = frame;
        if (snapshot.timed && !path.begin)
            path.begin = time;
        if (snapshot.number < selection_.first || snapshot.number > selection_.last)
            return;

        if (quantities_.empty() && !take_fields(snapshot, error))
            return;
        if (path.run == nullptr)
            path.run = &begin_run(snapshot, ++path.runs);
        path.run->numbers.push_back(snapshot.number);
        if (snapshot.timed)
            path.run->times.push_back(time - *path.begin);
        for (size_t i = 0; i < quantities_.size(); i++)
            path.run->columns[i].push_back(quantities_[i].in(snapshot));
    }

    bool take_fields(const Snapshot &snapshot, std::string &error)
    {
        for (const std::string &field : fields_)
            if (!add_quantities(snapshot, field, quantities_, error))
                return false;
        const size_t effects = quantities_.size();
        if (!cause_.empty() && add_quantities(snapshot, cause_, quantities_, error) &&
            quantities_.size() != effects + 1)
            error = "a cause is one value, not " + plural(quantities_.size() - effects, "value");
        return error.empty();
    }

    Recorded &begin_run(const Snapshot &snapshot, size_t number)
    {
        Recorded &run = runs_.emplace_back();
        run.name = "dev_idx = " + std::to_string(snapshot.dev_idx) +
                   ", path_idx = " + std::to_string(snapshot.path_idx);
        if (number > 1)
            run.name += ", run " + std::to_string(number);
        run.columns.resize(quantities_.size());
        run.labels = snapshot.labels;
        return run;
    }

    // Names that tell the runs apart; times where every snapshot has one.
    void finish_runs()
    {
        for (Recorded &run : runs_) {
            run.name = name_ + selection_.part + (runs_.size() > 1 ? " (" + run.name + ')' : "");
            if (run.times.size() != run.numbers.size())
                run.times.clear();
        }
    }

    const Selection selection_;
    const std::vector<std::string> &fields_;
    const std::string cause_;
    const std::vector<Label> &labels_;
    std::string name_;
    std::vector<Quantity> quantities_;
    std::deque<Recorded> runs_; // which stay where they are
    std::map<std::pair<uint32_t, uint32_t>, Path> paths_;
};

// The median of a quantity of a reference; UNKNOWN where it has none.
double level_of(const Reading &reference, const std::string &name)
{
    const std::vector<Quantity> &quantities = reference.quantities();
    const auto found = std::find_if(quantities.begin(), quantities.end(),
                                    [&](const Quantity &q) { return q.name == name; });
    if (found == quantities.end())
        return UNKNOWN;
    const auto column = static_cast<size_t>(found - quantities.begin());
    return median_of(reference.runs().front().columns[column]);
}

Measure measure_of(const ResponseOptions &options, const Quantity &quantity,
                   const Reading *reference)
{
    Measure how = {.band = options.band / 100};
    if (quantity.computed != nullptr && quantity.computed->stops)
        how.unit = 1;
    if (reference != nullptr)
        how.before = level_of(*reference, quantity.name);
    return how;
}

// The rows of a capture.
void add_answers(const Reading &reading, const ResponseOptions &options, const Reading *reference,
                 std::vector<Answered> &answers)
{
    const std::vector<Quantity> &quantities = reading.quantities();
    const bool caused = !options.cause.empty();
    for (const Recorded &run : reading.runs()) {
        std::vector<Response> responses;
        for (size_t i = 0; i < quantities.size(); i++)
            responses.push_back(
                measure(run.columns[i], measure_of(options, quantities[i], reference)));
        for (size_t i = 0; i < quantities.size() - caused; i++)
            answers.push_back({&run, &quantities[i], responses[i],
                               caused ? responses.back().departure : NOWHERE});
    }
}

// The captures and the fields of a command line. Returns whether both are there; if not, a message
// has been printed.
bool part_words(const ResponseOptions &options, std::vector<Selection> &captures,
                std::vector<std::string> &fields)
{
    for (const std::string &word : options.words) {
        const bool capture = captures.empty() || (fields.empty() && names_capture(word));
        const std::optional<Selection> selection = capture ? read_selection(word) : std::nullopt;
        if (capture && !selection) {
            complain(word + ": of a capture, I-J are snapshots: FILE#20-120, FILE#20-last");
            return false;
        }
        if (capture)
            captures.push_back(*selection);
        else
            fields.push_back(word);
    }
    if (fields.empty())
        complain("response: FIELD is required");
    return !fields.empty();
}

} // namespace

int response(const ResponseOptions &options)
{
    std::vector<Selection> captures;
    std::vector<std::string> fields;
    if (!part_words(options, captures, fields))
        return TROUBLE;
    const std::vector<Label> labels = read_labels(options.labels);
    std::optional<Reading> reference;
    if (!options.reference.empty()) {
        const std::optional<Selection> selection = read_selection(options.reference);
        if (!selection) {
            complain(options.reference + ": of a reference, I-J are snapshots: FILE#1-20");
            return TROUBLE;
        }
        if (!reference.emplace(*selection, fields, options.cause, labels).read())
            return TROUBLE;
    }
    int status = YES;
    std::deque<Reading> readings;
    std::vector<Answered> answers;
    for (const Selection &capture : captures) {
        if (readings.emplace_back(capture, fields, options.cause, labels).read())
            add_answers(readings.back(), options, reference ? &*reference : nullptr, answers);
        else
            status = TROUBLE;
    }
    if (answers.empty())
        return TROUBLE;
    // What answers alike stands together: by field, in the order of the first capture.
    std::vector<std::string> order;
    order.reserve(answers.size());
    for (const Answered &answer : answers)
        order.push_back(answer.quantity->name);
    std::stable_sort(answers.begin(), answers.end(), [&](const Answered &a, const Answered &b) {
        return std::find(order.begin(), order.end(), a.quantity->name) <
               std::find(order.begin(), order.end(), b.quantity->name);
    });
    std::string text;
    if (options.csv)
        put_csv(answers, labels, text);
    else
        put_table(answers, options.band / 100, !options.cause.empty(), text);
    Output output;
    output.write(text);
    return output.close() ? status : TROUBLE;
}

} // namespace vordascope
