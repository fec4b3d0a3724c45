// The extension settings of the modules, as an engineer would have tuned them: mostly the automatic
// tables by noise level, few manual overrides.
#include "scene.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace
{

template <typename Value, size_t n>
void fill_ramp(Value (&values)[n], int first, int step)
{
    for (size_t i = 0; i < n; i++)
        values[i] = static_cast<Value>(first + step * static_cast<int>(i));
}

template <typename Value, size_t rows, size_t columns>
void fill_rows(Value (&table)[rows][columns], int first, int row_step, int step)
{
    for (size_t i = 0; i < rows; i++)
        fill_ramp(table[i], first + row_step * static_cast<int>(i), step);
}

void fill_curves(DipIntlCrcParam *crc)
{
    crc->enable = 1;
    crc->k_cnt = 3;
    crc->k_order[0] = 2850;
    crc->k_order[1] = 4150;
    crc->k_order[2] = 6500;
    crc->k_th = 100;
    for (int k = 0; k < INTL_CRC_K_NUM; k++)
        for (IntlCrcCurve *curve : {&crc->g0[k], &crc->r[k], &crc->b[k], &crc->g1[k]}) {
            fill_ramp(curve->x, 0, 8191);
            fill_ramp(curve->y, 0, 8191);
            fill_ramp(curve->m, 128, 0);
        }
}

void fill_shading(DipIntlLscParam *lsc)
{
    lsc->enable = 1;
    lsc->table.enable = 1;
    lsc->table.gain_mod = 256;
    lsc->table.hori_step = 33825;
    lsc->table.verti_step = 60133;
    snprintf(lsc->table.table_coeff_file_path, sizeof(lsc->table.table_coeff_file_path),
             "/system/mpp/lsc/sensor0_1080p.bin");
    lsc->nl_adapt.enable = 1;
    fill_ramp(lsc->nl_adapt.strength, 128, -6);
    lsc->nl_adapt.diff_thd = 4;
}

void fill_white_balance(DipIntlAwbParam *awb, DipIntlStatParam *stat)
{
    awb->enable = 1;
    awb->awb_b_enable_k = 1;
    awb->awb_k_dist_lmt_thd = 600;
    awb->awb_b_enable_rtx = 1;
    awb->awb_valid_rtx_rgnum_thd = 8;
    awb->awb_valid_rtx_rgnum_thd_high = 24;
    awb->awb_b_enable_gwd = 1;
    awb->gwd_conf_default = 64;
    awb->stat_csr = {.awb_rtx_y_th_max = 960, .awb_rtx_y_th_min = 64, .awb_rtx_y_m = 16};

    stat->enable = 1;
    stat->fixed_gwd_lum_max = 230;
    stat->fixed_gwd_lum_min = 16;
    stat->auto_rb_rgn_slope_en = 1;
    fill_rows(stat->auto_rb_rgn_slope, 64, 16, -2);
    fill_ramp(stat->wb_csr.awb_gwd_rg, 96, 24);
    fill_ramp(stat->wb_csr.awb_gwd_bg, 112, 20);
    fill_ramp(stat->wb_csr.awb_gwd_a_2s, -24, 16);
}

void fill_tone(DipIntlCtx *intl)
{
    intl->pta.enable = 1;
    intl->pta.scene_curve_cnt = 2;
    for (int i = 0; i < INTL_PTA_CURVE_NUM; i++)
        fill_ramp(intl->pta.scene_curve[i].val, 0, 32);

    intl->te.enable = 1;
    intl->te.is_evtable_en = 1;
    fill_ramp(intl->te.dark_enhance_range, 8, 2);
    intl->te.iir_weight[0] = 3;
    intl->te.iir_weight[1] = 5;
    intl->te.pure_dark_rto = 80;

    DipIntlDhzParam &dhz = intl->dhz;
    dhz.enable = 1;
    dhz.lce_en = 1;
    fill_ramp(dhz.lce.y_gain_max, 320, -8);
    fill_ramp(dhz.lce.c_gain_max, 256, -6);
    fill_ramp(dhz.lce.strength, 48, -2);
    fill_rows(dhz.lce.rgl_weight, 32, 0, 0);
    dhz.manual_cfg.strength = 32;
    fill_rows(dhz.manual_cfg.rgl_gain, 256, 0, 0);
    fill_rows(dhz.manual_cfg.rgl_offset, 0, 0, 0);
}

void fill_motion(DipIntlMeParam *me)
{
    me->enable = 1;
    me->enable_adapt_gmv = 1;
    me->gmv_valid_thd = 40;
    me->gmv_cand_valid = 1;
    me->sw_center_weight = 4;
    fill_ramp(me->m_cost_quarter_gain, 12, 0);
    fill_ramp(me->m_cost_half_gain, 10, 0);
    fill_ramp(me->search_texture_th, 64, 8);
    fill_ramp(me->texture_gain_low_th, 48, 6);
    fill_ramp(me->texture_gain_high_th, 480, 16);
    fill_ramp(me->valid_true_mv_th, 512, 32);
    fill_ramp(me->matching_weight, 8, 0);
    fill_ramp(me->singularity_weight, 4, 0);
    fill_ramp(me->search_cost_offset, 64, 4);
    fill_ramp(me->refine_cost_offset, 8, 1);
    fill_ramp(me->non_zero_mv_cost_offset, 12, 1);
    me->dynamic_me_enable = 1;
    me->motion_status_cfg.gluey_me_frame_count_down_max = 25;
    me->motion_status_cfg.mv_high_th = 48;
    me->motion_status_cfg.motion_level_max = 255;
    me->manual_cfg.matching_weight = 8;
}

void fill_noise(IntlNrBody *nr)
{
    nr->enable = 1;
    fill_ramp(nr->lut_ma_y_lut_o, 0, 12);
    fill_ramp(nr->lut_mc_y_lut_o, 0, 14);
    fill_ramp(nr->lut_ma_c_lut_o, 0, 16);
    nr->is_lut_i_en = 1;
    nr->lut_i_cnt = 17;
    fill_rows(nr->lut_ma_y_lut_i, 0, 1, 10);
    fill_rows(nr->lut_mc_y_lut_i, 0, 1, 9);
    fill_rows(nr->lut_ma_c_lut_i, 0, 2, 12);
    nr->enable_ctrl_mc_y_dyn = 1;
    fill_ramp(nr->mc_y_dyn_gain_th_min, 8, 2);
    fill_ramp(nr->mc_y_dyn_gain_th_max, 64, 4);
    fill_ramp(nr->mc_y_dyn_gain_max, 32, -1);
    nr->manual_cfg.ma_y_step = 4;
    nr->manual_cfg.mc_y_step = 4;
    nr->manual_cfg.ma_c_step = 4;
    nr->manual_cfg.fir_kernel = 1;
}

void fill_detail(DipIntlCtx *intl)
{
    intl->shp.enable = 1;
    intl->shp.manual_cfg.bpf_gain_2s = 24;
    intl->shp.manual_cfg.hpf_gain_2s = -12;
    fill_ramp(intl->shp.manual_cfg.gain_curve.x, 0, 204);
    fill_ramp(intl->shp.manual_cfg.luma_ctrl_gain.x, 0, 102);

    fill_ramp(intl->front_enh.attr.enh_auto.y_txr_strength, 20, 4);
    fill_ramp(intl->front_enh.attr.enh_auto.y_txr_detail, 60, -3);
    fill_ramp(intl->front_enh.attr.enh_auto.c_strength, 24, 5);
    intl->enh.enable = 1;
    fill_ramp(intl->enh.blend_x, 0, 4);
    fill_ramp(intl->enh.blend_m, 8, 0);
    intl->enh.motion_adaptive_en = 1;
    intl->fcs.enable = 1;
    fill_ramp(intl->fcs.offset_level_bin, 0, 64);
    fill_ramp(intl->fcs.threshold_level_bin, 0, 64);
    fill_ramp(intl->fcs.strength_level_bin, 0, 64);
    intl->dms.enable = 1;
    intl->dms.csr.g_var_gain = 8;
    intl->dpc.enable = 1;
    intl->dpc.dpd_enable = 1;
    fill_ramp(intl->dpc.dpd_diff_ratio, 16, 1);
    fill_ramp(intl->dpc.dpd_avg_ratio, 10, 1);
    intl->dpc.dpc_enable = 1;
}

} // namespace

