// The DIP's working context of one input path, as the DIP writes it into the shared region.
//
//   DipPathCtx      0  +-----------------------------+
//                      | dip_ctx     DipCtx          |  share, stat, cfg, windows, attributes
//               34104  +-----------------------------+
//                      | private module contexts     |  opaque: nobody outside the DIP reads them
//               85736  +-----------------------------+
//                      | stat        DipAllStat      |  working copy; readers use dip_ctx.stat
//               93720  +-----------------------------+
//                      | intl_ctx    DipIntlCtx      |  extension settings of every module
//              111328  +-----------------------------+
//
// Little-endian, every field naturally aligned. 32-bit device addresses and thread identifiers are
// uint32_t and mean nothing in a copy. Members that only the DIP reads are byte arrays that carry
// the name of the member and, in a comment, of its record.
#pragma once

#include "dip_cfg_types.h"
#include "dip_intl_types.h"
#include "dip_stat_types.h"
#include "mpi_base_types.h"
#include "mpi_dip_types.h"
#include "mpi_index.h"

#include <cstddef>
#include <cstdint>

enum DipSysState : int32_t {
    DIP_SYS_STATE_NONE = 0,
    DIP_SYS_STATE_RUNNING = 1,
    DIP_SYS_STATE_SUSPEND = 2,
    DIP_SYS_STATE_CLOSING = 3,
    DIP_SYS_STATE_STOP = 4,
};

enum DipState : int32_t {
    DIP_STATE_DISABLE = 0,
    DIP_STATE_ENABLE = 1,
    DIP_STATE_BYPASS = 2,
};

enum DipAlgType : int32_t {
    DIP_ALG_AE = 0,
    DIP_ALG_ISO = 1,
    DIP_ALG_CAL = 2,
    DIP_ALG_STAT = 3,
    DIP_ALG_TE = 4,
    DIP_ALG_AWB = 5,
    DIP_ALG_DPC = 6,
    DIP_ALG_HDR = 7,
    DIP_ALG_DMS = 8,
    DIP_ALG_FCS = 9,
    DIP_ALG_CSM = 10,
    DIP_ALG_GAMMA = 11,
    DIP_ALG_FRONT_ENH = 12,
    DIP_ALG_FRONT_ME = 13,
    DIP_ALG_FRONT_NR = 14,
    DIP_ALG_ENH = 15,
    DIP_ALG_SHP = 16,
    DIP_ALG_DHZ = 17,
    DIP_ALG_PTA = 18,
    DIP_ALG_ME = 19,
    DIP_ALG_NR = 20,
    DIP_ALG_CORING = 21,
};

union DipCheckFlag {
    uint32_t val;
    struct {
        uint32_t is_dev_cfg : 1;
        uint32_t is_path_cfg : 1;
        uint32_t is_chn_cfg : 1;
        uint32_t is_global_init : 1;
        uint32_t is_init : 1;
        uint32_t is_run : 1;
        uint32_t is_ae_rgtr : 1;
        uint32_t is_awb_rgtr : 1;
    } bit;
};
static_assert(sizeof(DipCheckFlag) == 4);

// The video window that the DIP takes its settings from.
struct DipWinInfo {
    uint8_t is_valid;
    MPI_SIZE_S win_res;
    MPI_WIN win_idx;
    uint8_t mv_cfg_idx;
    uint8_t mcvp_var_cfg_idx;
    uint8_t shp_rgl_cfg_idx;
    uint8_t shp_roi_cfg_idx;
    uint8_t dhz_roi_cfg_idx;
};
static_assert(sizeof(DipWinInfo) == 20);
static_assert(offsetof(DipWinInfo, win_res) == 2);
static_assert(offsetof(DipWinInfo, win_idx) == 8);
static_assert(offsetof(DipWinInfo, mv_cfg_idx) == 12);
static_assert(offsetof(DipWinInfo, dhz_roi_cfg_idx) == 16);

struct DipIsoLevel {
    int32_t level_iso;
};
static_assert(sizeof(DipIsoLevel) == 4);

struct DipFnrIsoAuto {
    int32_t x[13];
    int32_t y[13];
};
static_assert(sizeof(DipFnrIsoAuto) == 104);
static_assert(offsetof(DipFnrIsoAuto, y) == 52);

struct DipFnrIso {
    int32_t enable;
    int32_t mode;
    DipFnrIsoAuto fnr_iso_auto;
    int32_t fnr_iso_manual;
};
static_assert(sizeof(DipFnrIso) == 116);
static_assert(offsetof(DipFnrIso, fnr_iso_auto) == 8);
static_assert(offsetof(DipFnrIso, fnr_iso_manual) == 112);

struct DipPreviousEvInfo {
    uint64_t prev_ev;
};
static_assert(sizeof(DipPreviousEvInfo) == 8);

