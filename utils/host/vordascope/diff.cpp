// The comparison of two snapshots of captures.
#include "verbs.h"

#include "select.h"
#include "shown.h"

#include <algorithm>
#include <charconv>
#include <unistd.h>

namespace vordascope
{

namespace
{

// One of the two snapshots: FILE, FILE#N or FILE#last.
class Side
{
public:
    explicit Side(const std::string &argument) : file_(argument)
    {
        const size_t hash = argument.rfind('#');
        if (hash == std::string::npos || access(argument.c_str(), F_OK) == 0)
            return;
        const std::string after = argument.substr(hash + 1);
        if (after != "last" &&
            (after.empty() || after.find_first_not_of("0123456789") != std::string::npos))
            return;
        file_ = argument.substr(0, hash);
        wanted_ = after;
        last_ = after == "last";
        // A number that is too large is that of no snapshot.
        number_ = 0;
        std::from_chars(after.data(), after.data() + after.size(), number_);
    }

    // Reads the snapshot. Returns whether it is there; if not, a message has been printed.
    bool read()
    {
        Input input(file_);
        uint64_t found = 0;
        while (const Snapshot *snapshot = input.next()) {
            if (!snapshot->indexed || (!last_ && snapshot->number != number_))
                continue;
            found = snapshot->number;
            snapshot_ = *snapshot;
            if (!last_)
                break;
        }
        if (input.failed())
            return false;
        if (found == 0) {
            if (number_ == 1 || last_)
                no_snapshot(input);
            else
                complain(input.name() + ": no snapshot " + wanted_);
            return false;
        }
        name_ = input.name() + '#' + std::to_string(found);
        warn_of_unread(input, snapshot_.unread.size());
        return true;
    }

    const std::string &file() const { return file_; }
    const std::string &name() const { return name_; }
    const Snapshot &snapshot() const { return snapshot_; }

private:
    std::string file_;
    std::string wanted_; // as given
    bool last_ = false;
    uint64_t number_ = 1;
    std::string name_;
    Snapshot snapshot_;
};

void put_title(const char *mark, const Side &side, std::string &out)
{
    const Snapshot &snapshot = side.snapshot();
    out += mark;
    put_shown(side.name(), out);
    out += ": dev_idx = " + std::to_string(snapshot.dev_idx) +
           ", path_idx = " + std::to_string(snapshot.path_idx);
    if (snapshot.timed)
        out.append(", time = ").append(snapshot.time.text());
    out += snapshot.cut ? ", cut off\n" : "\n";
}

// Appends the patterns of a file, one a line; blank lines and lines that begin with `#` are none.
bool read_patterns(const std::string &file, std::vector<std::string> &patterns)
{
    std::string text;
    if (!read_file(file, text))
        return false;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = std::min(text.find('\n', begin), text.size());
        std::string line = text.substr(begin, end - begin);
        begin = end + 1;
        line.erase(line.find_last_not_of(" \t\r") + 1);
        if (!line.empty() && line[0] != '#')
            patterns.push_back(line);
    }
    return true;
}

// Whether each pattern selects something: one that does not is a slip that would make everything
// the same.
bool all_select(const std::vector<std::string> &patterns, const Side &a, const Side &b)
{
    for (const std::string &pattern : patterns) {
        const auto selected = [&pattern](const Side &side) {
            const Snapshot &snapshot = side.snapshot();
            return std::any_of(
                snapshot.fields.begin(), snapshot.fields.end(),
                [&](const Field &field) { return selects(pattern, snapshot, field); });
        };
        if (!selected(a) && !selected(b)) {
            complain("--only " + pattern + " selects nothing. " + suggest(a.snapshot(), pattern));
            return false;
        }
    }
    return true;
}

} // namespace

int diff(const DiffOptions &options)
{
    Rules rules = options.rules;
    for (const std::string &file : options.ignore_from)
        if (!read_patterns(file, rules.ignore))
            return TROUBLE;
    Side a(options.a);
    Side b(options.b);
    if (is_standard_input(a.file()) && is_standard_input(b.file())) {
        complain("only one side can be standard input");
        return TROUBLE;
    }
    if (!a.read() || !b.read() || !all_select(rules.only, a, b))
        return TROUBLE;

    std::string text;
    const Comparison result = compare(a.snapshot(), b.snapshot(), rules, a.name(), b.name(), text);
    if (result.same())
        return YES;
    std::string out;
    if (options.quiet) {
        put_shown(a.name(), out);
        out += " and ";
        put_shown(b.name(), out);
        out += " differ\n";
    } else {
        put_title("--- ", a, out);
        put_title("+++ ", b, out);
        out += text;
        out += plural(result.different, "field") + " of " + std::to_string(result.compared) +
               (result.different == 1 ? " differs" : " differ");
        if (result.only_a + result.only_b > 0)
            out += ", " + std::to_string(result.only_a) + " only in the first, " +
                   std::to_string(result.only_b) + " only in the second";
        out += '\n';
    }
    Output output;
    output.write(out);
    return output.close() ? NO : TROUBLE;
}

} // namespace vordascope
