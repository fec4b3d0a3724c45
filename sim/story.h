// What happens in front of the camera, and how its loops of exposure, white balance and tone
// follow.
//
// The story takes 300 frames and begins anew: a room in daylight; at frame 30 the lights go down to
// a 64th: the exposure time reaches its limit, gain takes over and, since the room stays dark, the
// frame rate drops. At 120 a warm lamp replaces the light. At 200 the lights come on: the image is
// white until the exposure has come down. All numbers are integers, so that every machine tells the
// same story.
#pragma once

#include <cstdint>

inline constexpr uint32_t STORY_FRAMES = 300;
inline constexpr int32_t STORY_LUMA = 110; // what the exposure loop aims at, of 255

// The camera and its scene at one frame.
struct Moment {
    uint32_t frame;
    int32_t exposure;      // exposure time times gain, microseconds at a gain of one
    int32_t last_exposure; // that of the frame before
    int32_t frame_us;      // time of a frame, the limit of the exposure time
    int32_t luma;          // average of the image, were it not white from 255 on
    int32_t light_kelvin;  // colour temperature of the light
    int32_t kelvin;        // what white balance takes it for
    int32_t tone;          // how far tone enhancement lifts the shadows, 0 (not) to 256, about
};

Moment moment_at(uint32_t frame);
