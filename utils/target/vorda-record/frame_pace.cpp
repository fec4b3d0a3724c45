// The times at which the recorder looks for a new frame.
#include "frame_pace.h"

#include <algorithm>

namespace
{

constexpr Nanoseconds MS = SECOND / 1000;

} // namespace

void FramePace::saw(Nanoseconds now, uint32_t frames, bool awaited)
{
    // A camera that stood still goes on at once with its full rate.
    constexpr Nanoseconds LONGEST = 64 * MS;
    if (seen_ != 0) {
        Nanoseconds period = (now - seen_) / std::max(frames, 1U);
        // It had been there for a while: look earlier next time.
        if (!awaited)
            period -= period / 8;
        period_ = std::clamp(period, 2 * MS, LONGEST);
    }
    seen_ = now;
}

Nanoseconds FramePace::next_look(Nanoseconds now) const
{
    constexpr Nanoseconds EARLY = 3 * MS / 2;
    constexpr Nanoseconds LATE = 3 * MS;
    constexpr Nanoseconds OFTEN = MS / 2;

    const Nanoseconds due = seen_ + period_;
    for (const Nanoseconds look : {seen_ + period_ / 2, due - EARLY})
        if (now < look)
            return look;
    if (now < due + LATE)
        return now + OFTEN;
    return now + std::clamp((now - due) / 4, OFTEN, 10 * MS);
}
