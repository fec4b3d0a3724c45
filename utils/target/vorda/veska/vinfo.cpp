// The category vinfo: the video system around one input path.
#include "category.h"
#include "text.h"
#include "vorda.h"

#include <algorithm>

namespace
{

constexpr char title[] = "vinfo";
constexpr char comments[] = "Video system information";

// How the video device combines its sensors.
enum video_type : int32_t {
    VTYPE_UNKNOWN = -1,
    VTYPE_SINGLE_NORMAL = 0,
    VTYPE_DUAL_NORMAL = 1,
    VTYPE_SINGLE_STITCHING = 2,
    VTYPE_SINGLE_HDR = 3,
    VTYPE_TRIPLE_SENSOR = 4,
    VTYPE_QUADRUPLE_SENSOR = 5,
};

void print_type(Text &text, const DipDevAttr &dev)
{
    switch (dev.snp_link.bmp) {
    case 0b0011:
        if (dev.stitch_en != 0)
            text.value("vinfo.type", VTYPE_SINGLE_STITCHING, " (Dual sensors, stitching)\n");
        else
            text.value("vinfo.type", VTYPE_DUAL_NORMAL, " (Dual sensors)\n");
        break;
    case 0b0111:
        text.value("vinfo.type", VTYPE_TRIPLE_SENSOR, " (Triple sensors)\n");
        break;
    case 0b1111:
        text.value("vinfo.type", VTYPE_QUADRUPLE_SENSOR, " (Quadruple sensors)\n");
        break;
    case 0:
        text.value("vinfo.type", VTYPE_UNKNOWN, " (Unknown)\n");
        break;
    default:
        if (dev.hdr_en != 0)
            text.value("vinfo.type", VTYPE_SINGLE_HDR, " (Single HDR sensor)\n");
        else
            text.value("vinfo.type", VTYPE_SINGLE_NORMAL, " (Single sensor)\n");
        break;
    }
}

void print_bayer(Text &text, const DipPathAttr &path)
{
    switch (path.bayer) {
    case MPI_BAYER_PHASE_G0:
        text.value("vinfo.bayer", MPI_BAYER_PHASE_G0, " (Phase Gr)\n");
        break;
    case MPI_BAYER_PHASE_R:
        text.value("vinfo.bayer", MPI_BAYER_PHASE_R, " (Phase R)\n");
        break;
    case MPI_BAYER_PHASE_B:
        text.value("vinfo.bayer", MPI_BAYER_PHASE_B, " (Phase B)\n");
        break;
    case MPI_BAYER_PHASE_G1:
        text.value("vinfo.bayer", MPI_BAYER_PHASE_G1, " (Phase Gb)\n");
        break;
    default:
        text.value("vinfo.bayer", -1, " (Unknown)\n");
        break;
    }
}

void print_bind_win(Text &text, const DipWinInfo &info)
{
    const MPI_WIN &win = info.win_idx;
    text.put("vinfo.bind_win = (", win.chn, ",", win.win, ")\n");
}

void print_valid_win(Text &text, const DipCtx &dip_ctx)
{
    const int count = std::min(dip_ctx.active_win_cnt, DIP_WIN_NUM);
    text.put("vinfo.valid_win = ");
    for (int i = 0; i < count; i++) {
        const int32_t win = dip_ctx.flat_win_list[i];
        text.put(i > 0 ? " (" : "(", win / 4, ",", win % 4, ")");
    }
    text.put("\n");
}

void print_ispv2(Text &text, int32_t is_ispv2_en)
{
    text.value("vinfo.ispv2", is_ispv2_en);
}

constexpr item item_list[] = {
    {"type", "Type of video system, eg. dual sensor, stitching, HDR, etc",
     part<print_type, &DipCtx::dev_attr>},
    {"bayer", "Bayer phase", part<print_bayer, &DipCtx::path_attr>},
    {"bind_win", "The id of the main video window DIP focus on",
     part<print_bind_win, &DipCtx::win_info>},
    {"valid_win", "List of video windows binding to this input path", part<print_valid_win>},
    {"ispv2", "Either ISP V2 is enabled", part<print_ispv2, &DipCtx::is_ispv2_en>},
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

void regCmd_vinfo()
{
    parse_rgtr(&cb);
}
