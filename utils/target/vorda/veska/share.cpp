// The category share: what the DIP's modules publish for each other.
#include "category.h"
#include "text.h"
#include "vorda.h"

#include <cstdio>

namespace
{

constexpr char title[] = "share";
constexpr char comments[] = "Cross-module data in DIP";

void print_inttime(Text &text, const DipShareInfo &share)
{
    text.value("share.inttime", share.inttime);
}

// The gains are unsigned but print through the signed conversion.

void print_sensor_gain(Text &text, const DipShareInfo &share)
{
    text.value("share.sensor_gain", as_signed(share.sensor_gain));
}

void print_isp_gain(Text &text, const DipShareInfo &share)
{
    text.value("share.isp_gain", as_signed(share.isp_gain));
}

void print_sys_gain(Text &text, const DipShareInfo &share)
{
    text.value("share.sys_gain", as_signed(share.sys_gain));
}

void print_frame_delay(Text &text, const DipShareInfo &share)
{
    text.value("share.frame_delay", share.frame_delay);
}

void print_flicker_free_conf(Text &text, const DipShareInfo &share)
{
    text.value("share.flicker_free_conf", share.flicker_free_conf);
}

void print_fps(Text &text, const DipShareInfo &share)
{
    char fps[48]; // the longest float has 39 digits before the point
    snprintf(fps, sizeof(fps), "%.2f", static_cast<double>(share.fps));
    text.put("share.fps = ", fps, "\n");
}

void print_ratio(Text &text, const DipShareInfo &share)
{
    text.value("share.ratio", share.ratio);
}

void print_iso_type(Text &text, const DipShareInfo &share)
{
    text.value("share.iso_type", share.iso_type);
}

void print_noise_level(Text &text, const DipShareInfo &share)
{
    text.put("share.noise_level:\n");
    text.value("noise_level.level_iso", share.noise_level.level_iso);
    text.closed_run("noise_level_bin = ", share.noise_level_bin);
}

void print_colormatrix(Text &text, const DipShareInfo &share)
{
    text.put("share.colormatrix:\n");
    for (size_t row = 0; row < 3; row++)
        text.closed_run("", Values(share.colormatrix).part(row * 3, 3), 6);
}

void print_color_temp(Text &text, const DipShareInfo &share)
{
    text.value("share.color_temp", share.color_temp);
}

void print_ccm_mult_split(Text &text, const DipShareInfo &share)
{
    text.value("share.ccm_mult_split", share.ccm_mult_split);
}

void print_max_str_info(Text &text, const DipShareInfo &share)
{
    text.value("share.non_boost_lvl", share.non_boost_lvl);
    text.value("share.point_non_boost_thd", share.point_non_boost_thd);
}

constexpr item item_list[] = {
    {"inttime", "Sensor integration/exposure time", part<print_inttime, &DipCtx::share>},
    {"sensor_gain", "Sensor pixel gain", part<print_sensor_gain, &DipCtx::share>},
    {"isp_gain", "Additional pixel gain in DCC", part<print_isp_gain, &DipCtx::share>},
    {"sys_gain", "Total pixel gain", part<print_sys_gain, &DipCtx::share>},
    {"frame_delay", "Skipped frames between AE executions",
     part<print_frame_delay, &DipCtx::share>},
    {"flicker_free_conf", "Confidence that no flicker appears in the scene",
     part<print_flicker_free_conf, &DipCtx::share>},
    {"fps", "Sensor frame rate", part<print_fps, &DipCtx::share>},
    {"ratio", "Exposure changes compared to the previous change",
     part<print_ratio, &DipCtx::share>},
    {"iso_type", "ISO type", part<print_iso_type, &DipCtx::share>},
    {"noise_level", "Noise level (ISO type 1)", part<print_noise_level, &DipCtx::share>},
    {"colormatrix", "CCM values", part<print_colormatrix, &DipCtx::share>},
    {"color_temp", "Predicted color temperture of the current scene",
     part<print_color_temp, &DipCtx::share>},
    {"ccm_mult_split", "Reduced ratio of CCM that should be compensated in GMA module",
     part<print_ccm_mult_split, &DipCtx::share>},
    {"max_str_info", "Tone enhancement max_str info", part<print_max_str_info, &DipCtx::share>},
};
constexpr auto order = table_order(item_list);

int print_entry(Text &text, const DipPathCtx *ctx, const char *entry)
{
    return print_items(text, title, item_form::plain, item_list, order, ctx, entry);
}

void print_help()
{
    list_items<item>(title, item_list);
}

constexpr VordaCallback cb = {title, comments, print_entry, print_help, nullptr};

} // namespace

void regCmd_share()
{
    parse_rgtr(&cb);
}
