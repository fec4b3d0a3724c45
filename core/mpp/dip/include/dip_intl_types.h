// The DIP's internal interface: the extension settings of every module, as the DIP keeps them for
// one input path.
//
//   DipIntlCtx      0  +-----------------------------+
//                      | flag, ctrl                  |
//                  28  +-----------------------------+
//                      | crc, lsc                    |  calibration
//                2344  +-----------------------------+
//                      | ae, awb, pta, shp           |
//                4080  +-----------------------------+
//                      | front_me, me, dms, dpc      |
//                8932  +-----------------------------+
//                      | front_nr, nr                |
//               13868  +-----------------------------+
//                      | hdr .. rgl_stat             |
//               17508  +-----------------------------+
//                      | fsc, gmv, eis               |  opaque: nobody outside the DIP reads them
//               17604  +-----------------------------+
//
// Little-endian, every field naturally aligned. Fields whose names end in _2s hold
// two's-complement values, whatever the signedness of the field.
#pragma once

#include <cstddef>
#include <cstdint>

// One flag per module, kept by the DIP.
union DipIntlFlag {
    uint32_t val;
    struct {
        uint32_t crc : 1;
        uint32_t lsc : 1;
        uint32_t awb : 1;
        uint32_t pta : 1;
        uint32_t shp : 1;
        uint32_t front_me : 1;
        uint32_t me : 1;
        uint32_t dms : 1;
        uint32_t dpc : 1;
        uint32_t front_nr : 1;
        uint32_t nr : 1;
        uint32_t te : 1;
        uint32_t lm : 1;
        uint32_t hdr : 1;
        uint32_t hdr_ae : 1;
        uint32_t front_enh : 1;
        uint32_t enh : 1;
        uint32_t fcs : 1;
        uint32_t dhz : 1;
        uint32_t iso : 1;
        uint32_t stat : 1;
        uint32_t dri : 1;
        uint32_t daa : 1;
        uint32_t ctrl : 1;
        uint32_t ts : 1;
        uint32_t rgl_stat : 1;
        uint32_t fsc : 1;
        uint32_t gmv : 1;
        uint32_t eis : 1;
    } bit;
};
static_assert(sizeof(DipIntlFlag) == 4);

struct IntlCtrlAttr {
    int32_t is_front_enh_en;
    int32_t is_front_me_en;
    int32_t is_front_nr_en;
    int32_t is_hdr_en;
};
static_assert(sizeof(IntlCtrlAttr) == 16);
static_assert(offsetof(IntlCtrlAttr, is_hdr_en) == 12);

struct IntlLoadCtrl {
    uint8_t enable;
    uint8_t max_refresh_rate;
    uint32_t interval_us;
};
static_assert(sizeof(IntlLoadCtrl) == 8);
static_assert(offsetof(IntlLoadCtrl, max_refresh_rate) == 1);
static_assert(offsetof(IntlLoadCtrl, interval_us) == 4);

struct DipIntlCtrlParam {
    IntlCtrlAttr attr;
    IntlLoadCtrl load_ctrl;
};
static_assert(sizeof(DipIntlCtrlParam) == 24);
static_assert(offsetof(DipIntlCtrlParam, load_ctrl) == 16);

// One colour-correction curve: control points (x, y) and the slopes of the segments between them.
struct IntlCrcCurve {
    uint16_t x[9];
    uint8_t m[8];
    uint16_t y[9];
};
static_assert(sizeof(IntlCrcCurve) == 44);
static_assert(offsetof(IntlCrcCurve, m) == 18);
static_assert(offsetof(IntlCrcCurve, y) == 26);

inline constexpr int INTL_CRC_K_NUM = 8; // colour temperatures with curves of their own

struct DipIntlCrcParam {
    int32_t enable;
    int32_t k_cnt;                   // colour temperatures in use
    int32_t k_order[INTL_CRC_K_NUM]; // kelvin, in the order of the AWB attributes
    int32_t k_th;                    // threshold for updating the curves
    IntlCrcCurve g0[INTL_CRC_K_NUM];
    IntlCrcCurve r[INTL_CRC_K_NUM];
    IntlCrcCurve b[INTL_CRC_K_NUM];
    IntlCrcCurve g1[INTL_CRC_K_NUM];
};
static_assert(sizeof(DipIntlCrcParam) == 1452);
static_assert(offsetof(DipIntlCrcParam, k_order) == 8);
static_assert(offsetof(DipIntlCrcParam, k_th) == 40);
static_assert(offsetof(DipIntlCrcParam, g0) == 44);
static_assert(offsetof(DipIntlCrcParam, r) == 396);
static_assert(offsetof(DipIntlCrcParam, b) == 748);
static_assert(offsetof(DipIntlCrcParam, g1) == 1100);

struct DipIntlLscCurve {
    int32_t enable;
    uint32_t fit_y0x0[4];
    uint32_t dx_y0x0_2s[4];
    uint32_t dy_y0x0_2s[4];
    uint32_t dx2[4];
    uint32_t dy2[4];
    uint32_t dydx_2s[4];
};
static_assert(sizeof(DipIntlLscCurve) == 100);
static_assert(offsetof(DipIntlLscCurve, fit_y0x0) == 4);
static_assert(offsetof(DipIntlLscCurve, dx_y0x0_2s) == 20);
static_assert(offsetof(DipIntlLscCurve, dy_y0x0_2s) == 36);
static_assert(offsetof(DipIntlLscCurve, dx2) == 52);
static_assert(offsetof(DipIntlLscCurve, dy2) == 68);
static_assert(offsetof(DipIntlLscCurve, dydx_2s) == 84);

struct DipIntlLscTable {
    int32_t enable;
    uint8_t merge_en;
    int32_t prec;
    uint16_t gain_mod;
    uint8_t hori_start_int;
    uint32_t hori_start_frac;
    uint32_t hori_step;
    uint8_t verti_start_int;
    uint32_t verti_start_frac;
    uint32_t verti_step;
    char table_coeff_file_path[256]; // not terminated when it fills the field
};
static_assert(sizeof(DipIntlLscTable) == 292);
static_assert(offsetof(DipIntlLscTable, merge_en) == 4);
static_assert(offsetof(DipIntlLscTable, prec) == 8);
static_assert(offsetof(DipIntlLscTable, hori_start_int) == 14);
static_assert(offsetof(DipIntlLscTable, hori_start_frac) == 16);
static_assert(offsetof(DipIntlLscTable, verti_start_int) == 24);
static_assert(offsetof(DipIntlLscTable, verti_start_frac) == 28);
static_assert(offsetof(DipIntlLscTable, table_coeff_file_path) == 36);

struct DipIntlLscNlAdapt {
    int32_t enable;
    int32_t strength[16];
    int32_t diff_thd;
};
static_assert(sizeof(DipIntlLscNlAdapt) == 72);
static_assert(offsetof(DipIntlLscNlAdapt, strength) == 4);
static_assert(offsetof(DipIntlLscNlAdapt, diff_thd) == 68);

struct DipIntlLscCsr {
    DipIntlLscCurve curve;
    DipIntlLscTable table;
};
static_assert(sizeof(DipIntlLscCsr) == 392);
static_assert(offsetof(DipIntlLscCsr, table) == 100);

struct DipIntlLscParam {
    int32_t enable;
    DipIntlLscCurve curve;
    DipIntlLscTable table;
    DipIntlLscNlAdapt nl_adapt;
    int32_t force_csr;
    DipIntlLscCsr lsc_csr;
};
static_assert(sizeof(DipIntlLscParam) == 864);
static_assert(offsetof(DipIntlLscParam, curve) == 4);
static_assert(offsetof(DipIntlLscParam, table) == 104);
static_assert(offsetof(DipIntlLscParam, nl_adapt) == 396);
static_assert(offsetof(DipIntlLscParam, force_csr) == 468);
static_assert(offsetof(DipIntlLscParam, lsc_csr) == 472);

