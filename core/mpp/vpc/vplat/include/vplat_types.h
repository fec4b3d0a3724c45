// Records of the video platform in the shared region.
#pragma once

#include "dip_ctx_types.h"
#include "path_lock.h"

#include <cstddef>
#include <cstdint>

struct VplatPathInfo {
    // sensor_idx, res, eis_strength, drop_pre_roll_num, fps, max_adv_isp_fps, bayer, porch, ob_pos,
    // ob_region, i2c_slv_addr, reserved, hdr_blank_line_num, port, ref_win
    uint8_t opaque[64];
};
static_assert(sizeof(VplatPathInfo) == 64);

// One input path: the DIP's context and the lock that every reader and writer of it takes.
struct VplatPathConf {
    PathLock lock;
    uint32_t state;
    DipPathCtx dip;
    VplatPathInfo info;
    uint8_t pca_table[19656]; // MPI_PCA_TABLE_S
};
static_assert(sizeof(VplatPathConf) == 131080);
static_assert(offsetof(VplatPathConf, lock) == 0);
static_assert(offsetof(VplatPathConf, state) == 24);
static_assert(offsetof(VplatPathConf, dip) == 32);
static_assert(offsetof(VplatPathConf, info) == 111360);
static_assert(offsetof(VplatPathConf, pca_table) == 111424);
