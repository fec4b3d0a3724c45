// What each verb does: captures in, text out.
#include "verbs.h"

#include "json.h"
#include "report.h"
#include "select.h"
#include "series.h"
#include "stream.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace vordascope
{

namespace
{

std::string plural(uint64_t count, const char *what)
{
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

// Says that a capture was not read in full, for verbs whose output has no place for it.
void warn_of_unread(const Input &input, uint64_t unread)
{
    if (unread > 0)
        complain(input.name() + ": " + plural(unread, "line") +
                 " not understood; see vordascope check");
}

int no_snapshot(const Input &input)
{
    complain(input.name() + ": no snapshot; it would begin with a line "
                            "\"dev_idx = ..., path_idx = ...\"");
    return TROUBLE;
}

// Reads a capture to its end: use(snapshot) takes each snapshot, the text outside of any included,
// and returns whether to go on. Returns TROUBLE when the capture could not be read or holds no
// snapshot, which has been told.
template <typename Use>
int read_all(Input &input, Use use)
{
    uint64_t snapshots = 0;
    while (const Snapshot *snapshot = input.next()) {
        snapshots += snapshot->indexed;
        if (!use(*snapshot))
            return YES;
    }
    if (input.failed())
        return TROUBLE;
    return snapshots > 0 ? YES : no_snapshot(input);
}

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
        if (after == "last")
            wanted_ = LAST;
        else if (!after.empty() && after.find_first_not_of("0123456789") == std::string::npos)
            wanted_ = strtoull(after.c_str(), nullptr, 10);
        else
            return;
        file_ = argument.substr(0, hash);
    }

    // Reads the snapshot. Returns whether it is there; if not, a message has been printed.
    bool read()
    {
        Input input(file_, true);
        uint64_t number = 0;
        while (const Snapshot *snapshot = input.next()) {
            if (!snapshot->indexed || (wanted_ != LAST && snapshot->number != wanted_))
                continue;
            number = snapshot->number;
            text_ = snapshot->text;
            if (wanted_ != LAST)
                break;
        }
        if (input.failed())
            return false;
        if (number == 0) {
            if (wanted_ == 1 || wanted_ == LAST)
                no_snapshot(input);
            else
                complain(input.name() + ": no snapshot " + std::to_string(wanted_));
            return false;
        }
        name_ = input.name() + '#' + std::to_string(number);
        reader_.emplace(std::string_view(text_));
        snapshot_ = reader_->next();
        warn_of_unread(input, snapshot_->unread.size());
        return true;
    }

    const std::string &file() const { return file_; }
    const std::string &name() const { return name_; }
    const Snapshot &snapshot() const { return *snapshot_; }

private:
    static constexpr uint64_t LAST = UINT64_MAX;

    std::string file_;
    uint64_t wanted_ = 1;
    std::string name_;
    std::string text_;
    std::optional<Reader> reader_;
    const Snapshot *snapshot_ = nullptr;
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
    std::ifstream lines(file);
    if (!lines) {
        complain(file + ": " + strerror(errno));
        return false;
    }
    for (std::string line; std::getline(lines, line);) {
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

// Whether two paths lead to one regular file. Devices may well be named twice.
bool same_file(const std::string &a, const std::string &b)
{
    struct stat of_a;
    struct stat of_b;
    return stat(a.c_str(), &of_a) == 0 && stat(b.c_str(), &of_b) == 0 && S_ISREG(of_a.st_mode) &&
           of_a.st_dev == of_b.st_dev && of_a.st_ino == of_b.st_ino;
}

// The name of a capture in the page, which is sent to others: without its folder, unless another
// capture has the same name.
std::string title_of(const std::string &file, const std::vector<std::string> &files)
{
    const auto base = [](const std::string &path) { return path.substr(path.rfind('/') + 1); };
    const bool alone = std::count_if(files.begin(), files.end(), [&](const std::string &other) {
                           return base(other) == base(file);
                       }) == 1;
    return file == "-" ? "standard input" : alone ? base(file) : file;
}

} // namespace

int check(const std::vector<std::string> &files)
{
    Output output;
    int status = YES;
    for (const std::string &file : files) {
        Input input(file, true);
        uint64_t snapshots = 0;
        uint64_t fields = 0;
        uint64_t unread = 0;
        std::string text;
        const int read = read_all(input, [&](const Snapshot &snapshot) {
            snapshots += snapshot.indexed;
            fields += snapshot.fields.size();
            unread += snapshot.unread.size();
            text.clear();
            for (const Unread &line : snapshot.unread) {
                text += input.name() + ':' + std::to_string(line.line) + ": " + line.why + ": ";
                put_shown(line.text, text);
                text += '\n';
            }
            return output.write(text);
        });
        status = std::max({status, read, unread > 0 ? NO : YES});
        if (read == YES)
            output.write(input.name() + ": " + plural(snapshots, "snapshot") + ", " +
                         plural(fields, "field") + ", " +
                         (unread == 0 ? "every line understood"
                                      : plural(unread, "line") + " not understood") +
                         '\n');
        if (!output.writable())
            break;
    }
    return output.failed() ? TROUBLE : status;
}

int json(const std::vector<std::string> &files)
{
    Output output;
    int status = YES;
    std::string text;
    for (const std::string &file : files) {
        Input input(file, true);
        uint64_t outside = 0;
        const int read = read_all(input, [&](const Snapshot &snapshot) {
            if (!snapshot.indexed) {
                outside += snapshot.unread.size();
                return true;
            }
            text.clear();
            put_json(snapshot, text);
            text += '\n';
            return output.write(text);
        });
        status = std::max(status, read);
        if (!output.writable())
            break;
        if (read == YES)
            warn_of_unread(input, outside);
    }
    return output.failed() ? TROUBLE : status;
}

int diff(DiffOptions options)
{
    for (const std::string &file : options.ignore_from)
        if (!read_patterns(file, options.rules.ignore))
            return TROUBLE;
    Side a(options.a);
    Side b(options.b);
    if (a.file() == "-" && b.file() == "-") {
        complain("only one side can be standard input");
        return TROUBLE;
    }
    if (!a.read() || !b.read() || !all_select(options.rules.only, a, b))
        return TROUBLE;

    std::string text;
    const Comparison result =
        compare(a.snapshot(), b.snapshot(), options.rules, a.name(), b.name(), text);
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
    return output.failed() ? TROUBLE : NO;
}

int series(const SeriesOptions &options)
{
    Input input(options.file, true);
    Output output;
    Series table;
    std::string text;
    std::string error;
    uint64_t unread = 0;
    bool begun = false;
    const int read = read_all(input, [&](const Snapshot &snapshot) {
        unread += snapshot.unread.size();
        if (!snapshot.indexed)
            return true;
        text.clear();
        if (!begun) {
            begun = table.begin(snapshot, options.fields, error);
            if (!begun)
                return false;
            if (!options.no_header)
                table.put_header(text);
        }
        table.put_row(snapshot, text);
        return output.write(text);
    });
    if (!error.empty())
        complain(input.name() + ": " + error);
    if (!error.empty() || output.failed())
        return TROUBLE;
    if (read == YES && output.writable())
        warn_of_unread(input, unread);
    return read;
}

int report(const ReportOptions &options)
{
    if (empty_page().empty()) {
        complain(
            "this vordascope was built without the page; configuring it says what was missing");
        return TROUBLE;
    }
    if (options.out.empty() && isatty(STDOUT_FILENO) != 0) {
        complain("a page is nothing for a terminal; name a file with -o OUT.html");
        return TROUBLE;
    }
    for (const std::string &file : options.files) {
        if (!options.out.empty() && same_file(file, options.out)) {
            complain(file + ": the page would overwrite this capture");
            return TROUBLE;
        }
    }

    Model model;
    int status = YES;
    for (const std::string &file : options.files) {
        Input input(file, true);
        model.begin_file(title_of(file, options.files));
        uint64_t unread = 0;
        const int read = read_all(input, [&](const Snapshot &snapshot) {
            model.add(snapshot);
            unread += snapshot.unread.size();
            return true;
        });
        if (input.failed())
            model.note("It could not be read: " + input.error() + ".");
        if (read == YES)
            warn_of_unread(input, unread);
        status = std::max(status, read);
    }
    const std::optional<std::string> page = page_with(empty_page(), model.json(options.most));
    if (!page) {
        complain("not enough memory for the page");
        return TROUBLE;
    }
    std::optional<Output> file;
    if (!options.out.empty())
        file.emplace(options.out);
    else
        file.emplace();
    file->write(*page);
    return file->failed() ? TROUBLE : status;
}

} // namespace vordascope
