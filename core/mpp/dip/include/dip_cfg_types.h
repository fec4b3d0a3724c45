// What the DIP computed for the hardware of one input path: DipAllCfg, module by module.
#pragma once

#include "isp_dip_types.h"

#include <cstddef>
#include <cstdint>

inline constexpr int DIP_WIN_NUM = 8; // video windows with configurations of their own

// The calibration modules that have something new for the hardware.
union CalUpdateFlag {
    uint32_t val;
    struct {
        uint32_t dbc_en : 1;
        uint32_t dcc_en : 1;
        uint32_t crc_en : 1;
        uint32_t lsc_en : 1;
    } bit;
};
static_assert(sizeof(CalUpdateFlag) == 4);

struct CalDbcCfg {
    IsDbcCfg cfg;
};
static_assert(sizeof(CalDbcCfg) == 16);

struct CalDccCfg {
    IsDccCfg cfg;
};
static_assert(sizeof(CalDccCfg) == 44);

// The curves have no mode of their own: they work when the DCC does.
struct CalCrcCfg {
    IsDccGainCurveCfg curve[IS_CHANNEL_NUM];
};
static_assert(sizeof(CalCrcCfg) == 220);

struct CalLscCfg {
    IsLscCfg cfg;
    IsLscCurveCfg curve;
    IsLscTableCfg table;
};
static_assert(sizeof(CalLscCfg) == 8332);
static_assert(offsetof(CalLscCfg, curve) == 8);
static_assert(offsetof(CalLscCfg, table) == 108);

// The calibration of one sensor.
struct CalAllCfg {
    CalUpdateFlag flag;
    CalDbcCfg dbc;
    CalDccCfg dcc;
    CalCrcCfg crc;
    CalLscCfg lsc;
};
static_assert(sizeof(CalAllCfg) == 8616);
static_assert(offsetof(CalAllCfg, dbc) == 4);
static_assert(offsetof(CalAllCfg, dcc) == 20);
static_assert(offsetof(CalAllCfg, crc) == 64);
static_assert(offsetof(CalAllCfg, lsc) == 284);

struct DipAwbCfg {
    IsBspWbCfg gain[2];
};
static_assert(sizeof(DipAwbCfg) == 20);

struct DipTeCfg {
    IsBspTmCfg tm;
};
static_assert(sizeof(DipTeCfg) == 122);

struct DipHteCfg {
    IspHdrTmCfg hdr_tm;
};
static_assert(sizeof(DipHteCfg) == 122);

struct DipPteCfg {
    VpPteCfg pte;
};
static_assert(sizeof(DipPteCfg) == 66);

struct DipCsmCfg {
    IspCcmCfg ccm;
    IspCstCfg cst;
};
static_assert(sizeof(DipCsmCfg) == 48);
static_assert(offsetof(DipCsmCfg, cst) == 24);

struct DipGammaCfg {
    IsFgmaCfg fgma;
    IspFagmaCfg fagma;
    IspGmaCfg gma;
};
static_assert(sizeof(DipGammaCfg) == 252);
static_assert(offsetof(DipGammaCfg, fagma) == 4);
static_assert(offsetof(DipGammaCfg, gma) == 8);

struct DipDpcCfg {
    IspDpcCfg cfg;
    IsBspDpcCfg bsp_dpc_cfg;
};
static_assert(sizeof(DipDpcCfg) == 20);
static_assert(offsetof(DipDpcCfg, bsp_dpc_cfg) == 16);

struct DipDpdCfg {
    IsBspDpdCfg cfg;
};
static_assert(sizeof(DipDpdCfg) == 32);

struct DipDmsCfg {
    IspDmsCfg cfg;
};
static_assert(sizeof(DipDmsCfg) == 16);

struct DipMeCfg {
    VpMeCfg me;
};
static_assert(sizeof(DipMeCfg) == 92);

struct DipEnhCfg {
    IspEnhCfg cfg;
};
static_assert(sizeof(DipEnhCfg) == 92);

struct DipCoringCfg {
    VpNrwCoringCfg coring;
};
static_assert(sizeof(DipCoringCfg) == 6);

struct DipHdrCfg {
    IspHdrMode mode;
    IspHdrAntiGmaCfg anti_gma;
    IspHdrExpCfg exp;
    IspHdrWeightCfg weight;
    IspHdrFbCfg fb;
    IspHdrGmaCfg gma;
};
static_assert(sizeof(DipHdrCfg) == 48);
static_assert(offsetof(DipHdrCfg, anti_gma) == 4);
static_assert(offsetof(DipHdrCfg, exp) == 12);
static_assert(offsetof(DipHdrCfg, weight) == 20);
static_assert(offsetof(DipHdrCfg, fb) == 32);
static_assert(offsetof(DipHdrCfg, gma) == 44);