struct DipIntlAeParam {
    int32_t enable;
    int32_t max_weighted_hist_ratio;
};
static_assert(sizeof(DipIntlAeParam) == 8);
static_assert(offsetof(DipIntlAeParam, max_weighted_hist_ratio) == 4);

struct DipIntlAwbStatCsr {
    int32_t awb_rtx_y_th_max;
    int32_t awb_rtx_y_th_min;
    int32_t awb_rtx_y_m;
};
static_assert(sizeof(DipIntlAwbStatCsr) == 12);
static_assert(offsetof(DipIntlAwbStatCsr, awb_rtx_y_m) == 8);

struct DipIntlAwbParam {
    int32_t enable;
    int32_t awb_b_enable_k;
    int32_t awb_k_dist_lmt_thd;
    int32_t awb_b_enable_rtx;
    int32_t awb_valid_rtx_rgnum_thd;
    int32_t awb_valid_rtx_rgnum_thd_high;
    int32_t awb_rgl_rtx_thd_step;
    int32_t awb_rgl_rtx_min_thd_lbnd;
    int32_t awb_rgl_rtx_reset_frame;
    int32_t rtx_invalid_thd;
    int32_t awb_rtx_overflow_tolerence;
    int32_t awb_enable_rtx_wei_conf;
    int32_t awb_rtx_gain_protect_mode;
    int32_t rtx_shrink_gain_rto;
    int32_t rtx_shrink_conf_rto;
    int32_t default_rtx_minmax_range;
    int32_t awb_b_enable_gwd;
    int32_t gwd_conf_default;
    int32_t awb_gray_norm_lower_bnd_rto;
    int32_t awb_white_conf_fallback_thd;
    int32_t tolerance_overwrite;
    int32_t speed_overwrite;
    int32_t gwd_auto_luma_range_mode;
    int32_t force_csr_stat;
    DipIntlAwbStatCsr stat_csr;
};
static_assert(sizeof(DipIntlAwbParam) == 108);
static_assert(offsetof(DipIntlAwbParam, awb_rtx_overflow_tolerence) == 40);
static_assert(offsetof(DipIntlAwbParam, awb_b_enable_gwd) == 64);
static_assert(offsetof(DipIntlAwbParam, force_csr_stat) == 92);
static_assert(offsetof(DipIntlAwbParam, stat_csr) == 96);

// A tone curve: control-point values from 0 to 1024.
struct IntlPtaCurve {
    int32_t val[33];
};
static_assert(sizeof(IntlPtaCurve) == 132);

inline constexpr int INTL_PTA_CURVE_NUM = 11;

struct DipIntlPtaParam {
    int32_t enable;
    int32_t scene_curve_cnt; // curves in use
    IntlPtaCurve scene_curve[INTL_PTA_CURVE_NUM];
};
static_assert(sizeof(DipIntlPtaParam) == 1460);
static_assert(offsetof(DipIntlPtaParam, scene_curve) == 8);

struct IntlShpGainCurve {
    uint16_t x[6];
    int32_t m_2s[5];
    uint16_t y[6];
};
static_assert(sizeof(IntlShpGainCurve) == 44);
static_assert(offsetof(IntlShpGainCurve, m_2s) == 12);
static_assert(offsetof(IntlShpGainCurve, y) == 32);

struct IntlShpLumaCtrlGain {
    uint16_t x[11];
    int32_t m_2s[10];
    uint16_t y[11];
};
static_assert(sizeof(IntlShpLumaCtrlGain) == 88);
static_assert(offsetof(IntlShpLumaCtrlGain, m_2s) == 24);
static_assert(offsetof(IntlShpLumaCtrlGain, y) == 64);

struct IntlShpCfg {
    int32_t mode;
    int32_t bpf_gain_2s;
    int32_t hpf_gain_2s;
    int32_t level_gain_2s;
    int32_t soft_clip_slope;
    IntlShpGainCurve gain_curve;
    IntlShpLumaCtrlGain luma_ctrl_gain;
};
static_assert(sizeof(IntlShpCfg) == 152);
static_assert(offsetof(IntlShpCfg, soft_clip_slope) == 16);
static_assert(offsetof(IntlShpCfg, gain_curve) == 20);
static_assert(offsetof(IntlShpCfg, luma_ctrl_gain) == 64);

struct DipIntlShpParam {
    int32_t enable;
    int32_t manual_cfg_enable;
    IntlShpCfg manual_cfg;
};
static_assert(sizeof(DipIntlShpParam) == 160);
static_assert(offsetof(DipIntlShpParam, manual_cfg) == 8);
static_assert(offsetof(DipIntlShpParam, manual_cfg.gain_curve.x) == 28);
static_assert(offsetof(DipIntlShpParam, manual_cfg.gain_curve.m_2s) == 40);
static_assert(offsetof(DipIntlShpParam, manual_cfg.gain_curve.y) == 60);
static_assert(offsetof(DipIntlShpParam, manual_cfg.luma_ctrl_gain.x) == 72);
static_assert(offsetof(DipIntlShpParam, manual_cfg.luma_ctrl_gain.m_2s) == 96);
static_assert(offsetof(DipIntlShpParam, manual_cfg.luma_ctrl_gain.y) == 136);

struct DipIntlMotionStatus {
    int32_t gluey_me_frame_count_down_max;
    int32_t mv_coring_th;
    int32_t mv_low_th;
    int32_t mv_high_th;
    int32_t show_dyn_me_log;
    int32_t rc_use_isp_m2s;
    int32_t motion_level_low_th;
    int32_t motion_level_high_th;
    int32_t motion_level_max;
};
static_assert(sizeof(DipIntlMotionStatus) == 36);
static_assert(offsetof(DipIntlMotionStatus, motion_level_max) == 32);

struct DipIntlGlueyMeCsr {
    int32_t search_weak_cost_offset[16];
    int32_t search_cost_offset[16];
    int32_t refine_cost_offset[16];
    int32_t gmv_cost_offset[16];
};
static_assert(sizeof(DipIntlGlueyMeCsr) == 256);
static_assert(offsetof(DipIntlGlueyMeCsr, search_cost_offset) == 64);
static_assert(offsetof(DipIntlGlueyMeCsr, refine_cost_offset) == 128);
static_assert(offsetof(DipIntlGlueyMeCsr, gmv_cost_offset) == 192);

struct DipIntlActiveMeCsr {
    int32_t ime_penalty_gain_x_sel;
    int32_t ime_penalty_gain_y_sel;
    int32_t ime_penalty_bound_x_ini;
    int32_t ime_penalty_bound_y_ini;
    int32_t search_texture_th[16];
    int32_t texture_gain_low_th[16];
    int32_t singularity_weight[16];
    int32_t range_weight[16];
    int32_t non_zero_mv_cost_offset[16];
    int32_t texture_gain_low[16];
    int32_t gmv_cost_offset[16];
};
static_assert(sizeof(DipIntlActiveMeCsr) == 464);
static_assert(offsetof(DipIntlActiveMeCsr, search_texture_th) == 16);
static_assert(offsetof(DipIntlActiveMeCsr, texture_gain_low_th) == 80);
static_assert(offsetof(DipIntlActiveMeCsr, singularity_weight) == 144);
static_assert(offsetof(DipIntlActiveMeCsr, range_weight) == 208);
static_assert(offsetof(DipIntlActiveMeCsr, non_zero_mv_cost_offset) == 272);
static_assert(offsetof(DipIntlActiveMeCsr, texture_gain_low) == 336);
static_assert(offsetof(DipIntlActiveMeCsr, gmv_cost_offset) == 400);

