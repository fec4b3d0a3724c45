// vordascope: the command line.
#include "verbs.h"

#include "stream.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <csignal>
#include <fcntl.h>
#include <memory>
#include <new>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

using namespace vordascope;

namespace
{

constexpr char FIELDS[] =
    "FIELD is the path of a field: its item, its blocks and its key as printed, with dots\n"
    "between them, and for one value of an array its index or indexes:\n"
    "  share.inttime   cfg.gamma.GMA curve[60]   stat.awb.Gwd RGL.r channel[3][4]\n"
    "An array gives a column for each of its values. In a pattern * stands for any characters\n"
    "and ? for one; a pattern that matches an item or a block stands for all of its fields.\n"
    "Beside fields there are: time, frame, snapshot (its number), dev_idx, path_idx, file,\n"
    "and \"label KEY\". The words up to the first one that names no file are captures.";

constexpr char PATTERNS[] =
    "GLOB matches the path of a field, or of its item or block: share.*gain, stat, cfg.nr,\n"
    "\"stat.awb.Gwd RGL\". * stands for any characters, ? for one.\n"
    "A and B are FILE, FILE#N for its Nth snapshot (the first when left out) or FILE#last.\n"
    "Exit status: 0 the same, 1 different, 2 trouble.";

constexpr char ANSWERS[] =
    "FILE#I-J measures snapshots I to J of a capture, FILE#I-last all from I on. The first word is\n"
    "a capture, as are those behind it that name a file. FIELD is the path of a field or a pattern\n"
    "(see series); exposure is share.inttime x share.sys_gain, exposure.stops its logarithm.\n"
    "A step goes to another value, a recovery comes back, steady does not leave the band, and what\n"
    "is moving is not at rest at the end: it has no value after and does not settle.";

// A verb on the command line, and where its options go.
template <typename Options>
struct Verb {
    CLI::App *app;
    Options &options;
};

// The verbs, and the exit status of the one that has run.
class CommandLine
{
public:
    CommandLine()
    {
        app.require_subcommand(0, 1); // at the end, so that an unknown verb is told by its name
        app.set_version_flag("--version", "vordascope " VORDASCOPE_VERSION);
    }

    template <typename Options>
    Verb<Options> add(const char *name, const char *description, const char *footer,
                      int (*run)(const Options &))
    {
        const auto options = std::make_shared<Options>();
        CLI::App *const verb = app.add_subcommand(name, description);
        verb->footer(footer);
        verb->callback([this, run, options] { status = run(*options); });
        return {verb, *options};
    }

