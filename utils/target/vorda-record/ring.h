// The last seconds of a recording, kept in memory.
#pragma once

#include "recording.h"

#include <cstddef>

class Ring
{
public:
    // For snapshots of so much time, of which one is whole that often.
    Ring(Nanoseconds span, Nanoseconds whole_every);
    ~Ring();
    Ring(const Ring &) = delete;
    Ring &operator=(const Ring &) = delete;

    // How many bytes it takes at most.
    size_t limit() const { return limit_; }

    // Keeps a snapshot, and drops what is older than the span or too much; what is left begins with
    // a whole one. Returns whether there was memory for it.
    bool keep(const Snapshot &snapshot, std::string_view body);

    // Whether the next snapshot should be a whole one, lest too much hangs on the last.
    bool wants_whole() const;

    // The oldest snapshot and its text, nullptr if there is none.
    struct Kept;
    const Kept *oldest() const { return first_; }
    void drop_oldest();

private:
    void drop_oldest_group();

    Nanoseconds span_;
    size_t limit_;
    Kept *first_ = nullptr;
    Kept *last_ = nullptr;
    size_t bytes_ = 0;       // of all
    size_t group_bytes_ = 0; // from the last whole one on
};

struct Ring::Kept {
    Kept *next;
    Snapshot snapshot;
    size_t size;

    std::string_view body() const { return {reinterpret_cast<const char *>(this + 1), size}; }
};
