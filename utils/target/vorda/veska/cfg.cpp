// The category cfg: the hardware configurations that the DIP computed for one input path.
#include "category.h"
#include "text.h"
#include "vorda.h"

#include <algorithm>

namespace
{

constexpr char title[] = "cfg";
constexpr char comments[] = "Computation results of DIP modules";

void print_dbc_cfg(Text &text, const CalDbcCfg &dbc)
{
    const IsDbcCfg &cfg = dbc.cfg;
    text.value("mode", cfg.mode, " (0: normal, 1: disable)\n");
    text.value("level_g0", cfg.level[0]);
    text.value("level_r ", cfg.level[1]);
    text.value("level_b ", cfg.level[2]);
    text.value("level_g1", cfg.level[3]);
    text.value("level_s ", cfg.level[4]);
}

void print_dcc_cfg(Text &text, const CalDccCfg &dcc)
{
    const IsDccCfg &cfg = dcc.cfg;
    text.value("mode", cfg.mode, " (0: normal, 1: disable)\n");
    text.value("gain_g0", as_signed(cfg.gain[0]));
    text.value("gain_r ", as_signed(cfg.gain[1]));
    text.value("gain_b ", as_signed(cfg.gain[2]));
    text.value("gain_g1", as_signed(cfg.gain[3]));
    text.value("gain_s ", as_signed(cfg.gain[4]));
    text.value("offset_2s_g0", as_signed(cfg.offset_2s[0]));
    text.value("offset_2s_r ", as_signed(cfg.offset_2s[1]));
    text.value("offset_2s_b ", as_signed(cfg.offset_2s[2]));
    text.value("offset_2s_g1", as_signed(cfg.offset_2s[3]));
    text.value("offset_2s_s ", as_signed(cfg.offset_2s[4]));
}

void print_crc_cfg(Text &text, const CalDccCfg &dcc, const CalCrcCfg &crc)
{
    text.value("mode", dcc.cfg.mode, " (0: normal, 1: disable)\n");
    char name[] = "curve[0]";
    for (const IsDccGainCurveCfg &curve : crc.curve) {
        text.elements(name, ".x", curve.x);
        text.elements(name, ".y", curve.y);
        text.elements(name, ".m", curve.m);
        name[sizeof("curve[") - 1]++;
    }
}

void print_lsc_cfg(Text &text, const CalLscCfg &lsc)
{
    text.value("cfg.mode", lsc.cfg.mode);
    text.value("cfg.bayer_phase_srep", as_signed(lsc.cfg.bayer_phase_srep));

    const is_lsc_curve_coeff &coeff = lsc.curve.coeff[0];
    text.value("curve.enable", lsc.curve.enable);
    text.value("origin", as_signed(coeff.fit_y0x0));
    text.value("x_trend_2s", as_signed(coeff.dx_y0x0_2s));
    text.value("y_trend_2s", as_signed(coeff.dy_y0x0_2s));
    text.value("x_curvature", as_signed(coeff.dx2));
    text.value("y_curvature", as_signed(coeff.dy2));
    text.value("tilt_2s", as_signed(coeff.dydx_2s));

    const IsLscTableCfg &table = lsc.table;
    text.value("table.enable", table.enable);
    text.value("table.merge_en", table.merge_en);
    text.value("table.prec", table.prec);
    text.value("table.gain_mod", table.gain_mod);
    text.value("table.hori_start_int", table.hori_start_int);
    text.value("table.hori_start_frac", as_signed(table.hori_start_frac));
    text.value("table.hori_step", as_signed(table.hori_step));
    text.value("table.verti_start_int", table.verti_start_int);
    text.value("table.verti_start_frac", as_signed(table.verti_start_frac));
    text.value("table.verti_step", as_signed(table.verti_step));
    text.put("table.coeff.ee :\n");
    text.grid(table.coeff.ee, 32, 3);
    text.put("table.coeff.eo :\n");
    text.grid(table.coeff.eo, 32, 3);
    text.put("table.coeff.oe :\n");
    text.grid(table.coeff.oe, 32, 3);
    text.put("table.coeff.oo :\n");
    text.grid(table.coeff.oo, 32, 3);
}

// The block of one calibration module and its label.
struct cal_block {
    const char *label;
    void (*print)(Text &text, const CalAllCfg &cal);
};

constexpr cal_block dbc = {"DBC",
                           [](Text &text, const CalAllCfg &cal) { print_dbc_cfg(text, cal.dbc); }};
constexpr cal_block dcc = {"DCC",
                           [](Text &text, const CalAllCfg &cal) { print_dcc_cfg(text, cal.dcc); }};
constexpr cal_block crc = {
    "CRC", [](Text &text, const CalAllCfg &cal) { print_crc_cfg(text, cal.dcc, cal.crc); }};
constexpr cal_block lsc = {"LSC",
                           [](Text &text, const CalAllCfg &cal) { print_lsc_cfg(text, cal.lsc); }};

// Prints the block of each sensor of a stitched image, with numbered labels, or of the single
// sensor, with a label of its own if asked.
void print_sensors(Text &text, const DipCtx &dip_ctx, const cal_block &block, bool label_single)
{
    const CalAllCfg(&cal)[2] = dip_ctx.cfg.cal;
    if (dip_ctx.dev_attr.stitch_en != 0) {
        for (int i = 0; i < 2; i++) {
            text.put(block.label, i, ":\n");
            block.print(text, cal[i]);
        }
        return;
    }
    if (label_single)
        text.put(block.label, ":\n");
    block.print(text, cal[0]);
}

void print_cal(Text &text, const DipPathCtx &ctx)
{
    for (const cal_block &block : {dbc, dcc, crc, lsc})
        print_sensors(text, ctx.dip_ctx, block, true);
}

void print_awb(Text &text, const DipAwbCfg &awb)
{
    const char *const gain[] = {"gain[0]", "gain[1]"};
    for (int k = 0; k < 2; k++) {
        text.put(gain[k]);
        text.value(".enable", awb.gain[k].enable, ",\n");
        text.elements(gain[k], ".gain.val", awb.gain[k].gain.val, ",\n");
    }
}

void print_te(Text &text, const DipTeCfg &te)
{
    const IsBspTmCfg &tm = te.tm;
    text.value("TE enable", tm.enable);
    text.put("TE Curve[60]:\n");
    text.grid(tm.curve.val, 6, 5);
}

void print_hte(Text &text, const DipHteCfg &hte)
{
    const IspHdrTmCfg &hdr_tm = hte.hdr_tm;
    text.value("HTE enable", hdr_tm.enable);
    text.put("HTE curve[60]:\n");
    text.grid(hdr_tm.curve.val, 6, 5);
}

void print_gamma(Text &text, const DipGammaCfg &gamma)
{
    text.value("FGMA mode", gamma.fgma.mode, " (0: normal, 1: disable)\n");
    text.value("FAGMA mode", gamma.fagma.mode, " (0: normal, 1: disable)\n");
    text.value("GMA mode", gamma.gma.mode, " (0: normal, 1: disable)\n");
    text.put("GMA curve[60]:\n");
    text.grid(as_signed(gamma.gma.curve.val), 6, 5);
}

void print_dpc(Text &text, const DipDpcCfg &cfg)
{
    const IspDpcCfg &dpc = cfg.cfg;
    const IsBspDpcCfg &bsp_dpc = cfg.bsp_dpc_cfg;
    text.value("dpc_mode", dpc.dpc_mode, " (0: normal, 1: disable)\n");
    text.value("g_dislike_th", dpc.g_dislike_th);
    text.value("br_dislike_th", dpc.br_dislike_th);
    text.value("g_correct_overshoot", dpc.g_correct_overshoot);
    text.value("br_correct_overshoot", dpc.br_correct_overshoot);
    text.value("g_sad_gain", dpc.g_sad_gain);
    text.value("br_sad_gain", dpc.br_sad_gain);
    text.value("correct_bright_en", dpc.correct_bright_en);
    text.value("correct_dark_en", dpc.correct_dark_en);
    text.value("correct_mid_en", dpc.correct_mid_en);
    text.value("bright_th", dpc.bright_th);
    text.value("dark_th", dpc.dark_th);
    text.value("enable", bsp_dpc.enable);
    text.value("dir_enable", bsp_dpc.dir_enable);
    text.value("dir_th_ratio", bsp_dpc.dir_th_ratio);
    text.value("dir_str_m", bsp_dpc.dir_str_m);
}

void print_dpd(Text &text, const DipDpdCfg &dpd)
{
    const is_dynamic_dpd &ddpd = dpd.cfg.ddpd;
    text.value("enable", ddpd.enable);
    text.value("g_pattern_mode", ddpd.g_pattern_mode);
    text.value("pix_num_mode", ddpd.pix_num_mode);
    text.value("diff_ratio", ddpd.diff_ratio);
    text.value("avg_ratio", ddpd.avg_ratio);
    text.value("edge_diff_ratio", ddpd.edge_diff_ratio);
    text.value("edge_avg_ratio", ddpd.edge_avg_ratio);
    text.value("edge_m", ddpd.edge_m);
}

void print_dms(Text &text, const DipDmsCfg &cfg)
{
    const IspDmsCfg &dms = cfg.cfg;
    text.value("mode", dms.mode, " (0: normal, 1: disable)\n");
    text.value("g_var_gain", dms.g_var_gain);
    text.value("fcs_threshold", dms.fcs_threshold);
    text.value("inter_conf_slope", dms.inter_conf_slope);
    text.value("fcs_offset", dms.fcs_offset);
    text.value("g_at_m_inter_ratio", dms.g_at_m_inter_ratio);
    text.value("m_at_m_inter_ratio", dms.m_at_m_inter_ratio);
    text.value("m_at_g_inter_ratio", dms.m_at_g_inter_ratio);
    text.value("g_at_m_soft_clip_slope", dms.g_at_m_soft_clip_slope);
    text.value("m_at_m_soft_clip_slope", dms.m_at_m_soft_clip_slope);
    text.value("m_at_g_soft_clip_slope", dms.m_at_g_soft_clip_slope);
    text.value("m_at_g_gradient_src_ratio", dms.m_at_g_gradient_src_ratio);
}

void print_fcs(Text &text, const DipFcsCfg &cfg)
{
    const IspFcsCfg &fcs = cfg.fcs;
    text.value("mode", fcs.mode, " (0: normal, 1: disable)\n");
    text.value("trans.diff_level_max", fcs.trans.diff_level_max);
    text.value("trans.gain", fcs.trans.gain);
    text.value("grid.cnt_th_high", fcs.grid.cnt_th_high);
    text.value("grid.cnt_th_low", fcs.grid.cnt_th_low);
    text.value("grid.cnt_raw_th", fcs.grid.cnt_raw_th);
    text.value("grid.trans_level_th", fcs.grid.trans_level_th);
    text.value("grid.trans_round_bit_high", fcs.grid.trans_round_bit_high);
    text.value("grid.trans_round_bit_low", fcs.grid.trans_round_bit_low);
    text.value("color.diff_self_th", fcs.color.diff_self_th);
    text.value("color.diff_neighbor_th", fcs.color.diff_neighbor_th);
    text.value("color.coring_th", fcs.color.coring_th);
    text.value("corr.correction_gain", fcs.corr.correction_gain);
    text.value("corr.target_bg_ratio", fcs.corr.target_bg_ratio);
    text.value("corr.target_rg_ratio", fcs.corr.target_rg_ratio);
}

// A coefficient of a colour matrix: key " = " value ",\n"
void print_coeff(Text &text, const char *key, int32_t value)
{
    text.put(key, " = ", Padded(value, 5), ",\n");
}

void print_csm(Text &text, const DipCsmCfg &csm)
{
    const IspCcmCfg &ccm = csm.ccm;
    const IspCstCfg &cst = csm.cst;
    text.put("CCM:\n");
    print_coeff(text, "r_r_coeff_2s", ccm.coeff_2s[0]);
    print_coeff(text, "r_g_coeff_2s", ccm.coeff_2s[1]);
    print_coeff(text, "r_b_coeff_2s", ccm.coeff_2s[2]);
    print_coeff(text, "r_offset_2s", ccm.offset_2s[0]);
    print_coeff(text, "g_r_coeff_2s", ccm.coeff_2s[3]);
    print_coeff(text, "g_g_coeff_2s", ccm.coeff_2s[4]);
    print_coeff(text, "g_b_coeff_2s", ccm.coeff_2s[5]);
    print_coeff(text, "g_offset_2s", ccm.offset_2s[1]);
    print_coeff(text, "b_r_coeff_2s", ccm.coeff_2s[6]);
    print_coeff(text, "b_g_coeff_2s", ccm.coeff_2s[7]);
    print_coeff(text, "b_b_coeff_2s", ccm.coeff_2s[8]);
    print_coeff(text, "b_offset_2s", ccm.offset_2s[2]);
    text.put("CST:\n");
    print_coeff(text, "y_r_coeff_2s", cst.coeff_2s[0]);
    print_coeff(text, "y_g_coeff_2s", cst.coeff_2s[1]);
    print_coeff(text, "y_b_coeff_2s", cst.coeff_2s[2]);
    print_coeff(text, "y_offset_2s", cst.offset_2s[0]);
    print_coeff(text, "u_r_coeff_2s", cst.coeff_2s[3]);
    print_coeff(text, "u_g_coeff_2s", cst.coeff_2s[4]);
    print_coeff(text, "u_b_coeff_2s", cst.coeff_2s[5]);
    print_coeff(text, "u_offset_2s", cst.offset_2s[1]);
    print_coeff(text, "v_r_coeff_2s", cst.coeff_2s[6]);
    print_coeff(text, "v_g_coeff_2s", cst.coeff_2s[7]);
    print_coeff(text, "v_b_coeff_2s", cst.coeff_2s[8]);
    print_coeff(text, "v_offset_2s", cst.offset_2s[2]);
}

void print_enh_cfg(Text &text, const DipEnhCfg &enh)
{
    const isp_enh_luma &luma = enh.cfg.luma;
    text.value("cfg.luma.y_mode", luma.y_mode);
    text.value("cfg.luma.y_l_r", luma.y_l_r);
    text.value("cfg.luma.y_l_eps", luma.y_l_eps);
    text.value("cfg.luma.y_l_edge_strength", luma.y_l_edge_strength);
    text.value("cfg.luma.y_l_mean_norm", luma.y_l_mean_norm);
    text.value("cfg.luma.y_l_dt_mean_norm", luma.y_l_dt_mean_norm);
    text.value("cfg.luma.y_l_dt_corr_norm", luma.y_l_dt_corr_norm);
    text.value("cfg.luma.y_s_eps", luma.y_s_eps);
    text.value("cfg.luma.y_s_edge_strength", luma.y_s_edge_strength);
    text.value("cfg.luma.y_s_mean_norm", luma.y_s_mean_norm);
    text.value("cfg.luma.y_s_dt_mean_norm", luma.y_s_dt_mean_norm);
    text.value("cfg.luma.y_s_dt_corr_norm", luma.y_s_dt_corr_norm);
    text.value("cfg.luma.y_l_detail_gain", luma.y_l_detail_gain);
    text.value("cfg.luma.y_s_detail_gain", luma.y_s_detail_gain);
    text.elements("", "cfg.luma.blend_curve.x", luma.blend_curve.x);
    text.elements("", "cfg.luma.blend_curve.y", luma.blend_curve.y);
    text.elements("", "cfg.luma.blend_curve.m", luma.blend_curve.m);

    const luma_gain_curve &gain_curve = enh.cfg.gain_curve;
    text.elements("", "cfg.gain_curve.x", gain_curve.x);
    text.elements("", "cfg.gain_curve.y", gain_curve.y);
    for (int i = 0; i < 5; i++) {
        const int m_2s = gain_curve.m_2s[i];
        text.put("cfg.gain_curve.m_2s[", i, "] = ", m_2s, " (", m_2s >= 512 ? m_2s - 1024 : m_2s,
                 ")\n");
    }

    const isp_enh_chroma &chroma = enh.cfg.chroma;
    text.value("cfg.chroma.c_mode", chroma.c_mode);
    text.value("cfg.chroma.c_r", chroma.c_r);
    text.value("cfg.chroma.c_eps_y", chroma.c_eps_y);
    text.value("cfg.chroma.c_eps_c", chroma.c_eps_c);
    text.value("cfg.chroma.c_mean_norm", chroma.c_mean_norm);
    text.value("cfg.chroma.c_dt_mean_norm", chroma.c_dt_mean_norm);
    text.value("cfg.chroma.c_dt_corr_norm", chroma.c_dt_corr_norm);
    text.value("cfg.chroma.c_edge_y_strength", chroma.c_edge_y_strength);
    text.value("cfg.chroma.c_edge_c_strength", chroma.c_edge_c_strength);
}

void print_ime_penalty(Text &text, const VpMeCfg &me)
{
    text.value("ime_penalty_gain_x_sel", me.ime_penalty_gain_x_sel);
    text.value("ime_penalty_gain_y_sel", me.ime_penalty_gain_y_sel);
    text.value("ime_penalty_bound_x_ini", me.ime_penalty_bound_x_ini);
    text.value("ime_penalty_bound_y_ini", me.ime_penalty_bound_y_ini);
}

enum class me_engine { main, front };

void print_me_set(Text &text, const VpMeCfg &me, me_engine engine)
{
    const bool front = engine == me_engine::front;
    text.value("mode", me.mode, " (0: normal, 1: disable)\n");
    text.value("scene_change", me.scene_change);
    text.value("gmv_x", me.gmv_x);
    text.value("gmv_y", me.gmv_y);
    text.value("gmv_cand_valid", me.gmv_cand_valid);
    text.value("mode_left_mv_diff_th", me.mode_left_mv_diff_th);
    text.value("mode_top_left_mv_diff_th", me.mode_top_left_mv_diff_th);
    text.value("mode_top_right_mv_diff_th", me.mode_top_right_mv_diff_th);
    text.value("bottom_left_dist_x", me.bottom_left_dist_x);
    text.value("bottom_left_dist_y", me.bottom_left_dist_y);
    text.value("bottom_right_dist_x", me.bottom_right_dist_x);
    text.value("bottom_right_dist_y", me.bottom_right_dist_y);
    text.value("sw_center_mode", me.sw_center_mode);
    text.value("sw_center_x_sw", me.sw_center_x_sw);
    text.value("sw_center_y_sw", me.sw_center_y_sw);
    text.value("sw_center_weight", me.sw_center_weight);
    text.value("sw_ix", me.sw_ix);
    text.value("sw_iy", me.sw_iy);
    text.value("sw_ix_size", me.sw_ix_size);
    text.value("sw_iy_size", me.sw_iy_size);
    text.value("mvr_left_extend_dist", me.mvr_left_extend_dist);
    text.value("mvr_right_extend_dist", me.mvr_right_extend_dist);
    print_ime_penalty(text, me);
    if (!front)
        text.value("search_texture_th", me.search_texture_th);
    text.value("valid_true_mv_th", me.valid_true_mv_th);
    text.value("matching_weight", me.matching_weight);
    if (!front)
        text.value("singularity_weight", me.singularity_weight);
    text.value("range_weight", me.range_weight);
    text.value("m_cost_quarter_gain", me.m_cost_quarter_gain);
    text.value("m_cost_half_gain", me.m_cost_half_gain);
    text.value("m_cost_frac_offset", me.m_cost_frac_offset);
    text.value("singularity_min_th", me.singularity_min_th);
    text.value("singularity_max_th", me.singularity_max_th);
    text.value("texture_gain_low_th", me.texture_gain_low_th);
    text.value("texture_gain_high_th", me.texture_gain_high_th);
    text.value("texture_gain_low", me.texture_gain_low);
    text.value("texture_gain_high", me.texture_gain_high);
    text.value("texture_gain_slope", me.texture_gain_slope);
    text.value("range_min_x_th", me.range_min_x_th);
    text.value("range_max_x_th", me.range_max_x_th);
    text.value("range_min_y_th", me.range_min_y_th);
    text.value("range_max_y_th", me.range_max_y_th);
    text.value("spatial_cost_offset", me.spatial_cost_offset);
    text.value("temporal_cost_offset", me.temporal_cost_offset);
    text.value("search_weak_cost_offset", me.search_weak_cost_offset);
    if (!front)
        text.value("search_cost_offset", me.search_cost_offset);
    text.value("refine_cost_offset", me.refine_cost_offset);
    text.value("gmv_cost_offset", me.gmv_cost_offset);
    if (front)
        text.value("search_texture_th", me.search_texture_th);
    text.value("non_zero_mv_cost_offset", me.non_zero_mv_cost_offset);
    if (front)
        text.value("singularity_weight", me.singularity_weight);
}

void print_me(Text &text, const DipMeCfg &cfg)
{
    print_me_set(text, cfg.me, me_engine::main);
}

void print_front_me(Text &text, const DipMeCfg &cfg)
{
    print_me_set(text, cfg.me, me_engine::front);
}

void print_gluey_set(Text &text, const DipMeCfg &cfg)
{
    const VpMeCfg &me = cfg.me;
    text.value("search_weak_cost_offset", me.search_weak_cost_offset);
    text.value("search_cost_offset", me.search_cost_offset);
    text.value("refine_cost_offset", me.refine_cost_offset);
    text.value("gmv_cost_offset", me.gmv_cost_offset);
    text.value("range_weight", me.range_weight);
    text.value("texture_gain_low", me.texture_gain_low);
}

void print_active_set(Text &text, const DipMeCfg &cfg)
{
    const VpMeCfg &me = cfg.me;
    print_ime_penalty(text, me);
    text.value("search_texture_th", me.search_texture_th);
    text.value("texture_gain_low_th", me.texture_gain_low_th);
    text.value("singularity_weight", me.singularity_weight);
    text.value("range_weight", me.range_weight);
    text.value("non_zero_mv_cost_offset", me.non_zero_mv_cost_offset);
    text.value("texture_gain_low", me.texture_gain_low);
    text.value("gmv_cost_offset", me.gmv_cost_offset);
}

// The fields that the filters ma_y, mc_y and ma_c open with.
template <typename Filter>
void print_nr_lut(Text &text, const char *filter, const Filter &cfg)
{
    text.value(filter, ".step", cfg.step);
    text.elements(filter, ".lut_i", cfg.lut_i);
    text.elements(filter, ".lut_o", cfg.lut_o);
    text.elements(filter, ".lut_slope", cfg.lut_slope);
}

// The fields of ma_y, which mc_y shares.
void print_nr_y(Text &text, const char *filter, const nr_3d_ma_y &cfg)
{
    print_nr_lut(text, filter, cfg);
    text.value(filter, ".lp_dyn_gain_th_min", cfg.lp_dyn_gain_th_min);
    text.value(filter, ".lp_dyn_gain_th_max", cfg.lp_dyn_gain_th_max);
    text.value(filter, ".lp_dyn_gain_min", cfg.lp_dyn_gain_min);
    text.value(filter, ".lp_dyn_gain_max", cfg.lp_dyn_gain_max);
    text.value(filter, ".lp_dyn_gain_slope", cfg.lp_dyn_gain_slope);
    text.value(filter, ".lp_diff_gain_th_min", cfg.lp_diff_gain_th_min);
    text.value(filter, ".lp_diff_gain_th_range", cfg.lp_diff_gain_th_range);
    text.value(filter, ".lp_diff_gain_min", cfg.lp_diff_gain_min);
    text.value(filter, ".lp_diff_gain_max", cfg.lp_diff_gain_max);
}

void print_nr_cfg(Text &text, const DipNrCfg &cfg)
{
    const VpNrCfg &nr = cfg.nr;
    text.value("mode", nr.mode);
    text.put("(0: normal, 1: 2D only, 2: 3D only, 3: mono, 4: disable, 5: bypass)\n");
    print_nr_y(text, "ma_y", nr.ma_y);
    print_nr_y(text, "mc_y", nr.mc_y.y);
    text.value("mc_y.base_ratio", nr.mc_y.base_ratio);
    text.value("mc_y.base_dyn", nr.mc_y.base_dyn);
    print_nr_lut(text, "ma_c", nr.ma_c);
    text.value("ma_c.ref", nr.ma_c.ref, " (0: HP, 1: LD_DYN, 2: LP)\n");
    text.value("ma_c.weight_y_gain_th_min", nr.ma_c.weight_y_gain_th_min);
    text.value("ma_c.weight_y_gain_th_max", nr.ma_c.weight_y_gain_th_max);
    text.value("ma_c.weight_y_gain_min", nr.ma_c.weight_y_gain_min);
    text.value("ma_c.weight_y_gain_max", nr.ma_c.weight_y_gain_max);
    text.value("ma_c.weight_y_gain_slope", nr.ma_c.weight_y_gain_slope);
    text.value("fir.kernel", nr.fir.kernel, " (0: 3x3, 1: 5x5)\n");
    text.value("fir.weight_y", nr.fir.weight_y);
    text.value("fir.weight_c", nr.fir.weight_c);
    text.value("iir.confidence", nr.iir.confidence, " (0: HP, 1: LD_DYN, 2: LP)\n");
    text.value("iir.alpha_y_gain", nr.iir.alpha_y_gain);
    text.value("iir.alpha_c_gain", nr.iir.alpha_c_gain);
}

// A number of a curve whose numbers print one by one: key index " = " value "\n"
void print_knot(Text &text, const char *key, int index, int32_t value)
{
    text.put(key, index);
    text.value("", value);
}

void print_shp_cfg(Text &text, const DipShpCfg &cfg)
{
    const IspShpCfg &shp = cfg.shp;
    text.value("mode", shp.mode, " (0: normal, 1: disable, 2: bypass)\n");
    text.value("bpf_gain_2s", shp.bpf_gain_2s);
    text.value("hpf_gain_2s", shp.hpf_gain_2s);
    text.value("level_gain_2s", shp.level_gain_2s);
    text.value("soft_clip_slope", shp.soft_clip_slope);
    for (int i = 0; i < 6; i++) {
        print_knot(text, "gain_curve_x_", i, shp.gain_curve.x[i]);
        print_knot(text, "gain_curve_y_", i, shp.gain_curve.y[i]);
    }
    for (int i = 0; i < 5; i++)
        print_knot(text, "gain_curve_m_2s_", i, shp.gain_curve.m_2s[i]);
    for (int i = 0; i < 11; i++) {
        print_knot(text, "luma_ctrl_gain_x_", i, shp.luma_ctrl_gain.x[i]);
        print_knot(text, "luma_ctrl_gain_y_", i, shp.luma_ctrl_gain.y[i]);
    }
    for (int i = 0; i < 10; i++)
        print_knot(text, "luma_ctrl_gain_m_2s_", i, shp.luma_ctrl_gain.m_2s[i]);
}

void print_dhz(Text &text, const DipDhzCfg &cfg)
{
    const IspDhzCfg &dhz = cfg.dhz;
    const IspDhzRglCfg &dhz_rgl = cfg.dhz_rgl;
    text.value("strength", dhz.strength);
    text.value("y_gain_max", dhz.y_gain_max);
    text.value("c_gain_max", dhz.c_gain_max);
    text.value("y_dc", dhz.y_dc);
    text.value("u_dc", dhz.u_dc);
    text.value("v_dc", dhz.v_dc);
    text.put("rgl.gain:\n");
    text.grid(dhz_rgl.gain, 8, 4);
    text.put("rgl.offset:\n");
    text.grid(dhz_rgl.offset, 8, 4);
}

void print_pta(Text &text, const DipPteCfg &cfg)
{
    const VpPteCfg &pte = cfg.pte;
    text.put("PTA Curve[33]:\n");
    text.grid(pte.curve.val, 6, 5);
}

void print_motion_status(Text &text, const IspMotionStatusCfg &status)
{
    text.value("enable", status.enable);
    text.value("show_dyn_me_log", status.show_dyn_me_log);
    text.value("gluey_me_frame_count_down_max", status.gluey_me_frame_count_down_max);
    text.value("mv_coring_th", status.mv_coring_th);
    text.value("mv_low_th", status.mv_low_th);
    text.value("mv_high_th", status.mv_high_th);
    text.value("rc_use_isp_m2s", status.rc_use_isp_m2s);
    text.value("motion_level_low_th", status.motion_level_low_th);
    text.value("motion_level_high_th", status.motion_level_high_th);
    text.value("motion_level_max", status.motion_level_max);
}

void print_coring(Text &text, const DipCoringCfg &cfg)
{
    const VpNrwCoringCfg &coring = cfg.coring;
    text.value("enable", coring.enable);
    text.value("th0", coring.th0);
    text.value("slope", coring.slope);
}

void print_hdr(Text &text, const DipHdrCfg &hdr)
{
    text.value("mode", hdr.mode);
    text.value("anti_gma.long_exp_mode", hdr.anti_gma.long_exp_mode);
    text.value("anti_gma.short_exp_mode", hdr.anti_gma.short_exp_mode);
    text.value("exp.exp_long_early", hdr.exp.exp_long_early);
    text.value("exp.exp_ratio", hdr.exp.exp_ratio);
    text.value("exp.exp_ratio_inv", hdr.exp.exp_ratio_inv);
    text.value("exp.se_exp_ratio_min_int", hdr.exp.se_exp_ratio_min_int);
    text.value("weight.se_weight_th_min", hdr.weight.se_weight_th_min);
    text.value("weight.se_weight_slope", hdr.weight.se_weight_slope);
    text.value("weight.se_weight_min", hdr.weight.se_weight_min);
    text.value("weight.se_weight_max", hdr.weight.se_weight_max);
    text.value("weight.le_weight_th_max", hdr.weight.le_weight_th_max);
    text.value("weight.le_weight_slope", hdr.weight.le_weight_slope);
    text.value("weight.le_weight_min", hdr.weight.le_weight_min);
    text.value("weight.le_weight_max", hdr.weight.le_weight_max);
    text.value("fb.local_fb_th", hdr.fb.local_fb_th);
    text.value("fb.local_fb_slope", hdr.fb.local_fb_slope);
    text.value("fb.local_fb_min", hdr.fb.local_fb_min);
    text.value("fb.local_fb_max", hdr.fb.local_fb_max);
    text.value("fb.frame_fb_strength", hdr.fb.frame_fb_strength);
    text.value("fb.fb_target", hdr.fb.fb_target);
    text.value("fb.fb_alpha", hdr.fb.fb_alpha);
    text.value("fb.mismatch_var_gain_2s", hdr.fb.mismatch_var_gain_2s);
    text.value("gma.mode", hdr.gma.mode);
}

void print_hawb(Text &text, const DipHawbCfg &hawb)
{
    const IspHdrAwbCfg &hdr_awb = hawb.hdr_awb;
    text.value("enable", hdr_awb.enable);
    text.elements("gain[0]", ".gain.val", hdr_awb.gain, ",\n");
}

void print_lm_cfg(Text &text, const IspLargeMotionCfg &lm)
{
    text.value("cfg.enable", lm.enable);
    text.value("cfg.conf_low_th", lm.conf_low_th);
    text.value("cfg.conf_high_th", lm.conf_high_th);
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

// How the printers of the items find their blocks.

template <const cal_block &block>
void sensors(Text &text, const DipPathCtx &ctx)
{
    print_sensors(text, ctx.dip_ctx, block, false);
}

// The slot of the bound window.
template <auto print, auto slots>
void window(Text &text, const DipPathCtx &ctx)
{
    const int slot = active_win_idx(ctx.dip_ctx);
    if (slot >= 0)
        print(text, (ctx.dip_ctx.cfg.*slots)[slot]);
    else
        text.put("Unable to acquire corresponding window cfg.\n");
}

constexpr item item_list[] = {
    {"cal", "Calibration(CAL) modules, including DBC, DCC, CRC, LSC", print_cal},
    {"dbc", "Device Black-level Correction(DBC) module", sensors<dbc>},
    {"dcc", "Device Color Correction(DCC) module", sensors<dcc>},
    {"crc", "CRC module", sensors<crc>},
    {"lsc", "Lens Shading Correction(LSC) module", sensors<lsc>},
    {"awb", "Auto White Balance(AWB) module", part<print_awb, &DipCtx::cfg, &DipAllCfg::awb>},
    {"te", "Tone Enhancement(TE) module", part<print_te, &DipCtx::cfg, &DipAllCfg::te>},
    {"hte", "HDR tone enhacement(HTE) module", part<print_hte, &DipCtx::cfg, &DipAllCfg::hte>},
    {"gamma", "Gamma module", part<print_gamma, &DipCtx::cfg, &DipAllCfg::gamma>},
    {"dpc", "Defect Pixel Correction(DPC) module", part<print_dpc, &DipCtx::cfg, &DipAllCfg::dpc>},
    {"dpd", "DPD extension settings", part<print_dpd, &DipCtx::cfg, &DipAllCfg::dpd>},
    {"dms", "Demosaicking(DMS) module", part<print_dms, &DipCtx::cfg, &DipAllCfg::dms>},
    {"fcs", "False Color Suppression(FCS) module", part<print_fcs, &DipCtx::cfg, &DipAllCfg::fcs>},
    {"csm", "Color Saturation Modification(CSM) module",
     part<print_csm, &DipCtx::cfg, &DipAllCfg::csm>},
    {"front_enh", "Front Enhancement(ENH) module",
     part<print_enh_cfg, &DipCtx::cfg, &DipAllCfg::front_enh>},
    {"front_me", "Front Motion Estimation(ME) module",
     part<print_front_me, &DipCtx::cfg, &DipAllCfg::front_me>},
    {"gluey_front_me", "Gluey Front Motion Estimation(ME) module",
     part<print_gluey_set, &DipCtx::cfg, &DipAllCfg::gluey_front_me>},
    {"active_front_me", "Active Front Motion Estimation(ME) module",
     part<print_active_set, &DipCtx::cfg, &DipAllCfg::active_front_me>},
    {"front_motion_status_cfg", "Front Motion status configuration for ME module",
     part<print_motion_status, &DipCtx::cfg, &DipAllCfg::front_motion_status_cfg>},
    {"front_nr", "Front Noise Reduction(NR) module",
     window<print_nr_cfg, &DipAllCfg::win_front_nr>},
    {"enh", "Enhancement(ENH) module", window<print_enh_cfg, &DipAllCfg::win_enh>},
    {"shp", "Sharpness(SHP) module", window<print_shp_cfg, &DipAllCfg::win_shp>},
    {"dhz", "Dehaze(DHZ) module", part<print_dhz, &DipCtx::cfg, &DipAllCfg::dhz>},
    {"pta", "Post Tone Enhancement(PTE) module", part<print_pta, &DipCtx::cfg, &DipAllCfg::pte>},
    {"me", "Motion Estimation(ME) module", part<print_me, &DipCtx::cfg, &DipAllCfg::me>},
    {"gluey_me", "Gluey Motion Estimation module",
     part<print_gluey_set, &DipCtx::cfg, &DipAllCfg::gluey_me>},
    {"active_me", "Acitve Motion Estimation module",
     part<print_active_set, &DipCtx::cfg, &DipAllCfg::active_me>},
    {"motion_status_cfg", "Motion status configuration for ME module",
     part<print_motion_status, &DipCtx::cfg, &DipAllCfg::motion_status_cfg>},
    {"nr", "Noise Reduction(NR) module", window<print_nr_cfg, &DipAllCfg::win_nr>},
    {"coring", "Coring module", part<print_coring, &DipCtx::cfg, &DipAllCfg::coring>},
    {"hdr", "High Dynamic Range (HDR) module", part<print_hdr, &DipCtx::cfg, &DipAllCfg::hdr>},
    {"hawb", "HDR AWB module", part<print_hawb, &DipCtx::cfg, &DipAllCfg::hawb>},
    {"isp_lm", "Large motion (LM) module", window<print_lm_cfg, &DipAllCfg::isp_lm>},
    {"weak_win_shp", "Sharpness(SHP) module (weak setting)",
     window<print_shp_cfg, &DipAllCfg::weak_win_shp>},
};

// dbc, dcc, crc and lsc are part of cal.
constexpr auto order =
    print_order(item_list, "cal", "awb", "te", "hte", "gamma", "dpc", "dpd", "dms", "fcs", "csm",
                "front_enh", "front_me", "gluey_front_me", "active_front_me", "front_nr", "enh",
                "shp", "dhz", "pta", "me", "gluey_me", "active_me", "nr", "motion_status_cfg",
                "front_motion_status_cfg", "coring", "hdr", "hawb", "isp_lm", "weak_win_shp");

int print_entry(Text &text, const DipPathCtx *ctx, const char *entry)
{
    return print_items(text, title, item_form::section, item_list, order, ctx, entry);
}

const char *section_at(size_t place)
{
    return name_at<item>(item_list, order, place);
}

void print_help()
{
    list_items<item>(title, item_list);
}

constexpr VordaCallback cb = {title, comments, print_entry, print_help, section_at};

} // namespace

void regCmd_cfg()
{
    parse_rgtr(&cb);
}