// A single value for each setting, also where DipIntlMeParam has an array.
struct IntlMeCfg {
    int32_t mode;
    uint8_t scene_change;
    uint16_t gmv_x;
    uint16_t gmv_y;
    uint8_t gmv_cand_valid;
    uint32_t mode_left_mv_diff_th;
    uint32_t mode_top_left_mv_diff_th;
    uint32_t mode_top_right_mv_diff_th;
    uint8_t bottom_left_dist_x;
    uint8_t bottom_left_dist_y;
    uint8_t bottom_right_dist_x;
    uint8_t bottom_right_dist_y;
    uint8_t sw_center_mode;
    uint16_t sw_center_x_sw;
    uint16_t sw_center_y_sw;
    uint8_t sw_center_weight;
    uint8_t sw_ix;
    uint8_t sw_iy;
    uint8_t sw_ix_size;
    uint8_t sw_iy_size;
    uint8_t mvr_left_extend_dist;
    uint8_t mvr_right_extend_dist;
    uint8_t ime_penalty_gain_x_sel;
    uint8_t ime_penalty_gain_y_sel;
    uint8_t ime_penalty_bound_x_ini;
    uint8_t ime_penalty_bound_y_ini;
    uint16_t search_texture_th;
    uint16_t valid_true_mv_th;
    uint8_t matching_weight;
    uint8_t singularity_weight;
    uint8_t range_weight;
    uint8_t m_cost_quarter_gain;
    uint8_t m_cost_half_gain;
    uint16_t m_cost_frac_offset;
    uint16_t singularity_min_th;
    uint16_t singularity_max_th;
    uint16_t texture_gain_low_th;
    uint16_t texture_gain_high_th;
    uint8_t texture_gain_low;
    uint8_t texture_gain_high;
    uint8_t texture_gain_slope;
    uint16_t range_min_x_th;
    uint16_t range_max_x_th;
    uint16_t range_min_y_th;
    uint16_t range_max_y_th;
    uint16_t spatial_cost_offset;
    uint16_t temporal_cost_offset;
    uint16_t search_weak_cost_offset;
    uint16_t search_cost_offset;
    uint16_t refine_cost_offset;
    uint16_t gmv_cost_offset;
    uint16_t non_zero_mv_cost_offset;
    int32_t dynamic_me_enable;
    DipIntlMotionStatus motion_status_cfg;
    int32_t gluey_search_weak_cost_offset;
    int32_t gluey_search_cost_offset;
    int32_t gluey_refine_cost_offset;
    int32_t gluey_gmv_cost_offset;
    int32_t active_ime_penalty_gain_x_sel;
    int32_t active_ime_penalty_gain_y_sel;
    int32_t active_ime_penalty_bound_x_ini;
    int32_t active_ime_penalty_bound_y_ini;
    int32_t active_search_texture_th;
    int32_t active_texture_gain_low_th;
    int32_t active_singularity_weight;
    int32_t active_range_weight;
    int32_t active_non_zero_mv_cost_offset;
    int32_t active_texture_gain_low;
    int32_t active_gmv_cost_offset;
};
static_assert(sizeof(IntlMeCfg) == 192);

struct DipIntlMeParam {
    int32_t enable;
    int32_t enable_adapt_gmv;
    int32_t gmv_valid_thd;
    int32_t show_gmv_conf;
    int32_t scene_change;
    int32_t gmv_x;
    int32_t gmv_y;
    int32_t gmv_cand_valid;
    int32_t mode_left_mv_diff_th;
    int32_t mode_top_left_mv_diff_th;
    int32_t mode_top_right_mv_diff_th;
    int32_t bottom_left_dist_x;
    int32_t bottom_left_dist_y;
    int32_t bottom_right_dist_x;
    int32_t bottom_right_dist_y;
    int32_t sw_center_mode;
    int32_t sw_center_x_sw;
    int32_t sw_center_y_sw;
    int32_t sw_center_weight;
    int32_t sw_ix;
    int32_t sw_iy;
    int32_t sw_ix_size;
    int32_t sw_iy_size;
    int32_t mvr_left_extend_dist;
    int32_t mvr_right_extend_dist;
    int32_t m_cost_quarter_gain[16];
    int32_t m_cost_half_gain[16];
    int32_t m_cost_frac_offset[16];
    int32_t range_min_x_th;
    int32_t range_max_x_th;
    int32_t range_min_y_th;
    int32_t range_max_y_th;
    int32_t ime_penalty_gain_x_sel;
    int32_t ime_penalty_gain_y_sel;
    int32_t ime_penalty_bound_x_ini;
    int32_t ime_penalty_bound_y_ini;
    int32_t search_texture_th[16];
    int32_t singularity_min_th;
    int32_t singularity_max_th;
    int32_t texture_gain_low_th[16];
    int32_t texture_gain_high_th[16];
    int32_t texture_gain_low[16];
    int32_t texture_gain_high;
    int32_t texture_gain_slope[16];
    int32_t valid_true_mv_th[16];
    int32_t matching_weight[16];
    int32_t singularity_weight[16];
    int32_t range_weight[16];
    int32_t spatial_cost_offset;
    int32_t temporal_cost_offset;
    int32_t search_weak_cost_offset[16];
    int32_t search_cost_offset[16];
    int32_t refine_cost_offset[16];
    int32_t gmv_cost_offset[16];
    int32_t non_zero_mv_cost_offset[16];
    int32_t dynamic_me_enable;
    DipIntlMotionStatus motion_status_cfg;
    DipIntlGlueyMeCsr gluey_me_csr;
    DipIntlActiveMeCsr active_me_csr;
    int32_t manual_cfg_enable;
    IntlMeCfg manual_cfg;
};
static_assert(sizeof(DipIntlMeParam) == 2196);
static_assert(offsetof(DipIntlMeParam, mvr_right_extend_dist) == 96);
static_assert(offsetof(DipIntlMeParam, m_cost_quarter_gain) == 100);
static_assert(offsetof(DipIntlMeParam, m_cost_half_gain) == 164);
static_assert(offsetof(DipIntlMeParam, m_cost_frac_offset) == 228);
static_assert(offsetof(DipIntlMeParam, range_min_x_th) == 292);
static_assert(offsetof(DipIntlMeParam, search_texture_th) == 324);
static_assert(offsetof(DipIntlMeParam, singularity_min_th) == 388);
static_assert(offsetof(DipIntlMeParam, texture_gain_low_th) == 396);
static_assert(offsetof(DipIntlMeParam, texture_gain_high_th) == 460);
static_assert(offsetof(DipIntlMeParam, texture_gain_low) == 524);
static_assert(offsetof(DipIntlMeParam, texture_gain_high) == 588);
static_assert(offsetof(DipIntlMeParam, texture_gain_slope) == 592);
static_assert(offsetof(DipIntlMeParam, valid_true_mv_th) == 656);
static_assert(offsetof(DipIntlMeParam, matching_weight) == 720);
static_assert(offsetof(DipIntlMeParam, singularity_weight) == 784);
static_assert(offsetof(DipIntlMeParam, range_weight) == 848);
static_assert(offsetof(DipIntlMeParam, spatial_cost_offset) == 912);
static_assert(offsetof(DipIntlMeParam, search_weak_cost_offset) == 920);
static_assert(offsetof(DipIntlMeParam, search_cost_offset) == 984);
static_assert(offsetof(DipIntlMeParam, refine_cost_offset) == 1048);
static_assert(offsetof(DipIntlMeParam, gmv_cost_offset) == 1112);
static_assert(offsetof(DipIntlMeParam, non_zero_mv_cost_offset) == 1176);
static_assert(offsetof(DipIntlMeParam, dynamic_me_enable) == 1240);
static_assert(offsetof(DipIntlMeParam, motion_status_cfg) == 1244);
static_assert(offsetof(DipIntlMeParam, gluey_me_csr) == 1280);
static_assert(offsetof(DipIntlMeParam, active_me_csr) == 1536);
static_assert(offsetof(DipIntlMeParam, manual_cfg_enable) == 2000);
static_assert(offsetof(DipIntlMeParam, manual_cfg) == 2004);
static_assert(offsetof(DipIntlMeParam, manual_cfg.scene_change) == 2008);
static_assert(offsetof(DipIntlMeParam, manual_cfg.gmv_x) == 2010);
static_assert(offsetof(DipIntlMeParam, manual_cfg.gmv_cand_valid) == 2014);
static_assert(offsetof(DipIntlMeParam, manual_cfg.mode_left_mv_diff_th) == 2016);
static_assert(offsetof(DipIntlMeParam, manual_cfg.bottom_left_dist_x) == 2028);
static_assert(offsetof(DipIntlMeParam, manual_cfg.sw_center_mode) == 2032);
static_assert(offsetof(DipIntlMeParam, manual_cfg.sw_center_x_sw) == 2034);
static_assert(offsetof(DipIntlMeParam, manual_cfg.sw_center_weight) == 2038);
static_assert(offsetof(DipIntlMeParam, manual_cfg.ime_penalty_bound_y_ini) == 2048);
static_assert(offsetof(DipIntlMeParam, manual_cfg.search_texture_th) == 2050);
static_assert(offsetof(DipIntlMeParam, manual_cfg.matching_weight) == 2054);
static_assert(offsetof(DipIntlMeParam, manual_cfg.m_cost_half_gain) == 2058);
static_assert(offsetof(DipIntlMeParam, manual_cfg.m_cost_frac_offset) == 2060);
static_assert(offsetof(DipIntlMeParam, manual_cfg.texture_gain_low) == 2070);
static_assert(offsetof(DipIntlMeParam, manual_cfg.range_min_x_th) == 2074);
static_assert(offsetof(DipIntlMeParam, manual_cfg.non_zero_mv_cost_offset) == 2094);
static_assert(offsetof(DipIntlMeParam, manual_cfg.dynamic_me_enable) == 2096);
static_assert(offsetof(DipIntlMeParam, manual_cfg.motion_status_cfg) == 2100);
static_assert(offsetof(DipIntlMeParam, manual_cfg.gluey_search_weak_cost_offset) == 2136);
static_assert(offsetof(DipIntlMeParam, manual_cfg.active_gmv_cost_offset) == 2192);

