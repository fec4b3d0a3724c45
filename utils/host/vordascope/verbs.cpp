// What each verb does: captures in, text out.
#include "verbs.h"

#include "json.h"
#include "report.h"
#include "series.h"

#include <algorithm>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace vordascope
{

namespace
{

// Whether a capture, standard input perhaps, is the regular file of that path. Devices may well be
// named twice.
bool same_file(const std::string &capture, const std::string &path)
{
    struct stat of_capture;
    struct stat of_path;
    const bool there = is_standard_input(capture) ? fstat(STDIN_FILENO, &of_capture) == 0
                                                  : stat(capture.c_str(), &of_capture) == 0;
    return there && stat(path.c_str(), &of_path) == 0 && S_ISREG(of_path.st_mode) &&
           of_capture.st_dev == of_path.st_dev && of_capture.st_ino == of_path.st_ino;
}

// The name of a capture in the page, which is sent to others: without its folder, unless another
// capture has the same name.
std::string title_of(const std::string &file, const std::vector<std::string> &files)
{
    const auto base = [](const std::string &path) { return path.substr(path.rfind('/') + 1); };
    const bool alone = std::count_if(files.begin(), files.end(), [&](const std::string &other) {
                           return base(other) == base(file);
                       }) == 1;
    return is_standard_input(file) ? "standard input" : alone ? base(file) : file;
}

} // namespace

int json(const JsonOptions &options)
{
    Output output;
    int status = YES;
    std::string text;
    for (const std::string &file : options.files) {
        Input input(file);
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
    return output.close() ? status : TROUBLE;
}

int series(const SeriesOptions &options)
{
    Input input(options.file);
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
    if (read == YES && error.empty() && output.writable())
        warn_of_unread(input, unread);
    return output.close() && error.empty() ? read : TROUBLE;
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
            complain((is_standard_input(file) ? "standard input" : file) +
                     ": the page would overwrite this capture");
            return TROUBLE;
        }
    }

    Model model;
    int status = YES;
    for (const std::string &file : options.files) {
        Input input(file);
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
    return file->close() ? status : TROUBLE;
}

} // namespace vordascope