// What the exposure, white-balance, ISO and tone modules publish for each other.
struct DipShareInfo {
    int32_t inttime;
    uint32_t sensor_gain;
    uint32_t isp_gain;
    uint32_t sys_gain;
    uint8_t frame_delay;
    uint8_t flicker_free_conf;
    float fps;
    int32_t ratio;
    int32_t exp_ratio;
    MPI_EXPOSURE_INFO_S exp_info;
    MPI_ISO_TYPE_E iso_type;
    int32_t ev_idx;
    DipIsoLevel noise_level;
    int32_t noise_level_bin[16];
    DipFnrIso fnr_iso;
    int32_t non_boost_lvl;
    int32_t point_non_boost_thd;
    MPI_TE_INFO_S te_info;
    int16_t colormatrix[9];
    uint16_t color_temp;
    MPI_WHITE_BALANCE_INFO_S wb_info;
    int32_t ccm_mult_split;
    DipPreviousEvInfo ev_info;
    int32_t mipi_switch_port;
    uint8_t is_dip_skip;
};
static_assert(sizeof(DipShareInfo) == 624);
static_assert(offsetof(DipShareInfo, frame_delay) == 16);
static_assert(offsetof(DipShareInfo, fps) == 20);
static_assert(offsetof(DipShareInfo, exp_info) == 32);
static_assert(offsetof(DipShareInfo, iso_type) == 100);
static_assert(offsetof(DipShareInfo, noise_level) == 108);
static_assert(offsetof(DipShareInfo, noise_level_bin) == 112);
static_assert(offsetof(DipShareInfo, fnr_iso) == 176);
static_assert(offsetof(DipShareInfo, non_boost_lvl) == 292);
static_assert(offsetof(DipShareInfo, te_info) == 300);
static_assert(offsetof(DipShareInfo, colormatrix) == 544);
static_assert(offsetof(DipShareInfo, color_temp) == 562);
static_assert(offsetof(DipShareInfo, wb_info) == 564);
static_assert(offsetof(DipShareInfo, ccm_mult_split) == 600);
static_assert(offsetof(DipShareInfo, ev_info) == 608);
static_assert(offsetof(DipShareInfo, is_dip_skip) == 620);

// The five operations of a module, as addresses in the DIP process.
struct DipAlgFunc {
    uint32_t global_init;
    uint32_t init;
    uint32_t run;
    uint32_t exit;
    uint32_t update_cfg;
};
static_assert(sizeof(DipAlgFunc) == 20);
static_assert(offsetof(DipAlgFunc, update_cfg) == 16);

struct DipAlgNode {
    uint8_t is_used;
    uint8_t is_enabled;
    DipAlgType type;
    DipAlgFunc func;
};
static_assert(sizeof(DipAlgNode) == 28);
static_assert(offsetof(DipAlgNode, type) == 4);
static_assert(offsetof(DipAlgNode, func) == 8);

struct DipDevAttr {
    MPI_PATH_BMP_U snp_link; // the input paths of the device that are linked
    uint8_t stitch_en;       // non-zero: the device stitches the images of its sensors
    uint8_t hdr_en;          // non-zero: the sensor is an HDR sensor
};
static_assert(sizeof(DipDevAttr) == 8);
static_assert(offsetof(DipDevAttr, stitch_en) == 4);
static_assert(offsetof(DipDevAttr, hdr_en) == 5);

struct DipPathAttr {
    uint32_t sensor_id;
    float fps;
    MPI_BAYER_E bayer;
    uint16_t i2c_slv_addr;
};
static_assert(sizeof(DipPathAttr) == 16);
static_assert(offsetof(DipPathAttr, bayer) == 8);
static_assert(offsetof(DipPathAttr, i2c_slv_addr) == 12);

struct DipRoiCfg {
    uint8_t flag;
    MPI_RECT_POINT_S luma_roi;
    MPI_RECT_POINT_S awb_roi;
    MPI_RECT_POINT_S zone_lum_avg_roi;
};
static_assert(sizeof(DipRoiCfg) == 26);
static_assert(offsetof(DipRoiCfg, luma_roi) == 2);
static_assert(offsetof(DipRoiCfg, zone_lum_avg_roi) == 18);

struct DipAlgStatus {
    DipState dip;
    DipState ae;
    DipState awb;
    DipState front_nr;
    DipState nr;
    DipState te;
    DipState pta;
    DipState csm;
    DipState shp;
    DipState gamma;
    DipState dpc;
    DipState dms;
    DipState front_me;
    DipState me;
    DipState iso;
    DipState front_enh;
    DipState enh;
    DipState coring;
    DipState hdr;
    DipState fcs;
    DipState dhz;
};
static_assert(sizeof(DipAlgStatus) == 84);
static_assert(offsetof(DipAlgStatus, dhz) == 80);