struct DipIntlDmsCsr {
    int32_t mode;
    int32_t g_var_gain;
    int32_t fcs_threshold;
    int32_t inter_conf_slope;
    int32_t fcs_offset;
    int32_t g_at_m_inter_ratio;
    int32_t m_at_m_inter_ratio;
    int32_t m_at_g_inter_ratio;
    int32_t g_at_m_soft_clip_slope;
    int32_t m_at_m_soft_clip_slope;
    int32_t m_at_g_soft_clip_slope;
    int32_t m_at_g_gradient_src_ratio;
};
static_assert(sizeof(DipIntlDmsCsr) == 48);
static_assert(offsetof(DipIntlDmsCsr, m_at_g_gradient_src_ratio) == 44);

struct DipIntlDmsParam {
    int32_t enable;
    int32_t force_csr;
    DipIntlDmsCsr csr;
};
static_assert(sizeof(DipIntlDmsParam) == 56);
static_assert(offsetof(DipIntlDmsParam, csr) == 8);

struct DipIntlBspDpcCsr {
    int32_t dpd_enable;
    int32_t dpd_g_pattern_mode;
    int32_t dpd_pix_num_mode;
    int32_t dpd_diff_ratio;
    int32_t dpd_avg_ratio;
    int32_t dpd_edge_diff_ratio;
    int32_t dpd_edge_avg_ratio;
    int32_t dpd_edge_m;
    int32_t dpc_enable;
    int32_t dpc_dir_enable;
    int32_t dpc_dir_th_ratio;
    int32_t dpc_dir_str_m;
};
static_assert(sizeof(DipIntlBspDpcCsr) == 48);
static_assert(offsetof(DipIntlBspDpcCsr, dpc_dir_str_m) == 44);

struct DipIntlBspDpcParam {
    int32_t enable;
    int32_t dpd_enable;
    int32_t dpd_g_pattern_mode;
    int32_t dpd_pix_num_mode;
    int32_t dpd_diff_ratio[16];
    int32_t dpd_avg_ratio[16];
    int32_t dpd_edge_diff_ratio[16];
    int32_t dpd_edge_avg_ratio[16];
    int32_t dpd_edge_m;
    int32_t dpc_enable;
    int32_t dpc_dir_enable;
    int32_t dpc_dir_th_ratio[16];
    int32_t dpc_dir_str_m;
    int32_t force_csr;
    DipIntlBspDpcCsr csr;
};
static_assert(sizeof(DipIntlBspDpcParam) == 404);
static_assert(offsetof(DipIntlBspDpcParam, dpd_diff_ratio) == 16);
static_assert(offsetof(DipIntlBspDpcParam, dpd_avg_ratio) == 80);
static_assert(offsetof(DipIntlBspDpcParam, dpd_edge_diff_ratio) == 144);
static_assert(offsetof(DipIntlBspDpcParam, dpd_edge_avg_ratio) == 208);
static_assert(offsetof(DipIntlBspDpcParam, dpd_edge_m) == 272);
static_assert(offsetof(DipIntlBspDpcParam, dpc_dir_th_ratio) == 284);
static_assert(offsetof(DipIntlBspDpcParam, dpc_dir_str_m) == 348);
static_assert(offsetof(DipIntlBspDpcParam, csr) == 356);

struct IntlNrAuto {
    int32_t y_level_3d[16];
    int32_t c_level_3d[16];
    int32_t y_level_2d[16];
    int32_t c_level_2d[16];
    int32_t fss_y_level_3d[16];
};
static_assert(sizeof(IntlNrAuto) == 320);
static_assert(offsetof(IntlNrAuto, c_level_3d) == 64);
static_assert(offsetof(IntlNrAuto, y_level_2d) == 128);
static_assert(offsetof(IntlNrAuto, c_level_2d) == 192);
static_assert(offsetof(IntlNrAuto, fss_y_level_3d) == 256);

struct IntlNrManual {
    int32_t y_level_3d;
    int32_t c_level_3d;
    int32_t y_level_2d;
    int32_t c_level_2d;
    int32_t fss_y_level_3d;
};
static_assert(sizeof(IntlNrManual) == 20);
static_assert(offsetof(IntlNrManual, fss_y_level_3d) == 16);

