// The serializers of the DIP's extension settings. Each write_ routine reads like the text it
// makes, line by line.
#include "dip_intl_save_attr.h"

#include "heap_text.h"
#include "log.h"

#include <cstring>

namespace
{

// A closed run whose key ends in an index: key index " = 1, 2, 3\n"
void indexed_run(Text &text, const char *key, int index, const Values &values)
{
    text.put(key, index, " = ");
    text.closed_run("", values);
}

// The open runs of a table's rows: key row " = 1, 2, 3, ", and then `row_end`, or `end` after the
// last row.
void indexed_rows(Text &text, const char *key, const Values &table, size_t columns,
                  const char *end = "\n", const char *row_end = "\n")
{
    int row = 0;
    for (size_t i = 0; i < table.size(); i += columns) {
        text.put(key, row++, " = ");
        text.open_run("", table.part(i, columns), 0, i + columns < table.size() ? row_end : end);
    }
}

void write_crc(Text &text, const DipIntlCrcParam &p)
{
    text.put("[CRC]\n");
    text.value("enable", p.enable);
    text.put("; color temp valid size, [0, 8]\n");
    text.value("k_cnt", p.k_cnt);
    text.put("; color temp order based on awb attr, [2000, 12000]\n");
    text.closed_run("k_order = ", p.k_order);
    text.put("; threshold for update crc curve, [0, 1000]\n");
    text.value("k_th", p.k_th);
    for (int j = 0; j < INTL_CRC_K_NUM; j++) {
        text.put("\n");
        text.put("; for color temp(k) index ", j, "\n");
        text.put("; range for curve, x:[0~8]; m:[0~7]; y:[0~8]\n");
        indexed_run(text, "g0.x_", j, p.g0[j].x);
        indexed_run(text, "g0.m_", j, p.g0[j].m);
        indexed_run(text, "g0.y_", j, p.g0[j].y);
        indexed_run(text, "r.x_", j, p.r[j].x);
        indexed_run(text, "r.m_", j, p.r[j].m);
        indexed_run(text, "r.y_", j, p.r[j].y);
        indexed_run(text, "b.x_", j, p.b[j].x);
        indexed_run(text, "b.m_", j, p.b[j].m);
        indexed_run(text, "b.y_", j, p.b[j].y);
        indexed_run(text, "g1.x_", j, p.g1[j].x);
        indexed_run(text, "g1.m_", j, p.g1[j].m);
        indexed_run(text, "g1.y_", j, p.g1[j].y);
    }
}

// `prefix` stands before every key: "" or "lsc_csr.".
void write_lsc_curve(Text &text, const char *prefix, const DipIntlLscCurve &curve)
{
    text.put("\n"
             "; curve\n");
    text.value(prefix, "curve.enable", curve.enable);
    text.closed_run(prefix, "curve.fit_y0x0 = ", as_signed(curve.fit_y0x0));
    text.closed_run(prefix, "curve.dx_y0x0_2s = ", as_signed(curve.dx_y0x0_2s));
    text.closed_run(prefix, "curve.dy_y0x0_2s = ", as_signed(curve.dy_y0x0_2s));
    text.closed_run(prefix, "curve.dx2 = ", as_signed(curve.dx2));
    text.closed_run(prefix, "curve.dy2 = ", as_signed(curve.dy2));
    text.closed_run(prefix, "curve.dydx_2s = ", as_signed(curve.dydx_2s));
}

void write_lsc_table(Text &text, const char *prefix, const DipIntlLscTable &table)
{
    text.put("\n"
             "; table\n");
    text.value(prefix, "table.enable", table.enable);
    text.value(prefix, "table.merge_en", table.merge_en);
    text.value(prefix, "table.prec", table.prec);
    text.value(prefix, "table.gain_mod", table.gain_mod);
    text.value(prefix, "table.hori_start_int", table.hori_start_int);
    text.value(prefix, "table.hori_start_frac", as_signed(table.hori_start_frac));
    text.value(prefix, "table.hori_step", as_signed(table.hori_step));
    text.value(prefix, "table.verti_start_int", table.verti_start_int);
    text.value(prefix, "table.verti_start_frac", as_signed(table.verti_start_frac));
    text.value(prefix, "table.verti_step", as_signed(table.verti_step));
    const char *path = table.table_coeff_file_path; // perhaps without a terminating zero
    text.put(prefix, "table.table_coeff_file_path = ",
             std::string_view(path, strnlen(path, sizeof(table.table_coeff_file_path))), "\n");
}

void write_lsc(Text &text, const DipIntlLscParam &p)
{
    text.put("[LSC]\n");
    text.value("enable", p.enable);
    write_lsc_curve(text, "", p.curve);
    write_lsc_table(text, "", p.table);
    text.put("\n"
             "; noise level adaptive \n");
    text.value("nl_adapt.enable", p.nl_adapt.enable);
    text.closed_run("nl_adapt.strength = ", p.nl_adapt.strength);
    text.value("nl_adapt.diff_thd ", p.nl_adapt.diff_thd);
    text.put("\n"
             "; force csr\n");
    text.value("force_csr", p.force_csr);
    write_lsc_curve(text, "lsc_csr.", p.lsc_csr.curve);
    write_lsc_table(text, "lsc_csr.", p.lsc_csr.table);
}

void write_ae(Text &text, const DipIntlAeParam &p)
{
    text.put("[AE]\n");
    text.value("enable", p.enable);
    text.value("max_weighted_hist_ratio", p.max_weighted_hist_ratio);
}

void write_awb(Text &text, const DipIntlAwbParam &p)
{
    text.put("[AWB]\n");
    text.value("enable", p.enable);
    text.put("\n"
             "; ctrl attributes\n");
    text.value("awb_b_enable_k", p.awb_b_enable_k);
    text.value("awb_k_dist_lmt_thd", p.awb_k_dist_lmt_thd);
    text.value("awb_b_enable_rtx", p.awb_b_enable_rtx);
    text.value("awb_valid_rtx_rgnum_thd", p.awb_valid_rtx_rgnum_thd);
    text.value("awb_valid_rtx_rgnum_thd_high", p.awb_valid_rtx_rgnum_thd_high);
    text.value("awb_rgl_rtx_thd_step", p.awb_rgl_rtx_thd_step);
    text.value("awb_rgl_rtx_min_thd_lbnd", p.awb_rgl_rtx_min_thd_lbnd);
    text.value("awb_rgl_rtx_reset_frame", p.awb_rgl_rtx_reset_frame);
    text.value("rtx_invalid_thd", p.rtx_invalid_thd);
    text.value("awb_rtx_overflow_tolerence", p.awb_rtx_overflow_tolerence);
    text.value("awb_enable_rtx_wei_conf", p.awb_enable_rtx_wei_conf);
    text.value("awb_rtx_gain_protect_mode", p.awb_rtx_gain_protect_mode);
    text.value("rtx_shrink_gain_rto", p.rtx_shrink_gain_rto);
    text.value("rtx_shrink_conf_rto", p.rtx_shrink_conf_rto);
    text.value("default_rtx_minmax_range", p.default_rtx_minmax_range);
    text.value("awb_b_enable_gwd", p.awb_b_enable_gwd);
    text.value("gwd_conf_default", p.gwd_conf_default);
    text.value("awb_gray_norm_lower_bnd_rto", p.awb_gray_norm_lower_bnd_rto);
    text.value("awb_white_conf_fallback_thd", p.awb_white_conf_fallback_thd);
    text.value("tolerance_overwrite", p.tolerance_overwrite);
    text.value("speed_overwrite", p.speed_overwrite);
    text.value("gwd_auto_luma_range_mode", p.gwd_auto_luma_range_mode);
    text.put("\n");
    text.value("force_csr_stat", p.force_csr_stat);
    text.value("stat_csr.awb_rtx_y_th_max", p.stat_csr.awb_rtx_y_th_max);
    text.value("stat_csr.awb_rtx_y_th_min", p.stat_csr.awb_rtx_y_th_min);
    text.value("stat_csr.awb_rtx_y_m", p.stat_csr.awb_rtx_y_m);
}

void write_pta(Text &text, const DipIntlPtaParam &p)
{
    text.put("[PTA]\n");
    text.value("enable", p.enable);
    text.put("; Number of PTA scene_curve for look up table\n");
    text.value("scene_curve_cnt", p.scene_curve_cnt);
    text.put("\n"
             "; scene_curve with 33 control points, range is [0, 1024]\n"
             "; range for scene_curve.val_*-*: [0~10]\n");
    for (int i = 0; i < INTL_PTA_CURVE_NUM; i++)
        for (int row = 0; row < 3; row++) {
            text.put("scene_curve.val_", i, "-", row, "  =");
            text.open_run("", Values(p.scene_curve[i].val).part(static_cast<size_t>(row) * 11, 11),
                          5);
        }
}

void write_shp(Text &text, const DipIntlShpParam &p)
{
    const IntlShpCfg &cfg = p.manual_cfg;
    text.put("[SHP]\n");
    text.value("enable", p.enable);
    text.put("\n");
    text.value("manual_cfg_enable", p.manual_cfg_enable);
    text.value("manual_cfg.mode", cfg.mode, "\t; 0: normal, 1: disable\n");
    text.value("manual_cfg.bpf_gain_2s", cfg.bpf_gain_2s,
               "\t; s3.4 [-128, 127], twos in internal, specify a negative value here is OK\n");
    text.value("manual_cfg.hpf_gain_2s", cfg.hpf_gain_2s,
               "\t; s3.4 [-128, 127], twos in internal, specify a negative value here is OK\n");
    text.value("manual_cfg.level_gain_2s", cfg.level_gain_2s,
               "\t; s4.4 [-256, 255], twos in internal, specify a negative value here is OK\n");
    text.value("manual_cfg.soft_clip_slope", cfg.soft_clip_slope, "\t; u1.4 [0, 31]\n");
    text.open_run("manual_cfg.gain_curve.x    =", cfg.gain_curve.x, 2, "\t; [0, 1023]\n");
    text.open_run("manual_cfg.gain_curve.m_2s =", cfg.gain_curve.m_2s, 2,
                  "\t; s1.4 [-32, 31], twos in internal, specify a negative value here is OK\n");
    text.open_run("manual_cfg.gain_curve.y    =", cfg.gain_curve.y, 2, "\t; [0, 1023]\n");
    text.open_run("manual_cfg.luma_ctrl_gain.x    =", cfg.luma_ctrl_gain.x, 4, "\t; [0, 1023]\n");
    text.open_run("manual_cfg.luma_ctrl_gain.m_2s =", cfg.luma_ctrl_gain.m_2s, 4,
                  "\t; s1.5 [-64, 63], twos in internal, specify a negative value here is OK\n");
    text.open_run("manual_cfg.luma_ctrl_gain.y    =", cfg.luma_ctrl_gain.y, 4, "\t; [0, 1023]\n");
}

void write_hdr(Text &text, const DipIntlHdrParam &p)
{
    const IntlHdrCfg &cfg = p.manual_cfg;
    text.put("[HDR]\n");
    text.value("enable", p.enable);
    text.value("manual_cfg_enable", p.manual_cfg_enable);
    text.value("manual_cfg.hdr_mode", cfg.hdr_mode);
    text.value("manual_cfg.anti_gma_long_exp_mode", cfg.anti_gma_long_exp_mode);
    text.value("manual_cfg.anti_gma_short_exp_mode", cfg.anti_gma_short_exp_mode);
    text.value("manual_cfg.exp_long_early", cfg.exp_long_early);
    text.value("manual_cfg.exp_ratio", cfg.exp_ratio);
    text.value("manual_cfg.exp_ratio_inv", cfg.exp_ratio_inv);
    text.value("manual_cfg.se_exp_ratio_min_int", cfg.se_exp_ratio_min_int);
    text.value("manual_cfg.se_weight_th_min", cfg.se_weight_th_min);
    text.value("manual_cfg.se_weight_slope", cfg.se_weight_slope);
    text.value("manual_cfg.se_weight_min", cfg.se_weight_min);
    text.value("manual_cfg.se_weight_max", cfg.se_weight_max);
    text.value("manual_cfg.le_weight_th_max", cfg.le_weight_th_max);
    text.value("manual_cfg.le_weight_slope", cfg.le_weight_slope);
    text.value("manual_cfg.le_weight_min", cfg.le_weight_min);
    text.value("manual_cfg.le_weight_max", cfg.le_weight_max);
    text.value("manual_cfg.local_fb_th", cfg.local_fb_th);
    text.value("manual_cfg.local_fb_slope", cfg.local_fb_slope);
    text.value("manual_cfg.local_fb_min", cfg.local_fb_min);
    text.value("manual_cfg.local_fb_max", cfg.local_fb_max);
    text.value("manual_cfg.frame_fb_strength", cfg.frame_fb_strength);
    text.value("manual_cfg.fb_target", cfg.fb_target);
    text.value("manual_cfg.fb_alpha", cfg.fb_alpha);
    text.value("manual_cfg.mismatch_var_gain_2s", cfg.mismatch_var_gain_2s);
    text.value("manual_cfg.gma_mode", cfg.gma_mode);
}

void write_hdr_ae(Text &text, const DipIntlHdrAeParam &p)
{
    text.put("[HDRAE]\n"
             "; Only manual epr is available\n");
    text.value("enable", p.enable);
    text.value("epr_manual.enable", p.epr_manual.enable);
    text.value("epr_manual.epr_val", p.epr_manual.epr_val);
    text.value("show_time_gain", p.show_time_gain);
}

void write_te(Text &text, const DipIntlTeParam &p)
{
    text.put("[TE]\n");
    text.value("enable", p.enable);
    text.value("is_evtable_en", p.is_evtable_en, " ; Enable EV table\n");
    text.value(
        "force_btc_using_nc", p.force_btc_using_nc,
        " ; force BrighTness Curve(btc) using Normal Curve(nc) on WDR, WDR::brightness will no effect\n");
    text.put("\n"
             ";NewTE\n");
    text.value("dark_enhance_range_en", p.dark_enhance_range_en);
    text.closed_run("dark_enhance_range = ", p.dark_enhance_range, 0, ",\n");
    text.value("iir_mode", p.iir_mode);
    text.closed_run("iir_weight = ", p.iir_weight, 0, ",\n");
    text.value("hist_gamma_en", p.hist_gamma_en);
    text.value("pure_dark_en", p.pure_dark_en);
    text.value("pure_dark_rto", p.pure_dark_rto);
    text.value("pure_dark_limit", p.pure_dark_limit);
    text.value("max_str_determination_swtich", p.max_str_determination_swtich);
}

void write_front_enh(Text &text, const DipIntlFrontEnhParam &p)
{
    const IntlFrontEnhAttr &attr = p.attr;
    text.put("[FRONT_ENH]\n");
    text.value("attr.mode", attr.mode);
    text.open_run("attr.enh_auto.y_txr_strength = ", attr.enh_auto.y_txr_strength);
    text.open_run("attr.enh_auto.y_txr_edge = ", attr.enh_auto.y_txr_edge);
    text.open_run("attr.enh_auto.y_txr_detail = ", attr.enh_auto.y_txr_detail);
    text.open_run("attr.enh_auto.y_zone_strength = ", attr.enh_auto.y_zone_strength);
    text.open_run("attr.enh_auto.y_zone_edge = ", attr.enh_auto.y_zone_edge);
    text.open_run("attr.enh_auto.y_zone_detail = ", attr.enh_auto.y_zone_detail);
    text.open_run("attr.enh_auto.y_zone_radius = ", attr.enh_auto.y_zone_radius);
    text.open_run("attr.enh_auto.y_zone_weight = ", attr.enh_auto.y_zone_weight);
    text.open_run("attr.enh_auto.c_radius = ", attr.enh_auto.c_radius);
    text.open_run("attr.enh_auto.c_strength = ", attr.enh_auto.c_strength);
    text.open_run("attr.enh_auto.c_edge = ", attr.enh_auto.c_edge);
    text.value("attr.enh_manual.y_txr_strength", attr.enh_manual.y_txr_strength);
    text.value("attr.enh_manual.y_txr_edge", attr.enh_manual.y_txr_edge);
    text.value("attr.enh_manual.y_txr_detail", attr.enh_manual.y_txr_detail);
    text.value("attr.enh_manual.y_zone_strength", attr.enh_manual.y_zone_strength);
    text.value("attr.enh_manual.y_zone_edge", attr.enh_manual.y_zone_edge);
    text.value("attr.enh_manual.y_zone_detail", attr.enh_manual.y_zone_detail);
    text.value("attr.enh_manual.y_zone_radius", attr.enh_manual.y_zone_radius);
    text.value("attr.enh_manual.y_zone_weight", attr.enh_manual.y_zone_weight);
    text.value("attr.enh_manual.c_radius", attr.enh_manual.c_radius);
    text.value("attr.enh_manual.c_strength", attr.enh_manual.c_strength);
    text.value("attr.enh_manual.c_edge", attr.enh_manual.c_edge);
}

void write_enh(Text &text, const DipIntlEnhParam &p)
{
    text.put("[ENH]\n");
    text.value("enable", p.enable);
    text.open_run("blend_x = ", p.blend_x, 2);
    text.open_run("blend_m = ", p.blend_m, 2);
    text.value("motion_adaptive_en", p.motion_adaptive_en);
    text.value("ma_conf_high_th", p.ma_conf_high_th);
    text.value("ma_conf_low_th", p.ma_conf_low_th);
    text.open_run("ma_blur_y_zone_detail = ", p.ma_blur_y_zone_detail);
    text.open_run("ma_blur_y_zone_strength = ", p.ma_blur_y_zone_strength);
}

void write_fcs(Text &text, const DipIntlFcsParam &p)
{
    const IntlFcsCfg &cfg = p.manual_cfg;
    text.put("[FCS]\n");
    text.value("enable", p.enable);
    text.put("; fcs_auto.offset mapping table\n");
    text.open_run("offset_level_bin = ", p.offset_level_bin);
    text.open_run("trans_diff_level_max_val = ", p.trans_diff_level_max_val);
    text.open_run("trans_gain_val = ", p.trans_gain_val);
    text.put("; fcs_auto.threshold mapping table\n");
    text.open_run("threshold_level_bin = ", p.threshold_level_bin);
    text.open_run("grid_cnt_th_high_val = ", p.grid_cnt_th_high_val);
    text.open_run("grid_cnt_th_low_val = ", p.grid_cnt_th_low_val);
    text.open_run("grid_cnt_raw_th_val = ", p.grid_cnt_raw_th_val);
    text.open_run("grid_trans_level_th_val = ", p.grid_trans_level_th_val);
    text.open_run("grid_trans_round_bit_high_val = ", p.grid_trans_round_bit_high_val);
    text.open_run("grid_trans_round_bit_low_val = ", p.grid_trans_round_bit_low_val);
    text.open_run("color_diff_self_th_val = ", p.color_diff_self_th_val);
    text.open_run("color_diff_neighbor_th_val = ", p.color_diff_neighbor_th_val);
    text.open_run("color_coring_th_val = ", p.color_coring_th_val);
    text.put("; fcs_auto.strength mapping table\n");
    text.open_run("strength_level_bin = ", p.strength_level_bin);
    text.open_run("corr_correction_gain_val = ", p.corr_correction_gain_val);
    text.open_run("corr_target_bg_ratio_val = ", p.corr_target_bg_ratio_val);
    text.open_run("corr_target_rg_ratio_val = ", p.corr_target_rg_ratio_val);
    text.put("; manual\n");
    text.value("manual_cfg_enable", p.manual_cfg_enable);
    text.value("manual_cfg.mode", cfg.mode, "\t; 0: normal, 1: disable\n");
    text.value("manual_cfg.trans_diff_level_max", cfg.trans_diff_level_max, "\t; u6 [0, 63]\n");
    text.value("manual_cfg.trans_gain", cfg.trans_gain, "\t; u1.4 [0, 31]\n");
    text.value("manual_cfg.grid_cnt_th_high", cfg.grid_cnt_th_high, "\t; u3 [0, 7]\n");
    text.value("manual_cfg.grid_cnt_th_low", cfg.grid_cnt_th_low, "\t; u3 [0, 7]\n");
    text.value("manual_cfg.grid_cnt_raw_th", cfg.grid_cnt_raw_th, "\t; u3 [0, 6]\n");
    text.value("manual_cfg.grid_trans_level_th", cfg.grid_trans_level_th, "\t; u9 [0, 256]\n");
    text.value("manual_cfg.grid_trans_round_bit_high", cfg.grid_trans_round_bit_high,
               "\t; u2 [0, 3]\n");
    text.value("manual_cfg.grid_trans_round_bit_low", cfg.grid_trans_round_bit_low,
               "\t; u2 [0, 3]\n");
    text.value("manual_cfg.color_diff_self_th", cfg.color_diff_self_th, "\t; u6 [0, 63]\n");
    text.value("manual_cfg.color_diff_neighbor_th", cfg.color_diff_neighbor_th, "\t; u6 [0, 63]\n");
    text.value("manual_cfg.color_coring_th", cfg.color_coring_th, "\t; u6 [0, 48]\n");
    text.value("manual_cfg.corr_correction_gain", cfg.corr_correction_gain, "\t; u3.2 [0, 31]\n");
    text.value("manual_cfg.corr_target_bg_ratio", cfg.corr_target_bg_ratio, "\t; u2.7 [0, 511]\n");
    text.value("manual_cfg.corr_target_rg_ratio", cfg.corr_target_rg_ratio, "\t; u2.7 [0, 511]\n");
}

void write_dhz(Text &text, const DipIntlDhzParam &p)
{
    text.put("[DHZ]\n");
    text.value("enable", p.enable);
    text.put("; DHZ internal use parameters\n"
             "; local contrast enhancement\n");
    text.value("lce_en", p.lce_en);
    text.open_run("lce.y_gain_max = ", p.lce.y_gain_max);
    text.open_run("lce.c_gain_max = ", p.lce.c_gain_max);
    text.value("lce.y_dc", p.lce.y_dc);
    text.value("lce.offset_ratio", p.lce.offset_ratio);
    text.open_run("lce.strength = ", p.lce.strength);
    text.value("lce.nl_low_th", p.lce.nl_low_th);
    text.value("lce.nl_high_th", p.lce.nl_high_th);
    text.open_run("lce.curve_y_min = ", p.lce.curve_y_min);
    text.open_run("lce.curve_y_max = ", p.lce.curve_y_max);
    text.open_run("lce.curve_upper_gain = ", p.lce.curve_upper_gain);
    text.open_run("lce.curve_lower_gain = ", p.lce.curve_lower_gain);
    // The table ends within the line of the comment.
    indexed_rows(text, "lce.rgl_weight-", p.lce.rgl_weight, 8, "; manual\n");
    text.value("manual_cfg_enable", p.manual_cfg_enable);
    text.put("\n");
    text.value("manual_cfg.strength", p.manual_cfg.strength);
    text.value("manual_cfg.y_gain_max", p.manual_cfg.y_gain_max);
    text.value("manual_cfg.c_gain_max", p.manual_cfg.c_gain_max);
    text.value("manual_cfg.y_dc", p.manual_cfg.y_dc);
    text.value("manual_cfg.u_dc", p.manual_cfg.u_dc);
    text.value("manual_cfg.v_dc", p.manual_cfg.v_dc);
    text.put("\n");
    indexed_rows(text, "manual_cfg.rgl_gain-", p.manual_cfg.rgl_gain, 8);
    text.put("\n");
    indexed_rows(text, "manual_cfg.rgl_offset-", p.manual_cfg.rgl_offset, 8, "\n", "\n\n");
}

void write_iso(Text &text, const DipIntlIsoParam &p)
{
    text.put("[ISO]\n");
    text.value("enable", p.enable);
    text.open_run("iso_ver2_noise_level_bin = ", p.iso_ver2_noise_level_bin);
    text.put("\n"
             "; fnr_iso\n");
    text.value("fnr_iso.enable", p.fnr_iso.enable);
    text.value("fnr_iso.mode", p.fnr_iso.mode);
    text.open_run("fnr_iso.fnr_iso_auto.x = ", p.fnr_iso.fnr_iso_auto.x);
    text.open_run("fnr_iso.fnr_iso_auto.y = ", p.fnr_iso.fnr_iso_auto.y);
    text.value("fnr_iso.fnr_iso_manual", p.fnr_iso.fnr_iso_manual);
}

void write_stat(Text &text, const DipIntlStatParam &p)
{
    const DipIntlStatWbCsr &csr = p.wb_csr;
    text.put("[STAT]\n");
    text.value("enable", p.enable);
    text.value("fixed_gwd_lum_range_en", p.fixed_gwd_lum_range_en);
    text.value("fixed_gwd_lum_range_noise_level_th", p.fixed_gwd_lum_range_noise_level_th);
    text.value("fixed_gwd_lum_max", p.fixed_gwd_lum_max);
    text.value("fixed_gwd_lum_min", p.fixed_gwd_lum_min);
    text.put("\n");
    text.value("auto_rb_rgn_slope_en", p.auto_rb_rgn_slope_en);
    indexed_rows(text, "auto_rb_rgn_slope_", p.auto_rb_rgn_slope, 16);
    text.put("\n");
    text.value("force_csr", p.force_csr);
    text.value("wb_csr.awb_gwd_y_th_max", csr.awb_gwd_y_th_max);
    text.value("wb_csr.awb_gwd_y_th_min", csr.awb_gwd_y_th_min);
    text.value("wb_csr.awb_gwd_y_m", csr.awb_gwd_y_m);
    text.open_run("wb_csr.awb_gwd_rg =", csr.awb_gwd_rg);
    text.open_run("wb_csr.awb_gwd_bg =", csr.awb_gwd_bg);
    text.open_run("wb_csr.awb_gwd_a_2s =", csr.awb_gwd_a_2s);
    text.open_run("wb_csr.awb_gwd_b_2s =", csr.awb_gwd_b_2s);
    text.open_run("wb_csr.awb_gwd_c_2s =", csr.awb_gwd_c_2s);
    text.open_run("wb_csr.awb_gwd_rto_bg_th =", csr.awb_gwd_rto_bg_th);
    text.open_run("wb_csr.awb_gwd_rto_bg_m_2s =", csr.awb_gwd_rto_bg_m_2s);
}

void write_nr_manual(Text &text, const IntlNrCfg &cfg)
{
    text.value("manual_cfg.mode", cfg.mode);
    text.value("manual_cfg.ma_y_step", cfg.ma_y_step);
    text.open_run("manual_cfg.ma_y_lut_i = ", cfg.ma_y_lut_i);
    text.open_run("manual_cfg.ma_y_lut_o = ", cfg.ma_y_lut_o);
    text.put(";manual_cfg.ma_y_lut_slope => obtained through internal calculations\n");
    text.value("manual_cfg.ma_y_lp_dyn_gain_th_min", cfg.ma_y_lp_dyn_gain_th_min);
    text.value("manual_cfg.ma_y_lp_dyn_gain_th_max", cfg.ma_y_lp_dyn_gain_th_max);
    text.value("manual_cfg.ma_y_lp_dyn_gain_min", cfg.ma_y_lp_dyn_gain_min);
    text.value("manual_cfg.ma_y_lp_dyn_gain_max", cfg.ma_y_lp_dyn_gain_max);
    text.put(";manual_cfg.ma_y_lp_dyn_gain_slope => obtained through internal calculations\n");
    text.value("manual_cfg.ma_y_lp_diff_gain_th_min", cfg.ma_y_lp_diff_gain_th_min);
    text.value("manual_cfg.ma_y_lp_diff_gain_th_range", cfg.ma_y_lp_diff_gain_th_range);
    text.value("manual_cfg.ma_y_lp_diff_gain_min", cfg.ma_y_lp_diff_gain_min);
    text.value("manual_cfg.ma_y_lp_diff_gain_max", cfg.ma_y_lp_diff_gain_max);
    text.value("manual_cfg.mc_y_step", cfg.mc_y_step);
    text.open_run("manual_cfg.mc_y_lut_i = ", cfg.mc_y_lut_i);
    text.open_run("manual_cfg.mc_y_lut_o = ", cfg.mc_y_lut_o);
    text.put(";manual_cfg.mc_y_lut_slope => obtained through internal calculations\n");
    text.value("manual_cfg.mc_y_lp_dyn_gain_th_min", cfg.mc_y_lp_dyn_gain_th_min);
    text.value("manual_cfg.mc_y_lp_dyn_gain_th_max", cfg.mc_y_lp_dyn_gain_th_max);
    text.value("manual_cfg.mc_y_lp_dyn_gain_min", cfg.mc_y_lp_dyn_gain_min);
    text.value("manual_cfg.mc_y_lp_dyn_gain_max", cfg.mc_y_lp_dyn_gain_max);
    text.put(";manual_cfg.mc_y_lp_dyn_gain_slope => obtained through internal calculations\n");
    text.value("manual_cfg.mc_y_lp_diff_gain_th_min", cfg.mc_y_lp_diff_gain_th_min);
    text.value("manual_cfg.mc_y_lp_diff_gain_th_range", cfg.mc_y_lp_diff_gain_th_range);
    text.value("manual_cfg.mc_y_lp_diff_gain_min", cfg.mc_y_lp_diff_gain_min);
    text.value("manual_cfg.mc_y_lp_diff_gain_max", cfg.mc_y_lp_diff_gain_max);
    text.value("manual_cfg.mc_y_base_ratio", cfg.mc_y_base_ratio);
    text.value("manual_cfg.mc_y_base_dyn", cfg.mc_y_base_dyn);
    text.value("manual_cfg.ma_c_step", cfg.ma_c_step);
    text.open_run("manual_cfg.ma_c_lut_i = ", cfg.ma_c_lut_i);
    text.open_run("manual_cfg.ma_c_lut_o = ", cfg.ma_c_lut_o);
    text.put(";manual_cfg.ma_c_lut_slope => obtained through internal calculations\n");
    text.value("manual_cfg.ma_c_ref", cfg.ma_c_ref);
    text.value("manual_cfg.ma_c_weight_y_gain_th_min", cfg.ma_c_weight_y_gain_th_min);
    text.value("manual_cfg.ma_c_weight_y_gain_th_max", cfg.ma_c_weight_y_gain_th_max);
    text.value("manual_cfg.ma_c_weight_y_gain_min", cfg.ma_c_weight_y_gain_min);
    text.value("manual_cfg.ma_c_weight_y_gain_max", cfg.ma_c_weight_y_gain_max);
    text.put(";manual_cfg.ma_c_weight_y_gain_slope => obtained through internal calculations\n");
    text.value("manual_cfg.fir_kernel", cfg.fir_kernel);
    text.value("manual_cfg.fir_weight_y", cfg.fir_weight_y);
    text.value("manual_cfg.fir_weight_c", cfg.fir_weight_c);
    text.value("manual_cfg.iir_confidence", cfg.iir_confidence);
    text.value("manual_cfg.iir_alpha_y_gain", cfg.iir_alpha_y_gain);
    text.value("manual_cfg.iir_alpha_c_gain", cfg.iir_alpha_c_gain);
}

// Where the texts of the two noise reductions differ in what they have in common.
struct NrForm {
    const char *lut_i_cnt_end;
    const char *table_gap; // before each of the two y-level tables
};
constexpr NrForm FRONT_NR_FORM = {"\n", ""};
constexpr NrForm NR_FORM = {
    "\t; Max is 17, and it would decide the entry number of lut_ma_c_lut_i, lut_mc_y_lut_i, lut_ma_c_lut_i\n",
    "\n"};

void write_nr_body(Text &text, const IntlNrBody &p, const NrForm &form)
{
    text.value("enable", p.enable);
    text.put("; lut_o\n");
    text.open_run("lut_ma_y_lut_o = ", p.lut_ma_y_lut_o);
    text.open_run("lut_mc_y_lut_o = ", p.lut_mc_y_lut_o);
    text.open_run("lut_ma_c_lut_o = ", p.lut_ma_c_lut_o);
    text.put("\n");
    text.value("is_lut_i_en", p.is_lut_i_en);
    text.value("lut_i_cnt", p.lut_i_cnt, form.lut_i_cnt_end);
    text.put(";y_level_3d ; lut_i_cnt=16 mapping to 0-255\n");
    text.put(form.table_gap);
    indexed_rows(text, "lut_ma_y_lut_i-", p.lut_ma_y_lut_i, 9);
    text.put(form.table_gap);
    indexed_rows(text, "lut_mc_y_lut_i-", p.lut_mc_y_lut_i, 9);
    text.put(";c_level_3d\n"
             "\n");
    indexed_rows(text, "lut_ma_c_lut_i-", p.lut_ma_c_lut_i, 9);
    text.put("\n");
    text.value("enable_ctrl_mc_y_dyn", p.enable_ctrl_mc_y_dyn);
    text.open_run("mc_y_dyn_gain_th_min = ", p.mc_y_dyn_gain_th_min);
    text.open_run("mc_y_dyn_gain_th_max = ", p.mc_y_dyn_gain_th_max);
    text.open_run("mc_y_dyn_gain_min = ", p.mc_y_dyn_gain_min);
    text.open_run("mc_y_dyn_gain_max = ", p.mc_y_dyn_gain_max);
    text.put(";mc_y_base_dyn\n");
    text.open_run("mc_y_base_dyn = ", p.mc_y_base_dyn);
    text.put("\n"
             "; manual\n");
    text.value("manual_cfg_enable", p.manual_cfg_enable);
    write_nr_manual(text, p.manual_cfg);
}

void write_front_nr(Text &text, const DipIntlFrontNrParam &p)
{
    const IntlFrontNrAttr &attr = p.attr;
    text.put("[FRONT_NR]\n");
    text.value("attr.mode", attr.mode);
    text.open_run("attr.nr_auto.y_level_3d = ", attr.nr_auto.y_level_3d);
    text.open_run("attr.nr_auto.c_level_3d = ", attr.nr_auto.c_level_3d);
    text.open_run("attr.nr_auto.y_level_2d = ", attr.nr_auto.y_level_2d);
    text.open_run("attr.nr_auto.c_level_2d = ", attr.nr_auto.c_level_2d);
    text.open_run("attr.nr_auto.fss_y_level_3d = ", attr.nr_auto.fss_y_level_3d);
    text.value("attr.nr_manual.y_level_3d", attr.nr_manual.y_level_3d);
    text.value("attr.nr_manual.c_level_3d", attr.nr_manual.c_level_3d);
    text.value("attr.nr_manual.y_level_2d", attr.nr_manual.y_level_2d);
    text.value("attr.nr_manual.c_level_2d", attr.nr_manual.c_level_2d);
    text.value("attr.nr_manual.fss_y_level_3d", attr.nr_manual.fss_y_level_3d);
    text.value("attr.motion_comp", attr.motion_comp);
    text.value("attr.trail_suppress", attr.trail_suppress);
    text.value("attr.ghost_remove", attr.ghost_remove);
    text.value("attr.ma_y_strength", attr.ma_y_strength);
    text.value("attr.mc_y_strength", attr.mc_y_strength);
    text.value("attr.ma_c_strength", attr.ma_c_strength);
    text.value("attr.ratio_3d", attr.ratio_3d);
    text.value("attr.mc_y_level_offset", attr.mc_y_level_offset);
    text.value("attr.me_frame_fallback_en", attr.me_frame_fallback_en);
    text.value("attr.fss_ratio_min", attr.fss_ratio_min);
    text.value("attr.fss_ratio_max", attr.fss_ratio_max);
    text.value("attr.lut_type", attr.lut_type);
    text.put("\n");
    write_nr_body(text, p.body, FRONT_NR_FORM);
}

void write_nr(Text &text, const DipIntlNrParam &p)
{
    text.put("[NR]\n");
    write_nr_body(text, p.body, NR_FORM);
}

void write_me_manual(Text &text, const IntlMeCfg &cfg)
{
    const DipIntlMotionStatus &status = cfg.motion_status_cfg;
    text.value("manual_cfg.mode", cfg.mode);
    text.put("; candidates\n");
    text.value("manual_cfg.scene_change", cfg.scene_change);
    text.value("manual_cfg.gmv_x", cfg.gmv_x);
    text.value("manual_cfg.gmv_y", cfg.gmv_y);
    text.value("manual_cfg.gmv_cand_valid", cfg.gmv_cand_valid);
    text.value("manual_cfg.mode_left_mv_diff_th", as_signed(cfg.mode_left_mv_diff_th));
    text.value("manual_cfg.mode_top_left_mv_diff_th", as_signed(cfg.mode_top_left_mv_diff_th));
    text.value("manual_cfg.mode_top_right_mv_diff_th", as_signed(cfg.mode_top_right_mv_diff_th));
    text.value("manual_cfg.bottom_left_dist_x", cfg.bottom_left_dist_x);
    text.value("manual_cfg.bottom_left_dist_y", cfg.bottom_left_dist_y);
    text.value("manual_cfg.bottom_right_dist_x", cfg.bottom_right_dist_x);
    text.value("manual_cfg.bottom_right_dist_y", cfg.bottom_right_dist_y);
    text.put("; search range\n");
    text.value("manual_cfg.sw_center_mode", cfg.sw_center_mode);
    text.value("manual_cfg.sw_center_x_sw", cfg.sw_center_x_sw);
    text.value("manual_cfg.sw_center_y_sw", cfg.sw_center_y_sw);
    text.value("manual_cfg.sw_center_weight", cfg.sw_center_weight);
    text.value("manual_cfg.sw_ix", cfg.sw_ix);
    text.value("manual_cfg.sw_iy", cfg.sw_iy);
    text.value("manual_cfg.sw_ix_size", cfg.sw_ix_size);
    text.value("manual_cfg.sw_iy_size", cfg.sw_iy_size);
    text.value("manual_cfg.mvr_left_extend_dist", cfg.mvr_left_extend_dist);
    text.value("manual_cfg.mvr_right_extend_dist", cfg.mvr_right_extend_dist);
    text.put(";motion search\n");
    text.value("manual_cfg.ime_penalty_gain_x_sel", cfg.ime_penalty_gain_x_sel);
    text.value("manual_cfg.ime_penalty_gain_y_sel", cfg.ime_penalty_gain_y_sel);
    text.value("manual_cfg.ime_penalty_bound_x_ini", cfg.ime_penalty_bound_x_ini);
    text.value("manual_cfg.ime_penalty_bound_y_ini", cfg.ime_penalty_bound_y_ini);
    text.value("manual_cfg.search_texture_th", cfg.search_texture_th);
    text.put(";cost\n");
    text.value("manual_cfg.valid_true_mv_th", cfg.valid_true_mv_th);
    text.value("manual_cfg.matching_weight", cfg.matching_weight);
    text.value("manual_cfg.singularity_weight", cfg.singularity_weight);
    text.value("manual_cfg.range_weight", cfg.range_weight);
    text.put(";block matching\n");
    text.value("manual_cfg.m_cost_quarter_gain", cfg.m_cost_quarter_gain);
    text.value("manual_cfg.m_cost_half_gain", cfg.m_cost_half_gain);
    text.value("manual_cfg.m_cost_frac_offset", cfg.m_cost_frac_offset);
    text.put(";singularity\n");
    text.value("manual_cfg.singularity_min_th", cfg.singularity_min_th);
    text.value("manual_cfg.singularity_max_th", cfg.singularity_max_th);
    text.value("manual_cfg.texture_gain_low_th", cfg.texture_gain_low_th);
    text.value("manual_cfg.texture_gain_high_th", cfg.texture_gain_high_th);
    text.value("manual_cfg.texture_gain_low", cfg.texture_gain_low);
    text.value("manual_cfg.texture_gain_high", cfg.texture_gain_high);
    text.value("manual_cfg.texture_gain_slope", cfg.texture_gain_slope);
    text.put(";mv range\n");
    text.value("manual_cfg.range_min_x_th", cfg.range_min_x_th);
    text.value("manual_cfg.range_max_x_th", cfg.range_max_x_th);
    text.value("manual_cfg.range_min_y_th", cfg.range_min_y_th);
    text.value("manual_cfg.range_max_y_th", cfg.range_max_y_th);
    text.put(";type\n");
    text.value("manual_cfg.spatial_cost_offset", cfg.spatial_cost_offset);
    text.value("manual_cfg.temporal_cost_offset", cfg.temporal_cost_offset);
    text.value("manual_cfg.search_weak_cost_offset", cfg.search_weak_cost_offset);
    text.value("manual_cfg.search_cost_offset", cfg.search_cost_offset);
    text.value("manual_cfg.refine_cost_offset", cfg.refine_cost_offset);
    text.value("manual_cfg.gmv_cost_offset", cfg.gmv_cost_offset);
    text.put(";non zero\n");
    text.value("manual_cfg.non_zero_mv_cost_offset", cfg.non_zero_mv_cost_offset);
    text.put(";dynamic me settings\n");
    text.value("manual_cfg.dynamic_me_enable", cfg.dynamic_me_enable);
    text.value("manual_cfg.motion_status_cfg.gluey_me_frame_count_down_max",
               status.gluey_me_frame_count_down_max);
    text.value("manual_cfg.motion_status_cfg.mv_coring_th", status.mv_coring_th);
    text.value("manual_cfg.motion_status_cfg.mv_low_th", status.mv_low_th);
    text.value("manual_cfg.motion_status_cfg.mv_high_th", status.mv_high_th);
    text.value("manual_cfg.motion_status_cfg.show_dyn_me_log", status.show_dyn_me_log);
    text.value("manual_cfg.motion_status_cfg.rc_use_isp_m2s", status.rc_use_isp_m2s);
    text.value("manual_cfg.motion_status_cfg.motion_level_low_th", status.motion_level_low_th);
    text.value("manual_cfg.motion_status_cfg.motion_level_high_th", status.motion_level_high_th);
    text.value("manual_cfg.motion_status_cfg.motion_level_max", status.motion_level_max);
    text.put(";gluey me csr\n");
    text.value("manual_cfg.gluey_search_weak_cost_offset", cfg.gluey_search_weak_cost_offset);
    text.value("manual_cfg.gluey_search_cost_offset", cfg.gluey_search_cost_offset);
    text.value("manual_cfg.gluey_refine_cost_offset", cfg.gluey_refine_cost_offset);
    text.value("manual_cfg.gluey_gmv_cost_offset", cfg.gluey_gmv_cost_offset);
    text.put(";active me csr\n");
    text.value("manual_cfg.active_ime_penalty_gain_x_sel", cfg.active_ime_penalty_gain_x_sel);
    text.value("manual_cfg.active_ime_penalty_gain_y_sel", cfg.active_ime_penalty_gain_y_sel);
    text.value("manual_cfg.active_ime_penalty_bound_x_ini", cfg.active_ime_penalty_bound_x_ini);
    text.value("manual_cfg.active_ime_penalty_bound_y_ini", cfg.active_ime_penalty_bound_y_ini);
    text.value("manual_cfg.active_search_texture_th", cfg.active_search_texture_th);
    text.value("manual_cfg.active_texture_gain_low_th", cfg.active_texture_gain_low_th);
    text.value("manual_cfg.active_singularity_weight", cfg.active_singularity_weight);
    text.value("manual_cfg.active_range_weight", cfg.active_range_weight);
    text.value("manual_cfg.active_non_zero_mv_cost_offset", cfg.active_non_zero_mv_cost_offset);
    text.value("manual_cfg.active_texture_gain_low", cfg.active_texture_gain_low);
    text.value("manual_cfg.active_gmv_cost_offset", cfg.active_gmv_cost_offset);
}

void write_me_body(Text &text, const DipIntlMeParam &p)
{
    const DipIntlMotionStatus &status = p.motion_status_cfg;
    const DipIntlGlueyMeCsr &gluey = p.gluey_me_csr;
    const DipIntlActiveMeCsr &active = p.active_me_csr;
    text.value("enable", p.enable);
    text.value("enable_adapt_gmv", p.enable_adapt_gmv);
    text.value("gmv_valid_thd", p.gmv_valid_thd);
    text.value("show_gmv_conf", p.show_gmv_conf);
    text.put("; candidates\n");
    text.value("scene_change", p.scene_change);
    text.value("gmv_x", p.gmv_x);
    text.value("gmv_y", p.gmv_y);
    text.value("gmv_cand_valid", p.gmv_cand_valid);
    text.value("mode_left_mv_diff_th", p.mode_left_mv_diff_th);
    text.value("mode_top_left_mv_diff_th", p.mode_top_left_mv_diff_th);
    text.value("mode_top_right_mv_diff_th", p.mode_top_right_mv_diff_th);
    text.value("bottom_left_dist_x", p.bottom_left_dist_x);
    text.value("bottom_left_dist_y", p.bottom_left_dist_y);
    text.value("bottom_right_dist_x", p.bottom_right_dist_x);
    text.value("bottom_right_dist_y", p.bottom_right_dist_y);
    text.put("; search range\n");
    text.value("sw_center_mode", p.sw_center_mode);
    text.value("sw_center_x_sw", p.sw_center_x_sw);
    text.value("sw_center_y_sw", p.sw_center_y_sw);
    text.value("sw_center_weight", p.sw_center_weight);
    text.value("sw_ix", p.sw_ix);
    text.value("sw_iy", p.sw_iy);
    text.value("sw_ix_size", p.sw_ix_size);
    text.value("sw_iy_size", p.sw_iy_size);
    text.value("mvr_left_extend_dist", p.mvr_left_extend_dist);
    text.value("mvr_right_extend_dist", p.mvr_right_extend_dist);
    text.put("; block matching\n");
    text.open_run("m_cost_quarter_gain = ", p.m_cost_quarter_gain);
    text.open_run("m_cost_half_gain = ", p.m_cost_half_gain);
    text.open_run("m_cost_frac_offset = ", p.m_cost_frac_offset);
    text.put("; mv range\n");
    text.value("range_min_x_th", p.range_min_x_th);
    text.value("range_max_x_th", p.range_max_x_th);
    text.value("range_min_y_th", p.range_min_y_th);
    text.value("range_max_y_th", p.range_max_y_th);
    text.put("; motion search\n");
    text.value("ime_penalty_gain_x_sel", p.ime_penalty_gain_x_sel);
    text.value("ime_penalty_gain_y_sel", p.ime_penalty_gain_y_sel);
    text.value("ime_penalty_bound_x_ini", p.ime_penalty_bound_x_ini);
    text.value("ime_penalty_bound_y_ini", p.ime_penalty_bound_y_ini);
    text.open_run("search_texture_th = ", p.search_texture_th);
    text.put("; singularity\n");
    text.value("singularity_min_th", p.singularity_min_th);
    text.value("singularity_max_th", p.singularity_max_th);
    text.open_run("texture_gain_low_th = ", p.texture_gain_low_th);
    text.open_run("texture_gain_high_th = ", p.texture_gain_high_th);
    text.open_run("texture_gain_low = ", p.texture_gain_low);
    text.value("texture_gain_high", p.texture_gain_high);
    text.put("\n");
    text.open_run("texture_gain_slope = ", p.texture_gain_slope);
    text.put("; cost\n");
    text.open_run("valid_true_mv_th = ", p.valid_true_mv_th);
    text.open_run("matching_weight = ", p.matching_weight);
    text.open_run("singularity_weight = ", p.singularity_weight);
    text.open_run("range_weight = ", p.range_weight);
    text.put("\n"
             "; type\n");
    text.value("spatial_cost_offset", p.spatial_cost_offset);
    text.value("temporal_cost_offset", p.temporal_cost_offset);
    text.open_run("search_weak_cost_offset = ", p.search_weak_cost_offset);
    text.open_run("search_cost_offset = ", p.search_cost_offset);
    text.open_run("refine_cost_offset = ", p.refine_cost_offset);
    text.open_run("gmv_cost_offset = ", p.gmv_cost_offset);
    text.put("\n"
             "; non zero\n");
    text.open_run("non_zero_mv_cost_offset = ", p.non_zero_mv_cost_offset);
    text.put("\n"
             "; dynamic me settings\n");
    text.value("dynamic_me_enable", p.dynamic_me_enable);
    text.value("motion_status_cfg.gluey_me_frame_count_down_max",
               status.gluey_me_frame_count_down_max);
    text.value("motion_status_cfg.mv_coring_th", status.mv_coring_th);
    text.value("motion_status_cfg.mv_low_th", status.mv_low_th);
    text.value("motion_status_cfg.mv_high_th", status.mv_high_th);
    text.value("motion_status_cfg.show_dyn_me_log", status.show_dyn_me_log);
    text.value("motion_status_cfg.rc_use_isp_m2s", status.rc_use_isp_m2s);
    text.value("motion_status_cfg.motion_level_low_th", status.motion_level_low_th);
    text.value("motion_status_cfg.motion_level_high_th", status.motion_level_high_th);
    text.value("motion_status_cfg.motion_level_max", status.motion_level_max);
    text.put("\n"
             "; gluey me csr\n");
    text.open_run("gluey_me_csr.search_weak_cost_offset = ", gluey.search_weak_cost_offset);
    text.open_run("gluey_me_csr.search_cost_offset = ", gluey.search_cost_offset);
    text.open_run("gluey_me_csr.refine_cost_offset = ", gluey.refine_cost_offset);
    text.open_run("gluey_me_csr.gmv_cost_offset = ", gluey.gmv_cost_offset);
    text.put("\n"
             "; active me csr\n");
    text.value("active_me_csr.ime_penalty_gain_x_sel", active.ime_penalty_gain_x_sel);
    text.value("active_me_csr.ime_penalty_gain_y_sel", active.ime_penalty_gain_y_sel);
    text.value("active_me_csr.ime_penalty_bound_x_ini", active.ime_penalty_bound_x_ini);
    text.value("active_me_csr.ime_penalty_bound_y_ini", active.ime_penalty_bound_y_ini);
    text.open_run("active_me_csr.search_texture_th = ", active.search_texture_th);
    text.open_run("active_me_csr.texture_gain_low_th = ", active.texture_gain_low_th);
    text.open_run("active_me_csr.singularity_weight = ", active.singularity_weight);
    text.open_run("active_me_csr.range_weight = ", active.range_weight);
    text.open_run("active_me_csr.non_zero_mv_cost_offset = ", active.non_zero_mv_cost_offset);
    text.open_run("active_me_csr.texture_gain_low = ", active.texture_gain_low);
    text.open_run("active_me_csr.gmv_cost_offset = ", active.gmv_cost_offset);
    text.put("\n"
             "; manual\n");
    text.value("manual_cfg_enable", p.manual_cfg_enable);
    write_me_manual(text, p.manual_cfg);
}

void write_front_me(Text &text, const DipIntlMeParam &p)
{
    text.put("[FRONT_ME]\n");
    write_me_body(text, p);
}

void write_me(Text &text, const DipIntlMeParam &p)
{
    text.put("[ME]\n");
    write_me_body(text, p);
}

void write_daa(Text &text, const DipIntlDaaParam &p)
{
    text.put("[DAA]\n");
    text.value("enable", p.enable);
    text.value("qp_upper_offset", p.qp_upper_offset);
    text.value("qp_lower_offset", p.qp_lower_offset);
    text.value("mode_te", p.mode_te);
    text.value("mode_dpc", p.mode_dpc);
    text.value("mode_dms", p.mode_dms);
    text.value("mode_fcs", p.mode_fcs);
    text.value("mode_csm", p.mode_csm);
    text.value("mode_enh", p.mode_enh);
    text.value("mode_shp", p.mode_shp);
    text.value("mode_dhz", p.mode_dhz);
    text.value("mode_nr", p.mode_nr);
    text.value("mode_coring", p.mode_coring);
}

void write_dms(Text &text, const DipIntlDmsParam &p)
{
    text.put("[DMS]\n");
    text.value("enable", p.enable);
    text.value("force_csr", p.force_csr);
    text.value("csr.mode", p.csr.mode);
    text.value("csr.g_var_gain", p.csr.g_var_gain);
    text.value("csr.fcs_threshold", p.csr.fcs_threshold);
    text.value("csr.inter_conf_slope", p.csr.inter_conf_slope);
    text.value("csr.fcs_offset", p.csr.fcs_offset);
    text.value("csr.g_at_m_inter_ratio", p.csr.g_at_m_inter_ratio);
    text.value("csr.m_at_m_inter_ratio", p.csr.m_at_m_inter_ratio);
    text.value("csr.m_at_g_inter_ratio", p.csr.m_at_g_inter_ratio);
    text.value("csr.g_at_m_soft_clip_slope", p.csr.g_at_m_soft_clip_slope);
    text.value("csr.m_at_m_soft_clip_slope", p.csr.m_at_m_soft_clip_slope);
    text.value("csr.m_at_g_soft_clip_slope", p.csr.m_at_g_soft_clip_slope);
    text.value("csr.m_at_g_gradient_src_ratio", p.csr.m_at_g_gradient_src_ratio);
}

void write_bsp_dpc(Text &text, const DipIntlBspDpcParam &p)
{
    text.put("[BSP_DPC]\n");
    text.value("enable", p.enable);
    text.value("dpd_enable", p.dpd_enable);
    text.value("dpd_g_pattern_mode", p.dpd_g_pattern_mode);
    text.value("dpd_pix_num_mode", p.dpd_pix_num_mode);
    text.open_run("dpd_diff_ratio = ", p.dpd_diff_ratio);
    text.open_run("dpd_avg_ratio = ", p.dpd_avg_ratio);
    text.open_run("dpd_edge_diff_ratio = ", p.dpd_edge_diff_ratio);
    text.open_run("dpd_edge_avg_ratio = ", p.dpd_edge_avg_ratio);
    text.value("dpd_edge_m", p.dpd_edge_m);
    text.put("\n");
    text.value("dpc_enable", p.dpc_enable);
    text.value("dpc_dir_enable", p.dpc_dir_enable);
    text.open_run("dpc_dir_th_ratio = ", p.dpc_dir_th_ratio);
    text.value("dpc_dir_str_m", p.dpc_dir_str_m);
    text.put("\n");
    text.value("force_csr", p.force_csr);
    text.value("csr.dpd_enable", p.csr.dpd_enable);
    text.value("csr.dpd_g_pattern_mode", p.csr.dpd_g_pattern_mode);
    text.value("csr.dpd_pix_num_mode", p.csr.dpd_pix_num_mode);
    text.value("csr.dpd_diff_ratio", p.csr.dpd_diff_ratio);
    text.value("csr.dpd_avg_ratio", p.csr.dpd_avg_ratio);
    text.value("csr.dpd_edge_diff_ratio", p.csr.dpd_edge_diff_ratio);
    text.value("csr.dpd_edge_avg_ratio", p.csr.dpd_edge_avg_ratio);
    text.value("csr.dpd_edge_m", p.csr.dpd_edge_m);
    text.put("\n");
    text.value("csr.dpc_enable", p.csr.dpc_enable);
    text.value("csr.dpc_dir_enable", p.csr.dpc_dir_enable);
    text.value("csr.dpc_dir_th_ratio", p.csr.dpc_dir_th_ratio);
    text.value("csr.dpc_dir_str_m", p.csr.dpc_dir_str_m);
}

void write_ctrl(Text &text, const DipIntlCtrlParam &p)
{
    text.put("[CTRL]\n");
    text.value("attr.is_front_enh_en", p.attr.is_front_enh_en);
    text.value("attr.is_front_me_en", p.attr.is_front_me_en);
    text.value("attr.is_front_nr_en", p.attr.is_front_nr_en);
    text.value("attr.is_hdr_en", p.attr.is_hdr_en);
    text.put("\n"
             "; Load Control\n");
    text.value("load_ctrl.enable", p.load_ctrl.enable);
    text.value("load_ctrl.max_refresh_rate", p.load_ctrl.max_refresh_rate);
}

void write_trail_suppress(Text &text, const DipIntlTrailSuppressParam &p)
{
    text.put("[TRAIL_SUPPRESS]\n");
    text.value("enable", p.enable);
    text.value("log_enable", p.log_enable);
    text.value("log_frame_cnt", p.log_frame_cnt);
    text.value("iso_low", as_signed(p.iso_low));
    text.value("iso_high", as_signed(p.iso_high));
    text.value("mode", p.mode);
    text.value("csr_mode", p.csr_mode);
    text.value("ctrl_enable", p.ctrl_enable);
    text.closed_run("nr_lut_adj = ", p.nr_lut_adj);
    text.value("curve_protect", p.curve_protect);
    text.value("lp_adj_enable", p.lp_adj_enable);
    text.closed_run("nr_lp_adj = ", p.nr_lp_adj);
    text.value("period", p.period);
    text.value("effect_frame", p.effect_frame);
}

void write_regional_stat(Text &text, const DipIntlRegionalStatParam &p)
{
    text.put("[REGIONAL_STAT]\n");
    text.value("enable", p.enable);
    text.value("log_enable", p.log_enable);
    text.value("log_frame", p.log_frame);
    text.value("enable_complex_norm", p.enable_complex_norm);
    text.value("enable_te_norm", p.enable_te_norm);
    text.value("enable_gamma_norm", p.enable_gamma_norm);
    text.value("enable_luma_suppression", p.enable_luma_suppression);
    text.value("luma_thd_low", p.luma_thd_low);
    text.value("luma_thd_high", p.luma_thd_high);
    text.value("luma_suppress_ratio", p.luma_suppress_ratio);
}

// What all serializers do: `write` appends the record's text.
int32_t save_record(const char *name, const void *record, char **str,
                    void (*write)(Text &text, const void *record))
{
    if (record == nullptr) {
        MPP_LOG(dip_log, LOG_DEBUG, "[Debug][DIP] %s() info == NULL", name);
        return -1;
    }
    HeapText text;
    write(text, record);
    return text.deliver(str);
}

template <auto write, typename Param>
int32_t save_attr(const char *name, const Param *param, char **str)
{
    return save_record(name, param, str, [](Text &text, const void *record) {
        write(text, *static_cast<const Param *>(record));
    });
}

} // namespace

