// Configurations of the ISP hardware blocks, as the DIP computes them for the drivers. Members
// whose names end in "_2s" hold two's-complement numbers of the register's own width.
#pragma once

#include <cstddef>
#include <cstdint>

// Black level, colour gains and lens shading. Channels are in the order g0, r, b, g1, s.

inline constexpr size_t IS_CHANNEL_NUM = 5;

enum is_dbc_mode : int32_t {
    IS_DBC_MODE_NORMAL = 0,
    IS_DBC_MODE_DISABLE = 1,
};

struct IsDbcCfg {
    is_dbc_mode mode;
    uint16_t level[IS_CHANNEL_NUM];
};
static_assert(sizeof(IsDbcCfg) == 16);
static_assert(offsetof(IsDbcCfg, level) == 4);

enum is_dcc_mode : int32_t {
    IS_DCC_MODE_NORMAL = 0,
    IS_DCC_MODE_DISABLE = 1,
};

struct IsDccCfg {
    is_dcc_mode mode;
    uint32_t gain[IS_CHANNEL_NUM];
    uint32_t offset_2s[IS_CHANNEL_NUM];
};
static_assert(sizeof(IsDccCfg) == 44);
static_assert(offsetof(IsDccCfg, gain) == 4);
static_assert(offsetof(IsDccCfg, offset_2s) == 24);

// The gain curve of one channel: knots (x, y) and the slopes between them.
struct IsDccGainCurveCfg {
    uint16_t x[9];
    uint8_t m[8];
    uint16_t y[9];
};
static_assert(sizeof(IsDccGainCurveCfg) == 44);
static_assert(offsetof(IsDccGainCurveCfg, m) == 18);
static_assert(offsetof(IsDccGainCurveCfg, y) == 26);

enum iss_lsc_mode : int32_t {
    IS_LSC_MODE_NORMAL = 0,
    IS_LSC_MODE_DISABLE = 1,
};

struct IsLscCfg {
    iss_lsc_mode mode;
    uint32_t bayer_phase_srep;
};
static_assert(sizeof(IsLscCfg) == 8);
static_assert(offsetof(IsLscCfg, bayer_phase_srep) == 4);

struct is_lsc_curve_coeff {
    uint32_t fit_y0x0;
    uint32_t dx_y0x0_2s;
    uint32_t dy_y0x0_2s;
    uint32_t dx2;
    uint32_t dy2;
    uint32_t dydx_2s;
};
static_assert(sizeof(is_lsc_curve_coeff) == 24);
static_assert(offsetof(is_lsc_curve_coeff, dydx_2s) == 20);

struct IsLscCurveCfg {
    uint8_t enable;
    is_lsc_curve_coeff coeff[4];
};
static_assert(sizeof(IsLscCurveCfg) == 100);
static_assert(offsetof(IsLscCurveCfg, coeff) == 4);

enum is_lsc_table_gain_prec : int32_t {
    IS_LSC_TABLE_GAIN_PREC_8_BIT = 0,
    IS_LSC_TABLE_GAIN_PREC_9_BIT = 1,
    IS_LSC_TABLE_GAIN_PREC_10_BIT = 2,
    IS_LSC_TABLE_GAIN_PREC_11_BIT = 3,
    IS_LSC_TABLE_GAIN_PREC_12_BIT = 4,
};

struct is_lsc_table_coeff {
    uint16_t ee[1024];
    uint16_t eo[1024];
    uint16_t oe[1024];
    uint16_t oo[1024];
};
static_assert(sizeof(is_lsc_table_coeff) == 8192);
static_assert(offsetof(is_lsc_table_coeff, eo) == 2048);
static_assert(offsetof(is_lsc_table_coeff, oe) == 4096);
static_assert(offsetof(is_lsc_table_coeff, oo) == 6144);

