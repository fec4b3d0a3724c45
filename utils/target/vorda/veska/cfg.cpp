// The category cfg: the hardware configurations that the DIP computed for one input path.
#include "category.h"
#include "print.h"
#include "vorda.h"

#include <algorithm>

namespace
{

constexpr char title[] = "cfg";
constexpr char comments[] = "Computation results of DIP modules";

void print_dbc_cfg(const CalDbcCfg *dbc_cfg)
{
    const IsDbcCfg &cfg = dbc_cfg->cfg;
    print("mode = %d (0: normal, 1: disable)\n", cfg.mode);
    print_value("level_g0", cfg.level[0]);
    print_value("level_r ", cfg.level[1]);
    print_value("level_b ", cfg.level[2]);
    print_value("level_g1", cfg.level[3]);
    print_value("level_s ", cfg.level[4]);
}

void print_dcc_cfg(const CalDccCfg *dcc_cfg)
{
    const IsDccCfg &cfg = dcc_cfg->cfg;
    print("mode = %d (0: normal, 1: disable)\n", cfg.mode);
    print_value("gain_g0", as_signed(cfg.gain[0]));
    print_value("gain_r ", as_signed(cfg.gain[1]));
    print_value("gain_b ", as_signed(cfg.gain[2]));
    print_value("gain_g1", as_signed(cfg.gain[3]));
    print_value("gain_s ", as_signed(cfg.gain[4]));
    print_value("offset_2s_g0", as_signed(cfg.offset_2s[0]));
    print_value("offset_2s_r ", as_signed(cfg.offset_2s[1]));
    print_value("offset_2s_b ", as_signed(cfg.offset_2s[2]));
    print_value("offset_2s_g1", as_signed(cfg.offset_2s[3]));
    print_value("offset_2s_s ", as_signed(cfg.offset_2s[4]));
}

void print_crc_cfg(const CalDccCfg *dcc_cfg, const CalCrcCfg *crc_cfg)
{
    print("mode = %d (0: normal, 1: disable)\n", dcc_cfg->cfg.mode);
    char name[] = "curve[0]";
    for (const IsDccGainCurveCfg &curve : crc_cfg->curve) {
        print_array(name, ".x", curve.x);
        print_array(name, ".y", curve.y);
        print_array(name, ".m", curve.m);
        name[sizeof("curve[") - 1]++;
    }
}

void print_lsc_cfg(const CalLscCfg *lsc_cfg)
{
    print_value("cfg.mode", lsc_cfg->cfg.mode);
    print_value("cfg.bayer_phase_srep", as_signed(lsc_cfg->cfg.bayer_phase_srep));

    const is_lsc_curve_coeff &coeff = lsc_cfg->curve.coeff[0];
    print_value("curve.enable", lsc_cfg->curve.enable);
    print_value("origin", as_signed(coeff.fit_y0x0));
    print_value("x_trend_2s", as_signed(coeff.dx_y0x0_2s));
    print_value("y_trend_2s", as_signed(coeff.dy_y0x0_2s));
    print_value("x_curvature", as_signed(coeff.dx2));
    print_value("y_curvature", as_signed(coeff.dy2));
    print_value("tilt_2s", as_signed(coeff.dydx_2s));

    const IsLscTableCfg &table = lsc_cfg->table;
    print_value("table.enable", table.enable);
    print_value("table.merge_en", table.merge_en);
    print_value("table.prec", table.prec);
    print_value("table.gain_mod", table.gain_mod);
    print_value("table.hori_start_int", table.hori_start_int);
    print_value("table.hori_start_frac", as_signed(table.hori_start_frac));
    print_value("table.hori_step", as_signed(table.hori_step));
    print_value("table.verti_start_int", table.verti_start_int);
    print_value("table.verti_start_frac", as_signed(table.verti_start_frac));
    print_value("table.verti_step", as_signed(table.verti_step));
    print("table.coeff.ee :\n");
    print_grid(table.coeff.ee, 32, cell(3));
    print("table.coeff.eo :\n");
    print_grid(table.coeff.eo, 32, cell(3));
    print("table.coeff.oe :\n");
    print_grid(table.coeff.oe, 32, cell(3));
    print("table.coeff.oo :\n");
    print_grid(table.coeff.oo, 32, cell(3));
}

// The block of one calibration module and its label.
struct cal_block {
    const char *label;
    void (*print)(const CalAllCfg &cal);
};

constexpr cal_block dbc = {"DBC", [](const CalAllCfg &cal) { print_dbc_cfg(&cal.dbc); }};
constexpr cal_block dcc = {"DCC", [](const CalAllCfg &cal) { print_dcc_cfg(&cal.dcc); }};
constexpr cal_block crc = {"CRC", [](const CalAllCfg &cal) { print_crc_cfg(&cal.dcc, &cal.crc); }};
constexpr cal_block lsc = {"LSC", [](const CalAllCfg &cal) { print_lsc_cfg(&cal.lsc); }};

// Prints the block of each sensor of a stitched image, with numbered labels, or of the single
// sensor.
void print_sensors(const DipPathCtx &ctx, const cal_block &block, bool label_single)
{
    const CalAllCfg(&cal)[2] = ctx.dip_ctx.cfg.cal;
    if (ctx.dip_ctx.dev_attr.stitch_en != 0) {
        for (int i = 0; i < 2; i++) {
            print("%s%d:\n", block.label, i);
            block.print(cal[i]);
        }
        return;
    }
    if (label_single)
        print("%s:\n", block.label);
    block.print(cal[0]);
}

void print_cal(const DipPathCtx &ctx)
{
    for (const cal_block &block : {dbc, dcc, crc, lsc})
        print_sensors(ctx, block, true);
}

void print_dbc(const DipPathCtx &ctx)
{
    print_sensors(ctx, dbc, false);
}

void print_dcc(const DipPathCtx &ctx)
{
    print_sensors(ctx, dcc, false);
}

void print_crc(const DipPathCtx &ctx)
{
    print_sensors(ctx, crc, false);
}

void print_lsc(const DipPathCtx &ctx)
{
    print_sensors(ctx, lsc, false);
}

void print_awb(const DipPathCtx &ctx)
{
    const DipAwbCfg &awb = ctx.dip_ctx.cfg.awb;
    for (int k = 0; k < 2; k++) {
        print("gain[%d].enable = %d,\n", k, awb.gain[k].enable);
        for (int i = 0; i < 4; i++)
            print("gain[%d].gain.val[%d] = %d,\n", k, i, awb.gain[k].gain.val[i]);
    }
}

void print_te(const DipPathCtx &ctx)
{
    const IsBspTmCfg &tm = ctx.dip_ctx.cfg.te.tm;
    print_value("TE enable", tm.enable);
    print("TE Curve[60]:\n");
    print_grid(tm.curve.val, 6, cell(5));
}

void print_hte(const DipPathCtx &ctx)
{
    const IspHdrTmCfg &hdr_tm = ctx.dip_ctx.cfg.hte.hdr_tm;
    print_value("HTE enable", hdr_tm.enable);
    print("HTE curve[60]:\n");
    print_grid(hdr_tm.curve.val, 6, cell(5));
}

void print_gamma(const DipPathCtx &ctx)
{
    const DipGammaCfg &gamma = ctx.dip_ctx.cfg.gamma;
    print("FGMA mode = %d (0: normal, 1: disable)\n", gamma.fgma.mode);
    print("FAGMA mode = %d (0: normal, 1: disable)\n", gamma.fagma.mode);
    print("GMA mode = %d (0: normal, 1: disable)\n", gamma.gma.mode);
    print("GMA curve[60]:\n");
    print_grid(gamma.gma.curve.val, 6, cell(5, as_signed));
}

void print_dpc(const DipPathCtx &ctx)
{
    const IspDpcCfg &dpc = ctx.dip_ctx.cfg.dpc.cfg;
    const IsBspDpcCfg &bsp_dpc = ctx.dip_ctx.cfg.dpc.bsp_dpc_cfg;
    print("dpc_mode = %d (0: normal, 1: disable)\n", dpc.dpc_mode);
    print_value("g_dislike_th", dpc.g_dislike_th);
    print_value("br_dislike_th", dpc.br_dislike_th);
    print_value("g_correct_overshoot", dpc.g_correct_overshoot);
    print_value("br_correct_overshoot", dpc.br_correct_overshoot);
    print_value("g_sad_gain", dpc.g_sad_gain);
    print_value("br_sad_gain", dpc.br_sad_gain);
    print_value("correct_bright_en", dpc.correct_bright_en);
    print_value("correct_dark_en", dpc.correct_dark_en);
    print_value("correct_mid_en", dpc.correct_mid_en);
    print_value("bright_th", dpc.bright_th);
    print_value("dark_th", dpc.dark_th);
    print_value("enable", bsp_dpc.enable);
    print_value("dir_enable", bsp_dpc.dir_enable);
    print_value("dir_th_ratio", bsp_dpc.dir_th_ratio);
    print_value("dir_str_m", bsp_dpc.dir_str_m);
}

void print_dpd(const DipPathCtx &ctx)
{
    const is_dynamic_dpd &ddpd = ctx.dip_ctx.cfg.dpd.cfg.ddpd;
    print_value("enable", ddpd.enable);
    print_value("g_pattern_mode", ddpd.g_pattern_mode);
    print_value("pix_num_mode", ddpd.pix_num_mode);
    print_value("diff_ratio", ddpd.diff_ratio);
    print_value("avg_ratio", ddpd.avg_ratio);
    print_value("edge_diff_ratio", ddpd.edge_diff_ratio);
    print_value("edge_avg_ratio", ddpd.edge_avg_ratio);
    print_value("edge_m", ddpd.edge_m);
}

void print_dms(const DipPathCtx &ctx)
{
    const IspDmsCfg &dms = ctx.dip_ctx.cfg.dms.cfg;
    print("mode = %d (0: normal, 1: disable)\n", dms.mode);
    print_value("g_var_gain", dms.g_var_gain);
    print_value("fcs_threshold", dms.fcs_threshold);
    print_value("inter_conf_slope", dms.inter_conf_slope);
    print_value("fcs_offset", dms.fcs_offset);
    print_value("g_at_m_inter_ratio", dms.g_at_m_inter_ratio);
    print_value("m_at_m_inter_ratio", dms.m_at_m_inter_ratio);
    print_value("m_at_g_inter_ratio", dms.m_at_g_inter_ratio);
    print_value("g_at_m_soft_clip_slope", dms.g_at_m_soft_clip_slope);
    print_value("m_at_m_soft_clip_slope", dms.m_at_m_soft_clip_slope);
    print_value("m_at_g_soft_clip_slope", dms.m_at_g_soft_clip_slope);
    print_value("m_at_g_gradient_src_ratio", dms.m_at_g_gradient_src_ratio);
}

void print_fcs(const DipPathCtx &ctx)
{
    const IspFcsCfg &fcs = ctx.dip_ctx.cfg.fcs.fcs;
    print("mode = %d (0: normal, 1: disable)\n", fcs.mode);
    print_value("trans.diff_level_max", fcs.trans.diff_level_max);
    print_value("trans.gain", fcs.trans.gain);
    print_value("grid.cnt_th_high", fcs.grid.cnt_th_high);
    print_value("grid.cnt_th_low", fcs.grid.cnt_th_low);
    print_value("grid.cnt_raw_th", fcs.grid.cnt_raw_th);
    print_value("grid.trans_level_th", fcs.grid.trans_level_th);
    print_value("grid.trans_round_bit_high", fcs.grid.trans_round_bit_high);
    print_value("grid.trans_round_bit_low", fcs.grid.trans_round_bit_low);
    print_value("color.diff_self_th", fcs.color.diff_self_th);
    print_value("color.diff_neighbor_th", fcs.color.diff_neighbor_th);
    print_value("color.coring_th", fcs.color.coring_th);
    print_value("corr.correction_gain", fcs.corr.correction_gain);
    print_value("corr.target_bg_ratio", fcs.corr.target_bg_ratio);
    print_value("corr.target_rg_ratio", fcs.corr.target_rg_ratio);
}

void print_csm(const DipPathCtx &ctx)
{
    const IspCcmCfg &ccm = ctx.dip_ctx.cfg.csm.ccm;
    const IspCstCfg &cst = ctx.dip_ctx.cfg.csm.cst;
    print("CCM:\n");
    print("r_r_coeff_2s = %5d,\n", ccm.coeff_2s[0]);
    print("r_g_coeff_2s = %5d,\n", ccm.coeff_2s[1]);
    print("r_b_coeff_2s = %5d,\n", ccm.coeff_2s[2]);
    print("r_offset_2s = %5d,\n", ccm.offset_2s[0]);
    print("g_r_coeff_2s = %5d,\n", ccm.coeff_2s[3]);
    print("g_g_coeff_2s = %5d,\n", ccm.coeff_2s[4]);
    print("g_b_coeff_2s = %5d,\n", ccm.coeff_2s[5]);
    print("g_offset_2s = %5d,\n", ccm.offset_2s[1]);
    print("b_r_coeff_2s = %5d,\n", ccm.coeff_2s[6]);
    print("b_g_coeff_2s = %5d,\n", ccm.coeff_2s[7]);
    print("b_b_coeff_2s = %5d,\n", ccm.coeff_2s[8]);
    print("b_offset_2s = %5d,\n", ccm.offset_2s[2]);
    print("CST:\n");
    print("y_r_coeff_2s = %5d,\n", cst.coeff_2s[0]);
    print("y_g_coeff_2s = %5d,\n", cst.coeff_2s[1]);
    print("y_b_coeff_2s = %5d,\n", cst.coeff_2s[2]);
    print("y_offset_2s = %5d,\n", cst.offset_2s[0]);
    print("u_r_coeff_2s = %5d,\n", cst.coeff_2s[3]);
    print("u_g_coeff_2s = %5d,\n", cst.coeff_2s[4]);
    print("u_b_coeff_2s = %5d,\n", cst.coeff_2s[5]);
    print("u_offset_2s = %5d,\n", cst.offset_2s[1]);
    print("v_r_coeff_2s = %5d,\n", cst.coeff_2s[6]);
    print("v_g_coeff_2s = %5d,\n", cst.coeff_2s[7]);
    print("v_b_coeff_2s = %5d,\n", cst.coeff_2s[8]);
    print("v_offset_2s = %5d,\n", cst.offset_2s[2]);
}

void print_enh_cfg(const DipEnhCfg &enh)
{
    const isp_enh_luma &luma = enh.cfg.luma;
    print_value("cfg.luma.y_mode", luma.y_mode);
    print_value("cfg.luma.y_l_r", luma.y_l_r);
    print_value("cfg.luma.y_l_eps", luma.y_l_eps);
    print_value("cfg.luma.y_l_edge_strength", luma.y_l_edge_strength);
    print_value("cfg.luma.y_l_mean_norm", luma.y_l_mean_norm);
    print_value("cfg.luma.y_l_dt_mean_norm", luma.y_l_dt_mean_norm);
    print_value("cfg.luma.y_l_dt_corr_norm", luma.y_l_dt_corr_norm);
    print_value("cfg.luma.y_s_eps", luma.y_s_eps);
    print_value("cfg.luma.y_s_edge_strength", luma.y_s_edge_strength);
    print_value("cfg.luma.y_s_mean_norm", luma.y_s_mean_norm);
    print_value("cfg.luma.y_s_dt_mean_norm", luma.y_s_dt_mean_norm);
    print_value("cfg.luma.y_s_dt_corr_norm", luma.y_s_dt_corr_norm);
    print_value("cfg.luma.y_l_detail_gain", luma.y_l_detail_gain);
    print_value("cfg.luma.y_s_detail_gain", luma.y_s_detail_gain);
    print_array("", "cfg.luma.blend_curve.x", luma.blend_curve.x);
    print_array("", "cfg.luma.blend_curve.y", luma.blend_curve.y);
    print_array("", "cfg.luma.blend_curve.m", luma.blend_curve.m);

    const luma_gain_curve &gain_curve = enh.cfg.gain_curve;
    print_array("", "cfg.gain_curve.x", gain_curve.x);
    print_array("", "cfg.gain_curve.y", gain_curve.y);
    for (int i = 0; i < 5; i++) {
        const int m_2s = gain_curve.m_2s[i];
        print("cfg.gain_curve.m_2s[%d] = %d (%d)\n", i, m_2s, m_2s >= 512 ? m_2s - 1024 : m_2s);
    }

    const isp_enh_chroma &chroma = enh.cfg.chroma;
    print_value("cfg.chroma.c_mode", chroma.c_mode);
    print_value("cfg.chroma.c_r", chroma.c_r);
    print_value("cfg.chroma.c_eps_y", chroma.c_eps_y);
    print_value("cfg.chroma.c_eps_c", chroma.c_eps_c);
    print_value("cfg.chroma.c_mean_norm", chroma.c_mean_norm);
    print_value("cfg.chroma.c_dt_mean_norm", chroma.c_dt_mean_norm);
    print_value("cfg.chroma.c_dt_corr_norm", chroma.c_dt_corr_norm);
    print_value("cfg.chroma.c_edge_y_strength", chroma.c_edge_y_strength);
    print_value("cfg.chroma.c_edge_c_strength", chroma.c_edge_c_strength);
}

void print_front_enh(const DipPathCtx &ctx)
{
    print_enh_cfg(ctx.dip_ctx.cfg.front_enh);
}

void print_ime_penalty(const VpMeCfg &me)
{
    print_value("ime_penalty_gain_x_sel", me.ime_penalty_gain_x_sel);
    print_value("ime_penalty_gain_y_sel", me.ime_penalty_gain_y_sel);
    print_value("ime_penalty_bound_x_ini", me.ime_penalty_bound_x_ini);
    print_value("ime_penalty_bound_y_ini", me.ime_penalty_bound_y_ini);
}

enum class me_engine { main, front };

void print_me_set(const VpMeCfg &me, me_engine engine)
{
    const bool front = engine == me_engine::front;
    print("mode = %d (0: normal, 1: disable)\n", me.mode);
    print_value("scene_change", me.scene_change);
    print_value("gmv_x", me.gmv_x);
    print_value("gmv_y", me.gmv_y);
    print_value("gmv_cand_valid", me.gmv_cand_valid);
    print_value("mode_left_mv_diff_th", me.mode_left_mv_diff_th);
    print_value("mode_top_left_mv_diff_th", me.mode_top_left_mv_diff_th);
    print_value("mode_top_right_mv_diff_th", me.mode_top_right_mv_diff_th);
    print_value("bottom_left_dist_x", me.bottom_left_dist_x);
    print_value("bottom_left_dist_y", me.bottom_left_dist_y);
    print_value("bottom_right_dist_x", me.bottom_right_dist_x);
    print_value("bottom_right_dist_y", me.bottom_right_dist_y);
    print_value("sw_center_mode", me.sw_center_mode);
    print_value("sw_center_x_sw", me.sw_center_x_sw);
    print_value("sw_center_y_sw", me.sw_center_y_sw);
    print_value("sw_center_weight", me.sw_center_weight);
    print_value("sw_ix", me.sw_ix);
    print_value("sw_iy", me.sw_iy);
    print_value("sw_ix_size", me.sw_ix_size);
    print_value("sw_iy_size", me.sw_iy_size);
    print_value("mvr_left_extend_dist", me.mvr_left_extend_dist);
    print_value("mvr_right_extend_dist", me.mvr_right_extend_dist);
    print_ime_penalty(me);
    if (!front)
        print_value("search_texture_th", me.search_texture_th);
    print_value("valid_true_mv_th", me.valid_true_mv_th);
    print_value("matching_weight", me.matching_weight);
    if (!front)
        print_value("singularity_weight", me.singularity_weight);
    print_value("range_weight", me.range_weight);
    print_value("m_cost_quarter_gain", me.m_cost_quarter_gain);
    print_value("m_cost_half_gain", me.m_cost_half_gain);
    print_value("m_cost_frac_offset", me.m_cost_frac_offset);
    print_value("singularity_min_th", me.singularity_min_th);
    print_value("singularity_max_th", me.singularity_max_th);
    print_value("texture_gain_low_th", me.texture_gain_low_th);
    print_value("texture_gain_high_th", me.texture_gain_high_th);
    print_value("texture_gain_low", me.texture_gain_low);
    print_value("texture_gain_high", me.texture_gain_high);
    print_value("texture_gain_slope", me.texture_gain_slope);
    print_value("range_min_x_th", me.range_min_x_th);
    print_value("range_max_x_th", me.range_max_x_th);
    print_value("range_min_y_th", me.range_min_y_th);
    print_value("range_max_y_th", me.range_max_y_th);
    print_value("spatial_cost_offset", me.spatial_cost_offset);
    print_value("temporal_cost_offset", me.temporal_cost_offset);
    print_value("search_weak_cost_offset", me.search_weak_cost_offset);
    if (!front)
        print_value("search_cost_offset", me.search_cost_offset);
    print_value("refine_cost_offset", me.refine_cost_offset);
    print_value("gmv_cost_offset", me.gmv_cost_offset);
    if (front)
        print_value("search_texture_th", me.search_texture_th);
    print_value("non_zero_mv_cost_offset", me.non_zero_mv_cost_offset);
    if (front)
        print_value("singularity_weight", me.singularity_weight);
}

void print_gluey_set(const VpMeCfg &me)
{
    print_value("search_weak_cost_offset", me.search_weak_cost_offset);
    print_value("search_cost_offset", me.search_cost_offset);
    print_value("refine_cost_offset", me.refine_cost_offset);
    print_value("gmv_cost_offset", me.gmv_cost_offset);
    print_value("range_weight", me.range_weight);
    print_value("texture_gain_low", me.texture_gain_low);
}

void print_active_set(const VpMeCfg &me)
{
    print_ime_penalty(me);
    print_value("search_texture_th", me.search_texture_th);
    print_value("texture_gain_low_th", me.texture_gain_low_th);
    print_value("singularity_weight", me.singularity_weight);
    print_value("range_weight", me.range_weight);
    print_value("non_zero_mv_cost_offset", me.non_zero_mv_cost_offset);
    print_value("texture_gain_low", me.texture_gain_low);
    print_value("gmv_cost_offset", me.gmv_cost_offset);
}

void print_front_me(const DipPathCtx &ctx)
{
    print_me_set(ctx.dip_ctx.cfg.front_me.me, me_engine::front);
}

void print_gluey_front_me(const DipPathCtx &ctx)
{
    print_gluey_set(ctx.dip_ctx.cfg.gluey_front_me.me);
}

void print_active_front_me(const DipPathCtx &ctx)
{
    print_active_set(ctx.dip_ctx.cfg.active_front_me.me);
}

// Returns the slot of the window that the path is bound to, or -1 when the path's list of windows
// does not hold it. A window that the list holds twice has the last of its slots.
int active_win_idx(const DipCtx &dip_ctx)
{
    const MPI_WIN &bind_win_idx = dip_ctx.win_info.win_idx;
    const int flat_win_idx = bind_win_idx.chn * 4 + bind_win_idx.win;
    int i = std::clamp(dip_ctx.active_win_cnt, 0, DIP_WIN_NUM) - 1;
    while (i >= 0 && dip_ctx.flat_win_list[i] != flat_win_idx)
        i--;
    return i;
}

// Prints the slot of the bound window.
template <typename Cfg>
void print_win_cfg(const DipPathCtx &ctx, const Cfg (&slots)[DIP_WIN_NUM],
                   void (*print_cfg)(const Cfg &cfg))
{
    const int slot = active_win_idx(ctx.dip_ctx);
    if (slot >= 0)
        print_cfg(slots[slot]);
    else
        print("Unable to acquire corresponding window cfg.\n");
}

// The fields that the filters ma_y, mc_y and ma_c open with.
template <typename Filter>
void print_nr_lut(const char *filter, const Filter &cfg)
{
    print_value(filter, ".step", cfg.step);
    print_array(filter, ".lut_i", cfg.lut_i);
    print_array(filter, ".lut_o", cfg.lut_o);
    print_array(filter, ".lut_slope", cfg.lut_slope);
}

// The fields of ma_y, which mc_y shares.
void print_nr_y(const char *filter, const nr_3d_ma_y &cfg)
{
    print_nr_lut(filter, cfg);
    print_value(filter, ".lp_dyn_gain_th_min", cfg.lp_dyn_gain_th_min);
    print_value(filter, ".lp_dyn_gain_th_max", cfg.lp_dyn_gain_th_max);
    print_value(filter, ".lp_dyn_gain_min", cfg.lp_dyn_gain_min);
    print_value(filter, ".lp_dyn_gain_max", cfg.lp_dyn_gain_max);
    print_value(filter, ".lp_dyn_gain_slope", cfg.lp_dyn_gain_slope);
    print_value(filter, ".lp_diff_gain_th_min", cfg.lp_diff_gain_th_min);
    print_value(filter, ".lp_diff_gain_th_range", cfg.lp_diff_gain_th_range);
    print_value(filter, ".lp_diff_gain_min", cfg.lp_diff_gain_min);
    print_value(filter, ".lp_diff_gain_max", cfg.lp_diff_gain_max);
}

void print_nr_cfg(const DipNrCfg &cfg)
{
    const VpNrCfg &nr = cfg.nr;
    print_value("mode", nr.mode);
    print("(0: normal, 1: 2D only, 2: 3D only, 3: mono, 4: disable, 5: bypass)\n");
    print_nr_y("ma_y", nr.ma_y);
    print_nr_y("mc_y", nr.mc_y.y);
    print_value("mc_y.base_ratio", nr.mc_y.base_ratio);
    print_value("mc_y.base_dyn", nr.mc_y.base_dyn);
    print_nr_lut("ma_c", nr.ma_c);
    print("ma_c.ref = %d (0: HP, 1: LD_DYN, 2: LP)\n", nr.ma_c.ref);
    print_value("ma_c.weight_y_gain_th_min", nr.ma_c.weight_y_gain_th_min);
    print_value("ma_c.weight_y_gain_th_max", nr.ma_c.weight_y_gain_th_max);
    print_value("ma_c.weight_y_gain_min", nr.ma_c.weight_y_gain_min);
    print_value("ma_c.weight_y_gain_max", nr.ma_c.weight_y_gain_max);
    print_value("ma_c.weight_y_gain_slope", nr.ma_c.weight_y_gain_slope);
    print("fir.kernel = %d (0: 3x3, 1: 5x5)\n", nr.fir.kernel);
    print_value("fir.weight_y", nr.fir.weight_y);
    print_value("fir.weight_c", nr.fir.weight_c);
    print("iir.confidence = %d (0: HP, 1: LD_DYN, 2: LP)\n", nr.iir.confidence);
    print_value("iir.alpha_y_gain", nr.iir.alpha_y_gain);
    print_value("iir.alpha_c_gain", nr.iir.alpha_c_gain);
}

void print_front_nr(const DipPathCtx &ctx)
{
    print_win_cfg(ctx, ctx.dip_ctx.cfg.win_front_nr, print_nr_cfg);
}

void print_enh(const DipPathCtx &ctx)
{
    print_win_cfg(ctx, ctx.dip_ctx.cfg.win_enh, print_enh_cfg);
}

void print_shp_cfg(const DipShpCfg &cfg)
{
    const IspShpCfg &shp = cfg.shp;
    print("mode = %d (0: normal, 1: disable, 2: bypass)\n", shp.mode);
    print_value("bpf_gain_2s", shp.bpf_gain_2s);
    print_value("hpf_gain_2s", shp.hpf_gain_2s);
    print_value("level_gain_2s", shp.level_gain_2s);
    print_value("soft_clip_slope", shp.soft_clip_slope);
    for (int i = 0; i < 6; i++) {
        print("gain_curve_x_%d = %d\n", i, shp.gain_curve.x[i]);
        print("gain_curve_y_%d = %d\n", i, shp.gain_curve.y[i]);
    }
    for (int i = 0; i < 5; i++)
        print("gain_curve_m_2s_%d = %d\n", i, shp.gain_curve.m_2s[i]);
    for (int i = 0; i < 11; i++) {
        print("luma_ctrl_gain_x_%d = %d\n", i, shp.luma_ctrl_gain.x[i]);
        print("luma_ctrl_gain_y_%d = %d\n", i, shp.luma_ctrl_gain.y[i]);
    }
    for (int i = 0; i < 10; i++)
        print("luma_ctrl_gain_m_2s_%d = %d\n", i, shp.luma_ctrl_gain.m_2s[i]);
}

void print_shp(const DipPathCtx &ctx)
{
    print_win_cfg(ctx, ctx.dip_ctx.cfg.win_shp, print_shp_cfg);
}

void print_dhz(const DipPathCtx &ctx)
{
    const IspDhzCfg &dhz = ctx.dip_ctx.cfg.dhz.dhz;
    const IspDhzRglCfg &dhz_rgl = ctx.dip_ctx.cfg.dhz.dhz_rgl;
    print_value("strength", dhz.strength);
    print_value("y_gain_max", dhz.y_gain_max);
    print_value("c_gain_max", dhz.c_gain_max);
    print_value("y_dc", dhz.y_dc);
    print_value("u_dc", dhz.u_dc);
    print_value("v_dc", dhz.v_dc);
    print("rgl.gain:\n");
    print_grid(dhz_rgl.gain, 8, cell(4));
    print("rgl.offset:\n");
    print_grid(dhz_rgl.offset, 8, cell(4));
}

void print_pta(const DipPathCtx &ctx)
{
    const VpPteCfg &pte = ctx.dip_ctx.cfg.pte.pte;
    print("PTA Curve[33]:\n");
    print_grid(pte.curve.val, 6, cell(5));
}

void print_me(const DipPathCtx &ctx)
{
    print_me_set(ctx.dip_ctx.cfg.me.me, me_engine::main);
}

void print_gluey_me(const DipPathCtx &ctx)
{
    print_gluey_set(ctx.dip_ctx.cfg.gluey_me.me);
}

void print_active_me(const DipPathCtx &ctx)
{
    print_active_set(ctx.dip_ctx.cfg.active_me.me);
}

void print_nr(const DipPathCtx &ctx)
{
    print_win_cfg(ctx, ctx.dip_ctx.cfg.win_nr, print_nr_cfg);
}

void print_motion_status(const IspMotionStatusCfg &status)
{
    print_value("enable", status.enable);
    print_value("show_dyn_me_log", status.show_dyn_me_log);
    print_value("gluey_me_frame_count_down_max", status.gluey_me_frame_count_down_max);
    print_value("mv_coring_th", status.mv_coring_th);
    print_value("mv_low_th", status.mv_low_th);
    print_value("mv_high_th", status.mv_high_th);
    print_value("rc_use_isp_m2s", status.rc_use_isp_m2s);
    print_value("motion_level_low_th", status.motion_level_low_th);
    print_value("motion_level_high_th", status.motion_level_high_th);
    print_value("motion_level_max", status.motion_level_max);
}

void print_motion_status_cfg(const DipPathCtx &ctx)
{
    print_motion_status(ctx.dip_ctx.cfg.motion_status_cfg);
}

void print_front_motion_status_cfg(const DipPathCtx &ctx)
{
    print_motion_status(ctx.dip_ctx.cfg.front_motion_status_cfg);
}

void print_coring(const DipPathCtx &ctx)
{
    const VpNrwCoringCfg &coring = ctx.dip_ctx.cfg.coring.coring;
    print_value("enable", coring.enable);
    print_value("th0", coring.th0);
    print_value("slope", coring.slope);
}

void print_hdr(const DipPathCtx &ctx)
{
    const DipHdrCfg &hdr = ctx.dip_ctx.cfg.hdr;
    print_value("mode", hdr.mode);
    print_value("anti_gma.long_exp_mode", hdr.anti_gma.long_exp_mode);
    print_value("anti_gma.short_exp_mode", hdr.anti_gma.short_exp_mode);
    print_value("exp.exp_long_early", hdr.exp.exp_long_early);
    print_value("exp.exp_ratio", hdr.exp.exp_ratio);
    print_value("exp.exp_ratio_inv", hdr.exp.exp_ratio_inv);
    print_value("exp.se_exp_ratio_min_int", hdr.exp.se_exp_ratio_min_int);
    print_value("weight.se_weight_th_min", hdr.weight.se_weight_th_min);
    print_value("weight.se_weight_slope", hdr.weight.se_weight_slope);
    print_value("weight.se_weight_min", hdr.weight.se_weight_min);
    print_value("weight.se_weight_max", hdr.weight.se_weight_max);
    print_value("weight.le_weight_th_max", hdr.weight.le_weight_th_max);
    print_value("weight.le_weight_slope", hdr.weight.le_weight_slope);
    print_value("weight.le_weight_min", hdr.weight.le_weight_min);
    print_value("weight.le_weight_max", hdr.weight.le_weight_max);
    print_value("fb.local_fb_th", hdr.fb.local_fb_th);
    print_value("fb.local_fb_slope", hdr.fb.local_fb_slope);
    print_value("fb.local_fb_min", hdr.fb.local_fb_min);
    print_value("fb.local_fb_max", hdr.fb.local_fb_max);
    print_value("fb.frame_fb_strength", hdr.fb.frame_fb_strength);
    print_value("fb.fb_target", hdr.fb.fb_target);
    print_value("fb.fb_alpha", hdr.fb.fb_alpha);
    print_value("fb.mismatch_var_gain_2s", hdr.fb.mismatch_var_gain_2s);
    print_value("gma.mode", hdr.gma.mode);
}

void print_hawb(const DipPathCtx &ctx)
{
    const IspHdrAwbCfg &hdr_awb = ctx.dip_ctx.cfg.hawb.hdr_awb;
    print_value("enable", hdr_awb.enable);
    for (int i = 0; i < 4; i++)
        print("gain[0].gain.val[%d] = %d,\n", i, hdr_awb.gain[i]);
}

void print_lm_cfg(const IspLargeMotionCfg &lm)
{
    print_value("cfg.enable", lm.enable);
    print_value("cfg.conf_low_th", lm.conf_low_th);
    print_value("cfg.conf_high_th", lm.conf_high_th);
}

void print_isp_lm(const DipPathCtx &ctx)
{
    print_win_cfg(ctx, ctx.dip_ctx.cfg.isp_lm, print_lm_cfg);
}

void print_weak_win_shp(const DipPathCtx &ctx)
{
    print_win_cfg(ctx, ctx.dip_ctx.cfg.weak_win_shp, print_shp_cfg);
}

constexpr item item_list[] = {
    {"cal", "Calibration(CAL) modules, including DBC, DCC, CRC, LSC", print_cal},
    {"dbc", "Device Black-level Correction(DBC) module", print_dbc},
    {"dcc", "Device Color Correction(DCC) module", print_dcc},
    {"crc", "CRC module", print_crc},
    {"lsc", "Lens Shading Correction(LSC) module", print_lsc},
    {"awb", "Auto White Balance(AWB) module", print_awb},
    {"te", "Tone Enhancement(TE) module", print_te},
    {"hte", "HDR tone enhacement(HTE) module", print_hte},
    {"gamma", "Gamma module", print_gamma},
    {"dpc", "Defect Pixel Correction(DPC) module", print_dpc},
    {"dpd", "DPD extension settings", print_dpd},
    {"dms", "Demosaicking(DMS) module", print_dms},
    {"fcs", "False Color Suppression(FCS) module", print_fcs},
    {"csm", "Color Saturation Modification(CSM) module", print_csm},
    {"front_enh", "Front Enhancement(ENH) module", print_front_enh},
    {"front_me", "Front Motion Estimation(ME) module", print_front_me},
    {"gluey_front_me", "Gluey Front Motion Estimation(ME) module", print_gluey_front_me},
    {"active_front_me", "Active Front Motion Estimation(ME) module", print_active_front_me},
    {"front_motion_status_cfg", "Front Motion status configuration for ME module",
     print_front_motion_status_cfg},
    {"front_nr", "Front Noise Reduction(NR) module", print_front_nr},
    {"enh", "Enhancement(ENH) module", print_enh},
    {"shp", "Sharpness(SHP) module", print_shp},
    {"dhz", "Dehaze(DHZ) module", print_dhz},
    {"pta", "Post Tone Enhancement(PTE) module", print_pta},
    {"me", "Motion Estimation(ME) module", print_me},
    {"gluey_me", "Gluey Motion Estimation module", print_gluey_me},
    {"active_me", "Acitve Motion Estimation module", print_active_me},
    {"motion_status_cfg", "Motion status configuration for ME module", print_motion_status_cfg},
    {"nr", "Noise Reduction(NR) module", print_nr},
    {"coring", "Coring module", print_coring},
    {"hdr", "High Dynamic Range (HDR) module", print_hdr},
    {"hawb", "HDR AWB module", print_hawb},
    {"isp_lm", "Large motion (LM) module", print_isp_lm},
    {"weak_win_shp", "Sharpness(SHP) module (weak setting)", print_weak_win_shp},
};

// dbc, dcc, crc and lsc are part of cal.
constexpr auto order =
    print_order(item_list, "cal", "awb", "te", "hte", "gamma", "dpc", "dpd", "dms", "fcs", "csm",
                "front_enh", "front_me", "gluey_front_me", "active_front_me", "front_nr", "enh",
                "shp", "dhz", "pta", "me", "gluey_me", "active_me", "nr", "motion_status_cfg",
                "front_motion_status_cfg", "coring", "hdr", "hawb", "isp_lm", "weak_win_shp");

int print_entry(const DipPathCtx *ctx, const char *entry)
{
    return print_sections(title, item_list, order, ctx, entry);
}

void print_help()
{
    list_items<item>(title, item_list);
}

constexpr VordaCallback cb = {title, comments, print_entry, print_help};

} // namespace

void regCmd_cfg()
{
    parse_rgtr(&cb);
}
