// What the DIP computes of a frame for the hardware: curves, shading tables, colour, noise.
#include "scene.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{

// Gain tables of 32 x 32 points that rise from 256 (one) in the centre to the corners.
void fill_shading(uint16_t (&table)[1024], int strength)
{
    for (int i = 0; i < 1024; i++) {
        const int dx = 2 * (i % 32) - 31;
        const int dy = 2 * (i / 32) - 31;
        table[i] = static_cast<uint16_t>(256 + (dx * dx + dy * dy) * strength / 1922);
    }
}

void fill_calibration(CalAllCfg *cal)
{
    cal->flag.val = 0xF;
    cal->dbc.cfg = {.mode = IS_DBC_MODE_NORMAL, .level = {1024, 1022, 1026, 1024, 0}};
    cal->dcc.cfg = {.mode = IS_DCC_MODE_NORMAL,
                    .gain = {4096, 4096, 4096, 4096, 4096},
                    .offset_2s = {0, 0xFFFFFFFE, 3, 0, 0}};
    for (IsDccGainCurveCfg &curve : cal->crc.curve)
        for (int i = 0; i < 9; i++) {
            curve.x[i] = static_cast<uint16_t>(std::min(8192 * i, 65535));
            curve.y[i] = curve.x[i];
            curve.m[std::min(i, 7)] = 128;
        }

    CalLscCfg &lsc = cal->lsc;
    lsc.cfg = {.mode = IS_LSC_MODE_NORMAL, .bayer_phase_srep = 1};
    lsc.curve.enable = 0;
    lsc.table.enable = 1;
    lsc.table.prec = IS_LSC_TABLE_GAIN_PREC_8_BIT;
    lsc.table.gain_mod = 256;
    lsc.table.hori_step = 33825;
    lsc.table.verti_step = 60133;
    fill_shading(lsc.table.coeff.ee, 300);
    fill_shading(lsc.table.coeff.eo, 324);
    fill_shading(lsc.table.coeff.oe, 312);
    fill_shading(lsc.table.coeff.oo, 300);
}

template <typename Value, size_t n>
void fill_power_curve(Value (&curve)[n], double top, double exponent)
{
    for (size_t i = 0; i < n; i++)
        curve[i] = static_cast<Value>(
            std::lround(top * std::pow(static_cast<double>(i) / (n - 1), exponent)));
}

void fill_tone(DipAllCfg *cfg, const Moment &moment)
{
    cfg->te.tm.enable = 1;
    fill_power_curve(cfg->te.tm.curve.val, 16383, 0.70 - 0.15 * moment.tone / 256);
    fill_power_curve(cfg->hte.hdr_tm.curve.val, 16383, 0.55);
    fill_power_curve(cfg->pte.pte.curve.val, 1023, 0.95);
    cfg->gamma.fagma.mode = ISP_FAGMA_MODE_DISABLE;
    fill_power_curve(cfg->gamma.gma.curve.val, 4095, 1 / 2.2);

    cfg->dhz.dhz = {
        .strength = 32, .y_gain_max = 256, .c_gain_max = 192, .y_dc = 0, .u_dc = 512, .v_dc = 512};
    std::fill(std::begin(cfg->dhz.dhz_rgl.gain), std::end(cfg->dhz.dhz_rgl.gain), uint16_t{256});

    cfg->hdr = {.mode = ISP_HDR_MODE_BYPASS_SE,
                .anti_gma = {},
                .exp = {.exp_long_early = 1,
                        .exp_ratio = 256,
                        .exp_ratio_inv = 256,
                        .se_exp_ratio_min_int = 16},
                .weight = {.se_weight_th_min = 512,
                           .se_weight_slope = 8,
                           .se_weight_min = 0,
                           .se_weight_max = 64,
                           .le_weight_th_max = 960,
                           .le_weight_slope = 8,
                           .le_weight_min = 0,
                           .le_weight_max = 64},
                .fb = {.local_fb_th = 128,
                       .local_fb_slope = 16,
                       .local_fb_min = 0,
                       .local_fb_max = 32,
                       .frame_fb_strength = 16,
                       .fb_target = 96,
                       .fb_alpha = 32,
                       .mismatch_var_gain_2s = 0xF0},
                .gma = {.mode = ISP_HDR_GMA_MODE_DISABLE}};
    cfg->hawb.hdr_awb = {.enable = 0, .gain = {1024, 1024, 1024, 1024}};
}