struct IsLscTableCfg {
    uint8_t enable;
    uint8_t merge_en;
    is_lsc_table_gain_prec prec;
    uint16_t gain_mod;
    uint8_t hori_start_int;
    uint32_t hori_start_frac;
    uint32_t hori_step;
    uint8_t verti_start_int;
    uint32_t verti_start_frac;
    uint32_t verti_step;
    is_lsc_table_coeff coeff;
};
static_assert(sizeof(IsLscTableCfg) == 8224);
static_assert(offsetof(IsLscTableCfg, merge_en) == 1);
static_assert(offsetof(IsLscTableCfg, prec) == 4);
static_assert(offsetof(IsLscTableCfg, gain_mod) == 8);
static_assert(offsetof(IsLscTableCfg, hori_start_int) == 10);
static_assert(offsetof(IsLscTableCfg, hori_start_frac) == 12);
static_assert(offsetof(IsLscTableCfg, verti_start_int) == 20);
static_assert(offsetof(IsLscTableCfg, verti_start_frac) == 24);
static_assert(offsetof(IsLscTableCfg, coeff) == 32);

// White balance.

struct is_bsp_wb_gain {
    uint16_t val[4];
};
static_assert(sizeof(is_bsp_wb_gain) == 8);

struct IsBspWbCfg {
    uint8_t enable;
    is_bsp_wb_gain gain;
};
static_assert(sizeof(IsBspWbCfg) == 10);
static_assert(offsetof(IsBspWbCfg, gain) == 2);

struct IspHdrAwbCfg {
    uint8_t enable;
    uint16_t gain[4];
};
static_assert(sizeof(IspHdrAwbCfg) == 10);
static_assert(offsetof(IspHdrAwbCfg, gain) == 2);

// Tone curves and gamma.

struct is_bsp_tm_curve {
    uint16_t val[60];
};
static_assert(sizeof(is_bsp_tm_curve) == 120);

struct IsBspTmCfg {
    uint8_t enable;
    is_bsp_tm_curve curve;
};
static_assert(sizeof(IsBspTmCfg) == 122);
static_assert(offsetof(IsBspTmCfg, curve) == 2);

// The HDR block maps tones with a curve of the same form.
using IspHdrTmCfg = IsBspTmCfg;

struct vp_pte_curve {
    uint16_t val[33];
};
static_assert(sizeof(vp_pte_curve) == 66);

struct VpPteCfg {
    vp_pte_curve curve;
};
static_assert(sizeof(VpPteCfg) == 66);

enum is_fgma_mode : int32_t {
    IS_FGMA_MODE_NORMAL = 0,
    IS_FGMA_MODE_DISABLE = 1,
};

struct IsFgmaCfg {
    is_fgma_mode mode;
};
static_assert(sizeof(IsFgmaCfg) == 4);

enum isp_fagma_mode : int32_t {
    ISP_FAGMA_MODE_NORMAL = 0,
    ISP_FAGMA_MODE_DISABLE = 1,
};

struct IspFagmaCfg {
    isp_fagma_mode mode;
};
static_assert(sizeof(IspFagmaCfg) == 4);

enum isp_gma_mode : int32_t {
    ISP_GMA_MODE_NORMAL = 0,
    ISP_GMA_MODE_DISABLE = 1,
};

struct isp_gma_curve {
    uint32_t val[60];
};
static_assert(sizeof(isp_gma_curve) == 240);

struct IspGmaCfg {
    isp_gma_mode mode;
    isp_gma_curve curve;
};
static_assert(sizeof(IspGmaCfg) == 244);
static_assert(offsetof(IspGmaCfg, curve) == 4);

// HDR merge. "se" and "le" are the short and the long exposure.

enum IspHdrMode : int32_t {
    ISP_HDR_MODE_NORMAL = 0,
    ISP_HDR_MODE_MONO_NORMAL = 1,
    ISP_HDR_MODE_BYPASS_SE = 2,
    ISP_HDR_MODE_BYPASS_LE = 3,
};

enum isp_hdr_anti_gma_mode : int32_t {
    ISP_HDR_ANTI_GMA_MODE_NORMAL = 0,
    ISP_HDR_ANTI_GMA_MODE_DISABLE = 1,
};

