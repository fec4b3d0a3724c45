// Snapshots in memory, dropped from the oldest on.
#include "ring.h"

#include <cstdlib>
#include <cstring>
#include <new>

Ring::Ring(Nanoseconds span, Nanoseconds whole_every) : span_(span)
{
    // Half as much again as a camera at work needs for everything at 25 frames a second.
    constexpr size_t BYTES_PER_SECOND = 256 << 10;
    constexpr size_t LEAST = 1 << 20;
    limit_ = LEAST + static_cast<size_t>((span + whole_every) / SECOND) * BYTES_PER_SECOND;
}

Ring::~Ring()
{
    while (first_ != nullptr)
        drop_oldest();
}

bool Ring::keep(const Snapshot &snapshot, std::string_view body)
{
    const size_t size = sizeof(Kept) + body.size();
    while (first_ != nullptr && bytes_ + size > limit_)
        drop_oldest_group();
    void *memory = malloc(size);
    while (memory == nullptr && first_ != nullptr) {
        drop_oldest_group();
        memory = malloc(size);
    }
    if (memory == nullptr)
        return false;
    if (first_ == nullptr && !snapshot.whole) { // what it is added to is gone
        free(memory);
        return true;
    }

    auto *kept = new (memory) Kept{nullptr, snapshot, body.size()};
    memcpy(kept + 1, body.data(), body.size());
    (first_ == nullptr ? first_ : last_->next) = kept;
    last_ = kept;
    bytes_ += size;
    group_bytes_ = snapshot.whole ? size : group_bytes_ + size;

    // A group goes when what begins with the next covers the span.
    for (;;) {
        const Kept *next = first_->next;
        while (next != nullptr && !next->snapshot.whole)
            next = next->next;
        if (next == nullptr || next->snapshot.time > snapshot.time - span_)
            return true;
        drop_oldest_group();
    }
}

bool Ring::wants_whole() const
{
    return first_ == nullptr || group_bytes_ > limit_ / 4;
}

void Ring::drop_oldest()
{
    Kept *oldest = first_;
    first_ = oldest->next;
    bytes_ -= sizeof(Kept) + oldest->size;
    free(oldest);
}

void Ring::drop_oldest_group()
{
    do
        drop_oldest();
    while (first_ != nullptr && !first_->snapshot.whole);
}