int32_t dip_intl_get_crc_param(const DipIntlCrcParam *param, char **str)
{
    return save_attr<write_crc>(__func__, param, str);
}

int32_t dip_intl_get_lsc_param(const DipIntlLscParam *param, char **str)
{
    return save_attr<write_lsc>(__func__, param, str);
}

int32_t dip_intl_get_ae_param(const DipIntlAeParam *param, char **str)
{
    return save_attr<write_ae>(__func__, param, str);
}

int32_t dip_intl_get_awb_param(const DipIntlAwbParam *param, char **str)
{
    return save_attr<write_awb>(__func__, param, str);
}

int32_t dip_intl_get_pta_param(const DipIntlPtaParam *param, char **str)
{
    return save_attr<write_pta>(__func__, param, str);
}

int32_t dip_intl_get_shp_param(const DipIntlShpParam *param, char **str)
{
    return save_attr<write_shp>(__func__, param, str);
}

int32_t dip_intl_get_hdr_param(const DipIntlHdrParam *param, char **str)
{
    return save_attr<write_hdr>(__func__, param, str);
}

int32_t dip_intl_get_hdr_ae_param(const DipIntlHdrAeParam *param, char **str)
{
    return save_attr<write_hdr_ae>(__func__, param, str);
}

int32_t dip_intl_get_te_param(const DipIntlTeParam *param, char **str)
{
    return save_attr<write_te>(__func__, param, str);
}

