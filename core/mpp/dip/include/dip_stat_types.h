// The image statistics that the DIP keeps for one input path.
#pragma once

#include "isp_stat_types.h"
#include "mpi_dip_types.h"

#include <cstddef>
#include <cstdint>

// Which statistics the DIP has filled.
union DipStatFlag {
    uint32_t val;
    struct {
        uint32_t lum_valid : 1;
        uint32_t awb_valid : 1;
        uint32_t mv_valid : 1;
        uint32_t mcvp_var_valid : 1;
        uint32_t shp_valid : 1;
        uint32_t dhz_valid : 1;
    } bit;
};
static_assert(sizeof(DipStatFlag) == 4);

struct DipLumStat1 {
    IsBspYHistRoiStat hist;
    IsBspYAvgRoiStat avg_roi[ISP_STAT_ROI_NUM];
    IsBspYAvgRglStat avg_rgl;
    uint32_t gamma_domain_avg_16b;
    uint32_t gamma_domain_std_16b;
    uint64_t gamma_domain_var_16b;
    uint32_t gamma_domain_cv_1024;
    uint32_t dri_low_lv_ft;
};
static_assert(sizeof(DipLumStat1) == 368);
static_assert(offsetof(DipLumStat1, avg_roi) == 244);
static_assert(offsetof(DipLumStat1, avg_rgl) == 276);
static_assert(offsetof(DipLumStat1, gamma_domain_avg_16b) == 344);
static_assert(offsetof(DipLumStat1, gamma_domain_var_16b) == 352);
static_assert(offsetof(DipLumStat1, dri_low_lv_ft) == 364);

struct DipLumStatDual {
    DipLumStat1 lum[2];
};
static_assert(sizeof(DipLumStatDual) == 736);

struct DipRtxStat {
    IsBspRtxRoiStat roi_stat;
    IsBspRtxRglStat rgl_stat;
};
static_assert(sizeof(DipRtxStat) == 1404);
static_assert(offsetof(DipRtxStat, rgl_stat) == 380);

struct DipGwdStat {
    IsBspGwdRoiStat roi_stat[ISP_STAT_ROI_NUM];
    IsBspGwdRglStat rgl_stat;
    uint32_t roi_pix_num[ISP_STAT_ROI_NUM];
};
static_assert(sizeof(DipGwdStat) == 336);
static_assert(offsetof(DipGwdStat, rgl_stat) == 128);
static_assert(offsetof(DipGwdStat, roi_pix_num) == 320);

struct DipAwbStat {
    DipRtxStat rtx;
    DipGwdStat gwd;
};
static_assert(sizeof(DipAwbStat) == 1740);
static_assert(offsetof(DipAwbStat, gwd) == 1404);

struct DipAwbStatDual {
    DipAwbStat awb[2];
};
static_assert(sizeof(DipAwbStatDual) == 3480);

struct DipAfStat {
    IsBspContrastRoiStat roi_stat[ISP_STAT_ROI_NUM];
    IsBspContrastRglStat rgl_stat;
};
static_assert(sizeof(DipAfStat) == 546);
static_assert(offsetof(DipAfStat, rgl_stat) == 32);

struct DipMvHist {
    MPI_ISP_MV_HIST_CFG_S cfg;
    MPI_ISP_MV_HIST_S hist;
};
static_assert(sizeof(DipMvHist) == 396);
static_assert(offsetof(DipMvHist, hist) == 8);

struct DipMcvpVar {
    MPI_ISP_VAR_CFG_S cfg;
    MPI_ISP_VAR_S var;
};
static_assert(sizeof(DipMcvpVar) == 20);
static_assert(offsetof(DipMcvpVar, var) == 8);

struct DipShpStat {
    IspShpRglStat rgl_stat;
    IspShpRoiStat roi_stat;
};
static_assert(sizeof(DipShpStat) == 258);
static_assert(offsetof(DipShpStat, roi_stat) == 256);

struct DipDhzStat {
    IspDhzStat stat;
};
static_assert(sizeof(DipDhzStat) == 2);

struct DipExposureStat {
    uint32_t inttime;
    uint32_t sys_gain;
};
static_assert(sizeof(DipExposureStat) == 8);
static_assert(offsetof(DipExposureStat, sys_gain) == 4);

struct DipAllStat {
    int32_t frame_cnt;
    int32_t fss_ratio;
    int32_t front_fss_ratio;
    DipStatFlag flag;
    DipLumStat1 lum;
    DipLumStatDual dual_lum;
    DipAwbStat awb;
    DipAwbStatDual dual_awb;
    DipAfStat af;
    DipMvHist mv;
    DipMvHist front_mv;
    DipMcvpVar mcvp_var;
    DipShpStat shp;
    DipDhzStat dhz;
    DipExposureStat exp;
    int32_t mipi_switch_port;
    uint64_t time_stamp;
};
static_assert(sizeof(DipAllStat) == 7984);
static_assert(offsetof(DipAllStat, flag) == 12);
static_assert(offsetof(DipAllStat, lum) == 16);
static_assert(offsetof(DipAllStat, dual_lum) == 384);
static_assert(offsetof(DipAllStat, awb) == 1120);
static_assert(offsetof(DipAllStat, dual_awb) == 2860);
static_assert(offsetof(DipAllStat, af) == 6340);
static_assert(offsetof(DipAllStat, mv) == 6888);
static_assert(offsetof(DipAllStat, front_mv) == 7284);
static_assert(offsetof(DipAllStat, mcvp_var) == 7680);
static_assert(offsetof(DipAllStat, shp) == 7700);
static_assert(offsetof(DipAllStat, dhz) == 7958);
static_assert(offsetof(DipAllStat, exp) == 7960);
static_assert(offsetof(DipAllStat, mipi_switch_port) == 7968);
static_assert(offsetof(DipAllStat, time_stamp) == 7976);