struct IspHdrAntiGmaCfg {
    isp_hdr_anti_gma_mode long_exp_mode;
    isp_hdr_anti_gma_mode short_exp_mode;
};
static_assert(sizeof(IspHdrAntiGmaCfg) == 8);
static_assert(offsetof(IspHdrAntiGmaCfg, short_exp_mode) == 4);

struct IspHdrExpCfg {
    uint8_t exp_long_early;
    uint16_t exp_ratio;
    uint16_t exp_ratio_inv;
    uint16_t se_exp_ratio_min_int;
};
static_assert(sizeof(IspHdrExpCfg) == 8);
static_assert(offsetof(IspHdrExpCfg, exp_ratio) == 2);
static_assert(offsetof(IspHdrExpCfg, se_exp_ratio_min_int) == 6);

struct IspHdrWeightCfg {
    uint16_t se_weight_th_min;
    uint8_t se_weight_slope;
    uint8_t se_weight_min;
    uint8_t se_weight_max;
    uint16_t le_weight_th_max;
    uint8_t le_weight_slope;
    uint8_t le_weight_min;
    uint8_t le_weight_max;
};
static_assert(sizeof(IspHdrWeightCfg) == 12);
static_assert(offsetof(IspHdrWeightCfg, se_weight_slope) == 2);
static_assert(offsetof(IspHdrWeightCfg, le_weight_th_max) == 6);
static_assert(offsetof(IspHdrWeightCfg, le_weight_max) == 10);

struct IspHdrFbCfg {
    uint16_t local_fb_th;
    uint8_t local_fb_slope;
    uint8_t local_fb_min;
    uint8_t local_fb_max;
    uint8_t frame_fb_strength;
    uint8_t fb_target;
    uint8_t fb_alpha;
    uint8_t mismatch_var_gain_2s;
};
static_assert(sizeof(IspHdrFbCfg) == 10);
static_assert(offsetof(IspHdrFbCfg, local_fb_slope) == 2);
static_assert(offsetof(IspHdrFbCfg, mismatch_var_gain_2s) == 8);

enum isp_hdr_gma_mode : int32_t {
    ISP_HDR_GMA_MODE_NORMAL = 0,
    ISP_HDR_GMA_MODE_DISABLE = 1,
};

struct IspHdrGmaCfg {
    isp_hdr_gma_mode mode;
};
static_assert(sizeof(IspHdrGmaCfg) == 4);

// Dehaze.

struct IspDhzCfg {
    uint16_t strength;
    uint16_t y_gain_max;
    uint16_t c_gain_max;
    uint16_t y_dc;
    uint16_t u_dc;
    uint16_t v_dc;
};
static_assert(sizeof(IspDhzCfg) == 12);
static_assert(offsetof(IspDhzCfg, v_dc) == 10);

// The 8 x 8 regions of the image, row by row.
struct IspDhzRglCfg {
    uint16_t gain[64];
    uint16_t offset[64];
};
static_assert(sizeof(IspDhzRglCfg) == 256);
static_assert(offsetof(IspDhzRglCfg, offset) == 128);

// Defect pixels and demosaicking.

enum isp_dpc_mode : int32_t {
    ISP_DPC_MODE_NORMAL = 0,
    ISP_DPC_MODE_MONO = 1,
    ISP_DPC_MODE_DISABLE = 2,
    ISP_DPC_MODE_BYPASS = 3,
};

struct IspDpcCfg {
    isp_dpc_mode dpc_mode;
    uint8_t g_dislike_th;
    uint8_t br_dislike_th;
    uint8_t g_correct_overshoot;
    uint8_t br_correct_overshoot;
    uint8_t g_sad_gain;
    uint8_t br_sad_gain;
    uint8_t correct_bright_en;
    uint8_t correct_dark_en;
    uint8_t correct_mid_en;
    uint8_t bright_th;
    uint8_t dark_th;
};
static_assert(sizeof(IspDpcCfg) == 16);
static_assert(offsetof(IspDpcCfg, g_dislike_th) == 4);
static_assert(offsetof(IspDpcCfg, dark_th) == 14);

