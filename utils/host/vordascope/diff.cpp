// The comparison of two snapshots of captures.
#include "verbs.h"

#include "gate.h"
#include "gates.h"
#include "select.h"
#include "shown.h"
#include "side.h"

#include <algorithm>
#include <optional>

namespace vordascope
{

namespace
{

void put_title(const char *mark, const Side &side, std::string &out)
{
    const Snapshot &snapshot = side.snapshot();
    out += mark;
    put_shown(side.name(), out);
    out += snapshot.named ? ": dev_idx = " + std::to_string(snapshot.dev_idx) +
                                ", path_idx = " + std::to_string(snapshot.path_idx)
                          : ": an attribute text";
    if (snapshot.timed)
        out.append(", time = ").append(snapshot.time.text());
    out += snapshot.cut ? ", cut off\n" : "\n";
}

// The rules that the command line asks for. No value, after a message, when they cannot be read.
std::optional<Rules> rules_of(const DiffOptions &options)
{
    std::vector<Rule> rules;
    for (const std::string &file : options.rules)
        if (!read_rules_file(file, rules))
            return {};
    for (const std::string &glob : options.ignore) {
        Rule rule;
        rule.glob = as_path(glob);
        rule.ignore = true;
        rule.origin = "--ignore";
        rules.push_back(std::move(rule));
    }
    Rule standard;
    if (!options.absolute.empty())
        standard.absolute = read_tolerance(options.absolute);
    if (!options.relative.empty())
        standard.relative = read_part(options.relative);
    return Rules(std::move(standard), std::move(rules), options.only);
}

// Appends "2 fields of 1046 differ, 1 only in the first, 2 only in the second".
void put_counts(const Comparison &result, std::string &out)
{
    out += plural(result.different, "field") + " of " + std::to_string(result.compared) +
           (result.different == 1 ? " differs" : " differ");
    if (result.only_a + result.only_b > 0)
        out += ", " + std::to_string(result.only_a) + " only in the first, " +
               std::to_string(result.only_b) + " only in the second";
    if (result.unread > 0)
        out += ", " + plural(result.unread, "line") + " not understood in one of them";
    if (result.warned > 0)
        out += ", " + plural(result.warned, "warning");
    out += '\n';
}

// What is printed of two snapshots.
void put_pair(const Side &a, const Side &b, const Comparison &result, bool quiet, std::string &out)
{
    if (quiet) {
        if (!result.same())
            out += a.name() + " and " + b.name() + " differ\n";
        return;
    }
    if (result.same() && result.warned == 0)
        return;
    put_title("--- ", a, out);
    put_title("+++ ", b, out);
    put_report(result, a.name(), b.name(), out);
    put_counts(result, out);
}

// What is printed of one of many snapshots.
void put_one(const Side &b, const Comparison &result, bool quiet, std::string &out)
{
    constexpr size_t NAMED = 5;
    if (result.same())
        return;
    out += b.name();
    size_t count = 0;
    for (const ItemDifferences &item : result.items)
        for (const Difference &difference : item.differences)
            if (!quiet && !difference.warning && count++ < NAMED)
                out += (count == 1 ? ": " : ", ") + item.item +
                       (difference.name.empty() ? "" : "." + difference.name);
    if (count > NAMED)
        out += " and " + std::to_string(count - NAMED) + " more";
    out += '\n';
}

// Holds each snapshot against the first one and prints what differs. Returns the status.
int compare_all(const DiffOptions &options, const Side &a, Rules &rules, Gate &gate)
{
    Output output;
    Progress progress(false); // captures that do not differ have no row
    int status = YES;
    std::string out;
    for (const std::string &argument : options.b) {
        if (progress.due())
            progress.show(std::to_string(gate.captures()) + " of " +
                          plural(options.b.size(), "capture"));
        Side b(argument);
        if (!b.read()) {
            gate.add_trouble(argument, b.error());
            status = TROUBLE;
            continue;
        }
        const Comparison result =
            compare(a.snapshot(), b.snapshot(), rules, a.name(), b.name(), options.every);
        gate.add(b.name(), result);
        status = std::max(status, result.same() ? YES : NO);
        out.clear();
        if (options.b.size() == 1)
            put_pair(a, b, result, options.quiet, out);
        else
            put_one(b, result, options.quiet, out);
        if (!out.empty())
            progress.end();
        if (!output.write(out))
            break;
    }
    progress.end();
    out.clear();
    if (options.b.size() > 1 && !options.quiet) {
        gate.put_summary(out);
        out += std::to_string(gate.different()) + " of " + plural(gate.captures(), "capture") +
               (gate.different() == 1 ? " differs\n" : " differ\n");
    }
    output.write(out);
    return output.close() ? status : TROUBLE;
}

} // namespace

int diff(const DiffOptions &options)
{
    std::optional<Rules> rules = rules_of(options);
    if (!rules)
        return TROUBLE;
    Side a(options.a);
    const bool twice = std::count_if(options.b.begin(), options.b.end(),
                                     [](const std::string &argument) {
                                         return is_standard_input(Side(argument).file());
                                     }) +
                           is_standard_input(a.file()) >
                       1;
    if (twice) {
        complain("only one side can be standard input");
        return TROUBLE;
    }
    if (!a.read())
        return TROUBLE;
    Gate gate(a.name());
    int status = compare_all(options, a, *rules, gate);
    if (gate.captures() > 0 && !all_used(*rules, a.snapshot(), options.unused_warn))
        status = TROUBLE;
    if (!options.junit.empty() && !write_junit(gate, read_labels(options.labels), options.junit))
        status = TROUBLE;
    return status;
}

} // namespace vordascope
