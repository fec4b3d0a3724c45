// When to look for the next frame.
//
// The camera tells nobody that a frame is finished; a counter in the region says how many there
// were. Who looks all the time wastes the processor, who sleeps too long misses a frame. So one
// sleeps until the next is about due, then looks often, and now and then in between, since a camera
// that leaves the dark doubles its rate.
#pragma once

#include "record.h"

class FramePace
{
public:
    // `now` is when a look found the counter `frames` further than the last one that did.
    // `awaited` says whether it was not the first look since then.
    void saw(Nanoseconds now, uint32_t frames, bool awaited);

    // When to look again.
    Nanoseconds next_look(Nanoseconds now) const;

private:
    Nanoseconds seen_ = 0;             // when; 0: not yet
    Nanoseconds period_ = SECOND / 60; // of a frame, as far as it is known
};