struct IntlFrontNrAttr {
    int32_t mode;
    IntlNrAuto nr_auto;
    IntlNrManual nr_manual;
    int32_t motion_comp;
    int32_t trail_suppress;
    int32_t ghost_remove;
    int32_t ma_y_strength;
    int32_t mc_y_strength;
    int32_t ma_c_strength;
    int32_t ratio_3d;
    int32_t mc_y_level_offset;
    int32_t me_frame_fallback_en;
    int32_t fss_ratio_min;
    int32_t fss_ratio_max;
    int32_t lut_type;
};
static_assert(sizeof(IntlFrontNrAttr) == 392);
static_assert(offsetof(IntlFrontNrAttr, nr_auto) == 4);
static_assert(offsetof(IntlFrontNrAttr, nr_manual) == 324);
static_assert(offsetof(IntlFrontNrAttr, motion_comp) == 344);
static_assert(offsetof(IntlFrontNrAttr, lut_type) == 388);

// A single value for each setting, a byte each.
struct IntlNrCfg {
    uint8_t mode;
    uint8_t ma_y_step;
    uint8_t ma_y_lut_i[9];
    uint8_t ma_y_lut_o[9];
    uint8_t ma_y_lp_dyn_gain_th_min;
    uint8_t ma_y_lp_dyn_gain_th_max;
    uint8_t ma_y_lp_dyn_gain_min;
    uint8_t ma_y_lp_dyn_gain_max;
    uint8_t ma_y_lp_diff_gain_th_min;
    uint8_t ma_y_lp_diff_gain_th_range;
    uint8_t ma_y_lp_diff_gain_min;
    uint8_t ma_y_lp_diff_gain_max;
    uint8_t mc_y_step;
    uint8_t mc_y_lut_i[9];
    uint8_t mc_y_lut_o[9];
    uint8_t mc_y_lp_dyn_gain_th_min;
    uint8_t mc_y_lp_dyn_gain_th_max;
    uint8_t mc_y_lp_dyn_gain_min;
    uint8_t mc_y_lp_dyn_gain_max;
    uint8_t mc_y_lp_diff_gain_th_min;
    uint8_t mc_y_lp_diff_gain_th_range;
    uint8_t mc_y_lp_diff_gain_min;
    uint8_t mc_y_lp_diff_gain_max;
    uint8_t mc_y_base_ratio;
    uint8_t mc_y_base_dyn;
    uint8_t ma_c_step;
    uint8_t ma_c_lut_i[9];
    uint8_t ma_c_lut_o[9];
    uint8_t ma_c_ref;
    uint8_t ma_c_weight_y_gain_th_min;
    uint8_t ma_c_weight_y_gain_th_max;
    uint8_t ma_c_weight_y_gain_min;
    uint8_t ma_c_weight_y_gain_max;
    uint8_t fir_kernel;
    uint8_t fir_weight_y;
    uint8_t fir_weight_c;
    uint8_t iir_confidence;
    uint8_t iir_alpha_y_gain;
    uint8_t iir_alpha_c_gain;
};
static_assert(sizeof(IntlNrCfg) == 87);
static_assert(offsetof(IntlNrCfg, ma_y_lut_i) == 2);
static_assert(offsetof(IntlNrCfg, ma_y_lut_o) == 11);
static_assert(offsetof(IntlNrCfg, ma_y_lp_dyn_gain_th_min) == 20);
static_assert(offsetof(IntlNrCfg, mc_y_lut_i) == 29);
static_assert(offsetof(IntlNrCfg, mc_y_lut_o) == 38);
static_assert(offsetof(IntlNrCfg, mc_y_lp_dyn_gain_th_min) == 47);
static_assert(offsetof(IntlNrCfg, ma_c_lut_i) == 58);
static_assert(offsetof(IntlNrCfg, ma_c_lut_o) == 67);
static_assert(offsetof(IntlNrCfg, ma_c_ref) == 76);
static_assert(offsetof(IntlNrCfg, iir_alpha_c_gain) == 86);

// What the front noise reduction and the noise reduction have in common.
struct IntlNrBody {
    int32_t enable;
    int32_t lut_ma_y_lut_o[9];
    int32_t lut_mc_y_lut_o[9];
    int32_t lut_ma_c_lut_o[9];
    int32_t is_lut_i_en;
    int32_t lut_i_cnt; // rows of the tables below in use
    int32_t lut_ma_y_lut_i[17][9];
    int32_t lut_mc_y_lut_i[17][9];
    int32_t lut_ma_c_lut_i[17][9];
    int32_t enable_ctrl_mc_y_dyn;
    int32_t mc_y_dyn_gain_th_min[11];
    int32_t mc_y_dyn_gain_th_max[11];
    int32_t mc_y_dyn_gain_min[11];
    int32_t mc_y_dyn_gain_max[11];
    int32_t mc_y_base_dyn[11];
    int32_t manual_cfg_enable;
    IntlNrCfg manual_cfg;
};
static_assert(sizeof(IntlNrBody) == 2272);
static_assert(offsetof(IntlNrBody, lut_ma_y_lut_o) == 4);
static_assert(offsetof(IntlNrBody, lut_mc_y_lut_o) == 40);
static_assert(offsetof(IntlNrBody, lut_ma_c_lut_o) == 76);
static_assert(offsetof(IntlNrBody, is_lut_i_en) == 112);
static_assert(offsetof(IntlNrBody, lut_ma_y_lut_i) == 120);
static_assert(offsetof(IntlNrBody, lut_mc_y_lut_i) == 732);
static_assert(offsetof(IntlNrBody, lut_ma_c_lut_i) == 1344);
static_assert(offsetof(IntlNrBody, enable_ctrl_mc_y_dyn) == 1956);
static_assert(offsetof(IntlNrBody, mc_y_dyn_gain_th_min) == 1960);
static_assert(offsetof(IntlNrBody, mc_y_dyn_gain_th_max) == 2004);
static_assert(offsetof(IntlNrBody, mc_y_dyn_gain_min) == 2048);
static_assert(offsetof(IntlNrBody, mc_y_dyn_gain_max) == 2092);
static_assert(offsetof(IntlNrBody, mc_y_base_dyn) == 2136);
static_assert(offsetof(IntlNrBody, manual_cfg_enable) == 2180);
static_assert(offsetof(IntlNrBody, manual_cfg) == 2184);

struct DipIntlFrontNrParam {
    IntlFrontNrAttr attr;
    IntlNrBody body;
};
static_assert(sizeof(DipIntlFrontNrParam) == 2664);
static_assert(offsetof(DipIntlFrontNrParam, body) == 392);
static_assert(offsetof(DipIntlFrontNrParam, body.manual_cfg) == 2576);

struct DipIntlNrParam {
    IntlNrBody body;
};
static_assert(sizeof(DipIntlNrParam) == 2272);

struct IntlHdrCfg {
    int32_t hdr_mode;
    int32_t anti_gma_long_exp_mode;
    int32_t anti_gma_short_exp_mode;
    uint8_t exp_long_early;
    uint16_t exp_ratio;
    uint16_t exp_ratio_inv;
    uint16_t se_exp_ratio_min_int;
    uint16_t se_weight_th_min;
    uint8_t se_weight_slope;
    uint8_t se_weight_min;
    uint8_t se_weight_max;
    uint16_t le_weight_th_max;
    uint8_t le_weight_slope;
    uint8_t le_weight_min;
    uint8_t le_weight_max;
    uint16_t local_fb_th;
    uint8_t local_fb_slope;
    uint8_t local_fb_min;
    uint8_t local_fb_max;
    uint8_t frame_fb_strength;
    uint8_t fb_target;
    uint8_t fb_alpha;
    uint8_t mismatch_var_gain_2s;
    int32_t gma_mode;
};
static_assert(sizeof(IntlHdrCfg) == 48);

