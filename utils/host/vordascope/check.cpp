// Whether captures are understood, and whether they are what was agreed on.
#include "verbs.h"

#include "gates.h"
#include "shown.h"

#include <algorithm>
#include <map>
#include <optional>

namespace vordascope
{

namespace
{

constexpr uint64_t SHOWN_LINES = 5; // of each reason

// What is found in one capture: of each reason the first lines, and how many more there are.
class Findings
{
public:
    Findings(const std::string &name, bool all) : name_(name), all_(all) {}

    // Appends ":PLACE: TEXT" behind the capture's name, unless there have been enough of them.
    void put(const std::string &reason, const std::string &place, const std::string &text,
             std::string &out)
    {
        if (++reasons_[reason] <= SHOWN_LINES || all_)
            out += name_ + place + ": " + text + '\n';
    }

    void put_rest(std::string &out) const
    {
        for (const auto &[reason, count] : reasons_)
            if (count > SHOWN_LINES && !all_)
                out += name_ + ": " + std::to_string(count - SHOWN_LINES) + " more: " + reason +
                       " (--all shows them)\n";
    }

private:
    const std::string &name_;
    const bool all_;
    std::map<std::string, uint64_t> reasons_;
};

// The check of all captures.
class Checking
{
public:
    Checking(const CheckOptions &options, std::optional<Rules> rules)
        : options_(options), rules_(std::move(rules))
    {
    }

    // Checks one capture. Returns a status.
    int check(const std::string &file)
    {
        Input input(file);
        Findings findings(input.name(), options_.all);
        uint64_t snapshots = 0;
        uint64_t fields = 0;
        uint64_t unread = 0;
        uint64_t outside = 0;
        const int read = read_all(input, [&](const Snapshot &snapshot) {
            snapshots += snapshot.indexed;
            fields += snapshot.fields.size();
            unread += snapshot.unread_count;
            text_.clear();
            put_unread(snapshot, findings);
            if (rules_ && snapshot.indexed)
                outside += put_outside(input, snapshot, findings);
            return output_.write(text_);
        });
        text_.clear();
        findings.put_rest(text_);
        if (read == YES)
            text_ += input.name() + ": " + plural(snapshots, "snapshot") + ", " +
                     plural(fields, "field") + ", " +
                     (unread == 0 ? "every line understood"
                                  : plural(unread, "line") + " not understood") +
                     (outside == 0 ? "" : ", " + plural(outside, "value") + " out of range") + '\n';
        else
            gate_.add_trouble(input.name(), input.failed() ? input.error() : "no snapshot");
        output_.write(text_);
        return std::max(read, unread + outside > 0 ? NO : YES);
    }

    // Ends the output, and says what holds for all captures. Returns a status.
    int end()
    {
        int status = output_.close() ? YES : TROUBLE;
        if (rules_ && gate_.captures() > 0 && !all_used(*rules_, first_, options_.unused_warn))
            status = TROUBLE;
        if (!options_.junit.empty() &&
            !write_junit(gate_, read_labels(options_.labels), options_.junit))
            status = TROUBLE;
        return status;
    }

    bool writable() const { return output_.writable(); }

private:
    void put_unread(const Snapshot &snapshot, Findings &findings)
    {
        for (const Unread &line : snapshot.unread) {
            std::string what = std::string(line.why) + ": ";
            if (line.field != NONE)
                what += snapshot.path(snapshot.fields[line.field]) + ": ";
            put_shown(line.text, what);
            findings.put(line.why, ':' + std::to_string(line.line), what, text_);
        }
    }

    // Returns how many fields leave their range, of those where that is a failure.
    size_t put_outside(const Input &input, const Snapshot &snapshot, Findings &findings)
    {
        if (gate_.captures() == 0)
            first_ = snapshot;
        const std::string place = '#' + std::to_string(snapshot.number);
        const Comparison held = hold(snapshot, *rules_);
        gate_.add(input.name() + place, held);
        for (const ItemDifferences &item : held.items) {
            for (const Difference &difference : item.differences) {
                const std::string field = item.item + '.' + difference.name;
                findings.put(field + " out of range", place,
                             field + ": " + difference.what +
                                 (difference.warning ? " (warning)" : ""),
                             text_);
            }
        }
        return held.different;
    }

    const CheckOptions &options_;
    std::optional<Rules> rules_;
    Snapshot first_;
    Gate gate_{"ranges"};
    Output output_;
    std::string text_;
};

} // namespace

int check(const CheckOptions &options)
{
    std::optional<Rules> rules;
    if (!options.rules.empty()) {
        std::vector<Rule> list;
        for (const std::string &file : options.rules)
            if (!read_rules_file(file, list))
                return TROUBLE;
        if (!any_ranged(list))
            return TROUBLE;
        rules.emplace(Rule(), std::move(list), std::vector<std::string>());
    } else if (!options.junit.empty()) {
        complain("--junit needs --rules: a test case is an item that is held against them");
        return TROUBLE;
    }
    Checking checking(options, std::move(rules));
    int status = YES;
    for (const std::string &file : options.files) {
        status = std::max(status, checking.check(file));
        if (!checking.writable())
            break;
    }
    return std::max(status, checking.end());
}

} // namespace vordascope