struct DipAlgVerbose {
    uint8_t is_dip_show;
    uint8_t is_cal_show;
    uint8_t is_ae_show;
    uint8_t is_awb_show;
    uint8_t is_front_nr_show;
    uint8_t is_nr_show;
    uint8_t is_te_show;
    uint8_t is_pta_show;
    uint8_t is_csm_show;
    uint8_t is_shp_show;
    uint8_t is_gamma_show;
    uint8_t is_dpc_show;
    uint8_t is_dms_show;
    uint8_t is_front_me_show;
    uint8_t is_me_show;
    uint8_t is_iso_show;
    uint8_t is_front_enh_show;
    uint8_t is_enh_show;
    uint8_t is_coring_show;
    uint8_t is_hdr_show;
    uint8_t is_fcs_show;
    uint8_t is_dhz_show;
};
static_assert(sizeof(DipAlgVerbose) == 22);
static_assert(offsetof(DipAlgVerbose, is_dhz_show) == 21);

struct DipBayerIdx {
    uint8_t gr;
    uint8_t r;
    uint8_t b;
    uint8_t gb;
};
static_assert(sizeof(DipBayerIdx) == 4);

struct DipFeatureLock {
    uint8_t dark_light_en : 1;
};
static_assert(sizeof(DipFeatureLock) == 1);

struct DipCtx {
    uint32_t tid_run;
    uint32_t frame_cnt;
    DipSysState sys_state;
    uint8_t path_cnt;
    DipCheckFlag flag;
    DipWinInfo win_info;
    uint8_t idle_lock[24]; // a mutex of the DIP process
    DipShareInfo share;
    DipAlgNode algs[22];
    DipDevAttr dev_attr;
    DipPathAttr path_attr;
    int32_t input_path_en[4];
    DipRoiCfg roi[2];
    DipAllStat stat;
    uint8_t export_info[420]; // DipExportInfo
    uint8_t ae_lib[60];       // DipLibNode
    uint8_t awb_lib[60];      // DipLibNode
    uint8_t is_dip_run;
    DipAlgStatus status;
    DipAlgVerbose verbose;
    int32_t active_win_cnt;             // entries of flat_win_list in use; may be out of range
    int32_t flat_win_list[DIP_WIN_NUM]; // windows bound to the path: channel * 4 + window
    uint8_t is_dip_all_cfg_ready;
    DipAllCfg cfg;
    DipBayerIdx cfg_bayer_idx;
    int32_t sns_intf_fd[2];
    int32_t is_ispv2_en;
    int32_t invalid_path_warned;
    uint8_t is_exit_early_stage;
    DipFeatureLock feature_lock;
};
static_assert(sizeof(DipCtx) == 34104);
static_assert(offsetof(DipCtx, path_cnt) == 12);
static_assert(offsetof(DipCtx, flag) == 16);
static_assert(offsetof(DipCtx, win_info) == 20);
static_assert(offsetof(DipCtx, win_info.win_idx.chn) == 29);
static_assert(offsetof(DipCtx, win_info.win_idx.win) == 30);
static_assert(offsetof(DipCtx, idle_lock) == 40);
static_assert(offsetof(DipCtx, share) == 64);
static_assert(offsetof(DipCtx, algs) == 688);
static_assert(offsetof(DipCtx, dev_attr) == 1304);
static_assert(offsetof(DipCtx, path_attr) == 1312);
static_assert(offsetof(DipCtx, path_attr.bayer) == 1320);
static_assert(offsetof(DipCtx, input_path_en) == 1328);
static_assert(offsetof(DipCtx, roi) == 1344);
static_assert(offsetof(DipCtx, stat) == 1400);
static_assert(offsetof(DipCtx, export_info) == 9384);
static_assert(offsetof(DipCtx, ae_lib) == 9804);
static_assert(offsetof(DipCtx, awb_lib) == 9864);
static_assert(offsetof(DipCtx, is_dip_run) == 9924);
static_assert(offsetof(DipCtx, status) == 9928);
static_assert(offsetof(DipCtx, verbose) == 10012);
static_assert(offsetof(DipCtx, active_win_cnt) == 10036);
static_assert(offsetof(DipCtx, flat_win_list) == 10040);
static_assert(offsetof(DipCtx, is_dip_all_cfg_ready) == 10072);
static_assert(offsetof(DipCtx, cfg) == 10076);
static_assert(offsetof(DipCtx, cfg_bayer_idx) == 34080);
static_assert(offsetof(DipCtx, sns_intf_fd) == 34084);
static_assert(offsetof(DipCtx, is_ispv2_en) == 34092);
static_assert(offsetof(DipCtx, is_exit_early_stage) == 34100);
static_assert(offsetof(DipCtx, feature_lock) == 34101);