void fill_intl(DipIntlCtx *intl)
{
    intl->flag.val = 0x1FFFFFFF;
    intl->ctrl.attr.is_front_nr_en = 1;
    intl->ctrl.load_ctrl = {.enable = 1, .max_refresh_rate = 30, .interval_us = 33333};
    intl->ae = {.enable = 1, .max_weighted_hist_ratio = 80};
    intl->hdr_ae.epr_manual.epr_val = 256;
    fill_curves(&intl->crc);
    fill_shading(&intl->lsc);
    fill_white_balance(&intl->awb, &intl->stat);
    fill_tone(intl);
    fill_motion(&intl->front_me);
    fill_motion(&intl->me);
    intl->front_nr.attr.mode = 1;
    fill_ramp(intl->front_nr.attr.nr_auto.y_level_3d, 40, 12);
    fill_ramp(intl->front_nr.attr.nr_auto.c_level_3d, 50, 12);
    fill_noise(&intl->front_nr.body);
    fill_noise(&intl->nr.body);
    fill_detail(intl);
    intl->iso.enable = 1;
    fill_ramp(intl->iso.iso_ver2_noise_level_bin, 100, 400);
    intl->daa.enable = 1;
    intl->ts = {};
    intl->ts.enable = 1;
    intl->ts.iso_low = 800;
    intl->ts.iso_high = 6400;
    fill_ramp(intl->ts.nr_lut_adj, -4, 1);
    intl->rgl_stat.enable_te_norm = 1;
    intl->rgl_stat.luma_thd_low = 16;
    intl->rgl_stat.luma_thd_high = 240;
}
