// What the page shows: the snapshots of all captures as runs, field by field, as one JSON text. The
// same code makes it for `vordascope report` and, compiled for WebAssembly, in the page itself.
//
// A run is what one capture recorded of one path of a device, in order. Where the time or the frame
// goes back, a new run begins. Runs are never joined.
//
//     {"vorda_page":2,
//      "files":["before.txt","after.txt"],
//      "unread_count":3,
//      "unread":[{"file":0,"line":12,"text":"…","why":"…"}, …]     the first UNREAD_SHOWN
//      "notes":[{"file":0,"text":"…"}, …]    what else is to be said; file is null for all of it
//      "names":[["stat.awb","Gwd RGL","r channel"], …]      of the fields: item, block, key
//      "runs":[                              in order of appearance
//        {"run":0,                           its number, which it keeps
//         "file":0,"dev_idx":0,"path_idx":0,
//         "first":0,                         how many of its snapshots are forgotten
//         "count":15000,                     how many there are
//         "number":COURSE,                   which snapshot of its file it is, from 1
//         "time":COURSE,"frame":COURSE,      null where not every snapshot has one
//         "missed":[[7,2], …],               so many frames before this snapshot were not seen
//         "marks":[[9,"lamp on"], …],        what somebody noted at a snapshot
//         "labels":{"host":"cam1", …},
//         "cut":[14999],                     snapshots that the end of their file cuts off
//         "fields":[FIELD, …]}, …]}
//
//     FIELD  {"name":2,"kind":"number","note":"…", and one of
//             "value":VALUE                  the same in every snapshot
//             "form":[[0,"list",4], …],      from this snapshot on it is a scalar, a list of so
//             "parts":[COURSE, …]            many values, rows of so many in so many columns, or
//                                            null: it is not there; one course for each value
//             "form":[[0,"long"]],           a list or grid of more than SHORT values, every
//             "step":64,"at":[…],            step-th snapshot (and the last one) as it was; the
//             "v":[VALUE, …]}                places of the changes are written as in COURSE
//     COURSE {"at":[0,5,1],"v":[8000,512,-7],"decimals":2}
//     VALUE  a scalar, a list, or a list of rows; null where there is none
//
// - Snapshots of a run are counted from 0, after those that are forgotten.
// - A COURSE holds changes: `at` how many snapshots each is behind the one before, left out where
//   every snapshot is one from the first on; `v` what the value is then: a number is the difference
//   to the number before (the first: to 0), in units of the last of its `decimals` (0 when left
//   out); a string, true or false is the value itself.
// - A number in a VALUE is one that JavaScript prints as vorda did; all others are strings of what
//   vorda printed: "25.00", "nan", "18446744073709551615".
// - Bytes above 0x7F become the code points of the same value, in `files` too.
// - `kind` is number, bool or text. `note` is what vorda printed behind the value (a legend, a
//   comment) where it is always the same.
#pragma once

#include "course.h"

#include <limits>
#include <optional>
#include <unordered_map>

namespace vordascope
{

// Of more unread lines than these only the number is told, and of a longer one the beginning.
constexpr size_t UNREAD_SHOWN = 200;
constexpr size_t UNREAD_BYTES = 500;

// Every snapshot keeps its fields of up to so many values; longer ones are thinned.
constexpr uint32_t SHORT = 16;

// At most so many snapshots of a run keep their long fields, when nothing else is asked for.
constexpr size_t PICTURES = 512;

// What no capture of a camera reaches, so that a capture of something else takes no more memory
// than a few times its size: names of fields, fields of all runs, runs.
constexpr size_t NAMES_MOST = 20000;
constexpr size_t NAME_BYTES = 500; // of a field's key, and of the path of what it belongs to
constexpr size_t FIELDS_MOST = 500000;
constexpr size_t RUNS_MOST = 1000;

// Collects snapshots. A value is kept once for as long as it stays the same, so that memory is in
// proportion to what changes.
class Model
{
public:
    // `pictures`: at most so many snapshots of a run keep their long fields; 2 or more.
    explicit Model(size_t pictures = PICTURES) : pictures_(pictures < 2 ? 2 : pictures) {}

    // What follows belongs to this capture. `name` is any bytes.
    void begin_file(std::string_view name);

    // Says something of this capture, as a sentence.
    void note(std::string_view text);

    // Says what had to be undone to read this capture, as Reader::notices() has it.
    void note_undone(const std::vector<std::string> &notices);

    // A snapshot of a run, both by their numbers, which they keep.
    struct Place {
        uint32_t run;
        uint32_t snapshot;
    };