struct IsBspDpcCfg {
    uint8_t enable;
    uint8_t dir_enable;
    uint8_t dir_th_ratio;
    uint8_t dir_str_m;
};
static_assert(sizeof(IsBspDpcCfg) == 4);
static_assert(offsetof(IsBspDpcCfg, dir_str_m) == 3);

struct is_static_dpd {
    uint8_t enable;
    uint16_t offset_x;
    uint16_t offset_y;
};
static_assert(sizeof(is_static_dpd) == 6);
static_assert(offsetof(is_static_dpd, offset_x) == 2);
static_assert(offsetof(is_static_dpd, offset_y) == 4);

enum is_dpd_g_pattern_mode : int32_t {
    IS_DPD_G_PATTERN_MODE_OUTER_8 = 0,
    IS_DPD_G_PATTERN_MODE_DIAMOND = 1,
    IS_DPD_G_PATTERN_MODE_OUTER_4 = 2,
};

enum is_dpd_pix_num_mode : int32_t {
    IS_DPD_PIX_NUM_MODE_8 = 0,
    IS_DPD_PIX_NUM_MODE_6 = 1,
};

struct is_dynamic_dpd {
    uint8_t enable;
    is_dpd_g_pattern_mode g_pattern_mode;
    is_dpd_pix_num_mode pix_num_mode;
    uint8_t diff_ratio;
    uint8_t avg_ratio;
    uint8_t edge_diff_ratio;
    uint8_t edge_avg_ratio;
    uint8_t edge_m;
    uint32_t dp_num;
};
static_assert(sizeof(is_dynamic_dpd) == 24);
static_assert(offsetof(is_dynamic_dpd, g_pattern_mode) == 4);
static_assert(offsetof(is_dynamic_dpd, pix_num_mode) == 8);
static_assert(offsetof(is_dynamic_dpd, diff_ratio) == 12);
static_assert(offsetof(is_dynamic_dpd, edge_m) == 16);
static_assert(offsetof(is_dynamic_dpd, dp_num) == 20);

struct IsBspDpdCfg {
    is_static_dpd sdpd;
    is_dynamic_dpd ddpd;
};
static_assert(sizeof(IsBspDpdCfg) == 32);
static_assert(offsetof(IsBspDpdCfg, ddpd) == 8);

enum isp_dms_mode : int32_t {
    ISP_DMS_MODE_NORMAL = 0,
    ISP_DMS_MODE_BYPASS = 1,
    ISP_DMS_MODE_MONO = 2,
    ISP_DMS_MODE_NA = 3,
};

struct IspDmsCfg {
    isp_dms_mode mode;
    uint8_t g_var_gain;
    uint8_t fcs_threshold;
    uint8_t inter_conf_slope;
    uint8_t fcs_offset;
    uint8_t g_at_m_inter_ratio;
    uint8_t m_at_m_inter_ratio;
    uint8_t m_at_g_inter_ratio;
    uint8_t g_at_m_soft_clip_slope;
    uint8_t m_at_m_soft_clip_slope;
    uint8_t m_at_g_soft_clip_slope;
    uint8_t m_at_g_gradient_src_ratio;
};
static_assert(sizeof(IspDmsCfg) == 16);
static_assert(offsetof(IspDmsCfg, g_var_gain) == 4);
static_assert(offsetof(IspDmsCfg, m_at_g_gradient_src_ratio) == 14);

// Colour.

enum isp_fcs_mode : int32_t {
    ISP_FCS_MODE_NORMAL = 0,
    ISP_FCS_MODE_DISABLE = 1,
};

struct trans_lv_det {
    uint8_t diff_level_max;
    uint8_t gain;
};
static_assert(sizeof(trans_lv_det) == 2);
static_assert(offsetof(trans_lv_det, gain) == 1);

