// The recorder's parts that no camera is needed for.
#include "frame_pace.h"
#include "ring.h"

#include <gtest/gtest.h>
#include <vector>

namespace
{

constexpr Nanoseconds MS = SECOND / 1000;

// A camera whose frames come at given times, looked at as the pace says: each frame is seen, soon,
// and few looks are in vain.
TEST(FramePace, SeesEachFrameSoonWhateverTheRateBecomes)
{
    std::vector<Nanoseconds> frames;
    Nanoseconds at = 1000 * SECOND;
    const auto run = [&](int count, Nanoseconds period) {
        for (int i = 0; i < count; i++)
            frames.push_back(at += period + (i % 3 - 1) * MS / 5); // no camera is quite even
    };
    run(50, 40 * MS);
    run(30, 80 * MS); // in the dark
    run(50, 40 * MS);
    run(50, 33 * MS);
    run(50, 40 * MS);
    at += 20 * SECOND; // stands still
    run(50, 40 * MS);
    run(100, 17 * MS);

    FramePace pace;
    Nanoseconds now = 1000 * SECOND;
    int looks = 0;
    int late = 0;
    size_t seen = 0;
    bool awaited = false;
    while (seen < frames.size()) {
        const Nanoseconds look = pace.next_look(now);
        ASSERT_GT(look, now);
        now = look + MS / 10; // to wake takes a moment
        looks++;
        if (now < frames[seen]) {
            awaited = true;
            continue;
        }
        ASSERT_TRUE(seen + 1 == frames.size() || now < frames[seen + 1]) << "missed " << seen;
        late += now - frames[seen] > 2 * MS;
        pace.saw(now, 1, awaited);
        awaited = false;
        seen++;
    }
    // It stood still for 20 s, in which a look every 10 ms is enough.
    EXPECT_LT(looks, 2000 + 10 * static_cast<int>(frames.size()));
    EXPECT_LT(late, 60);
}

// Whatever it is fed with: what it holds is within its limit, and begins whole.
TEST(Ring, HoldsItsSpanWithinItsLimitAndBeginsWhole)
{
    const auto fill = [](Ring &ring, size_t size, int every) {
        bool whole = true;
        for (int i = 0; i < 1000; i++) {
            whole = i % every == 0 || ring.wants_whole();
            const Snapshot snapshot = {.time = i * 40 * MS,
                                       .frame = static_cast<uint32_t>(i),
                                       .whole = whole,
                                       .added_to = static_cast<uint32_t>(i) - 1};
            ASSERT_TRUE(ring.keep(snapshot, std::string(size, 'x')));
        }
    };
    const auto drain = [](Ring &ring) {
        std::vector<uint32_t> frames;
        size_t bytes = 0;
        EXPECT_TRUE(ring.oldest()->snapshot.whole);
        for (; ring.oldest() != nullptr; ring.drop_oldest()) {
            frames.push_back(ring.oldest()->snapshot.frame);
            bytes += ring.oldest()->body().size();
        }
        EXPECT_LE(bytes, ring.limit());
        EXPECT_EQ(frames.back(), 999U);
        EXPECT_EQ(frames.size(), frames.back() - frames.front() + 1);
        return frames.size();
    };
    Ring small(2 * SECOND, SECOND);
    fill(small, 1000, 25);
    const size_t held = drain(small);
    EXPECT_GE(held, 51U);      // two seconds
    EXPECT_LE(held, 76U);      // and what the last of them is added to
    fill(small, 100000, 1000); // more than there is room for
    EXPECT_GE(drain(small), 5U);
}

} // namespace