struct DipPathCtx {
    DipCtx dip_ctx;
    uint8_t dip_pfm_ctx[24];  // DipPfmCtx
    uint8_t dip_arch_ctx[44]; // DipArchCtx
    uint8_t gap_34172[4];
    uint8_t ae_ctx[1424];    // AeCtx
    uint8_t awb_ctx[2380];   // AwbCtx
    uint8_t dip_ae_ctx[600]; // DipAeCtx
    uint8_t dip_awb_ctx[60]; // DipAwbCtx
    uint8_t dbc_ctx[116];    // DipDbcCtx
    uint8_t dcc_ctx[464];    // DipDccCtx
    // crc_ctx (DipCrcCtx, an empty record of C) stands here and takes no bytes
    uint8_t lsc_ctx[56]; // DipLscCtx
    uint8_t cal_ctx[5];  // DipCalCtx
    uint8_t gap_39281[3];
    uint8_t csm_ctx[548];       // DipCsmCtx
    uint8_t gamma_ctx[404];     // DipGammaCtx
    uint8_t front_me_ctx[16];   // DipMeCtx
    uint8_t me_ctx[16];         // DipMeCtx
    uint8_t front_nr_ctx[1088]; // DipNrCtx
    uint8_t nr_ctx[1088];       // DipNrCtx
    uint8_t dpc_ctx[12];        // DipDpcCtx
    uint8_t dms_ctx[220];       // DipDmsCtx
    uint8_t pta_ctx[272];       // DipPtaCtx
    uint8_t shp_ctx[22152];     // DipShpCtx
    uint8_t gap_65100[4];
    uint8_t te_ctx[5864];        // DipTeCtx
    uint8_t iso_ctx[176];        // DipIsoCtx
    uint8_t front_enh_ctx[6804]; // DipEnhCtx
    uint8_t enh_ctx[6804];       // DipEnhCtx
    uint8_t coring_ctx[44];      // DipCoringCtx
    uint8_t hdr_ctx[22];         // DipHdrCtx
    uint8_t gap_84818[2];
    uint8_t fcs_ctx[112];  // DipFcsCtx
    uint8_t dhz_ctx[620];  // DipDhzCtx
    uint8_t stat_ctx[184]; // DipStatCtx
    DipAllStat stat;
    DipIntlCtx intl_ctx;
};
static_assert(sizeof(DipPathCtx) == 111328);
static_assert(alignof(DipPathCtx) == 8);
static_assert(offsetof(DipPathCtx, dip_pfm_ctx) == 34104);
static_assert(offsetof(DipPathCtx, dip_arch_ctx) == 34128);
static_assert(offsetof(DipPathCtx, ae_ctx) == 34176);
static_assert(offsetof(DipPathCtx, awb_ctx) == 35600);
static_assert(offsetof(DipPathCtx, dip_ae_ctx) == 37980);
static_assert(offsetof(DipPathCtx, dip_awb_ctx) == 38580);
static_assert(offsetof(DipPathCtx, dbc_ctx) == 38640);
static_assert(offsetof(DipPathCtx, dcc_ctx) == 38756);
static_assert(offsetof(DipPathCtx, lsc_ctx) == 39220);
static_assert(offsetof(DipPathCtx, cal_ctx) == 39276);
static_assert(offsetof(DipPathCtx, csm_ctx) == 39284);
static_assert(offsetof(DipPathCtx, gamma_ctx) == 39832);
static_assert(offsetof(DipPathCtx, front_me_ctx) == 40236);
static_assert(offsetof(DipPathCtx, me_ctx) == 40252);
static_assert(offsetof(DipPathCtx, front_nr_ctx) == 40268);
static_assert(offsetof(DipPathCtx, nr_ctx) == 41356);
static_assert(offsetof(DipPathCtx, dpc_ctx) == 42444);
static_assert(offsetof(DipPathCtx, dms_ctx) == 42456);
static_assert(offsetof(DipPathCtx, pta_ctx) == 42676);
static_assert(offsetof(DipPathCtx, shp_ctx) == 42948);
static_assert(offsetof(DipPathCtx, te_ctx) == 65104);
static_assert(offsetof(DipPathCtx, iso_ctx) == 70968);
static_assert(offsetof(DipPathCtx, front_enh_ctx) == 71144);
static_assert(offsetof(DipPathCtx, enh_ctx) == 77948);
static_assert(offsetof(DipPathCtx, coring_ctx) == 84752);
static_assert(offsetof(DipPathCtx, hdr_ctx) == 84796);
static_assert(offsetof(DipPathCtx, fcs_ctx) == 84820);
static_assert(offsetof(DipPathCtx, dhz_ctx) == 84932);
static_assert(offsetof(DipPathCtx, stat_ctx) == 85552);
static_assert(offsetof(DipPathCtx, stat) == 85736);
static_assert(offsetof(DipPathCtx, intl_ctx) == 93720);
