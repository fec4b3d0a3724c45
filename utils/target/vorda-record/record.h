// Shared declarations of the recorder: the parsed command and what a recording is made of.
//
// One run: arguments -> RecordCmd; then for each frame: copy of the context -> text of each section
// -> snapshot, whole or only what changed -> standard output or the ring.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

using Nanoseconds = int64_t; // a time since the camera was switched on, or between two such
inline constexpr Nanoseconds SECOND = 1000000000;

// The time now. It goes on while the system sleeps, as the camera's uptime does.
Nanoseconds time_now();

// A condition that a number of the text fulfils, "share.fps<20".
struct Trigger {
    std::string_view key; // "share.fps", "stat.lum.dri_low_lv_ft"; empty: no trigger
    char relation = '\0'; // '<', '>' or '='
    double value = 0;
};

struct RecordCmd {
    bool help = false; // print the usage
    int32_t dev_idx = 0;
    int32_t path_idx = 0;
    uint32_t count = 0;              // end after so many snapshots; 0: never
    Nanoseconds interval = 0;        // take one so often; 0: every frame
    Nanoseconds whole = 10 * SECOND; // a whole snapshot so often
    Nanoseconds ring = 0;            // keep so much in memory; 0: write at once
    Trigger trigger;
    std::span<char *> entries; // what is recorded, in vorda's words; empty: all
};

// Parses the command line. Options may stand anywhere; the entries are moved to its end and lie
// there. Returns 0, or 1 after a message on standard error.
int parse_record_args(int argc, char **argv, RecordCmd *cmd);

// Prints the usage on standard output.
void record_help();

// Records until it is stopped. Returns the exit status (RecordStatus) after a message on standard
// error; after a signal that ends it, minus its number.
int record(const RecordCmd &cmd);

enum RecordStatus {
    RECORD_DONE = 0,    // as many snapshots as were asked for
    RECORD_FAILED = 1,  // the command line, the region, the path or memory
    RECORD_UNSAVED = 2, // what was recorded cannot be written
};
