// What the page shows: the snapshots of all captures, field by field, as one JSON text. The same
// code makes it for `vordascope report` and, compiled for WebAssembly, in the page itself.
//
//     {"vorda_page":1,
//      "files":["before.txt","after.txt"],
//      "unread_count":3,
//      "unread":[{"file":0,"line":12,"text":"…","why":"…"}, …]     the first UNREAD_SHOWN
//      "notes":[{"file":0,"text":"…"}, …]      what else is to be said; file is null for all of it
//      "groups":[                              one a path of a device, in order of appearance
//        {"dev_idx":0,"path_idx":0,
//         "read":2,                            snapshots read; fewer are shown where many are
//         thinned "file":[0,1],"number":[1,1],         by snapshot: index in files, which one of
//         that file "cut":[1],                           those that the end of their capture cuts
//         off "time":[12.34,…] or null,            where every snapshot has one and none goes back
//         "fields":[{"item":"stat.awb","block":"Gwd RGL","key":"r channel","kind":"number",
//                    "note":"…", "v":[…]}, …]}]}
//
// - Bytes above 0x7F become the code points of the same value, in `files` too.
// - `v` holds one entry where the value is the same in every snapshot, else one a snapshot, null
//   where a snapshot lacks the field: a scalar, a list, or a list of rows.
// - `kind` is number, bool or text. A number is a JSON number where JavaScript prints it as vorda
//   did, else a string of what vorda printed: "25.00", "nan", "18446744073709551615".
// - `note` is what vorda printed behind the value (a legend, a comment) where it is always the
// same.
#pragma once

#include "snapshot.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vordascope
{

// Of more unread lines than these only the number is told, and of a longer one the beginning.
constexpr size_t UNREAD_SHOWN = 200;
constexpr size_t UNREAD_BYTES = 500;

// How many snapshots a page shows when nothing else is asked for.
constexpr size_t SNAPSHOTS_SHOWN = 1000;

// Collects snapshots. A value is kept once for as long as it stays the same, so that memory is in
// proportion to what changes.
class Model
{
public:
    // What follows belongs to this capture. `name` is any bytes.
    void begin_file(std::string_view name);

    // Says something of this capture, as a sentence.
    void note(std::string_view text);

    // Adds a snapshot of this capture, or text of it that belongs to none.
    void add(const Snapshot &snapshot);

    // The model as JSON, with at most `most` snapshots (at least one of each group, and where there
    // are two its first and last), evenly spread in each group.
    std::string json(size_t most) const;

private:
    // From this snapshot of the group on, the field has this value as JSON.
    struct Change {
        uint32_t from;
        std::string json;
    };
    struct Column {
        std::string node; // path of what the field belongs to, with line ends between its names
        std::string item, block, key, note;
        const char *kind;
        bool note_stays;
        std::string text; // from the first to the last byte of its newest values
        uint32_t count, columns;
        Shape shape;
        uint32_t until; // behind the last snapshot that has the field
        std::vector<Change> changes;
    };
    // Where a snapshot comes from.
    struct Origin {
        uint32_t file;
        bool cut;
        uint64_t number;
        std::string time; // as printed; empty for none
    };
    struct Group {
        uint32_t dev_idx, path_idx;
        std::vector<Origin> snapshots;
        std::vector<Column> columns;
        std::unordered_map<std::string, size_t> column_of; // by node and key
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
        uint32_t file;
        std::string text;
    };

    Group &group_of(const Snapshot &snapshot);
    static Column &column_of(Group &group, const Snapshot &snapshot, const Field &field,
                             const std::string &node, size_t expected);
    static void append_group(std::string &out, const Group &group, size_t most);

    std::vector<File> files_;
    std::vector<Group> groups_;
    std::unordered_map<uint64_t, size_t> group_of_; // by device and path
    std::vector<UnreadLine> unread_;
    std::vector<Note> notes_;
    uint64_t unread_count_ = 0;
    uint64_t snapshots_ = 0;
};

} // namespace vordascope