int32_t dip_intl_get_front_enh_param(const DipIntlFrontEnhParam *param, char **str)
{
    return save_attr<write_front_enh>(__func__, param, str);
}

int32_t dip_intl_get_enh_param(const DipIntlEnhParam *param, char **str)
{
    return save_attr<write_enh>(__func__, param, str);
}

int32_t dip_intl_get_fcs_param(const DipIntlFcsParam *param, char **str)
{
    return save_attr<write_fcs>(__func__, param, str);
}

int32_t dip_intl_get_dhz_param(const DipIntlDhzParam *param, char **str)
{
    return save_attr<write_dhz>(__func__, param, str);
}

int32_t dip_intl_get_iso_param(const DipIntlIsoParam *param, char **str)
{
    return save_attr<write_iso>(__func__, param, str);
}

int32_t dip_intl_get_stat_param(const DipIntlStatParam *param, char **str)
{
    return save_attr<write_stat>(__func__, param, str);
}

int32_t dip_intl_get_front_nr_param(const DipIntlFrontNrParam *param, char **str)
{
    return save_attr<write_front_nr>(__func__, param, str);
}

int32_t dip_intl_get_nr_param(const DipIntlNrParam *param, char **str)
{
    return save_attr<write_nr>(__func__, param, str);
}

int32_t dip_intl_get_front_me_param(const DipIntlMeParam *param, char **str)
{
    return save_attr<write_front_me>(__func__, param, str);
}

int32_t dip_intl_get_me_param(const DipIntlMeParam *param, char **str)
{
    return save_attr<write_me>(__func__, param, str);
}

int32_t dip_intl_get_daa_param(const DipIntlDaaParam *param, char **str)
{
    return save_attr<write_daa>(__func__, param, str);
}

int32_t dip_intl_get_dms_param(const DipIntlDmsParam *param, char **str)
{
    return save_attr<write_dms>(__func__, param, str);
}

int32_t dip_intl_get_bsp_dpc_param(const DipIntlBspDpcParam *param, char **str)
{
    return save_attr<write_bsp_dpc>(__func__, param, str);
}

int32_t dip_intl_get_ctrl_param(const DipIntlCtrlParam *param, char **str)
{
    return save_attr<write_ctrl>(__func__, param, str);
}

int32_t dip_intl_get_trail_suppress_param(const DipIntlTrailSuppressParam *param, char **str)
{
    return save_attr<write_trail_suppress>(__func__, param, str);
}

int32_t dip_intl_get_regional_stat_param(const DipIntlRegionalStatParam *param, char **str)
{
    return save_attr<write_regional_stat>(__func__, param, str);
}