struct grid_lv_det {
    uint8_t cnt_th_high;
    uint8_t cnt_th_low;
    uint8_t cnt_raw_th;
    uint16_t trans_level_th;
    uint8_t trans_round_bit_high;
    uint8_t trans_round_bit_low;
};
static_assert(sizeof(grid_lv_det) == 8);
static_assert(offsetof(grid_lv_det, trans_level_th) == 4);
static_assert(offsetof(grid_lv_det, trans_round_bit_low) == 7);

struct color_type_det {
    uint8_t diff_self_th;
    uint8_t diff_neighbor_th;
    uint8_t coring_th;
};
static_assert(sizeof(color_type_det) == 3);
static_assert(offsetof(color_type_det, coring_th) == 2);

struct false_color_corr {
    uint8_t correction_gain;
    uint16_t target_bg_ratio;
    uint16_t target_rg_ratio;
};
static_assert(sizeof(false_color_corr) == 6);
static_assert(offsetof(false_color_corr, target_bg_ratio) == 2);
static_assert(offsetof(false_color_corr, target_rg_ratio) == 4);

struct IspFcsCfg {
    isp_fcs_mode mode;
    trans_lv_det trans;
    grid_lv_det grid;
    color_type_det color;
    false_color_corr corr;
};
static_assert(sizeof(IspFcsCfg) == 24);
static_assert(offsetof(IspFcsCfg, trans) == 4);
static_assert(offsetof(IspFcsCfg, grid) == 6);
static_assert(offsetof(IspFcsCfg, color) == 14);
static_assert(offsetof(IspFcsCfg, corr) == 18);

// A 3 x 3 matrix, row by row, and the offset of each row.
struct isp_color_matrix {
    uint16_t coeff_2s[9];
    uint16_t offset_2s[3];
};
static_assert(sizeof(isp_color_matrix) == 24);
static_assert(offsetof(isp_color_matrix, offset_2s) == 18);

using IspCcmCfg = isp_color_matrix; // RGB to corrected RGB
using IspCstCfg = isp_color_matrix; // RGB to YUV

struct VpNrwCoringCfg {
    uint8_t enable;
    uint16_t th0;
    uint16_t slope;
};
static_assert(sizeof(VpNrwCoringCfg) == 6);
static_assert(offsetof(VpNrwCoringCfg, th0) == 2);
static_assert(offsetof(VpNrwCoringCfg, slope) == 4);

// Motion.

enum vp_me_mode : int32_t {
    VP_ME_MODE_NORMAL = 0,
    VP_ME_MODE_DISABLE = 1,
    VP_ME_MODE_MUM = 2, // the number of modes
};

struct VpMeCfg {
    vp_me_mode mode;
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
};
static_assert(sizeof(VpMeCfg) == 92);
static_assert(offsetof(VpMeCfg, gmv_x) == 6);
static_assert(offsetof(VpMeCfg, gmv_cand_valid) == 10);
static_assert(offsetof(VpMeCfg, mode_left_mv_diff_th) == 12);
static_assert(offsetof(VpMeCfg, bottom_left_dist_x) == 24);
static_assert(offsetof(VpMeCfg, sw_center_mode) == 28);
static_assert(offsetof(VpMeCfg, sw_center_x_sw) == 30);
static_assert(offsetof(VpMeCfg, sw_center_weight) == 34);
static_assert(offsetof(VpMeCfg, ime_penalty_gain_x_sel) == 41);
static_assert(offsetof(VpMeCfg, search_texture_th) == 46);
static_assert(offsetof(VpMeCfg, matching_weight) == 50);
static_assert(offsetof(VpMeCfg, m_cost_frac_offset) == 56);
static_assert(offsetof(VpMeCfg, texture_gain_low) == 66);
static_assert(offsetof(VpMeCfg, range_min_x_th) == 70);
static_assert(offsetof(VpMeCfg, spatial_cost_offset) == 78);
static_assert(offsetof(VpMeCfg, non_zero_mv_cost_offset) == 90);