void fill_pixels(DipAllCfg *cfg)
{
    cfg->dpc.cfg = {.dpc_mode = ISP_DPC_MODE_NORMAL,
                    .g_dislike_th = 20,
                    .br_dislike_th = 24,
                    .g_correct_overshoot = 4,
                    .br_correct_overshoot = 4,
                    .g_sad_gain = 8,
                    .br_sad_gain = 8,
                    .correct_bright_en = 1,
                    .correct_dark_en = 1,
                    .correct_mid_en = 0,
                    .bright_th = 16,
                    .dark_th = 16};
    cfg->dpc.bsp_dpc_cfg = {.enable = 1, .dir_enable = 1, .dir_th_ratio = 12, .dir_str_m = 3};
    cfg->dpd.cfg.ddpd = {.enable = 1,
                         .g_pattern_mode = IS_DPD_G_PATTERN_MODE_DIAMOND,
                         .pix_num_mode = IS_DPD_PIX_NUM_MODE_8,
                         .diff_ratio = 16,
                         .avg_ratio = 10,
                         .edge_diff_ratio = 18,
                         .edge_avg_ratio = 12,
                         .edge_m = 4,
                         .dp_num = 37};
    cfg->dms.cfg = {.mode = ISP_DMS_MODE_NORMAL,
                    .g_var_gain = 8,
                    .fcs_threshold = 24,
                    .inter_conf_slope = 12,
                    .fcs_offset = 6,
                    .g_at_m_inter_ratio = 16,
                    .m_at_m_inter_ratio = 16,
                    .m_at_g_inter_ratio = 16,
                    .g_at_m_soft_clip_slope = 8,
                    .m_at_m_soft_clip_slope = 8,
                    .m_at_g_soft_clip_slope = 8,
                    .m_at_g_gradient_src_ratio = 4};
    cfg->fcs.fcs.trans = {.diff_level_max = 32, .gain = 12};
    cfg->fcs.fcs.corr = {.correction_gain = 8, .target_bg_ratio = 128, .target_rg_ratio = 128};
    cfg->coring.coring = {.enable = 1, .th0 = 8, .slope = 64};
}

void fill_colour(DipAllCfg *cfg, const DipShareInfo &share)
{
    // Daylight has more blue than the sensor's red channel sees.
    const auto red = static_cast<uint16_t>(1024 + (share.color_temp - 2800) / 5);
    const auto blue = static_cast<uint16_t>(1024 + (8000 - share.color_temp) / 5);
    for (IsBspWbCfg &gain : cfg->awb.gain)
        gain = {.enable = 1, .gain = {.val = {1024, red, blue, 1024}}};

    for (int i = 0; i < 9; i++) // 256 is one
        cfg->csm.ccm.coeff_2s[i] = static_cast<uint16_t>(share.colormatrix[i] / 4);
    constexpr int16_t to_yuv[9] = {77, 150, 29, -43, -85, 128, 128, -107, -21};
    std::copy(std::begin(to_yuv), std::end(to_yuv), cfg->csm.cst.coeff_2s);
    constexpr uint16_t offsets[3] = {0, 512, 512};
    std::copy(std::begin(offsets), std::end(offsets), cfg->csm.cst.offset_2s);
}

void fill_motion(DipAllCfg *cfg)
{
    const VpMeCfg me = {.mode = VP_ME_MODE_NORMAL,
                        .scene_change = 0,
                        .gmv_x = 0,
                        .gmv_y = 0,
                        .gmv_cand_valid = 1,
                        .mode_left_mv_diff_th = 16,
                        .mode_top_left_mv_diff_th = 16,
                        .mode_top_right_mv_diff_th = 16,
                        .bottom_left_dist_x = 2,
                        .bottom_left_dist_y = 1,
                        .bottom_right_dist_x = 2,
                        .bottom_right_dist_y = 1,
                        .sw_center_mode = 1,
                        .sw_center_x_sw = 64,
                        .sw_center_y_sw = 32,
                        .sw_center_weight = 4,
                        .sw_ix = 8,
                        .sw_iy = 4,
                        .sw_ix_size = 16,
                        .sw_iy_size = 8,
                        .mvr_left_extend_dist = 2,
                        .mvr_right_extend_dist = 2,
                        .ime_penalty_gain_x_sel = 1,
                        .ime_penalty_gain_y_sel = 1,
                        .ime_penalty_bound_x_ini = 8,
                        .ime_penalty_bound_y_ini = 8,
                        .search_texture_th = 96,
                        .valid_true_mv_th = 640,
                        .matching_weight = 8,
                        .singularity_weight = 4,
                        .range_weight = 2,
                        .m_cost_quarter_gain = 12,
                        .m_cost_half_gain = 10,
                        .m_cost_frac_offset = 32,
                        .singularity_min_th = 40,
                        .singularity_max_th = 400,
                        .texture_gain_low_th = 64,
                        .texture_gain_high_th = 512,
                        .texture_gain_low = 8,
                        .texture_gain_high = 32,
                        .texture_gain_slope = 14,
                        .range_min_x_th = 16,
                        .range_max_x_th = 256,
                        .range_min_y_th = 8,
                        .range_max_y_th = 128,
                        .spatial_cost_offset = 16,
                        .temporal_cost_offset = 24,
                        .search_weak_cost_offset = 48,
                        .search_cost_offset = 64,
                        .refine_cost_offset = 8,
                        .gmv_cost_offset = 32,
                        .non_zero_mv_cost_offset = 12};
    for (DipMeCfg *set : {&cfg->front_me, &cfg->gluey_front_me, &cfg->active_front_me, &cfg->me,
                          &cfg->gluey_me, &cfg->active_me})
        set->me = me;
    cfg->gluey_me.me.search_cost_offset = 128;
    cfg->active_me.me.range_weight = 1;

    cfg->motion_status_cfg = {.enable = 1,
                              .show_dyn_me_log = 0,
                              .gluey_me_frame_count_down_max = 25,
                              .mv_coring_th = 2,
                              .mv_low_th = 8,
                              .mv_high_th = 48,
                              .rc_use_isp_m2s = 0,
                              .motion_level_low_th = 10,
                              .motion_level_high_th = 60,
                              .motion_level_max = 255};
    cfg->front_motion_status_cfg = cfg->motion_status_cfg;
}

