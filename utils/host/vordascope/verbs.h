// The verbs of the command line. Each reads captures, prints on standard output and returns the
// exit status; what goes wrong is said on standard error.
#pragma once

#include "captures.h"
#include "compare.h"
#include "model.h"

namespace vordascope
{

struct CheckOptions {
    std::vector<std::string> files;
    bool all = false; // show every line that is not understood
};

// Says of each capture whether every line is understood.
int check(const CheckOptions &options);

struct JsonOptions {
    std::vector<std::string> files;
};

// Prints JSON Lines: an object a snapshot, as soon as it is complete.
int json(const JsonOptions &options);

struct DiffOptions {
    std::string a; // FILE, FILE#N or FILE#last
    std::string b;
    std::vector<std::string> ignore_from; // files of patterns, which add to the rules
    Rules rules;
    bool quiet = false;
};

// Compares two snapshots field by field.
int diff(const DiffOptions &options);

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
