// Shared declarations of the front end: the parsed command, the snapshot, the category registry.
//
// One run handles one command: arguments -> VordaCmd -> snapshot -> category -> text.
#pragma once

#include "dip_ctx_types.h"
#include "mpi_index.h"
#include "text.h"

#include <cstddef>
#include <cstdint>
#include <span>

enum VordaCmdType : int32_t {
    CMD_HELP = 0,  // print the usage
    CMD_LIST = 1,  // list the categories, or the items of the category `item`
    CMD_QUERY = 2, // print the entry `item` of a snapshot
};

struct VordaCmd {
    VordaCmdType cmd_type;
    int32_t dev_idx;
    int32_t path_idx;
    char item[256]; // always terminated
};

// Parses the command line into `cmd`, which the caller has zeroed. Returns 0, or 1 after a message
// on standard error.
int parse_args(int argc, char **argv, VordaCmd *cmd);

// The number that a word begins with: leading blanks and a sign are allowed, and a number out of
// range becomes the nearest one in range.
int32_t parse_index(const char *word);

// In the "C" locale, whatever the environment says.
void lower_case(char *text);

// Opens the standard descriptors that are closed: they would become the device's or the system log's,
// and what is printed would go there. They become those of a folder, which takes and gives nothing,
// and which is there where /dev/null is not.
void open_standard_descriptors();

// The index of an input path, from what the command line says.
MPI_PATH input_path(int32_t dev_idx, int32_t path_idx);

// Prints the usage on standard error.
void help(const char *pname);

// Prints the index line on standard output, then copies the whole context of the input path
// `idx.path` into `ctx` under the path's lock, for which it waits as long as it takes; signals end
// the wait, and a terminal is told of a long one. The region is mapped only for the time of the
// call. Returns 0, or 1: after a message on standard error when the region cannot be opened or the
// path is not present, and without one when standard output lost its reader during the wait.
int get_dip_ctx(MPI_PATH idx, DipPathCtx *ctx);

// One category of entries.
struct VordaCallback {
    const char *title;    // the name on the command line, lower case; required
    const char *comments; // one line for the category list; may be nullptr

    // Writes the item `entry`, or every item when `entry` is nullptr or empty. Returns 0, or 1
    // after a message on standard error. `text` and `ctx` stay the caller's. Required.
    int (*print_entry)(Text &text, const DipPathCtx *ctx, const char *entry);

    // Lists the category's items on standard error. Required.
    void (*print_help)();

    // The name of the item that prints at `place`, from 0 on, where every item does; nullptr behind
    // the last. nullptr for a category in whose text no line tells where an item begins.
    const char *(*section_at)(size_t place);
};

// Adds a category; the record is copied, the texts are not. Returns 0, or 1 when the registry is
// full (64 categories) or something required is missing.
int parse_rgtr(const VordaCallback *callback);

// The categories that there are, in the order in which they were added; valid until the next is.
std::span<const VordaCallback> parse_categories();

// Prints the entry `str` of a snapshot: "category", "category.item" or "all". Returns the exit
// status: the category's, 0 for "all", 1 after a message on standard error.
int parse_entry(const DipPathCtx *data, const char *str);

// Lists the items of the category `title` on standard error or, when it is nullptr or empty, the
// categories on standard output. `pname` is the program's name. Returns 0, or 1 after a message on
// standard error.
int parse_help(const char *pname, const char *title);

// Register the built-in categories.
void regCmd_cfg();
void regCmd_intl();
void regCmd_share();
void regCmd_stat();
void regCmd_vinfo();

// Registers every built-in category, in the order in which they are listed and printed.
void regCmd_all();
