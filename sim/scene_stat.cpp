// The statistics of a frame: a backlit room with something moving in it.
#include "scene.h"

#include <algorithm>

namespace
{

constexpr int COLUMNS = 8; // of the regional raster

// Brightness of a region, 0 to 255: a bright window in the upper middle.
int32_t region_luma(int i, uint32_t frame)
{
    const int dx = 2 * (i % COLUMNS) - 7;
    const int dy = 2 * (i / COLUMNS) - 4;
    return std::clamp(wave(frame, 50, 168, 184) - 3 * dx * dx / 2 - dy * dy / 2, 12, 255);
}

void fill_lum(DipLumStat1 *lum, uint32_t frame)
{
    // Two humps, the room and the window.
    for (int i = 0; i < 60; i++) {
        const int room = std::max(0, 5200 - (i - 16) * (i - 16) * 24);
        const int window = std::max(0, 2600 - (i - 47) * (i - 47) * 40);
        lum->hist.hist[i] = static_cast<uint32_t>(
            room + window + wave(frame + 7U * static_cast<uint32_t>(i), 30, 0, 90));
    }
    for (int i = 0; i < 64; i++)
        lum->avg_rgl.avg[i] = static_cast<uint8_t>(region_luma(i, frame));
    lum->avg_rgl.rgl_x_num = COLUMNS;
    lum->avg_rgl.rgl_y_num = COLUMNS;
    for (int i = 0; i < 4; i++)
        lum->avg_roi[i] = {.avg = static_cast<uint16_t>(region_luma(18 + 9 * i, frame) * 4),
                           .remainder = 0};

    const auto avg = static_cast<uint32_t>(wave(frame, 50, 28600, 31200));
    const uint32_t std_dev = 11500;
    lum->gamma_domain_avg_16b = avg;
    lum->gamma_domain_std_16b = std_dev;
    lum->gamma_domain_var_16b = static_cast<uint64_t>(std_dev) * std_dev;
    lum->gamma_domain_cv_1024 = std_dev * 1024 / avg;
    lum->dri_low_lv_ft = 64;
}

// Peaks and averages of one Bayer channel; `tint` is the channel's share in 1/256.
void fill_rtx(is_rtx_roi_param (&points)[15], is_rtx_rgl_param (&regions)[64], int tint,
              uint32_t frame)
{
    for (int i = 0; i < 15; i++)
        points[i] = {.max_pix = static_cast<uint16_t>(900 * tint / 256),
                     .wgt = 255,
                     .x = static_cast<uint8_t>(4 + 9 * (i % 5)),
                     .y = static_cast<uint8_t>(3 + 8 * (i / 5))};
    for (int i = 0; i < 64; i++)
        regions[i] = {.max_pix = static_cast<uint16_t>(region_luma(i, frame) * 4 * tint / 256),
                      .wgt = static_cast<uint8_t>(region_luma(i, frame) < 200 ? 64 : 16)};
}

void fill_awb(DipAwbStat *awb, uint32_t frame)
{
    constexpr int tints[4] = {256, 148, 181, 255}; // g0, r, b, g1 under daylight
    IsBspRtxRoiStat &roi = awb->rtx.roi_stat;
    IsBspRtxRglStat &rgl = awb->rtx.rgl_stat;
    fill_rtx(roi.g0, rgl.g0, tints[0], frame);
    fill_rtx(roi.r, rgl.r, tints[1], frame);
    fill_rtx(roi.b, rgl.b, tints[2], frame);
    fill_rtx(roi.g1, rgl.g1, tints[3], frame);
    for (int c = 0; c < 4; c++) {
        roi.sum[c] = static_cast<uint32_t>(13500 * tints[c] / 256);
        roi.norm[c] = static_cast<uint8_t>(15);
    }

    for (int i = 0; i < 4; i++) {
        const uint32_t pixels = 518400; // a quarter of the image
        for (int c = 0; c < 4; c++) {
            awb->gwd.roi_stat[i].sum[c] =
                static_cast<uint32_t>(region_luma(18 + 9 * i, frame) * tints[c] * 100);
            awb->gwd.roi_stat[i].norm[c] = pixels / 4;
        }
        awb->gwd.roi_pix_num[i] = pixels;
    }
    for (int i = 0; i < 64; i++) {
        const int luma = region_luma(i, frame);
        awb->gwd.rgl_stat.g[i].avg = static_cast<uint8_t>(luma);
        awb->gwd.rgl_stat.r[i].avg = static_cast<uint8_t>(luma * tints[1] / 256);
        awb->gwd.rgl_stat.b[i].avg = static_cast<uint8_t>(luma * tints[2] / 256);
    }
}

void fill_af(DipAfStat *af, uint32_t frame)
{
    IsBspContrastRglStat &rgl = af->rgl_stat;
    for (int i = 0; i < 64; i++) {
        const int contrast = 40 + 13 * (i % 5) + 7 * (i % 3) + wave(frame, 40, 0, 12);
        rgl.h1_avg[i] = static_cast<uint16_t>(contrast);
        rgl.h2_avg[i] = static_cast<uint16_t>(contrast * 5 / 8);
        rgl.v1_avg[i] = static_cast<uint16_t>(contrast * 7 / 8);
        rgl.v2_avg[i] = static_cast<uint16_t>(contrast / 2);
    }
    rgl.rgl_x_num = COLUMNS;
    rgl.rgl_y_num = COLUMNS;
    for (int i = 0; i < 4; i++)
        af->roi_stat[i] = {.h1_avg = rgl.h1_avg[18 + 9 * i],
                           .h2_avg = rgl.h2_avg[18 + 9 * i],
                           .v1_avg = rgl.v1_avg[18 + 9 * i],
                           .v2_avg = rgl.v2_avg[18 + 9 * i]};
}

// Most of the image stands still; the rest moves a little to either side.
void fill_mv(DipMvHist *mv, uint32_t frame)
{
    mv->cfg.roi = {0, 0, 1919, 1079};
    mv->hist.total_cnt = 0;
    for (int i = 0; i < 32; i++) {
        const int distance = i - 16;
        mv->hist.bin_x[i] = distance * 2;
        mv->hist.bin_y[i] = distance / 3;
        const int count = distance == 0 ? 6480 : 1440 / (distance * distance + 1);
        const auto moving =
            static_cast<uint32_t>(wave(frame + 5U * static_cast<uint32_t>(i), 25, 0, 24));
        mv->hist.bin_count[i] = static_cast<uint32_t>(count) + moving;
        mv->hist.total_cnt += mv->hist.bin_count[i];
    }
}

} // namespace

