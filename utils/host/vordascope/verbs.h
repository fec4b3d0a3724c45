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
    bool all = false;                // show every line that is not understood
    std::vector<std::string> rules;  // files of rules whose ranges the captures are held against
    bool unused_warn = false;        // a rule that matches no field is no error
    std::string junit;               // the file for CI servers; empty for none
    std::vector<std::string> labels; // "KEY=VALUE", which go into that file
};

// Says of each capture whether every line is understood, and whether it is what was agreed on.
int check(const CheckOptions &options);

struct JsonOptions {
    std::vector<std::string> files;
    std::vector<std::string> labels; // "KEY=VALUE", which all captures have besides their own
};

// Prints JSON Lines: an object a snapshot, as soon as it is complete.
int json(const JsonOptions &options);

struct DiffOptions {
    std::string a;              // FILE, FILE#N or FILE#last
    std::vector<std::string> b; // each is held against it
    std::vector<std::string> only;
    std::vector<std::string> ignore;
    std::vector<std::string> rules; // files of them
    bool unused_warn = false;       // a rule that matches no field is no error
    std::string absolute;           // tolerances, as given; empty for none
    std::string relative;
    std::string junit;               // the file for CI servers; empty for none
    std::vector<std::string> labels; // "KEY=VALUE", which go into that file
    bool quiet = false;
    bool every = false; // tell each value of an array that differs
};

// Compares snapshots with one field by field.
int diff(const DiffOptions &options);

struct LearnOptions {
    std::vector<std::string> files;
    std::string margin;              // as given; empty for none
    std::vector<std::string> labels; // "KEY=VALUE", which stand above the rules
};

// Prints rules that captures which are known to be good keep to.
int learn(const LearnOptions &options);

struct SeriesOptions {
    std::vector<std::string> words;  // captures, and then fields
    std::vector<std::string> labels; // "KEY=VALUE", which all captures have besides their own
    std::string path;                // "D,P": only snapshots of this path; empty for all
    bool no_header = false;
};

// Prints CSV: a row a snapshot, as soon as it is complete.
int series(const SeriesOptions &options);

struct ResponseOptions {
    std::vector<std::string> words; // captures, FILE or FILE#I-J, and then fields
    std::string cause;              // a field, or empty
    std::string reference;          // FILE or FILE#I-J, or empty
    double band = 5;                // percent
    bool csv = false;
    std::vector<std::string> labels; // "KEY=VALUE", of which CSV has a column each
};

// Measures how fields answer to a change: a row a field and capture.
int response(const ResponseOptions &options);

struct MetricsOptions {
    std::vector<std::string> files;
    std::vector<std::string> labels; // "KEY=VALUE", which all captures have besides their own
    std::vector<std::string> only;   // patterns of fields; none: share and stat
    std::string out;                 // empty for standard output
    size_t most = 100;               // fields of a path
};

// Writes the newest snapshot of each path as metrics; of one that comes through a pipe, each time.
int metrics(const MetricsOptions &options);

struct ReportOptions {
    std::vector<std::string> files;
    std::vector<std::string> labels; // "KEY=VALUE", which all captures have besides their own
    std::string out;                 // empty for standard output
    size_t pictures = PICTURES;
};

// Writes a page of captures.
int report(const ReportOptions &options);

struct LiveOptions {
    std::string file;                // or standard input
    std::vector<std::string> labels; // "KEY=VALUE", which it has besides its own
    std::string reference;           // FILE, FILE#N or FILE#last, or empty
    std::string out;                 // where what is read is written, with what was noted; or empty
    double keep = 300;               // seconds
    uint16_t port = 0;               // 0: one of the system's choice
    bool no_browser = false;
};

// Shows what arrives in a browser, until a signal ends it.
int live(const LiveOptions &options);

struct MarkOptions {
    std::vector<std::string> words;
};

// Notes a text in what `live` shows, in the program of this user that began last.
int mark(const MarkOptions &options);

} // namespace vordascope