struct DipIntlHdrParam {
    int32_t enable;
    int32_t manual_cfg_enable;
    IntlHdrCfg manual_cfg;
};
static_assert(sizeof(DipIntlHdrParam) == 56);
static_assert(offsetof(DipIntlHdrParam, manual_cfg) == 8);
static_assert(offsetof(DipIntlHdrParam, manual_cfg.exp_long_early) == 20);
static_assert(offsetof(DipIntlHdrParam, manual_cfg.exp_ratio) == 22);
static_assert(offsetof(DipIntlHdrParam, manual_cfg.se_weight_max) == 32);
static_assert(offsetof(DipIntlHdrParam, manual_cfg.le_weight_th_max) == 34);
static_assert(offsetof(DipIntlHdrParam, manual_cfg.le_weight_max) == 38);
static_assert(offsetof(DipIntlHdrParam, manual_cfg.local_fb_th) == 40);
static_assert(offsetof(DipIntlHdrParam, manual_cfg.mismatch_var_gain_2s) == 48);
static_assert(offsetof(DipIntlHdrParam, manual_cfg.gma_mode) == 52);

struct IntlHdrAeEprManual {
    int32_t enable;
    uint16_t epr_val; // exposure ratio
};
static_assert(sizeof(IntlHdrAeEprManual) == 8);
static_assert(offsetof(IntlHdrAeEprManual, epr_val) == 4);

struct DipIntlHdrAeParam {
    int32_t enable;
    IntlHdrAeEprManual epr_manual;
    int32_t show_time_gain;
};
static_assert(sizeof(DipIntlHdrAeParam) == 16);
static_assert(offsetof(DipIntlHdrAeParam, epr_manual) == 4);
static_assert(offsetof(DipIntlHdrAeParam, epr_manual.epr_val) == 8);
static_assert(offsetof(DipIntlHdrAeParam, show_time_gain) == 12);

struct DipIntlTeParam {
    int32_t enable;
    int32_t is_evtable_en;
    int32_t force_btc_using_nc;
    int32_t dark_enhance_range_en;
    int32_t dark_enhance_range[16];
    int32_t iir_mode;
    int32_t iir_weight[2];
    int32_t hist_gamma_en;
    int32_t pure_dark_en;
    int32_t pure_dark_rto;
    int32_t pure_dark_limit;
    int32_t max_str_determination_swtich;
};
static_assert(sizeof(DipIntlTeParam) == 112);
static_assert(offsetof(DipIntlTeParam, dark_enhance_range) == 16);
static_assert(offsetof(DipIntlTeParam, iir_mode) == 80);
static_assert(offsetof(DipIntlTeParam, iir_weight) == 84);
static_assert(offsetof(DipIntlTeParam, hist_gamma_en) == 92);
static_assert(offsetof(DipIntlTeParam, max_str_determination_swtich) == 108);

struct IntlEnhAuto {
    int32_t y_txr_strength[16];
    int32_t y_txr_edge[16];
    int32_t y_txr_detail[16];
    int32_t y_zone_strength[16];
    int32_t y_zone_edge[16];
    int32_t y_zone_detail[16];
    int32_t y_zone_radius[16];
    int32_t y_zone_weight[16];
    int32_t c_radius[16];
    int32_t c_strength[16];
    int32_t c_edge[16];
};
static_assert(sizeof(IntlEnhAuto) == 704);
static_assert(offsetof(IntlEnhAuto, y_txr_edge) == 64);
static_assert(offsetof(IntlEnhAuto, y_txr_detail) == 128);
static_assert(offsetof(IntlEnhAuto, y_zone_strength) == 192);
static_assert(offsetof(IntlEnhAuto, y_zone_edge) == 256);
static_assert(offsetof(IntlEnhAuto, y_zone_detail) == 320);
static_assert(offsetof(IntlEnhAuto, y_zone_radius) == 384);
static_assert(offsetof(IntlEnhAuto, y_zone_weight) == 448);
static_assert(offsetof(IntlEnhAuto, c_radius) == 512);
static_assert(offsetof(IntlEnhAuto, c_strength) == 576);
static_assert(offsetof(IntlEnhAuto, c_edge) == 640);

struct IntlEnhManual {
    int32_t y_txr_strength;
    int32_t y_txr_edge;
    int32_t y_txr_detail;
    int32_t y_zone_strength;
    int32_t y_zone_edge;
    int32_t y_zone_detail;
    int32_t y_zone_radius;
    int32_t y_zone_weight;
    int32_t c_radius;
    int32_t c_strength;
    int32_t c_edge;
};
static_assert(sizeof(IntlEnhManual) == 44);
static_assert(offsetof(IntlEnhManual, c_edge) == 40);

struct IntlFrontEnhAttr {
    int32_t mode;
    IntlEnhAuto enh_auto;
    IntlEnhManual enh_manual;
};
static_assert(sizeof(IntlFrontEnhAttr) == 752);
static_assert(offsetof(IntlFrontEnhAttr, enh_auto) == 4);
static_assert(offsetof(IntlFrontEnhAttr, enh_manual) == 708);

struct DipIntlFrontEnhParam {
    IntlFrontEnhAttr attr;
};
static_assert(sizeof(DipIntlFrontEnhParam) == 752);

struct DipIntlEnhParam {
    int32_t enable;
    int32_t blend_x[9];
    int32_t blend_m[9];
    int32_t motion_adaptive_en;
    int32_t ma_conf_high_th;
    int32_t ma_conf_low_th;
    int32_t ma_blur_y_zone_detail[16];
    int32_t ma_blur_y_zone_strength[16];
};
static_assert(sizeof(DipIntlEnhParam) == 216);
static_assert(offsetof(DipIntlEnhParam, blend_x) == 4);
static_assert(offsetof(DipIntlEnhParam, blend_m) == 40);
static_assert(offsetof(DipIntlEnhParam, motion_adaptive_en) == 76);
static_assert(offsetof(DipIntlEnhParam, ma_blur_y_zone_detail) == 88);
static_assert(offsetof(DipIntlEnhParam, ma_blur_y_zone_strength) == 152);

struct IntlFcsCfg {
    int32_t mode;
    int32_t trans_diff_level_max;
    int32_t trans_gain;
    int32_t grid_cnt_th_high;
    int32_t grid_cnt_th_low;
    int32_t grid_cnt_raw_th;
    int32_t grid_trans_level_th;
    int32_t grid_trans_round_bit_high;
    int32_t grid_trans_round_bit_low;
    int32_t color_diff_self_th;
    int32_t color_diff_neighbor_th;
    int32_t color_coring_th;
    int32_t corr_correction_gain;
    int32_t corr_target_bg_ratio;
    int32_t corr_target_rg_ratio;
};
static_assert(sizeof(IntlFcsCfg) == 60);
static_assert(offsetof(IntlFcsCfg, corr_target_rg_ratio) == 56);

