// The scene's story, as captures of it show: every loop reacts, overshoots and settles.
#include "scene.h"

#include <gtest/gtest.h>
#include <memory>
#include <numeric>
#include <vector>

namespace
{

using Frame = std::unique_ptr<DipPathCtx>;

std::vector<Frame> story()
{
    std::vector<Frame> frames;
    for (uint32_t i = 0; i < STORY_FRAMES; i++) {
        frames.push_back(std::make_unique<DipPathCtx>());
        fill_frame(frames.back().get(), 0, i);
    }
    return frames;
}

// The largest and the smallest value in frames [first, last), and that of the last.
struct Swing {
    int32_t high = INT32_MIN;
    int32_t low = INT32_MAX;
    int32_t settled = 0;
};

template <typename Value>
Swing swing_of(const std::vector<Frame> &frames, size_t first, size_t last, Value value)
{
    Swing swing;
    for (size_t i = first; i < last; i++) {
        swing.settled = value(frames[i]->dip_ctx.share);
        swing.high = std::max(swing.high, swing.settled);
        swing.low = std::min(swing.low, swing.settled);
    }
    return swing;
}

TEST(Scene, LoopsOvershootAndSettle)
{
    const std::vector<Frame> frames = story();
    const auto inttime = [](const DipShareInfo &share) { return share.inttime; };
    const auto iso = [](const DipShareInfo &share) { return share.noise_level.level_iso; };
    const auto kelvin = [](const DipShareInfo &share) { return int32_t{share.color_temp}; };
    const auto fps = [](const DipShareInfo &share) { return static_cast<int32_t>(10 * share.fps); };

    // Lights down: the exposure time goes to its limit, gain does the rest, then frames get longer.
    EXPECT_EQ(swing_of(frames, 0, 30, iso).high, 100);
    const Swing dark = swing_of(frames, 30, 70, iso);
    EXPECT_EQ(swing_of(frames, 30, 70, inttime).high, 40000);
    EXPECT_EQ(swing_of(frames, 45, 70, inttime).low, 40000);
    EXPECT_GT(dark.settled, 1000);
    EXPECT_GT(dark.high, dark.settled * 11 / 10);
    EXPECT_EQ(swing_of(frames, 0, 70, fps).low, 250);
    EXPECT_EQ(swing_of(frames, 90, 200, fps).high, 125);
    EXPECT_EQ(swing_of(frames, 90, 200, inttime).low, 80000);
    EXPECT_NEAR(swing_of(frames, 90, 200, iso).high, 0.5 * dark.settled, 10);

    // Another light.
    const Swing warm = swing_of(frames, 120, 200, kelvin);
    EXPECT_EQ(warm.high, 4725);
    EXPECT_LT(warm.low, 2940);
    EXPECT_NEAR(warm.settled, 3000, 5);

    // Lights on: all comes back to where it began, with a swing to the other side.
    EXPECT_LT(swing_of(frames, 200, 300, inttime).low, 7800);
    EXPECT_GT(swing_of(frames, 200, 300, kelvin).high, 4860);
    EXPECT_NEAR(swing_of(frames, 200, 300, inttime).settled, 8000, 20);
    EXPECT_NEAR(swing_of(frames, 200, 300, kelvin).settled, 4800, 5);
    EXPECT_EQ(swing_of(frames, 200, 300, fps).settled, 250);

    DipPathCtx again = {};
    fill_frame(&again, 0, STORY_FRAMES);
    EXPECT_EQ(again.dip_ctx.share.inttime, frames[0]->dip_ctx.share.inttime);
}

TEST(Scene, StatisticsBelongToTheFrameAndItsLight)
{
    uint64_t first_pixels = 0;
    for (const Frame &frame : story()) {
        const DipCtx &dip = frame->dip_ctx;
        SCOPED_TRACE(dip.frame_cnt);
        EXPECT_EQ(dip.stat.exp.inttime, static_cast<uint32_t>(dip.share.inttime));
        EXPECT_EQ(dip.stat.exp.sys_gain, dip.share.exp_info.sys_gain);
        const int16_t *row = dip.share.colormatrix;
        for (int i = 0; i < 3; i++, row += 3)
            EXPECT_EQ(row[0] + row[1] + row[2], 1024); // grey stays grey

        // The histogram keeps its pixels, but for those that move, and its mean goes with the
        // average.
        const auto &hist = dip.stat.lum.hist.hist;
        const uint64_t pixels = std::accumulate(std::begin(hist), std::end(hist), uint64_t{0});
        first_pixels = first_pixels != 0 ? first_pixels : pixels;
        EXPECT_NEAR(double(pixels), double(first_pixels), double(first_pixels) / 50);
        uint64_t sum = 0;
        for (uint64_t i = 0; i < std::size(hist); i++)
            sum += i * hist[i];
        const double mean = double(sum) / double(pixels);
        const uint16_t luma = dip.share.exp_info.luma_avg;
        if (luma < 120) {
            EXPECT_NEAR(mean, 24.0 * luma / 110, 3);
        } else if (luma == 255) {
            EXPECT_GT(mean, 40); // white, or on its way back
        }
        EXPECT_NEAR(double(dip.stat.lum.gamma_domain_avg_16b), std::min(luma * 271, 65535), 5000);
    }
}

} // namespace
