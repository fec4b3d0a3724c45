// What the DIP publishes to the rest of the platform: exposure, white balance, tone, and the
// motion statistics.
#pragma once

#include "mpi_base_types.h"

#include <cstddef>
#include <cstdint>

enum MPI_ISO_TYPE_E : int32_t {
    MPI_ISO_VER_0 = 0,
    MPI_ISO_VER_1 = 1,
    MPI_ISO_VER_2 = 2,
};

struct MPI_EXPOSURE_INFO_S {
    uint32_t inttime;
    uint32_t sensor_gain;
    uint32_t isp_gain;
    uint32_t sys_gain;
    uint32_t hdr_inttime[2];
    uint32_t hdr_sensor_gain[2];
    uint32_t hdr_isp_gain[2];
    uint32_t hdr_sys_gain[2];
    int32_t iso;
    uint8_t frame_delay;
    uint8_t flicker_free_conf;
    float fps;
    uint32_t ratio;
    uint16_t luma_avg;
};
static_assert(sizeof(MPI_EXPOSURE_INFO_S) == 68);
static_assert(offsetof(MPI_EXPOSURE_INFO_S, hdr_inttime) == 16);
static_assert(offsetof(MPI_EXPOSURE_INFO_S, iso) == 48);
static_assert(offsetof(MPI_EXPOSURE_INFO_S, fps) == 56);
static_assert(offsetof(MPI_EXPOSURE_INFO_S, luma_avg) == 64);

struct MPI_WHITE_BALANCE_INFO_S {
    uint16_t gain0[4];
    uint16_t gain1[4];
    int16_t matrix[9];
    uint16_t color_temp;
};
static_assert(sizeof(MPI_WHITE_BALANCE_INFO_S) == 36);
static_assert(offsetof(MPI_WHITE_BALANCE_INFO_S, matrix) == 16);
static_assert(offsetof(MPI_WHITE_BALANCE_INFO_S, color_temp) == 34);

struct MPI_TE_INFO_S {
    uint8_t tm_enable;
    uint32_t tm_curve[60];
};
static_assert(sizeof(MPI_TE_INFO_S) == 244);
static_assert(offsetof(MPI_TE_INFO_S, tm_curve) == 4);

struct MPI_ISP_MV_HIST_CFG_S {
    MPI_RECT_POINT_S roi;
};
static_assert(sizeof(MPI_ISP_MV_HIST_CFG_S) == 8);

struct MPI_ISP_MV_HIST_S {
    int32_t bin_x[32];
    int32_t bin_y[32];
    uint32_t bin_count[32];
    uint32_t total_cnt;
};
static_assert(sizeof(MPI_ISP_MV_HIST_S) == 388);
static_assert(offsetof(MPI_ISP_MV_HIST_S, bin_y) == 128);
static_assert(offsetof(MPI_ISP_MV_HIST_S, bin_count) == 256);
static_assert(offsetof(MPI_ISP_MV_HIST_S, total_cnt) == 384);

struct MPI_ISP_VAR_CFG_S {
    MPI_RECT_POINT_S roi;
};
static_assert(sizeof(MPI_ISP_VAR_CFG_S) == 8);

struct MPI_ISP_VAR_S {
    uint32_t hor_sum;
    uint32_t ver_sum;
    uint32_t hor_ver_sum;
};
static_assert(sizeof(MPI_ISP_VAR_S) == 12);
static_assert(offsetof(MPI_ISP_VAR_S, hor_ver_sum) == 8);
