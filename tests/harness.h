// What the tests share: regions, snapshots with telling bytes, captured output, and runs of the
// real binary.
//
// The binary is that of this build. The environment can name another one, cross-built say:
// VORDA_BUILD is its build folder, VORDA_EMULATOR the program and options that run it.
#pragma once

#include "sr_schema.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <sys/types.h>
#include <vector>

// What a program or a function left behind.
struct Result {
    std::string out;
    std::string err;
    int status = 0; // exit status, or the negated number of the signal that ended it
};

// Calls a function and keeps what it writes; its result becomes the status.
Result captured(const std::function<int()> &call);

// What the process would have sent to the system log: priorities and messages.
using Log = std::vector<std::pair<int, std::string>>;
extern Log logged;

// Registers the built-in categories in this process, the first time it is called.
void register_categories();

// The names and descriptions of a category's item listing.
std::vector<std::pair<std::string, std::string>> parse_listing(const std::string &listing,
                                                               const std::string &category);

// What `vorda all` prints of each of the 256 frames that consist of one byte.
std::set<std::string> whole_frames();

std::string read_file(const std::string &path);

// Where a text differs from the one recorded in golden/: file, line, both lines; "" when it does
// not. With VORDA_GOLDEN=write in the environment the text is recorded anew.
std::string difference_from_golden(const std::string &name, const std::string &text);

// A region in a file of its own, mapped here as well. It begins as the scene's first frame.
class Region
{
public:
    Region();
    ~Region();
    Region(const Region &) = delete;
    Region &operator=(const Region &) = delete;

    const std::string &file() const { return file_; }
    VplatConf *operator->() const { return conf_; }

private:
    std::string file_;
    VplatConf *conf_;
};

// A file in the temporary folder that does not outlive its object.
class TempFile
{
public:
    explicit TempFile(size_t size = 0);
    ~TempFile();
    TempFile(const TempFile &) = delete;
    TempFile &operator=(const TempFile &) = delete;

    const std::string &path() const { return path_; }

private:
    std::string path_;
};

// A file that is missing on every machine: only the kernel makes entries there.
inline const std::string nowhere = "/proc/nowhere/file";

using Environment = std::map<std::string, std::string>;

// A running program. It is killed when its object goes away and when this process ends.
class Child
{
public:
    // argv[0] is looked up in PATH; `out` is the file where standard output goes, "" to keep it.
    // Signals are as by default.
    Child(const std::vector<std::string> &argv, const Environment &added,
          const std::string &out = "");
    ~Child();
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;

    pid_t pid() const { return pid_; }
    // Waits for its end; returns whether that came.
    bool ends();
    // Waits until it has slept a few times more: what it looks for between two naps it has seen.
    bool looks_again() const;
    // What it has written to standard error so far.
    std::string said() const;
    // Waits for the end, after which it is killed at last, and takes what it wrote.
    Result finish();

private:
    pid_t pid_ = -1;
    int out_ = -1;
    int err_ = -1;
    int wait_status_ = 0;
    bool ended_ = false;
};

// Starts a program of the build under test with the stand-in device over a region file ("": there
// is no region yet).
std::unique_ptr<Child> start_tool(const std::string &name, const std::vector<std::string> &args,
                                  const std::string &region, const Environment &added = {},
                                  const std::string &out = "");
// The same for vorda.
std::unique_ptr<Child> start_vorda(const std::vector<std::string> &args, const std::string &region,
                                   const Environment &added = {}, const std::string &out = "");

// Runs vorda to its end.
Result run_vorda(const std::vector<std::string> &args, const std::string &region,
                 const Environment &added = {}, const std::string &out = "");

// Path of a program or library of the build under test.
std::string built(const std::string &name);

// How often a process or thread has waited so far, for time to pass or for something else: each nap
// counts. It is named by its folder, "/proc/PID" or "/proc/self/task/TID".
long waits_of(const std::string &folder);

// Waits until a condition holds; returns whether it does. Only a fault makes the wait as long as it
// may last, two minutes.
bool eventually(const std::function<bool()> &condition);

// Snapshots that reveal a wrong field, width or sign: "distinct" (every byte differs from the one
// before it and has its top bit set, the bound window is in slot 5), "ones" (all bits set), "zero".
std::unique_ptr<DipPathCtx> snapshot_of(const std::string &kind);