struct IspMotionStatusCfg {
    uint8_t enable;
    uint8_t show_dyn_me_log;
    int32_t gluey_me_frame_count_down_max;
    int32_t mv_coring_th;
    int32_t mv_low_th;
    int32_t mv_high_th;
    int32_t rc_use_isp_m2s;
    int32_t motion_level_low_th;
    int32_t motion_level_high_th;
    int32_t motion_level_max;
};
static_assert(sizeof(IspMotionStatusCfg) == 36);
static_assert(offsetof(IspMotionStatusCfg, show_dyn_me_log) == 1);
static_assert(offsetof(IspMotionStatusCfg, gluey_me_frame_count_down_max) == 4);
static_assert(offsetof(IspMotionStatusCfg, motion_level_max) == 32);

struct IspLargeMotionCfg {
    uint8_t enable;
    uint32_t conf_low_th;
    uint32_t conf_high_th;
};
static_assert(sizeof(IspLargeMotionCfg) == 12);
static_assert(offsetof(IspLargeMotionCfg, conf_low_th) == 4);
static_assert(offsetof(IspLargeMotionCfg, conf_high_th) == 8);

// Enhancement.

enum isp_enh_guided_filter_mode : int32_t {
    ISP_ENH_GUIDEED_FILTER_MODE_NORMAL = 0,
    ISP_ENH_GUIDEED_FILTER_MODE_DISABLE = 1,
    ISP_ENH_GUIDEED_FILTER_MODE_BYPASS = 2,
};

struct luma_blend_curve {
    uint8_t x[2];
    uint8_t m[1];
    uint8_t y[2];
};
static_assert(sizeof(luma_blend_curve) == 5);
static_assert(offsetof(luma_blend_curve, m) == 2);
static_assert(offsetof(luma_blend_curve, y) == 3);

struct isp_enh_luma {
    isp_enh_guided_filter_mode y_mode;
    uint8_t y_l_r;
    uint32_t y_l_eps;
    uint8_t y_l_edge_strength;
    uint16_t y_l_mean_norm;
    uint16_t y_l_dt_mean_norm;
    uint16_t y_l_dt_corr_norm;
    uint32_t y_s_eps;
    uint8_t y_s_edge_strength;
    uint16_t y_s_mean_norm;
    uint16_t y_s_dt_mean_norm;
    uint16_t y_s_dt_corr_norm;
    uint8_t y_l_detail_gain;
    uint8_t y_s_detail_gain;
    luma_blend_curve blend_curve;
};
static_assert(sizeof(isp_enh_luma) == 40);
static_assert(offsetof(isp_enh_luma, y_l_r) == 4);
static_assert(offsetof(isp_enh_luma, y_l_eps) == 8);
static_assert(offsetof(isp_enh_luma, y_l_mean_norm) == 14);
static_assert(offsetof(isp_enh_luma, y_s_eps) == 20);
static_assert(offsetof(isp_enh_luma, y_s_mean_norm) == 26);
static_assert(offsetof(isp_enh_luma, y_l_detail_gain) == 32);
static_assert(offsetof(isp_enh_luma, blend_curve) == 34);

struct isp_enh_chroma {
    isp_enh_guided_filter_mode c_mode;
    uint8_t c_r;
    uint32_t c_eps_y;
    uint32_t c_eps_c;
    uint16_t c_mean_norm;
    uint16_t c_dt_mean_norm;
    uint16_t c_dt_corr_norm;
    uint8_t c_edge_y_strength;
    uint8_t c_edge_c_strength;
};
static_assert(sizeof(isp_enh_chroma) == 24);
static_assert(offsetof(isp_enh_chroma, c_r) == 4);
static_assert(offsetof(isp_enh_chroma, c_eps_y) == 8);
static_assert(offsetof(isp_enh_chroma, c_mean_norm) == 16);
static_assert(offsetof(isp_enh_chroma, c_edge_c_strength) == 23);

