// The category vinfo: the video system around one input path.
#include "category.h"
#include "print.h"
#include "vorda.h"

#include <algorithm>

namespace
{

constexpr char title[] = "vinfo";
constexpr char comments[] = "Video system information";

void print_type(const DipPathCtx &ctx)
{
    const DipDevAttr &dev = ctx.dip_ctx.dev_attr;
    switch (dev.snp_link.bmp) {
    case 0b0011:
        if (dev.stitch_en != 0)
            print("vinfo.type = 2 (Dual sensors, stitching)\n");
        else
            print("vinfo.type = 1 (Dual sensors)\n");
        break;
    case 0b0111:
        print("vinfo.type = 4 (Triple sensors)\n");
        break;
    case 0b1111:
        print("vinfo.type = 5 (Quadruple sensors)\n");
        break;
    case 0:
        print("vinfo.type = -1 (Unknown)\n");
        break;
    default:
        if (dev.hdr_en != 0)
            print("vinfo.type = 3 (Single HDR sensor)\n");
        else
            print("vinfo.type = 0 (Single sensor)\n");
        break;
    }
}

void print_bayer(const DipPathCtx &ctx)
{
    switch (ctx.dip_ctx.path_attr.bayer) {
    case MPI_BAYER_PHASE_G0:
        print("vinfo.bayer = 0 (Phase Gr)\n");
        break;
    case MPI_BAYER_PHASE_R:
        print("vinfo.bayer = 1 (Phase R)\n");
        break;
    case MPI_BAYER_PHASE_B:
        print("vinfo.bayer = 2 (Phase B)\n");
        break;
    case MPI_BAYER_PHASE_G1:
        print("vinfo.bayer = 3 (Phase Gb)\n");
        break;
    default:
        print("vinfo.bayer = -1 (Unknown)\n");
        break;
    }
}

void print_bind_win(const DipPathCtx &ctx)
{
    const MPI_WIN &win = ctx.dip_ctx.win_info.win_idx;
    print("vinfo.bind_win = (%d,%d)\n", win.chn, win.win);
}

void print_valid_win(const DipPathCtx &ctx)
{
    const int count = std::min(ctx.dip_ctx.active_win_cnt, DIP_WIN_NUM);
    print("vinfo.valid_win = ");
    for (int i = 0; i < count; i++) {
        const int32_t win = ctx.dip_ctx.flat_win_list[i];
        print("%s(%d,%d)", i > 0 ? " " : "", win / 4, win % 4);
    }
    print("\n");
}

void print_ispv2(const DipPathCtx &ctx)
{
    print_value("vinfo.ispv2", ctx.dip_ctx.is_ispv2_en);
}

constexpr item item_list[] = {
    {"type", "Type of video system, eg. dual sensor, stitching, HDR, etc", print_type},
    {"bayer", "Bayer phase", print_bayer},
    {"bind_win", "The id of the main video window DIP focus on", print_bind_win},
    {"valid_win", "List of video windows binding to this input path", print_valid_win},
    {"ispv2", "Either ISP V2 is enabled", print_ispv2},
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

void regCmd_vinfo()
{
    parse_rgtr(&cb);
}
