// vordascope: the command line.
#include "verbs.h"

#include "stream.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <exception>

using namespace vordascope;

namespace
{

constexpr char FIELDS[] =
    "FIELD is the path of a field: its item, its blocks and its key as printed, with dots\n"
    "between them, and for one value of an array its index or indexes:\n"
    "  share.inttime   cfg.gamma.GMA curve[60]   stat.awb.Gwd RGL.r channel[3][4]\n"
    "An array gives a column for each of its values. In a pattern * stands for any characters\n"
    "and ? for one; a pattern that matches an item or a block stands for all of its fields.\n"
    "Beside fields there are: time, snapshot (its number), dev_idx, path_idx.";

constexpr char PATTERNS[] =
    "GLOB matches the path of a field, or of its item or block: share.*gain, stat, cfg.nr,\n"
    "\"stat.awb.Gwd RGL\". * stands for any characters, ? for one.\n"
    "A and B are FILE, FILE#N for its Nth snapshot (the first when left out) or FILE#last.\n"
    "Exit status: 0 the same, 1 different, 2 trouble.";

int run(int argc, char **argv)
{
    // A reader that leaves early ends the output, not the program.
    signal(SIGPIPE, SIG_IGN);

    CLI::App app("Reads what vorda prints: checks it, makes JSON or CSV of it, compares it.\n"
                 "FILE holds one snapshot or many; - is standard input.",
                 "vordascope");
    app.require_subcommand(0, 1); // at the end, so that an unknown verb is told by its name
    app.set_version_flag("--version", "vordascope " VORDASCOPE_VERSION);

    int status = TROUBLE;
    std::vector<std::string> files;
    const auto add_verb = [&app](const char *name, const char *description, const char *footer) {
        CLI::App *const verb = app.add_subcommand(name, description);
        verb->footer(footer);
        return verb;
    };

    CLI::App *const check_verb =
        add_verb("check", "Say whether every line is understood",
                 "Exit status: 0 every line, 1 not every line, 2 trouble.");
    check_verb->add_option("FILE", files, "Captures")->required();
    check_verb->callback([&] { status = check(files); });

    CLI::App *const json_verb = add_verb("json", "Print JSON Lines: an object a snapshot", "");
    json_verb->add_option("FILE", files, "Captures")->required();
    json_verb->callback([&] { status = json(files); });

    const CLI::Validator tolerance(
        [](std::string &text) {
            double value = -1;
            const bool number = CLI::detail::lexical_cast(text, value) && std::isfinite(value);
            return number && value >= 0 ? "" : "N is a number of 0 or more";
        },
        "");
    DiffOptions diff_options;
    CLI::App *const diff_verb = add_verb("diff", "Compare two snapshots field by field", PATTERNS);
    diff_verb->add_flag("-q,--quiet", diff_options.quiet, "Say only whether they differ");
    diff_verb->add_option("--only", diff_options.rules.only, "Compare these fields alone")
        ->type_name("GLOB")
        ->expected(1)
        ->take_all();
    diff_verb->add_option("--ignore", diff_options.rules.ignore, "Leave these fields out")
        ->type_name("GLOB")
        ->expected(1)
        ->take_all();
    diff_verb
        ->add_option("--ignore-from", diff_options.ignore_from,
                     "Leave out the GLOBs in a file, one a line")
        ->type_name("FILE")
        ->expected(1)
        ->take_all();
    diff_verb
        ->add_option("--abs", diff_options.rules.absolute, "Numbers at most N apart are the same")
        ->type_name("N")
        ->check(tolerance);
    diff_verb
        ->add_option("--rel", diff_options.rules.relative,
                     "Numbers are the same when at most this part of the larger apart (0.01: 1 %)")
        ->type_name("N")
        ->check(tolerance);
    diff_verb->add_option("A", diff_options.a, "The first snapshot")->required();
    diff_verb->add_option("B", diff_options.b, "The second snapshot")->required();
    diff_verb->callback([&] { status = diff(diff_options); });

    SeriesOptions series_options;
    CLI::App *const series_verb =
        add_verb("series", "Print CSV: a row a snapshot, a column a field", FIELDS);
    series_verb->add_flag("--no-header", series_options.no_header, "Leave the columns' names out");
    series_verb->add_option("FILE", series_options.file, "A capture")->required();
    series_verb->add_option("FIELD", series_options.fields, "Fields")->required();
    series_verb->callback([&] { status = series(series_options); });

    ReportOptions report_options;
    CLI::App *const report_verb = add_verb(
        "report", "Write a page that shows captures",
        "The page is one HTML file that needs no network. Two snapshots are compared, more "
        "are\na series. Exit status: 0, or 2 when something could not be read or written.");
    report_verb
        ->add_option("-o,--output", report_options.out,
                     "Where the page goes; standard output when left out")
        ->type_name("OUT.html");
    report_verb
        ->add_option("--max", report_options.most,
                     "Show at most N snapshots, evenly spread (1000 when left out)")
        ->type_name("N")
        ->check(CLI::Range(1, 1000000));
    report_verb->add_option("FILE", report_options.files, "Captures")->required();
    report_verb->callback([&] { status = report(report_options); });

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? YES : TROUBLE;
    }
    if (app.get_subcommands().empty())
        complain("a verb is missing; see vordascope --help");
    return status;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return run(argc, argv);
    } catch (const std::exception &error) { // no memory, most likely
        fprintf(stderr, "vordascope: %s\n", error.what());
        return TROUBLE;
    }
}