struct luma_gain_curve {
    uint16_t x[6];
    uint16_t m_2s[5]; // 10 bits
    uint8_t y[6];
};
static_assert(sizeof(luma_gain_curve) == 28);
static_assert(offsetof(luma_gain_curve, m_2s) == 12);
static_assert(offsetof(luma_gain_curve, y) == 22);

struct IspEnhCfg {
    isp_enh_luma luma;
    isp_enh_chroma chroma;
    luma_gain_curve gain_curve;
};
static_assert(sizeof(IspEnhCfg) == 92);
static_assert(offsetof(IspEnhCfg, chroma) == 40);
static_assert(offsetof(IspEnhCfg, gain_curve) == 64);

// Sharpness.

enum IspShpMode : int32_t {
    ISP_SHP_MODE_NORMAL = 0,
    ISP_SHP_MODE_DISABLE = 1,
    ISP_SHP_MODE_BYPASS = 2,
};

struct shp_gain_curve {
    uint16_t x[6];
    uint8_t m_2s[5];
    uint16_t y[6];
};
static_assert(sizeof(shp_gain_curve) == 30);
static_assert(offsetof(shp_gain_curve, m_2s) == 12);
static_assert(offsetof(shp_gain_curve, y) == 18);

struct isp_shp_luma_ctrl_gain {
    uint16_t x[11];
    uint8_t m_2s[10];
    uint16_t y[11];
};
static_assert(sizeof(isp_shp_luma_ctrl_gain) == 54);
static_assert(offsetof(isp_shp_luma_ctrl_gain, m_2s) == 22);
static_assert(offsetof(isp_shp_luma_ctrl_gain, y) == 32);

struct IspShpCfg {
    IspShpMode mode;
    uint8_t bpf_gain_2s;
    uint8_t hpf_gain_2s;
    uint16_t level_gain_2s;
    uint8_t soft_clip_slope;
    shp_gain_curve gain_curve;
    isp_shp_luma_ctrl_gain luma_ctrl_gain;
};
static_assert(sizeof(IspShpCfg) == 96);
static_assert(offsetof(IspShpCfg, bpf_gain_2s) == 4);
static_assert(offsetof(IspShpCfg, level_gain_2s) == 6);
static_assert(offsetof(IspShpCfg, soft_clip_slope) == 8);
static_assert(offsetof(IspShpCfg, gain_curve) == 10);
static_assert(offsetof(IspShpCfg, luma_ctrl_gain) == 40);

// Noise reduction.

enum vp_nr_mode : int32_t {
    VP_NR_MODE_NORMAL = 0,
    VP_NR_MODE_2D_ONLY = 1,
    VP_NR_MODE_3D_ONLY = 2,
    VP_NR_MODE_MONO = 3,
    VP_NR_MODE_DISABLE = 4,
    VP_NR_MODE_BYPASS = 5,
};

struct nr_3d_ma_y {
    uint8_t step;
    uint8_t lut_i[9];
    uint8_t lut_o[9];
    uint16_t lut_slope[8];
    uint8_t lp_dyn_gain_th_min;
    uint8_t lp_dyn_gain_th_max;
    uint8_t lp_dyn_gain_min;
    uint8_t lp_dyn_gain_max;
    uint16_t lp_dyn_gain_slope;
    uint8_t lp_diff_gain_th_min;
    uint8_t lp_diff_gain_th_range;
    uint8_t lp_diff_gain_min;
    uint8_t lp_diff_gain_max;
};
static_assert(sizeof(nr_3d_ma_y) == 46);
static_assert(offsetof(nr_3d_ma_y, lut_i) == 1);
static_assert(offsetof(nr_3d_ma_y, lut_o) == 10);
static_assert(offsetof(nr_3d_ma_y, lut_slope) == 20);
static_assert(offsetof(nr_3d_ma_y, lp_dyn_gain_th_min) == 36);
static_assert(offsetof(nr_3d_ma_y, lp_dyn_gain_slope) == 40);
static_assert(offsetof(nr_3d_ma_y, lp_diff_gain_max) == 45);

