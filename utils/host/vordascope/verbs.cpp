// What each verb does: captures in, text out.
#include "verbs.h"

#include "json.h"
#include "learn.h"
#include "plain.h"
#include "report.h"
#include "series.h"
#include "shown.h"

#include <algorithm>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace vordascope
{

namespace
{

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

// One path of one device.
struct PathChoice {
    uint32_t dev_idx;
    uint32_t path_idx;

    bool operator==(const PathChoice &) const = default;
};

std::optional<PathChoice> read_path(std::string_view text)
{
    PathChoice path = {};
    if (take_number(text, path.dev_idx) && take(text, ",") && take_number(text, path.path_idx) &&
        text.empty())
        return path;
    return {};
}

// Whether a word of the command line stands for a capture and not for a field.
bool is_capture(const std::string &word)
{
    return is_standard_input(word) || access(word.c_str(), F_OK) == 0;
}

// The table that `series` prints.
class Rows
{
public:
    Rows(const SeriesOptions &options, const std::vector<std::string> &fields,
         std::optional<PathChoice> path, Output &output)
        : labels_(read_labels(options.labels)), fields_(fields), path_(path), chosen_(path),
          header_(!options.no_header), output_(output)
    {
    }

    // Prints the rows of a capture. Returns a status.
    int add(const std::string &file)
    {
        Input input(file, labels_);
        uint64_t unread = 0;
        uint64_t used = 0;
        const int read = read_all(input, [&](const Snapshot &snapshot) {
            unread += snapshot.unread_count;
            const PathChoice path = {snapshot.dev_idx, snapshot.path_idx};
            if (!snapshot.indexed || (chosen_ && path != *chosen_))
                return true;
            used++;
            return add(input, snapshot, path);
        });
        if (!error_.empty())
            complain(input.name() + ": " + error_);
        else if (read == YES && used == 0)
            complain(input.name() + ": no snapshot of that path");
        else if (read == YES && output_.writable())
            warn_of_unread(input, unread);
        return read == YES && used == 0 ? TROUBLE : read;
    }

    // Whether there cannot be more rows; a message has been printed.
    bool failed() const { return !error_.empty(); }

private:
    bool add(const Input &input, const Snapshot &snapshot, const PathChoice &path)
    {
        text_.clear();
        if (!begun_) {
            begun_ = table_.begin(snapshot, fields_, error_);
            if (begun_ && header_)
                table_.put_header(text_);
        }
        if (!path_)
            path_ = path;
        else if (path != *path_ && !table_.tells_paths())
            error_ = "snapshots of several paths; choose one with --path " +
                     std::to_string(path_->dev_idx) + ',' + std::to_string(path_->path_idx) +
                     ", or name the columns dev_idx and path_idx as well";
        if (!error_.empty())
            return false;
        table_.put_row(snapshot, input.file(), text_);
        return output_.write(text_);
    }

    const std::vector<Label> labels_;
    const std::vector<std::string> &fields_;
    std::optional<PathChoice> path_; // of the rows so far
    const std::optional<PathChoice> chosen_;
    const bool header_;
    Output &output_;
    Series table_;
    bool begun_ = false;
    std::string text_;
    std::string error_;
};

} // namespace

int json(const JsonOptions &options)
{
    const std::vector<Label> labels = read_labels(options.labels);
    Output output;
    int status = YES;
    std::string text;
    for (const std::string &file : options.files) {
        Input input(file, labels);
        uint64_t outside = 0;
        const int read = read_all(input, [&](const Snapshot &snapshot) {
            if (!snapshot.indexed) {
                outside += snapshot.unread_count;
                return true;
            }
            text.clear();
            put_json(snapshot, input.file(), text);
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

int learn(const LearnOptions &options)
{
    const Limit margin = options.margin.empty() ? Limit() : *read_percentage(options.margin);
    Learner learner;
    std::string files;
    int status = YES;
    for (const std::string &file : options.files) {
        Input input(file);
        uint64_t unread = 0;
        const int read = read_all(input, [&](const Snapshot &snapshot) {
            unread += snapshot.unread_count;
            if (snapshot.indexed)
                learner.add(snapshot);
            return true;
        });
        status = std::max(status, read);
        if (read == YES)
            warn_of_unread(input, unread);
        files += "#   " + input.name() + '\n';
    }
    if (status != YES || learner.snapshots() == 0)
        return TROUBLE; // what is learned of a part would refuse the rest
    if (learner.snapshots() == 1)
        complain("one snapshot alone: nothing may change, for all that is known");
    Output output;
    std::string text =
        "# Learned by vordascope from " + plural(learner.snapshots(), "snapshot") + ":\n" + files;
    for (const auto &[key, value] : read_labels(options.labels)) {
        text += "#   label " + key + " = ";
        put_shown(value, text);
        text += '\n';
    }
    learner.put_rules(margin.exact, text);
    output.write(text);
    return output.close() ? YES : TROUBLE;
}

int series(const SeriesOptions &options)
{
    std::vector<std::string> files;
    std::vector<std::string> fields;
    for (const std::string &word : options.words) {
        const bool capture = files.empty() || (fields.empty() && is_capture(word));
        (capture ? files : fields).push_back(word);
    }
    if (fields.empty()) {
        complain("series: FIELD is required");
        return TROUBLE;
    }
    std::optional<PathChoice> path;
    if (!options.path.empty() && !(path = read_path(options.path))) {
        complain("--path: D,P is the number of a device and that of one of its paths");
        return TROUBLE;
    }
    Output output;
    Rows rows(options, fields, path, output);
    int status = YES;
    for (const std::string &file : files) {
        status = std::max(status, rows.add(file));
        if (rows.failed() || !output.writable())
            break;
    }
    return output.close() && !rows.failed() ? status : TROUBLE;
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

    Model model(options.pictures);
    Plain plain;
    int status = YES;
    for (const std::string &file : options.files) {
        Input input(file, read_labels(options.labels));
        const std::string title = title_of(file, options.files);
        model.begin_file(title);
        uint64_t unread = 0;
        const int read = read_all(input, [&](const Snapshot &snapshot) {
            if (const std::optional<Model::Place> place = model.add(snapshot))
                plain.add(snapshot, place->run, title);
            unread += snapshot.unread_count;
            return true;
        });
        model.note_undone(input.notices());
        if (input.failed())
            model.note("It could not be read: " + input.error() + ".");
        if (read == YES)
            warn_of_unread(input, unread);
        status = std::max(status, read);
    }
    for (const std::string &text : model.left_out())
        complain(text);
    const std::optional<std::string> page =
        page_with(empty_page(), model.json(), plain.html(page_figures()));
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
