// The category share: what the DIP's modules publish for each other.
#include "category.h"
#include "print.h"
#include "vorda.h"

namespace
{

constexpr char title[] = "share";
constexpr char comments[] = "Cross-module data in DIP";

void print_inttime(const DipPathCtx &ctx)
{
    print_value("share.inttime", ctx.dip_ctx.share.inttime);
}

// The gains are unsigned but print through the signed conversion.

void print_sensor_gain(const DipPathCtx &ctx)
{
    print_value("share.sensor_gain", as_signed(ctx.dip_ctx.share.sensor_gain));
}

void print_isp_gain(const DipPathCtx &ctx)
{
    print_value("share.isp_gain", as_signed(ctx.dip_ctx.share.isp_gain));
}

void print_sys_gain(const DipPathCtx &ctx)
{
    print_value("share.sys_gain", as_signed(ctx.dip_ctx.share.sys_gain));
}

void print_frame_delay(const DipPathCtx &ctx)
{
    print_value("share.frame_delay", ctx.dip_ctx.share.frame_delay);
}

void print_flicker_free_conf(const DipPathCtx &ctx)
{
    print_value("share.flicker_free_conf", ctx.dip_ctx.share.flicker_free_conf);
}

void print_fps(const DipPathCtx &ctx)
{
    print("share.fps = %.2f\n", static_cast<double>(ctx.dip_ctx.share.fps));
}

void print_ratio(const DipPathCtx &ctx)
{
    print_value("share.ratio", ctx.dip_ctx.share.ratio);
}

void print_iso_type(const DipPathCtx &ctx)
{
    print_value("share.iso_type", ctx.dip_ctx.share.iso_type);
}

void print_noise_level(const DipPathCtx &ctx)
{
    const DipShareInfo &share = ctx.dip_ctx.share;
    print("share.noise_level:\n");
    print_value("noise_level.level_iso", share.noise_level.level_iso);
    print("noise_level_bin = ");
    for (int i = 0; i < 15; i++)
        print("%d, ", share.noise_level_bin[i]);
    print("%d\n", share.noise_level_bin[15]);
}

void print_colormatrix(const DipPathCtx &ctx)
{
    print("share.colormatrix:\n");
    for (const int16_t *row = ctx.dip_ctx.share.colormatrix;
         row != std::end(ctx.dip_ctx.share.colormatrix); row += 3)
        print("%6d, %6d, %6d\n", row[0], row[1], row[2]);
}

void print_color_temp(const DipPathCtx &ctx)
{
    print_value("share.color_temp", ctx.dip_ctx.share.color_temp);
}

void print_ccm_mult_split(const DipPathCtx &ctx)
{
    print_value("share.ccm_mult_split", ctx.dip_ctx.share.ccm_mult_split);
}

void print_max_str_info(const DipPathCtx &ctx)
{
    print_value("share.non_boost_lvl", ctx.dip_ctx.share.non_boost_lvl);
    print_value("share.point_non_boost_thd", ctx.dip_ctx.share.point_non_boost_thd);
}

constexpr item item_list[] = {
    {"inttime", "Sensor integration/exposure time", print_inttime},
    {"sensor_gain", "Sensor pixel gain", print_sensor_gain},
    {"isp_gain", "Additional pixel gain in DCC", print_isp_gain},
    {"sys_gain", "Total pixel gain", print_sys_gain},
    {"frame_delay", "Skipped frames between AE executions", print_frame_delay},
    {"flicker_free_conf", "Confidence that no flicker appears in the scene",
     print_flicker_free_conf},
    {"fps", "Sensor frame rate", print_fps},
    {"ratio", "Exposure changes compared to the previous change", print_ratio},
    {"iso_type", "ISO type", print_iso_type},
    {"noise_level", "Noise level (ISO type 1)", print_noise_level},
    {"colormatrix", "CCM values", print_colormatrix},
    {"color_temp", "Predicted color temperture of the current scene", print_color_temp},
    {"ccm_mult_split", "Reduced ratio of CCM that should be compensated in GMA module",
     print_ccm_mult_split},
    {"max_str_info", "Tone enhancement max_str info", print_max_str_info},
};
constexpr auto order = table_order(item_list);

int print_entry(const DipPathCtx *ctx, const char *entry)
{
    return print_items(title, item_list, order, ctx, entry);
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
