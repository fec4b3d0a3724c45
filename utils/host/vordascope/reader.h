// Reads what vorda prints: bytes to the texts of snapshots (frames), these to fields (grammar). The
// grammar is generic; no item and no key is known to it, so that new ones appear by themselves.
//
//     dev_idx = D, path_idx = P      a snapshot begins; the head lines directly before belong to it
//     time = SECONDS                 head line: when that was, on the camera's clock
//     frame = N, missed = K          head lines: the frame counter, and how many frames before it
//                                    nobody saw
//     [CAPITALS]                     where no index line has been before: an attribute text begins
//     label KEY = VALUE              head line: says something of the capture from there on
//     mark = TEXT                    head line: says what was changed then
//     sum = N                        head line: FNV-1a (32 bits) of the lines that follow, up to the
//                                    end line; blanks at the ends of a line do not count, nor how
//                                    many stand elsewhere
//     added_to = M                   head line: the text holds only what changed since frame M, which
//                                    is the snapshot before it: whole sections, or
//     @ FIRST-LAST HEADINGS          below a section line (=== share ===, too): these lines of the
//                                    section, from 1 below that line on, are now those that follow
//     === cat.item ===               a section: an item
//     [CAPITALS]                     an attribute text: the item intl.capitals
//     [Other words]                  a heading within an item
//     CAPITALS:                      a block, until the next one
//     other label:                   the name of the rows below it, or of a block
//     share.key = value              opens its section itself; so does vinfo.key
//     key = value, words: value      a number, a list, tuples, true or false; anything else is text
//     key[0] = value                 an element of a list, line by line
//     1, 2, 3 / (1 2) (3 4) / <# 0> (1, 2)    a row of what the label above has named
//     ; comment, ----, <#head>       layout, as are blank lines
//     (0: legend)                    says what the value above means, as a comment or brackets
//                                    behind it do
//     ; end                          ends a snapshot before the next one begins
//
// Three rules settle what the text alone leaves open:
// - Rows of six values, a single row, and rows under a label that ends in [N] and that hold N
//   values, are a vector; other rows are a map. A map of six columns would be read as a vector, a
//   vector wrapped otherwise as a map.
// - One number is a list when a comma and a blank follow it. Tuples are rows, even a single one.
// - A line of none of these forms that follows the text of a key that ends in "path" belongs to the
//   text, since a file's name can hold line ends. (A name that holds a line of such a form forges
//   it. Nothing can tell.)
//
// Any bytes have a defined result; nothing is lost:
// - Any other line that cannot be read, and a second field of the same path: an Unread, and the
//   rest is read on. So is any text outside of snapshots, unless none of it can be what has become
//   of one: a prompt, a mail. That is left out, also behind a snapshot without an end line.
// - A field that does not go on as it began (a row of another length, a row or an element out of
//   order, the rest of a line that was wrapped) is damaged: it has no value, and an Unread names
//   it.
// - A last line without its end may have lost digits: its field is damaged, and the snapshot is
//   `cut`. So it is when the end line is missing that others of the recording have.
// - An index line or a time behind another line, as captures have that were joined without a line
//   end, begins a snapshot; the line before it is one without its end.
// - Lines that were wrapped are joined where there is no doubt; what stays in doubt is damaged.
// - CRLF is read as LF; a byte-order mark before an index or head line is layout.
// - An added snapshot comes out whole: what it lacks is as in the one before. When that one is not
//   there, or when either has not the sum that it says, it is left out, which is an Unread.
// - A text that goes on for SNAPSHOT_MAX bytes without a new snapshot is taken apart there.
#pragma once

#include "decode.h"
#include "frames.h"
#include "grammar.h"
#include "merge.h"
#include "unwrap.h"

namespace vordascope
{

// Splits an input into snapshots and reads them, one at a time. Its memory is in proportion to the
// largest snapshot.
//
//     Reader reader;
//     for (;;) {
//         while (const Snapshot *snapshot = reader.next())
//             use(*snapshot);
//         if (reader.ended())
//             break;
//         const size_t size = read bytes into reader.room(n);
//         size != 0 ? reader.fill(size) : reader.end();
//     }
//
// A snapshot is complete when the next one begins, at a line "; end", or at the end of the input.
class Reader
{
public:
    // How much of a file is best read at a time.
    static constexpr size_t PIECE = size_t{256} << 10;

    Reader() = default;

    // Reads a text that is in memory as a whole and outlives the reader: only next() is left to
    // call.
    explicit Reader(std::string_view whole);

    // Labels all snapshots from here on, unless the capture says otherwise.
    void add_label(const Label &label) { set_label(snapshot_.labels, label.key, label.value); }

    // Room for `size` more bytes. Ends the validity of the snapshot that next() returned last.
    char *room(size_t size);

    // So many bytes have been written there.
    void fill(size_t size);

    // There is no more input.
    void end() { ended_ = true; }
    bool ended() const { return ended_; }

    // What had to be undone to read the input, or what it looks like when it is no text of vorda: a
    // sentence each, without its end. More may come until there are no more snapshots.
    std::vector<std::string> notices() const;

    // Whether the input is read byte for byte, so that Head::at is a place in it.
    bool plain() const { return decode_.plain(); }

    // Returns the next snapshot, which stays valid until the next call of next() or room(), or
    // nullptr: more input is needed, or after end() there are no more. Text that belongs to no
    // snapshot comes with the next one, or at the end in one that is not `indexed`.
    const Snapshot *next();

private:
    bool decode_more();
    void unquote();
    void parse();

    Decode decode_;
    std::string raw_; // bytes that have not been decoded, from `raw_begin_` to `raw_end_`
    size_t raw_begin_ = 0;
    size_t raw_end_ = 0;
    std::string decoded_;
    bool direct_ = false; // room() was given where nothing is to be decoded
    bool ended_ = false;
    Frames frames_;
    Merge merge_;
    Grammar grammar_;
    Unwrap unwrap_;
    Snapshot snapshot_;
    std::string unquoted_; // the text of a snapshot that is quoted in a text that is not
    bool unquoted_any_ = false;
    uint64_t number_ = 0;
    uint64_t left_out_ = 0; // lines around the captures, of which that is the first
    std::string left_out_first_;
};

} // namespace vordascope