struct DipHawbCfg {
    IspHdrAwbCfg hdr_awb;
};
static_assert(sizeof(DipHawbCfg) == 10);

struct DipFcsCfg {
    IspFcsCfg fcs;
};
static_assert(sizeof(DipFcsCfg) == 24);

struct DipDhzCfg {
    IspDhzCfg dhz;
    IspDhzRglCfg dhz_rgl;
};
static_assert(sizeof(DipDhzCfg) == 268);
static_assert(offsetof(DipDhzCfg, dhz_rgl) == 12);

struct DipShpCfg {
    IspShpCfg shp;
};
static_assert(sizeof(DipShpCfg) == 96);

struct DipNrCfg {
    VpNrCfg nr;
};
static_assert(sizeof(DipNrCfg) == 164);

// One enable bit per module.
union DipCfgFlag {
    uint32_t val;
    struct {
        uint32_t module_en : 25;
    } bit;
};
static_assert(sizeof(DipCfgFlag) == 4);

struct DipAllCfg {
    DipCfgFlag flag;
    CalAllCfg cal[2]; // of the first and the second sensor of a stitched image
    DipAwbCfg awb;
    DipTeCfg te;
    DipHteCfg hte;
    DipPteCfg pte;
    DipCsmCfg csm;
    DipGammaCfg gamma;
    DipDpcCfg dpc;
    DipDpdCfg dpd;
    DipDmsCfg dms;
    DipMeCfg front_me;
    DipMeCfg gluey_front_me;
    DipMeCfg active_front_me;
    DipMeCfg me;
    DipMeCfg gluey_me;
    DipMeCfg active_me;
    DipEnhCfg front_enh;
    IspMotionStatusCfg motion_status_cfg;
    IspMotionStatusCfg front_motion_status_cfg;
    DipCoringCfg coring;
    DipHdrCfg hdr;
    DipHawbCfg hawb;
    DipFcsCfg fcs;
    DipDhzCfg dhz;
    // Slot i belongs to the i-th window bound to the path.
    DipEnhCfg win_enh[DIP_WIN_NUM];
    DipShpCfg win_shp[DIP_WIN_NUM];
    DipShpCfg weak_win_shp[DIP_WIN_NUM];
    DipNrCfg win_front_nr[DIP_WIN_NUM];
    DipNrCfg win_nr[DIP_WIN_NUM];
    IspLargeMotionCfg isp_lm[DIP_WIN_NUM];
};
static_assert(sizeof(DipAllCfg) == 24004);
static_assert(offsetof(DipAllCfg, cal) == 4);
static_assert(offsetof(DipAllCfg, awb) == 17236);
static_assert(offsetof(DipAllCfg, te) == 17256);
static_assert(offsetof(DipAllCfg, hte) == 17378);
static_assert(offsetof(DipAllCfg, pte) == 17500);
static_assert(offsetof(DipAllCfg, csm) == 17566);
static_assert(offsetof(DipAllCfg, gamma) == 17616);
static_assert(offsetof(DipAllCfg, dpc) == 17868);
static_assert(offsetof(DipAllCfg, dpd) == 17888);
static_assert(offsetof(DipAllCfg, dms) == 17920);
static_assert(offsetof(DipAllCfg, front_me) == 17936);
static_assert(offsetof(DipAllCfg, gluey_front_me) == 18028);
static_assert(offsetof(DipAllCfg, active_front_me) == 18120);
static_assert(offsetof(DipAllCfg, me) == 18212);
static_assert(offsetof(DipAllCfg, gluey_me) == 18304);
static_assert(offsetof(DipAllCfg, active_me) == 18396);
static_assert(offsetof(DipAllCfg, front_enh) == 18488);
static_assert(offsetof(DipAllCfg, motion_status_cfg) == 18580);
static_assert(offsetof(DipAllCfg, front_motion_status_cfg) == 18616);
static_assert(offsetof(DipAllCfg, coring) == 18652);
static_assert(offsetof(DipAllCfg, hdr) == 18660);
static_assert(offsetof(DipAllCfg, hawb) == 18708);
static_assert(offsetof(DipAllCfg, fcs) == 18720);
static_assert(offsetof(DipAllCfg, dhz) == 18744);
static_assert(offsetof(DipAllCfg, win_enh) == 19012);
static_assert(offsetof(DipAllCfg, win_shp) == 19748);
static_assert(offsetof(DipAllCfg, weak_win_shp) == 20516);
static_assert(offsetof(DipAllCfg, win_front_nr) == 21284);
static_assert(offsetof(DipAllCfg, win_nr) == 22596);
static_assert(offsetof(DipAllCfg, isp_lm) == 23908);