struct nr_3d_mc_y {
    nr_3d_ma_y y; // not a base: records must keep the standard layout
    uint8_t base_ratio;
    uint8_t base_dyn;
};
static_assert(sizeof(nr_3d_mc_y) == 48);
static_assert(offsetof(nr_3d_mc_y, base_ratio) == 46);
static_assert(offsetof(nr_3d_mc_y, base_dyn) == 47);

enum vp_nr_weight_y_ref_sel : int32_t {
    VP_NR_WEIGHT_Y_REF_SEL_HP = 0,
    VP_NR_WEIGHT_Y_REF_SEL_LP_DYN = 1,
    VP_NR_WEIGHT_Y_REF_SEL_LP = 2,
};

struct nr_3d_ma_c {
    uint8_t step;
    uint8_t lut_i[9];
    uint8_t lut_o[9];
    uint16_t lut_slope[8];
    vp_nr_weight_y_ref_sel ref;
    uint8_t weight_y_gain_th_min;
    uint8_t weight_y_gain_th_max;
    uint8_t weight_y_gain_min;
    uint8_t weight_y_gain_max;
    uint16_t weight_y_gain_slope;
};
static_assert(sizeof(nr_3d_ma_c) == 48);
static_assert(offsetof(nr_3d_ma_c, lut_i) == 1);
static_assert(offsetof(nr_3d_ma_c, lut_o) == 10);
static_assert(offsetof(nr_3d_ma_c, lut_slope) == 20);
static_assert(offsetof(nr_3d_ma_c, ref) == 36);
static_assert(offsetof(nr_3d_ma_c, weight_y_gain_th_min) == 40);
static_assert(offsetof(nr_3d_ma_c, weight_y_gain_slope) == 44);

enum vp_nr_fir_kernel_sel_y : int32_t {
    VP_NR_FIR_KERNEL_SEL_Y_3X3 = 0,
    VP_NR_FIR_KERNEL_SEL_Y_5X5 = 1,
};

struct nr_2d_fir {
    vp_nr_fir_kernel_sel_y kernel;
    uint8_t weight_y;
    uint8_t weight_c;
};
static_assert(sizeof(nr_2d_fir) == 8);
static_assert(offsetof(nr_2d_fir, weight_y) == 4);
static_assert(offsetof(nr_2d_fir, weight_c) == 5);

enum vp_nr_iir_y_conf_sel : int32_t {
    VP_NR_IIR_Y_CONF_SEL_MAX_HP = 0,
    VP_NR_IIR_Y_CONF_SEL_MAX_LP_DYN = 1,
    VP_NR_IIR_Y_CONF_SEL_MAX_LP = 2,
};

struct nr_blend_2d_and_3d {
    vp_nr_iir_y_conf_sel confidence;
    uint8_t alpha_y_gain;
    uint8_t alpha_c_gain;
};
static_assert(sizeof(nr_blend_2d_and_3d) == 8);
static_assert(offsetof(nr_blend_2d_and_3d, alpha_y_gain) == 4);
static_assert(offsetof(nr_blend_2d_and_3d, alpha_c_gain) == 5);

struct VpNrCfg {
    vp_nr_mode mode;
    nr_3d_ma_y ma_y;
    nr_3d_mc_y mc_y;
    nr_3d_ma_c ma_c;
    nr_2d_fir fir;
    nr_blend_2d_and_3d iir;
};
static_assert(sizeof(VpNrCfg) == 164);
static_assert(offsetof(VpNrCfg, ma_y) == 4);
static_assert(offsetof(VpNrCfg, mc_y) == 50);
static_assert(offsetof(VpNrCfg, ma_c) == 100);
static_assert(offsetof(VpNrCfg, fir) == 148);
static_assert(offsetof(VpNrCfg, iir) == 156);
