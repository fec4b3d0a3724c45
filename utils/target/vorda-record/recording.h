// What a recording consists of: snapshots, each below lines that say when it was taken and of which
// frame. Most hold only the lines that changed since the snapshot before.
#pragma once

#include "record.h"
#include "sections.h"

#include "heap_text.h"

#include <initializer_list>

// Ends the text of each.
inline constexpr std::string_view END_LINE = "; end\n";

// A snapshot of the recording, without its text.
struct Snapshot {
    Nanoseconds time;
    uint32_t frame;
    bool whole;
    uint32_t added_to; // unless it is whole: the frame of the snapshot before
};

// Makes snapshots of frames, one after another.
class Recording
{
public:
    // What is recorded, of which path, and how often a snapshot is whole. `sections` is kept.
    Recording(const Sections &sections, MPI_PATH path, Nanoseconds whole_every)
        : sections_(sections), path_(path), whole_every_(whole_every)
    {
    }

    // Makes the next snapshot, of a frame that was copied at `time`. Returns 0, or 1 after a
    // message on standard error.
    int take(const DipPathCtx &ctx, Nanoseconds time);

    // Makes the next snapshot a whole one.
    void begin_anew() { whole_wanted_ = true; }

    // The last one, valid until the next is taken; its text goes from the index line to END_LINE.
    const Snapshot &snapshot() const { return snapshot_; }
    std::string_view body() const { return body_.written(); }
    const SectionTexts &texts() const { return texts_[now_]; }

private:
    bool must_be_whole(const SectionTexts &now, const SectionTexts &before) const;

    const Sections &sections_;
    MPI_PATH path_;
    Nanoseconds whole_every_;
    SectionTexts texts_[2]; // of the last snapshot and of the one before
    int now_ = 0;
    DipIntlCtx settings_ = {}; // of the last snapshot
    Snapshot snapshot_ = {.time = 0, .frame = 0, .whole = true, .added_to = 0};
    HeapText body_;
    Nanoseconds whole_due_ = 0;
    bool whole_wanted_ = true;
};

// Writes what stands at the head of a recording: labels with the camera's name, its kernel and the
// time of day.
void put_labels(Text &text);

// Writes the lines above a snapshot. `missed` is how many frames between it and the one before in
// the recording were not seen.
void put_head(Text &text, const Snapshot &snapshot, uint32_t missed);

// The sum that tells whether texts of whole lines, one behind another, are what was written: FNV-1a
// of 32 bits. What
// mail and editors change leaves it as it is: blanks, tabs and carriage returns at either end of a
// line do not count, elsewhere any number of them as one blank.
uint32_t sum_of(std::initializer_list<std::string_view> texts);
