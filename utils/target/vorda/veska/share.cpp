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

template <auto print>
void from_share(Text &text, const DipPathCtx &ctx)
{
    print(text, ctx.dip_ctx.share);
}

constexpr item item_list[] = {
    {"inttime", "Sensor integration/exposure time", from_share<print_inttime>},
    {"sensor_gain", "Sensor pixel gain", from_share<print_sensor_gain>},
    {"isp_gain", "Additional pixel gain in DCC", from_share<print_isp_gain>},
    {"sys_gain", "Total pixel gain", from_share<print_sys_gain>},
    {"frame_delay", "Skipped frames between AE executions", from_share<print_frame_delay>},
    {"flicker_free_conf", "Confidence that no flicker appears in the scene",
     from_share<print_flicker_free_conf>},
    {"fps", "Sensor frame rate", from_share<print_fps>},
    {"ratio", "Exposure changes compared to the previous change", from_share<print_ratio>},
    {"iso_type", "ISO type", from_share<print_iso_type>},
    {"noise_level", "Noise level (ISO type 1)", from_share<print_noise_level>},
    {"colormatrix", "CCM values", from_share<print_colormatrix>},
    {"color_temp", "Predicted color temperture of the current scene", from_share<print_color_temp>},
    {"ccm_mult_split", "Reduced ratio of CCM that should be compensated in GMA module",
     from_share<print_ccm_mult_split>},
    {"max_str_info", "Tone enhancement max_str info", from_share<print_max_str_info>},
};
constexpr auto order = table_order(item_list);

int print_entry(const DipPathCtx *ctx, const char *entry)
{
    return print_items(title, item_form::plain, item_list, order, ctx, entry);
}

void print_help()
{
    list_items<item>(title, item_list);
}

constexpr VordaCallback cb = {title, comments, print_entry, print_help};

} // namespace

void regCmd_share()
{
    parse_rgtr(&cb);
}