void fill_stat(DipAllStat *stat, const DipShareInfo &share, uint32_t frame)
{
    stat->frame_cnt = static_cast<int32_t>(frame);
    stat->flag.bit.lum_valid = 1;
    stat->flag.bit.awb_valid = 1;
    stat->flag.bit.mv_valid = 1;
    stat->flag.bit.mcvp_var_valid = 1;
    stat->flag.bit.shp_valid = 1;
    stat->flag.bit.dhz_valid = 1;

    fill_lum(&stat->lum, frame);
    fill_awb(&stat->awb, frame);
    fill_af(&stat->af, frame);
    fill_mv(&stat->mv, frame);

    stat->mcvp_var.cfg.roi = {480, 270, 1439, 809};
    stat->mcvp_var.var = {.hor_sum = 184320, .ver_sum = 163840, .hor_ver_sum = 348160};
    for (int i = 0; i < 64; i++) {
        const int luma = region_luma(i, frame) * 4;
        stat->shp.rgl_stat.lpf_luma_avg[i] = static_cast<uint16_t>(luma);
        stat->shp.rgl_stat.lpf_luma_min[i] = static_cast<uint16_t>(luma / 3);
    }
    stat->shp.roi_stat.lpf_luma_avg = static_cast<uint16_t>(region_luma(27, frame) * 4);
    stat->dhz.stat.luma_avg = static_cast<uint16_t>(region_luma(27, frame) * 4);

    stat->exp = {.inttime = share.exp_info.inttime, .sys_gain = share.sys_gain};
    stat->time_stamp = static_cast<uint64_t>(frame) * 40000;
}
