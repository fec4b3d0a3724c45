// A plausible scene: what the DIP would keep for two sensors at work.
#pragma once

#include "sr_schema.h"
#include "story.h"

#include <cstdint>

inline constexpr int SCENE_PATH_NUM = 2; // paths 0 and 1 are present, the others absent

// Makes an empty region one with the paths of the scene, their locks free, and default log levels.
void init_region(VplatConf *conf);

// Fills the context of one path (0 or 1) for a frame of the story; the same frame always gives the
// same values.
void fill_frame(DipPathCtx *ctx, int path, uint32_t frame);

// The parts of fill_frame, each for the records of one category.
void fill_stat(DipAllStat *stat, const DipShareInfo &share, const Moment &moment);
void fill_cfg(DipAllCfg *cfg, const DipShareInfo &share, const Moment &moment);
void fill_intl(DipIntlCtx *intl);

// A triangle wave between two values, from `low` and back once in `period` frames.
constexpr int32_t wave(uint32_t frame, uint32_t period, int32_t low, int32_t high)
{
    const auto half = static_cast<int32_t>(period / 2);
    const auto phase = static_cast<int32_t>(frame % period);
    const int32_t up = phase < half ? phase : static_cast<int32_t>(period) - phase;
    return low + (high - low) * up / half;
}
