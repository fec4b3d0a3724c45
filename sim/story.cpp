// Loops as cameras have them: each sees its effect late, overshoots and settles.
#include "story.h"

#include <algorithm>

namespace
{

constexpr int32_t BRIGHT = 8000; // the exposure that gives STORY_LUMA in daylight, microseconds
constexpr int32_t DAYLIGHT = 4800;
constexpr int32_t LAMP = 3000;
constexpr int32_t FRAME_US = 40000;
constexpr int32_t SLOW_FRAME_US = 80000;
constexpr int32_t MAX_GAIN = 16;
constexpr int32_t ONE = 1024;

int32_t attenuation(uint32_t frame)
{
    return frame >= 30 && frame < 200 ? 64 : 1;
}

int32_t light(uint32_t frame)
{
    return frame >= 120 && frame < 200 ? LAMP : DAYLIGHT;
}

// A value that swings to its target like a mass on a damped spring; 1/16 for finer steps.
class Spring
{
public:
    explicit Spring(int32_t value) : value_(16 * value) {}

    int32_t follow(int32_t target)
    {
        velocity_ = velocity_ * 3 / 4 + (16 * target - value_) / 24;
        value_ += velocity_;
        return value_ / 16;
    }

private:
    int32_t value_;
    int32_t velocity_ = 0;
};

class Exposure
{
public:
    // Of the next frame, in which so much of the light is left.
    void advance(int32_t attenuation, Moment *moment)
    {
        constexpr int32_t PATIENCE = 25; // frames
        dark_frames_ = wanted_ > 8 * FRAME_US ? dark_frames_ + 1 : 0;
        const int32_t frame_us = dark_frames_ > PATIENCE ? SLOW_FRAME_US
                                 : wanted_ < FRAME_US    ? FRAME_US
                                                         : moment->frame_us;
        wanted_ = std::min(wanted_, frame_us * MAX_GAIN);

        moment->last_exposure = moment->exposure;
        // A change of the frame rate acts at once, the gain that makes up for it a frame later.
        moment->exposure = frame_us > moment->frame_us ? 2 * wanted_ : wanted_;
        moment->frame_us = frame_us;

        const int64_t luma256 = int64_t{256} * STORY_LUMA * moment->exposure / BRIGHT / attenuation;
        const auto seen = static_cast<int32_t>(std::min(luma256, int64_t{255} * 256));
        moment->luma = static_cast<int32_t>((luma256 + 128) / 256);

        // A quarter of the way a frame, at most 1.3 times up, from an image two frames old.
        const int32_t way = (256 * STORY_LUMA - late_[0]) * (ONE / 4) / std::max(late_[0], 256);
        late_[0] = late_[1];
        late_[1] = seen;
        const int64_t step = std::min(ONE + way, 1331);
        wanted_ = static_cast<int32_t>(wanted_ * step / ONE);
    }

private:
    int32_t wanted_ = BRIGHT;
    int32_t late_[2] = {256 * STORY_LUMA, 256 * STORY_LUMA};
    int32_t dark_frames_ = 0;
};

} // namespace

Moment moment_at(uint32_t frame)
{
    // A frame follows from all before it, so the story is told from its beginning.
    Moment moment = {};
    moment.frame = frame;
    moment.exposure = 8462; // the loop has just come to rest
    moment.frame_us = FRAME_US;
    Exposure exposure;
    Spring kelvin(DAYLIGHT);
    Spring tone(0);
    for (uint32_t i = 0; i <= frame % STORY_FRAMES; i++) {
        exposure.advance(attenuation(i), &moment);
        moment.light_kelvin = light(i);
        moment.kelvin = kelvin.follow(moment.light_kelvin);
        const int32_t dark = std::clamp(moment.exposure, FRAME_US, 8 * FRAME_US) - FRAME_US;
        moment.tone = tone.follow(dark / (7 * FRAME_US / 256));
    }
    return moment;
}