IspEnhCfg enhancement(uint8_t detail)
{
    IspEnhCfg enh = {};
    enh.luma.y_l_r = 3;
    enh.luma.y_l_eps = 5000;
    enh.luma.y_s_eps = 1200;
    enh.luma.y_l_detail_gain = detail;
    enh.luma.y_s_detail_gain = static_cast<uint8_t>(detail / 2);
    enh.luma.blend_curve = {.x = {8, 40}, .m = {16}, .y = {0, 32}};
    enh.chroma.c_r = 2;
    enh.chroma.c_eps_y = 3000;
    enh.chroma.c_eps_c = 2500;
    enh.gain_curve = {.x = {0, 64, 192, 512, 832, 1023},
                      .m_2s = {96, 24, 0, 1012, 980},
                      .y = {16, 32, 40, 40, 32, 12}};
    return enh;
}

IspShpCfg sharpness(uint16_t level_gain)
{
    return {.mode = ISP_SHP_MODE_NORMAL,
            .bpf_gain_2s = 24,
            .hpf_gain_2s = 12,
            .level_gain_2s = level_gain,
            .soft_clip_slope = 8,
            .gain_curve = {.x = {0, 16, 48, 128, 384, 1023},
                           .m_2s = {32, 16, 4, 0, 56},
                           .y = {0, 128, 320, 384, 384, 192}},
            .luma_ctrl_gain = {.x = {0, 32, 64, 128, 256, 384, 512, 640, 768, 896, 1023},
                               .m_2s = {32, 24, 16, 8, 0, 0, 0, 124, 120, 112},
                               .y = {64, 160, 256, 320, 384, 384, 384, 384, 352, 288, 160}}};
}

// Weights of one noise-reduction table: the more two frames differ, the less they are mixed.
template <typename Table>
void fill_nr_table(Table *table, int gain)
{
    table->step = 4;
    for (int i = 0; i < 9; i++) {
        table->lut_i[i] = static_cast<uint8_t>(12 * i);
        table->lut_o[i] = static_cast<uint8_t>(std::min(255, gain * i * i / 4));
    }
    for (int i = 0; i < 8; i++)
        table->lut_slope[i] =
            static_cast<uint16_t>((table->lut_o[i + 1] - table->lut_o[i]) * 16 / 12);
}

// The more gain, the more noise.
VpNrCfg noise_reduction(const DipShareInfo &share)
{
    VpNrCfg nr = {};
    const int gain = std::max(4, 14 - static_cast<int>(share.sys_gain / 1024));
    fill_nr_table(&nr.ma_y, gain);
    fill_nr_table(&nr.mc_y.y, gain - 1);
    fill_nr_table(&nr.ma_c, gain + 2);
    nr.ma_c.ref = VP_NR_WEIGHT_Y_REF_SEL_LP_DYN;
    nr.fir = {.kernel = VP_NR_FIR_KERNEL_SEL_Y_5X5, .weight_y = 20, .weight_c = 28};
    nr.iir = {.confidence = VP_NR_IIR_Y_CONF_SEL_MAX_LP, .alpha_y_gain = 16, .alpha_c_gain = 24};
    return nr;
}

void fill_window(DipAllCfg *cfg, size_t slot, const DipShareInfo &share)
{
    cfg->win_enh[slot].cfg = enhancement(static_cast<uint8_t>(48 - 16 * slot));
    cfg->win_shp[slot].shp = sharpness(static_cast<uint16_t>(96 - 16 * slot));
    cfg->weak_win_shp[slot].shp = sharpness(static_cast<uint16_t>(48 - 16 * slot));
    cfg->win_front_nr[slot].nr = noise_reduction(share);
    cfg->win_nr[slot].nr = noise_reduction(share);
    cfg->isp_lm[slot] = {.enable = 1, .conf_low_th = 2048, .conf_high_th = 8192};
}

} // namespace

void fill_cfg(DipAllCfg *cfg, const DipShareInfo &share, const Moment &moment)
{
    cfg->flag.val = 0x1FFFFFF;
    fill_calibration(&cfg->cal[0]);
    fill_calibration(&cfg->cal[1]);
    fill_tone(cfg, moment);
    fill_pixels(cfg);
    fill_colour(cfg, share);
    fill_motion(cfg);
    cfg->front_enh.cfg = enhancement(32);
    for (size_t slot = 0; slot < 2; slot++) // the windows of the scene
        fill_window(cfg, slot, share);
}
