// The frame as a whole: video system, exposure and colour of the two sensors.
#include "scene.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace
{

constexpr uint32_t GAIN_1X = 1024;
constexpr float FPS = 25.0F; // what the sensor is set to

// Exposure time follows what is wanted up to the time of a frame, gain does the rest.
void fill_exposure(DipShareInfo *share, const Moment &moment)
{
    const int32_t inttime = std::min(moment.exposure, moment.frame_us);
    const auto gain =
        static_cast<uint32_t>(moment.exposure * static_cast<int64_t>(GAIN_1X) / inttime);

    share->inttime = inttime;
    share->sensor_gain = std::min(gain, 3 * GAIN_1X);
    share->isp_gain = gain * GAIN_1X / share->sensor_gain;
    share->sys_gain = share->sensor_gain * share->isp_gain / GAIN_1X;
    share->frame_delay = 2;
    share->flicker_free_conf = inttime >= 10000 ? 100 : 60;
    share->fps = 1000000.0F / static_cast<float>(moment.frame_us);
    share->ratio = static_cast<int32_t>(moment.exposure * static_cast<int64_t>(GAIN_1X) /
                                        moment.last_exposure);
    share->exp_ratio = 256;

    MPI_EXPOSURE_INFO_S &info = share->exp_info;
    info.inttime = static_cast<uint32_t>(inttime);
    info.sensor_gain = share->sensor_gain;
    info.isp_gain = share->isp_gain;
    info.sys_gain = share->sys_gain;
    info.iso = static_cast<int32_t>(share->sys_gain * 100 / GAIN_1X);
    info.frame_delay = share->frame_delay;
    info.flicker_free_conf = share->flicker_free_conf;
    info.fps = share->fps;
    info.ratio = static_cast<uint32_t>(share->ratio);
    info.luma_avg = static_cast<uint16_t>(std::min(moment.luma, 255));
}

void fill_noise(DipShareInfo *share, const Moment &moment)
{
    share->iso_type = MPI_ISO_VER_1;
    share->ev_idx = share->exp_info.iso / 100;
    share->noise_level.level_iso = share->exp_info.iso;
    for (int i = 0; i < 16; i++)
        share->noise_level_bin[i] = 100 << (i / 2);
    share->non_boost_lvl = 96 - moment.tone / 8;
    share->point_non_boost_thd = 180 - moment.tone / 4;
}

// Between what the sensor needs under a lamp and in daylight. Signed, 1024 is one; each row sums to
// one, so that grey stays grey.
void fill_colour(DipShareInfo *share, const Moment &moment)
{
    constexpr int LAMP = 3000;
    constexpr int DAYLIGHT = 4800;
    constexpr int lamp[9] = {1610, -380, -206, -402, 1602, -176, -38, -905, 1967};
    constexpr int daylight[9] = {1740, -552, -164, -298, 1581, -259, -31, -620, 1675};
    int16_t *matrix = share->colormatrix;
    for (int i = 0; i < 9; i++)
        matrix[i] = static_cast<int16_t>(lamp[i] + (daylight[i] - lamp[i]) *
                                                       (moment.kelvin - LAMP) / (DAYLIGHT - LAMP));
    for (int i = 0; i < 9; i += 3)
        matrix[i + i / 3] = static_cast<int16_t>(matrix[i + i / 3] + 1024 - matrix[i] -
                                                 matrix[i + 1] - matrix[i + 2]);
    std::copy_n(matrix, 9, share->wb_info.matrix);
    share->color_temp = static_cast<uint16_t>(moment.kelvin);
    share->wb_info.color_temp = share->color_temp;
    share->ccm_mult_split = 1024;
}

void fill_video_system(DipCtx *dip, int path, uint32_t frame)
{
    const auto index = static_cast<uint8_t>(path);
    dip->frame_cnt = frame;
    dip->sys_state = DIP_SYS_STATE_RUNNING;
    dip->path_cnt = SCENE_PATH_NUM;
    dip->flag.bit.is_dev_cfg = 1;
    dip->flag.bit.is_path_cfg = 1;
    dip->flag.bit.is_chn_cfg = 1;
    dip->flag.bit.is_run = 1;

    dip->win_info.is_valid = 1;
    dip->win_info.win_res = {1920, 1080};
    dip->win_info.win_idx = {.dev = 0, .chn = index, .win = 0, .dummy0 = 0};
    dip->active_win_cnt = 2; // the main stream and a smaller one
    dip->flat_win_list[0] = 4 * path;
    dip->flat_win_list[1] = 4 * path + 1;

    dip->dev_attr.snp_link.bmp = (1U << SCENE_PATH_NUM) - 1;
    dip->path_attr.fps = FPS;
    dip->path_attr.bayer = path == 0 ? MPI_BAYER_PHASE_R : MPI_BAYER_PHASE_G0;
    dip->path_attr.i2c_slv_addr = static_cast<uint16_t>(0x30 + path);
    dip->input_path_en[path] = 1;
    dip->is_dip_run = 1;
    dip->is_dip_all_cfg_ready = 1;
}

} // namespace

void init_region(VplatConf *conf)
{
    uint8_t *levels = &conf->log.dip_log;
    std::fill_n(levels, sizeof(LogConf), uint8_t{LOG_INFO});
    for (int path = 0; path < SCENE_PATH_NUM; path++) {
        conf->descptr.path[path].state = SR_DESCPTR_PRESENT;
        conf->path[path].state = 1;
        conf->path[path].lock = free_path_lock(PATH_LOCK_SHARED);
    }
}

void fill_frame(DipPathCtx *ctx, int path, uint32_t frame)
{
    DipCtx &dip = ctx->dip_ctx;
    fill_video_system(&dip, path, frame);
    const Moment moment = moment_at(frame);
    fill_exposure(&dip.share, moment);
    fill_noise(&dip.share, moment);
    fill_colour(&dip.share, moment);
    fill_stat(&dip.stat, dip.share, moment);
    fill_cfg(&dip.cfg, dip.share, moment);
    fill_intl(&ctx->intl_ctx);
}