    CLI::App app{"Reads what vorda prints: checks it, makes JSON or CSV of it, compares it.\n"
                 "FILE holds one snapshot or many; - is standard input.",
                 "vordascope"};
    int status = TROUBLE;
};

// An option that can be given again and takes one argument each time.
CLI::Option *repeated(CLI::Option *option, const char *type)
{
    return option->type_name(type)->expected(1)->allow_extra_args(false)->take_all();
}

// Accepts what can be read as a number.
CLI::Validator checked(std::optional<Limit> (*read)(std::string_view), const char *error)
{
    return {[read, error](std::string &text) { return read(text) ? "" : error; }, ""};
}

void add_unused(CLI::App *verb, bool &warn)
{
    verb->add_option_function<std::string>(
            "--unused", [&warn](const std::string &word) { warn = word == "warn"; },
            "What a rule is that matches no field: error (when left out) or warn")
        ->type_name("WORD")
        ->check(CLI::IsMember({"error", "warn"}));
}

void add_junit(CLI::App *verb, std::string &file)
{
    verb->add_option("--junit", file, "Write a test case an item, for CI servers")
        ->type_name("FILE.xml");
}

void add_labels(CLI::App *verb, std::vector<std::string> &labels)
{
    repeated(verb->add_option("--label", labels,
                              "Say something of the captures, besides what they say themselves"),
             "KEY=VALUE")
        ->check(CLI::Validator(
            [](std::string &text) {
                return read_label(text) ? "" : "KEY is letters, digits, and _ . - behind the first";
            },
            ""));
}

void add_check(CommandLine &line)
{
    const auto [verb, options] =
        line.add("check", "Say whether every line is understood, and what was agreed on holds",
                 "Of each reason why a line is not understood the first five lines are shown.\n"
                 "Exit status: 0 all is well, 1 it is not, 2 trouble.",
                 check);
    verb->add_flag("--all", options.all, "Show every line that is not understood");
    repeated(verb->add_option("--rules", options.rules,
                              "Hold each snapshot against the ranges of the rules in a file"),
             "FILE");
    add_unused(verb, options.unused_warn);
    add_junit(verb, options.junit);
    add_labels(verb, options.labels);
    verb->add_option("FILE", options.files, "Captures")->required();
}

void add_json(CommandLine &line)
{
    const auto [verb, options] =
        line.add("json", "Print JSON Lines: an object a snapshot", "", json);
    add_labels(verb, options.labels);
    verb->add_option("FILE", options.files, "Captures")->required();
}

void add_diff(CommandLine &line)
{
    const auto [verb, options] =
        line.add("diff", "Compare snapshots field by field", PATTERNS, diff);
    verb->add_flag("-q,--quiet", options.quiet, "Say only which ones differ");
    verb->add_flag("--every", options.every, "Tell each value of an array that differs");
    repeated(verb->add_option("--only", options.only, "Compare these fields alone"), "GLOB");
    repeated(verb->add_option("--ignore", options.ignore, "Leave these fields out"), "GLOB");
    repeated(verb->add_option("--rules,--ignore-from", options.rules,
                              "What a file says of each field; a GLOB alone leaves it out"),
             "FILE");
    add_unused(verb, options.unused_warn);
    verb->add_option("--abs", options.absolute, "Numbers at most N apart are the same")
        ->type_name("N")
        ->check(checked(read_tolerance, "N is a number of 0 or more"));
    verb->add_option("--rel", options.relative,
                     "So are those that are at most N% of the larger one apart")
        ->type_name("N%")
        ->check(checked(read_part, "it is a percentage, 5%, or less than 1"));
    add_junit(verb, options.junit);
    add_labels(verb, options.labels);
    verb->add_option("A", options.a, "The first snapshot")->required();
    verb->add_option("B", options.b, "Those that are held against it")->required();
}

void add_learn(CommandLine &line)
{
    const auto [verb, options] =
        line.add("learn", "Print rules that good captures keep to",
                 "What is the same in all snapshots is exact; what is not may differ as far as it "
                 "did,\nand N% more. Rules are for diff and check; see vordascope(1).",
                 learn);
    verb->add_option("--margin", options.margin, "How much farther than seen values may be apart")
        ->type_name("N%")
        ->check(checked(read_percentage, "it is a percentage, 20%"));
    add_labels(verb, options.labels);
    verb->add_option("FILE", options.files, "Captures that are known to be good")->required();
}

void add_series(CommandLine &line)
{
    const auto [verb, options] =
        line.add("series", "Print CSV: a row a snapshot, a column a field", FIELDS, series);
    verb->add_flag("--no-header", options.no_header, "Leave the columns' names out");
    verb->add_option("--path", options.path, "Only snapshots of device D and path P")
        ->type_name("D,P");
    add_labels(verb, options.labels);
    verb->add_option("FILE FIELD", options.words, "Captures, and then fields")
        ->type_name("")
        ->required();
}

void add_response(CommandLine &line)
{
    const auto [verb, options] =
        line.add("response", "Measure how fields answer to a change", ANSWERS, response);
    verb->add_option("--band", options.band,
                     "Measure against N percent: of a step, or of the value before (5)")
        ->type_name("N")
        ->check(CLI::Range(0.01, 50.0));
    verb->add_option("--cause", options.cause, "Tell the delay behind the departure of this field")
        ->type_name("FIELD");
    verb->add_option("--reference", options.reference,
                     "Take the value before from this capture, or from some of its snapshots")
        ->type_name("FILE[#I-J]");
    verb->add_flag("--csv", options.csv, "Print CSV, with every number as it was measured");
    add_labels(verb, options.labels);
    verb->add_option("FILE FIELD", options.words, "Captures, and then fields")
        ->type_name("")
        ->required();
}

void add_metrics(CommandLine &line)
{
    const auto [verb, options] = line.add(
        "metrics", "Write the newest snapshot as metrics (OpenMetrics)",
        "Single numbers of share and stat, unless fields are chosen. From a pipe, the file "
        "is renewed\nat each snapshot. For the textfile collector of Prometheus' node "
        "exporter.",
        metrics);
    repeated(verb->add_option("--only", options.only, "Write these fields"), "GLOB");
    verb->add_option("--max", options.most, "At most N fields of a path (100 when left out)")
        ->type_name("N")
        ->check(CLI::Range(1, 1000000));
    add_labels(verb, options.labels);
    verb->add_option("-o,--output", options.out,
                     "Where they go, by rename; standard output when left out")
        ->type_name("OUT.prom");
    verb->add_option("FILE", options.files, "Captures")->required();
}

void add_report(CommandLine &line)
{
    const auto [verb, options] =
        line.add("report", "Write a page that shows captures",
                 "The page is one HTML file that needs no network. Two captures of a path are "
                 "laid over each\nother. Exit status: 0, or 2 when something could not be read or "
                 "written.",
                 report);
    add_labels(verb, options.labels);
    verb->add_option("-o,--output", options.out,
                     "Where the page goes; standard output when left out")
        ->type_name("OUT.html");
    verb->add_option(
            "--max", options.pictures,
            "Keep the grids and long lists of at most N snapshots of a run (512 when left\n"
            "out); scalars and lists of up to 16 values are always kept")
        ->type_name("N")
        ->check(CLI::Range(2, 1000000));
    verb->add_option("FILE", options.files, "Captures")->required();
}

void add_live(CommandLine &line)
{
    const auto [verb, options] = line.add(
        "live", "Show in a browser what arrives",
        "Prints an address of this machine alone and shows there what FILE gets, - is standard\n"
        "input: ssh camera vorda-record all | vordascope live -o run.txt -",
        live);
    verb->add_option("-o,--output", options.out,
                     "Write what is read here, with a line for each mark that is made")
        ->type_name("OUT");
    verb->add_option("--keep", options.keep, "Keep the last N seconds (300)")
        ->type_name("N")
        ->check(CLI::Range(1, 86400));
    verb->add_option("--port", options.port, "Listen on port N, not on any that is free")
        ->type_name("N");
    verb->add_flag("--no-browser", options.no_browser, "Open no browser, print the address only");
    add_labels(verb, options.labels);
    verb->add_option("--reference", options.reference, "Hold everything against this snapshot")
        ->type_name("FILE[#N]");
    verb->add_option("FILE", options.file, "What to follow; a file may go on growing")->required();
}

void add_mark(CommandLine &line)
{
    const auto [verb, options] = line.add(
        "mark", "Note what was changed, in what live shows",
        "The newest snapshot gets the note, in the vordascope live that began last.", mark);
    verb->add_option("TEXT", options.words, "What was changed")->required();
}

// A capture or a page must not become a standard descriptor that the program was started without.
// Reading or writing there still fails.
void occupy_standard_descriptors()
{
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(fd, F_GETFD) < 0)
            open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

// The words of the command line, the last one first, as CLI11 wants them. It would take "-#2", a
// snapshot of standard input, for an option.
std::vector<std::string> arguments(int argc, char **argv)
{
    std::vector<std::string> words;
    for (int i = argc - 1; i > 0; i--) {
        const std::string_view word = argv[i];
        words.push_back(word.starts_with("-#") ? STANDARD_INPUT + std::string(word.substr(1))
                                               : std::string(word));
    }
    return words;
}

// Help, the version, or what is wrong with the command line.
int end_early(const CLI::App &app, const CLI::ParseError &error)
{
    std::ostringstream out;
    std::ostringstream err;
    const bool asked = app.exit(error, out, err) == 0;
    fputs(err.str().c_str(), stderr);
    Output output;
    output.write(out.str());
    return asked && output.close() ? YES : TROUBLE;
}

int run(int argc, char **argv)
{
    // A reader that leaves early ends the output, not the program.
    signal(SIGPIPE, SIG_IGN);
    occupy_standard_descriptors();

    CommandLine line;
    for (const auto add : {add_check, add_json, add_diff, add_learn, add_series, add_response,
                           add_metrics, add_report, add_live, add_mark})
        add(line);
    try {
        line.app.parse(arguments(argc, argv));
    } catch (const CLI::ParseError &error) {
        return end_early(line.app, error);
    }
    if (line.app.get_subcommands().empty())
        complain("a verb is missing; see vordascope --help");
    return line.status;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return run(argc, argv);
    } catch (const std::bad_alloc &) {
        complain("not enough memory");
    } catch (const std::length_error &) { // more than there can be
        complain("not enough memory");
    } catch (const std::exception &error) {
        complain(error.what());
    }
    return TROUBLE;
}