// Three automatic mapping tables: bins, and the values of each parameter in these bins.
struct DipIntlFcsParam {
    int32_t enable;
    int32_t offset_level_bin[5];
    int32_t trans_diff_level_max_val[5];
    int32_t trans_gain_val[5];
    int32_t threshold_level_bin[5];
    int32_t grid_cnt_th_high_val[5];
    int32_t grid_cnt_th_low_val[5];
    int32_t grid_cnt_raw_th_val[5];
    int32_t grid_trans_level_th_val[5];
    int32_t grid_trans_round_bit_high_val[5];
    int32_t grid_trans_round_bit_low_val[5];
    int32_t color_diff_self_th_val[5];
    int32_t color_diff_neighbor_th_val[5];
    int32_t color_coring_th_val[5];
    int32_t strength_level_bin[5];
    int32_t corr_correction_gain_val[5];
    int32_t corr_target_bg_ratio_val[5];
    int32_t corr_target_rg_ratio_val[5];
    int32_t manual_cfg_enable;
    IntlFcsCfg manual_cfg;
};
static_assert(sizeof(DipIntlFcsParam) == 408);
static_assert(offsetof(DipIntlFcsParam, offset_level_bin) == 4);
static_assert(offsetof(DipIntlFcsParam, trans_diff_level_max_val) == 24);
static_assert(offsetof(DipIntlFcsParam, trans_gain_val) == 44);
static_assert(offsetof(DipIntlFcsParam, threshold_level_bin) == 64);
static_assert(offsetof(DipIntlFcsParam, grid_cnt_th_high_val) == 84);
static_assert(offsetof(DipIntlFcsParam, grid_cnt_th_low_val) == 104);
static_assert(offsetof(DipIntlFcsParam, grid_cnt_raw_th_val) == 124);
static_assert(offsetof(DipIntlFcsParam, grid_trans_level_th_val) == 144);
static_assert(offsetof(DipIntlFcsParam, grid_trans_round_bit_high_val) == 164);
static_assert(offsetof(DipIntlFcsParam, grid_trans_round_bit_low_val) == 184);
static_assert(offsetof(DipIntlFcsParam, color_diff_self_th_val) == 204);
static_assert(offsetof(DipIntlFcsParam, color_diff_neighbor_th_val) == 224);
static_assert(offsetof(DipIntlFcsParam, color_coring_th_val) == 244);
static_assert(offsetof(DipIntlFcsParam, strength_level_bin) == 264);
static_assert(offsetof(DipIntlFcsParam, corr_correction_gain_val) == 284);
static_assert(offsetof(DipIntlFcsParam, corr_target_bg_ratio_val) == 304);
static_assert(offsetof(DipIntlFcsParam, corr_target_rg_ratio_val) == 324);
static_assert(offsetof(DipIntlFcsParam, manual_cfg_enable) == 344);
static_assert(offsetof(DipIntlFcsParam, manual_cfg) == 348);

// Local contrast enhancement.
struct IntlLceAttr {
    int32_t y_gain_max[16];
    int32_t c_gain_max[16];
    int32_t y_dc;
    int32_t offset_ratio;
    int32_t strength[16];
    int32_t nl_low_th;
    int32_t nl_high_th;
    int32_t curve_y_min[16];
    int32_t curve_y_max[16];
    int32_t curve_upper_gain[16];
    int32_t curve_lower_gain[16];
    int32_t rgl_weight[8][8];
};
static_assert(sizeof(IntlLceAttr) == 720);
static_assert(offsetof(IntlLceAttr, c_gain_max) == 64);
static_assert(offsetof(IntlLceAttr, y_dc) == 128);
static_assert(offsetof(IntlLceAttr, strength) == 136);
static_assert(offsetof(IntlLceAttr, nl_low_th) == 200);
static_assert(offsetof(IntlLceAttr, curve_y_min) == 208);
static_assert(offsetof(IntlLceAttr, curve_y_max) == 272);
static_assert(offsetof(IntlLceAttr, curve_upper_gain) == 336);
static_assert(offsetof(IntlLceAttr, curve_lower_gain) == 400);
static_assert(offsetof(IntlLceAttr, rgl_weight) == 464);

struct IntlDhzCfg {
    int32_t strength;
    int32_t y_gain_max;
    int32_t c_gain_max;
    int32_t y_dc;
    int32_t u_dc;
    int32_t v_dc;
    int32_t rgl_gain[8][8];
    int32_t rgl_offset[8][8];
};
static_assert(sizeof(IntlDhzCfg) == 536);
static_assert(offsetof(IntlDhzCfg, v_dc) == 20);
static_assert(offsetof(IntlDhzCfg, rgl_gain) == 24);
static_assert(offsetof(IntlDhzCfg, rgl_offset) == 280);

struct DipIntlDhzParam {
    int32_t enable;
    int32_t brightest_rgl_num;
    int32_t luma_min_smooth_th;
    int32_t overexposed_th;
    int32_t offset_th;
    int32_t y_offset_gain;
    int32_t y_offset_slope;
    int32_t alpha_th_slope;
    int32_t alpha_compare_slope;
    int32_t alpha_compare_ratio;
    int32_t luma_dhz_confidence_max;
    int32_t luma_dhz_confidence_th;
    int32_t luma_dhz_confidence_ratio;
    int32_t luma_dhz_coring_range;
    int32_t luma_dhz_frame_step;
    int32_t luma_dhz_level_max;
    int32_t luma_dhz_level_ratio;
    int32_t luma_dhz_level_th;
    int32_t ae_dhz_confidence_max;
    int32_t ae_dhz_iir_alpha;
    int32_t ae_dhz_iir_norm;
    int32_t ae_dhz_exposure_upper_th;
    int32_t ae_dhz_exposure_lower_th;
    int32_t rgl_avg_lmm_th;
    int32_t variance_dhz_confidence_lmm_th1;
    int32_t variance_dhz_confidence_lmm_th2;
    int32_t variance_dhz_confidence_max;
    int32_t lce_en;
    IntlLceAttr lce;
    int32_t manual_cfg_enable;
    IntlDhzCfg manual_cfg;
};
static_assert(sizeof(DipIntlDhzParam) == 1372);
static_assert(offsetof(DipIntlDhzParam, brightest_rgl_num) == 4);
static_assert(offsetof(DipIntlDhzParam, variance_dhz_confidence_max) == 104);
static_assert(offsetof(DipIntlDhzParam, lce_en) == 108);
static_assert(offsetof(DipIntlDhzParam, lce) == 112);
static_assert(offsetof(DipIntlDhzParam, lce.rgl_weight) == 576);
static_assert(offsetof(DipIntlDhzParam, manual_cfg_enable) == 832);
static_assert(offsetof(DipIntlDhzParam, manual_cfg) == 836);
static_assert(offsetof(DipIntlDhzParam, manual_cfg.rgl_gain) == 860);
static_assert(offsetof(DipIntlDhzParam, manual_cfg.rgl_offset) == 1116);

struct IntlFnrIsoLut {
    int32_t x[13];
    int32_t y[13];
};
static_assert(sizeof(IntlFnrIsoLut) == 104);
static_assert(offsetof(IntlFnrIsoLut, y) == 52);

struct IntlFnrIso {
    int32_t enable;
    int32_t mode;
    IntlFnrIsoLut fnr_iso_auto;
    int32_t fnr_iso_manual;
};
static_assert(sizeof(IntlFnrIso) == 116);
static_assert(offsetof(IntlFnrIso, fnr_iso_auto) == 8);
static_assert(offsetof(IntlFnrIso, fnr_iso_manual) == 112);

struct DipIntlIsoParam {
    int32_t enable;
    int32_t iso_ver2_noise_level_bin[16];
    IntlFnrIso fnr_iso;
};
static_assert(sizeof(DipIntlIsoParam) == 184);
static_assert(offsetof(DipIntlIsoParam, iso_ver2_noise_level_bin) == 4);
static_assert(offsetof(DipIntlIsoParam, fnr_iso) == 68);

