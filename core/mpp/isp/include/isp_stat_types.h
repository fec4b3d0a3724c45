// Image statistics as the ISP hardware delivers them. Regional ("rgl") statistics cover an 8 x 8
// raster of the image row by row; ROI statistics cover up to four regions of interest.
#pragma once

#include <cstddef>
#include <cstdint>

inline constexpr size_t ISP_STAT_ROI_NUM = 4;
inline constexpr size_t ISP_STAT_RGL_NUM = 64;

// Luminance histogram.
struct IsBspYHistRoiStat {
    uint8_t overflow;
    uint32_t hist[60];
};
static_assert(sizeof(IsBspYHistRoiStat) == 244);
static_assert(offsetof(IsBspYHistRoiStat, hist) == 4);

struct IsBspYAvgRoiStat {
    uint16_t avg;
    uint32_t remainder;
};
static_assert(sizeof(IsBspYAvgRoiStat) == 8);
static_assert(offsetof(IsBspYAvgRoiStat, remainder) == 4);

struct IsBspYAvgRglStat {
    uint8_t avg[ISP_STAT_RGL_NUM];
    uint8_t rgl_x_num;
    uint8_t rgl_y_num;
};
static_assert(sizeof(IsBspYAvgRglStat) == 66);
static_assert(offsetof(IsBspYAvgRglStat, rgl_y_num) == 65);

// Rtx: white-balance peaks per Bayer channel.
struct is_rtx_roi_param {
    uint16_t max_pix;
    uint8_t wgt;
    uint8_t x;
    uint8_t y;
};
static_assert(sizeof(is_rtx_roi_param) == 6);
static_assert(offsetof(is_rtx_roi_param, y) == 4);

struct is_rtx_rgl_param {
    uint16_t max_pix;
    uint8_t wgt;
};
static_assert(sizeof(is_rtx_rgl_param) == 4);
static_assert(offsetof(is_rtx_rgl_param, wgt) == 2);

struct IsBspRtxRoiStat {
    uint32_t sum[4];
    uint8_t norm[4];
    is_rtx_roi_param g0[15];
    is_rtx_roi_param r[15];
    is_rtx_roi_param b[15];
    is_rtx_roi_param g1[15];
};
static_assert(sizeof(IsBspRtxRoiStat) == 380);
static_assert(offsetof(IsBspRtxRoiStat, norm) == 16);
static_assert(offsetof(IsBspRtxRoiStat, g0) == 20);
static_assert(offsetof(IsBspRtxRoiStat, r) == 110);
static_assert(offsetof(IsBspRtxRoiStat, b) == 200);
static_assert(offsetof(IsBspRtxRoiStat, g1) == 290);

struct IsBspRtxRglStat {
    is_rtx_rgl_param g0[ISP_STAT_RGL_NUM];
    is_rtx_rgl_param r[ISP_STAT_RGL_NUM];
    is_rtx_rgl_param b[ISP_STAT_RGL_NUM];
    is_rtx_rgl_param g1[ISP_STAT_RGL_NUM];
};
static_assert(sizeof(IsBspRtxRglStat) == 1024);
static_assert(offsetof(IsBspRtxRglStat, r) == 256);
static_assert(offsetof(IsBspRtxRglStat, b) == 512);
static_assert(offsetof(IsBspRtxRglStat, g1) == 768);

// Gwd: channel energies (grey world).
struct IsBspGwdRoiStat {
    uint32_t sum[4];
    uint32_t norm[4];
};
static_assert(sizeof(IsBspGwdRoiStat) == 32);
static_assert(offsetof(IsBspGwdRoiStat, norm) == 16);

struct is_gwd_rgl_param {
    uint8_t avg;
};
static_assert(sizeof(is_gwd_rgl_param) == 1);

struct IsBspGwdRglStat {
    is_gwd_rgl_param g[ISP_STAT_RGL_NUM];
    is_gwd_rgl_param r[ISP_STAT_RGL_NUM];
    is_gwd_rgl_param b[ISP_STAT_RGL_NUM];
};
static_assert(sizeof(IsBspGwdRglStat) == 192);
static_assert(offsetof(IsBspGwdRglStat, r) == 64);
static_assert(offsetof(IsBspGwdRglStat, b) == 128);

// Contrast: two horizontal and two vertical band-pass filters.
struct IsBspContrastRoiStat {
    uint16_t h1_avg;
    uint16_t h2_avg;
    uint16_t v1_avg;
    uint16_t v2_avg;
};
static_assert(sizeof(IsBspContrastRoiStat) == 8);
static_assert(offsetof(IsBspContrastRoiStat, v2_avg) == 6);

struct IsBspContrastRglStat {
    uint16_t h1_avg[ISP_STAT_RGL_NUM];
    uint16_t h2_avg[ISP_STAT_RGL_NUM];
    uint16_t v1_avg[ISP_STAT_RGL_NUM];
    uint16_t v2_avg[ISP_STAT_RGL_NUM];
    uint8_t rgl_x_num;
    uint8_t rgl_y_num;
};
static_assert(sizeof(IsBspContrastRglStat) == 514);
static_assert(offsetof(IsBspContrastRglStat, h2_avg) == 128);
static_assert(offsetof(IsBspContrastRglStat, v1_avg) == 256);
static_assert(offsetof(IsBspContrastRglStat, v2_avg) == 384);
static_assert(offsetof(IsBspContrastRglStat, rgl_y_num) == 513);

// Luma statistics of the sharpness block.
struct IspShpRglStat {
    uint16_t lpf_luma_min[ISP_STAT_RGL_NUM];
    uint16_t lpf_luma_avg[ISP_STAT_RGL_NUM];
};
static_assert(sizeof(IspShpRglStat) == 256);
static_assert(offsetof(IspShpRglStat, lpf_luma_avg) == 128);

struct IspShpRoiStat {
    uint16_t lpf_luma_avg;
};
static_assert(sizeof(IspShpRoiStat) == 2);

// Luma statistics of the dehaze block.
struct IspDhzStat {
    uint16_t luma_avg;
};
static_assert(sizeof(IspDhzStat) == 2);
