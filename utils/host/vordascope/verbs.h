// The verbs of the command line. Each reads captures, prints on standard output and returns the
// exit status; what goes wrong is said on standard error.
#pragma once

#include "compare.h"
#include "model.h"

namespace vordascope
{

// Exit statuses. `check` and `diff` answer a question with the first two.
constexpr int YES = 0;
constexpr int NO = 1;
constexpr int TROUBLE = 2;

// Says of each capture whether every line is understood.
int check(const std::vector<std::string> &files);

// Prints JSON Lines: an object a snapshot, as soon as it is complete.
int json(const std::vector<std::string> &files);

struct DiffOptions {
    std::string a; // FILE, FILE#N or FILE#last
    std::string b;
    std::vector<std::string> ignore_from; // files of patterns, which add to the rules
    Rules rules;
    bool quiet = false;
};

// Compares two snapshots field by field.
int diff(DiffOptions options);

struct SeriesOptions {
    std::string file;
    std::vector<std::string> fields;
    bool no_header = false;
};

// Prints CSV: a row a snapshot, as soon as it is complete.
int series(const SeriesOptions &options);

struct ReportOptions {
    std::vector<std::string> files;
    std::string out; // empty for standard output
    size_t most = SNAPSHOTS_SHOWN;
};

// Writes a page of captures.
int report(const ReportOptions &options);

} // namespace vordascope