struct DipIntlStatWbCsr {
    int32_t awb_gwd_y_th_max;
    int32_t awb_gwd_y_th_min;
    int32_t awb_gwd_y_m;
    int32_t awb_gwd_rg[5];
    int32_t awb_gwd_bg[5];
    int32_t awb_gwd_a_2s[4];
    int32_t awb_gwd_b_2s[4];
    int32_t awb_gwd_c_2s[4];
    int32_t awb_gwd_rto_bg_th[4];
    int32_t awb_gwd_rto_bg_m_2s[4];
};
static_assert(sizeof(DipIntlStatWbCsr) == 132);
static_assert(offsetof(DipIntlStatWbCsr, awb_gwd_rg) == 12);
static_assert(offsetof(DipIntlStatWbCsr, awb_gwd_bg) == 32);
static_assert(offsetof(DipIntlStatWbCsr, awb_gwd_a_2s) == 52);
static_assert(offsetof(DipIntlStatWbCsr, awb_gwd_b_2s) == 68);
static_assert(offsetof(DipIntlStatWbCsr, awb_gwd_c_2s) == 84);
static_assert(offsetof(DipIntlStatWbCsr, awb_gwd_rto_bg_th) == 100);
static_assert(offsetof(DipIntlStatWbCsr, awb_gwd_rto_bg_m_2s) == 116);

struct DipIntlStatParam {
    int32_t enable;
    int32_t fixed_gwd_lum_range_en;
    int32_t fixed_gwd_lum_range_noise_level_th;
    int32_t fixed_gwd_lum_max;
    int32_t fixed_gwd_lum_min;
    int32_t auto_rb_rgn_slope_en;
    int32_t auto_rb_rgn_slope[4][16];
    int32_t force_csr;
    DipIntlStatWbCsr wb_csr;
};
static_assert(sizeof(DipIntlStatParam) == 416);
static_assert(offsetof(DipIntlStatParam, auto_rb_rgn_slope) == 24);
static_assert(offsetof(DipIntlStatParam, force_csr) == 280);
static_assert(offsetof(DipIntlStatParam, wb_csr) == 284);

struct DipIntlDaaParam {
    int32_t enable;
    int32_t qp_upper_offset;
    int32_t qp_lower_offset;
    int32_t mode_te;
    int32_t mode_dpc;
    int32_t mode_dms;
    int32_t mode_fcs;
    int32_t mode_csm;
    int32_t mode_enh;
    int32_t mode_shp;
    int32_t mode_dhz;
    int32_t mode_nr;
    int32_t mode_coring;
};
static_assert(sizeof(DipIntlDaaParam) == 52);
static_assert(offsetof(DipIntlDaaParam, mode_coring) == 48);

struct DipIntlTrailSuppressParam {
    uint8_t enable;
    uint8_t log_enable;
    int16_t log_frame_cnt;
    uint32_t iso_low;
    uint32_t iso_high;
    uint8_t mode;
    uint8_t csr_mode;
    uint16_t ctrl_enable;
    int16_t nr_lut_adj[9];
    uint8_t curve_protect;
    uint8_t lp_adj_enable;
    uint8_t nr_lp_adj[4];
    uint8_t period;
    uint8_t effect_frame;
};
static_assert(sizeof(DipIntlTrailSuppressParam) == 44);
static_assert(offsetof(DipIntlTrailSuppressParam, log_frame_cnt) == 2);
static_assert(offsetof(DipIntlTrailSuppressParam, iso_low) == 4);
static_assert(offsetof(DipIntlTrailSuppressParam, mode) == 12);
static_assert(offsetof(DipIntlTrailSuppressParam, ctrl_enable) == 14);
static_assert(offsetof(DipIntlTrailSuppressParam, nr_lut_adj) == 16);
static_assert(offsetof(DipIntlTrailSuppressParam, curve_protect) == 34);
static_assert(offsetof(DipIntlTrailSuppressParam, nr_lp_adj) == 36);
static_assert(offsetof(DipIntlTrailSuppressParam, effect_frame) == 41);

struct DipIntlRegionalStatParam {
    uint8_t enable;
    uint8_t log_enable;
    int16_t log_frame;
    uint8_t enable_complex_norm;
    uint8_t enable_te_norm;
    uint8_t enable_gamma_norm;
    uint8_t enable_luma_suppression;
    uint8_t luma_thd_low;
    uint8_t luma_thd_high;
    uint16_t luma_suppress_ratio;
};
static_assert(sizeof(DipIntlRegionalStatParam) == 12);
static_assert(offsetof(DipIntlRegionalStatParam, log_frame) == 2);
static_assert(offsetof(DipIntlRegionalStatParam, enable_complex_norm) == 4);
static_assert(offsetof(DipIntlRegionalStatParam, luma_suppress_ratio) == 10);

struct DipIntlCtx {
    DipIntlFlag flag;
    DipIntlCtrlParam ctrl;
    DipIntlCrcParam crc;
    DipIntlLscParam lsc;
    DipIntlAeParam ae;
    DipIntlAwbParam awb;
    DipIntlPtaParam pta;
    DipIntlShpParam shp;
    DipIntlMeParam front_me;
    DipIntlMeParam me;
    DipIntlDmsParam dms;
    DipIntlBspDpcParam dpc;
    DipIntlFrontNrParam front_nr;
    DipIntlNrParam nr;
    DipIntlHdrParam hdr;
    DipIntlHdrAeParam hdr_ae;
    DipIntlTeParam te;
    DipIntlFrontEnhParam front_enh;
    DipIntlEnhParam enh;
    DipIntlFcsParam fcs;
    DipIntlDhzParam dhz;
    DipIntlIsoParam iso;
    DipIntlStatParam stat;
    DipIntlDaaParam daa;
    DipIntlTrailSuppressParam ts;
    DipIntlRegionalStatParam rgl_stat;
    uint8_t fsc[2];  // DipIntlFscParam
    uint8_t gmv[78]; // DipIntlGmvParam
    uint8_t eis[14]; // DipIntlEisParam
};
static_assert(sizeof(DipIntlCtx) == 17604);
static_assert(offsetof(DipIntlCtx, ctrl) == 4);
static_assert(offsetof(DipIntlCtx, crc) == 28);
static_assert(offsetof(DipIntlCtx, lsc) == 1480);
static_assert(offsetof(DipIntlCtx, ae) == 2344);
static_assert(offsetof(DipIntlCtx, awb) == 2352);
static_assert(offsetof(DipIntlCtx, pta) == 2460);
static_assert(offsetof(DipIntlCtx, shp) == 3920);
static_assert(offsetof(DipIntlCtx, front_me) == 4080);
static_assert(offsetof(DipIntlCtx, me) == 6276);
static_assert(offsetof(DipIntlCtx, dms) == 8472);
static_assert(offsetof(DipIntlCtx, dpc) == 8528);
static_assert(offsetof(DipIntlCtx, front_nr) == 8932);
static_assert(offsetof(DipIntlCtx, nr) == 11596);
static_assert(offsetof(DipIntlCtx, hdr) == 13868);
static_assert(offsetof(DipIntlCtx, hdr_ae) == 13924);
static_assert(offsetof(DipIntlCtx, te) == 13940);
static_assert(offsetof(DipIntlCtx, front_enh) == 14052);
static_assert(offsetof(DipIntlCtx, enh) == 14804);
static_assert(offsetof(DipIntlCtx, fcs) == 15020);
static_assert(offsetof(DipIntlCtx, dhz) == 15428);
static_assert(offsetof(DipIntlCtx, iso) == 16800);
static_assert(offsetof(DipIntlCtx, stat) == 16984);
static_assert(offsetof(DipIntlCtx, daa) == 17400);
static_assert(offsetof(DipIntlCtx, ts) == 17452);
static_assert(offsetof(DipIntlCtx, rgl_stat) == 17496);
static_assert(offsetof(DipIntlCtx, fsc) == 17508);
static_assert(offsetof(DipIntlCtx, gmv) == 17510);
static_assert(offsetof(DipIntlCtx, eis) == 17588);