    // Adds a snapshot of this capture, or text of it that belongs to none. Returns its place; none
    // for such text, and for a snapshot that would begin one run too many.
    //
    // Appends to `news`, where that is not nullptr, what a page that has the model needs to have
    // this one too, as JSON:
    //
    //     {"run":0,"snapshot":15000,         where it is
    //      "begin":{"file":…,"dev_idx":…,"path_idx":…},   only of the first of a run
    //      "number":15001,"time":"9.50","frame":375,"missed":0,    time, frame: null where unknown
    //      "marks":["…"],
    //      "labels":{…},                      only where they are others than before
    //      "cut":false,
    //      "names":[…],                      that are new, behind those that are known
    //      "fields":[[2,8000,"number"], …],  name, VALUE and kind of those that have changed
    //      "gone":[7, …]}                    names of those that are not there any more
    std::optional<Place> add(const Snapshot &snapshot, std::string *news = nullptr);

    // Notes something at the newest snapshot. Returns its place, counted after those that are
    // forgotten, or none when there is no snapshot.
    std::optional<Place> mark(std::string_view text);

    // Forgets the snapshots of a run that lie before this one. A run without snapshots is no
    // longer part of the JSON.
    void forget(Place before);

    // What the limits have left out, as sentences: thinned fields, runs and fields too many.
    std::vector<std::string> left_out() const;

    std::string json() const;

private:
    enum class Form : uint8_t { absent, scalar, list, rows, is_long };
    struct FormChange {
        uint32_t at;
        uint32_t count, columns;
        Form form;

        bool operator==(const FormChange &other) const
        {
            return form == other.form && count == other.count && columns == other.columns;
        }
    };
    // A list or grid as it was in some snapshots.
    struct Picture {
        uint32_t at;
        std::string json;
    };
    struct Column {
        uint32_t name;
        const char *kind;
        std::string note;
        bool note_stays;
        uint32_t until;   // behind the last snapshot that has the field
        std::string text; // from the first to the last byte of its newest values
        std::vector<FormChange> forms;
        std::vector<Course> parts; // of its short forms
        std::vector<Picture> pictures;
        std::string newest; // picture that no sampled snapshot has shown yet
        bool newest_due;
        uint32_t step; // snapshots from one picture to the next
    };
    struct Name {
        std::string node; // path of what the field belongs to, with line ends between its names
        std::string item, block, key;
    };
    struct Run {
        uint32_t file, dev_idx, path_idx;
        uint32_t first = 0, end = 0; // snapshots that are kept
        bool timed = true, framed = true;
        double last_time = -std::numeric_limits<double>::infinity();
        uint64_t last_frame = 0;
        Course number, time, frame;
        std::vector<std::pair<uint32_t, uint64_t>> missed;
        std::vector<std::pair<uint32_t, std::string>> marks;
        std::vector<Label> labels;
        std::vector<uint32_t> cut;
        std::vector<Column> columns;
        std::unordered_map<uint32_t, uint32_t> column_of; // by name
    };
    struct File {
        std::string name;
        uint64_t snapshots;
    };
    struct UnreadLine {
        uint32_t file;
        uint64_t line;
        std::string text;
        const char *why;
    };
    struct Note {
        std::optional<uint32_t> file;
        std::string text;
    };

    std::vector<Note> limits_reached() const;
    void add_unread(const Snapshot &snapshot);
    std::optional<uint32_t> run_of(const Snapshot &snapshot);
    static bool add_labels(Run &run, const Snapshot &snapshot);
    void add_origin(Run &run, const Snapshot &snapshot);
    Column *column_of(Run &run, const Snapshot &snapshot, const Field &field,
                      const std::string &node, size_t expected);
    std::optional<uint32_t> name_of(const Snapshot &snapshot, const Field &field,
                                    const std::string &node);
    bool add_field(Column &column, uint32_t at, const Snapshot &snapshot, const Field &field);
    void add_picture(Column &column, uint32_t at, std::string json) const;
    static void sample(Column &column, uint32_t at);

    void append_news(std::string &out, uint32_t index, const Snapshot &snapshot,
                     size_t names_before, bool labelled, std::string_view changed) const;
    void append_notes(std::string &out) const;
    void append_run(std::string &out, uint32_t index) const;
    static void append_origin(std::string &out, const Run &run);
    static void append_column(std::string &out, const Run &run, const Column &column);
    static void append_pictures(std::string &out, const Run &run, const Column &column);
    static void append_labels(std::string &out, const Run &run);
    static void append_value_of(std::string &out, const Column &column);
    void append_name(std::string &out, size_t name) const;

    size_t pictures_;
    std::vector<File> files_;
    std::vector<Run> runs_;
    uint32_t newest_run_ = 0;                          // that a snapshot was added to
    std::unordered_map<uint64_t, uint32_t> open_runs_; // of this file, by device and path
    std::vector<Name> names_;
    std::unordered_map<std::string, uint32_t> name_of_; // by node and key
    std::vector<UnreadLine> unread_;
    std::vector<Note> notes_;
    uint64_t unread_count_ = 0;
    size_t fields_ = 0;            // of all runs
    uint64_t fields_left_out_ = 0; // fields of snapshots
    uint64_t long_names_ = 0;      // those whose names are too long
    uint64_t snapshots_left_out_ = 0;
};

} // namespace vordascope
