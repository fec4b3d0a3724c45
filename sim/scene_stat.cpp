// The statistics of a frame: a backlit room with something moving in it.
#include "scene.h"

#include <algorithm>

namespace
{

constexpr int COLUMNS = 8; // of the regional raster

// What the story makes of a value that is for a well exposed image, up to `max`.
int32_t exposed(int32_t value, const Moment &moment, int32_t max)
{
    return std::min(value * moment.luma / STORY_LUMA, max);
}

// Brightness of a region, 0 to 255: a bright window in the upper middle, clouds before it.
int32_t region_luma(int i, const Moment &moment)
{
    const int dx = 2 * (i % COLUMNS) - 7;
    const int dy = 2 * (i / COLUMNS) - 4;
    return exposed(wave(moment.frame, 50, 168, 184) - 3 * dx * dx / 2 - dy * dy / 2, moment, 255);
}

void fill_lum(DipLumStat1 *lum, const Moment &moment)
{
    // Two humps, the room and the window. Where the image is too dark or too bright, their pixels
    // gather in other bins, at the end what is white; a bin's pixels spread over an eighth of it
    // each.
    constexpr int BINS = 60;
    std::fill_n(lum->hist.hist, BINS, 0U);
    for (int i = 0; i < BINS; i++) {
        const int room = std::max(0, 5200 - (i - 16) * (i - 16) * 24);
        const int window = std::max(0, 2600 - (i - 47) * (i - 47) * 40);
        const auto count = static_cast<uint32_t>(
            room + window + wave(moment.frame + 7U * static_cast<uint32_t>(i), 30, 0, 90));
        for (uint32_t k = 0; k < 8; k++)
            lum->hist.hist[exposed(8 * i + static_cast<int>(k), moment, 8 * BINS - 1) / 8] +=
                count * (k + 1) / 8 - count * k / 8;
    }
    for (int i = 0; i < 64; i++)
        lum->avg_rgl.avg[i] = static_cast<uint8_t>(region_luma(i, moment));
    lum->avg_rgl.rgl_x_num = COLUMNS;
    lum->avg_rgl.rgl_y_num = COLUMNS;
    for (int i = 0; i < 4; i++)
        lum->avg_roi[i] = {.avg = static_cast<uint16_t>(region_luma(18 + 9 * i, moment) * 4),
                           .remainder = 0};

    const auto avg =
        static_cast<uint32_t>(exposed(wave(moment.frame, 50, 28600, 31200), moment, 65535));
    // A white image has little contrast left.
    const auto std_dev =
        static_cast<uint32_t>(std::min(exposed(11500, moment, 65535), (70000 - int32_t(avg)) / 2));
    lum->gamma_domain_avg_16b = avg;
    lum->gamma_domain_std_16b = std_dev;
    lum->gamma_domain_var_16b = static_cast<uint64_t>(std_dev) * std_dev;
    lum->gamma_domain_cv_1024 = std_dev * 1024 / avg;
    lum->dri_low_lv_ft = 64;
}

// Peaks and averages of one Bayer channel; `tint` is the channel's share in 1/256.
void fill_rtx(is_rtx_roi_param (&points)[15], is_rtx_rgl_param (&regions)[64], int tint,
              const Moment &moment)
{
    for (int i = 0; i < 15; i++)
        points[i] = {.max_pix = static_cast<uint16_t>(exposed(900 * tint / 256, moment, 1023)),
                     .wgt = 255,
                     .x = static_cast<uint8_t>(4 + 9 * (i % 5)),
                     .y = static_cast<uint8_t>(3 + 8 * (i / 5))};
    for (int i = 0; i < 64; i++)
        regions[i] = {.max_pix = static_cast<uint16_t>(region_luma(i, moment) * 4 * tint / 256),
                      .wgt = static_cast<uint8_t>(region_luma(i, moment) < 200 ? 64 : 16)};
}

void fill_awb(DipAwbStat *awb, const Moment &moment)
{
    // g0, r, b, g1 under daylight and under the lamp; the sensor sees the light at once.
    constexpr int daylight[4] = {256, 148, 181, 255};
    constexpr int lamp[4] = {256, 213, 112, 255};
    const auto &tints = moment.light_kelvin < 4000 ? lamp : daylight;
    IsBspRtxRoiStat &roi = awb->rtx.roi_stat;
    IsBspRtxRglStat &rgl = awb->rtx.rgl_stat;
    fill_rtx(roi.g0, rgl.g0, tints[0], moment);
    fill_rtx(roi.r, rgl.r, tints[1], moment);
    fill_rtx(roi.b, rgl.b, tints[2], moment);
    fill_rtx(roi.g1, rgl.g1, tints[3], moment);
    for (int c = 0; c < 4; c++) {
        roi.sum[c] = static_cast<uint32_t>(exposed(13500 * tints[c] / 256, moment, 15345));
        roi.norm[c] = static_cast<uint8_t>(15);
    }

    for (int i = 0; i < 4; i++) {
        const uint32_t pixels = 518400; // a quarter of the image
        for (int c = 0; c < 4; c++) {
            awb->gwd.roi_stat[i].sum[c] =
                static_cast<uint32_t>(region_luma(18 + 9 * i, moment) * tints[c] * 100);
            awb->gwd.roi_stat[i].norm[c] = pixels / 4;
        }
        awb->gwd.roi_pix_num[i] = pixels;
    }
    for (int i = 0; i < 64; i++) {
        const int luma = region_luma(i, moment);
        awb->gwd.rgl_stat.g[i].avg = static_cast<uint8_t>(luma);
        awb->gwd.rgl_stat.r[i].avg = static_cast<uint8_t>(luma * tints[1] / 256);
        awb->gwd.rgl_stat.b[i].avg = static_cast<uint8_t>(luma * tints[2] / 256);
    }
}

void fill_af(DipAfStat *af, const Moment &moment)
{
    IsBspContrastRglStat &rgl = af->rgl_stat;
    for (int i = 0; i < 64; i++) {
        const int contrast =
            exposed(40 + 13 * (i % 5) + 7 * (i % 3) + wave(moment.frame, 40, 0, 12), moment, 1023);
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
void fill_mv(DipMvHist *mv, const Moment &moment)
{
    mv->cfg.roi = {0, 0, 1919, 1079};
    mv->hist.total_cnt = 0;
    for (int i = 0; i < 32; i++) {
        const int distance = i - 16;
        mv->hist.bin_x[i] = distance * 2;
        mv->hist.bin_y[i] = distance / 3;
        const int count = distance == 0 ? 6480 : 1440 / (distance * distance + 1);
        const auto moving =
            static_cast<uint32_t>(wave(moment.frame + 5U * static_cast<uint32_t>(i), 25, 0, 24));
        mv->hist.bin_count[i] = static_cast<uint32_t>(count) + moving;
        mv->hist.total_cnt += mv->hist.bin_count[i];
    }
}

} // namespace

void fill_stat(DipAllStat *stat, const DipShareInfo &share, const Moment &moment)
{
    stat->frame_cnt = static_cast<int32_t>(moment.frame);
    stat->flag.bit.lum_valid = 1;
    stat->flag.bit.awb_valid = 1;
    stat->flag.bit.mv_valid = 1;
    stat->flag.bit.mcvp_var_valid = 1;
    stat->flag.bit.shp_valid = 1;
    stat->flag.bit.dhz_valid = 1;

    fill_lum(&stat->lum, moment);
    fill_awb(&stat->awb, moment);
    fill_af(&stat->af, moment);
    fill_mv(&stat->mv, moment);

    stat->mcvp_var.cfg.roi = {480, 270, 1439, 809};
    stat->mcvp_var.var = {.hor_sum = 184320, .ver_sum = 163840, .hor_ver_sum = 348160};
    for (int i = 0; i < 64; i++) {
        const int luma = region_luma(i, moment) * 4;
        stat->shp.rgl_stat.lpf_luma_avg[i] = static_cast<uint16_t>(luma);
        stat->shp.rgl_stat.lpf_luma_min[i] = static_cast<uint16_t>(luma / 3);
    }
    stat->shp.roi_stat.lpf_luma_avg = static_cast<uint16_t>(region_luma(27, moment) * 4);
    stat->dhz.stat.luma_avg = static_cast<uint16_t>(region_luma(27, moment) * 4);

    stat->exp = {.inttime = share.exp_info.inttime, .sys_gain = share.sys_gain};
    stat->time_stamp = static_cast<uint64_t>(moment.frame) * 40000;
}
