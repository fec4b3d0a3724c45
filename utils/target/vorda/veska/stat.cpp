// The category stat: the image statistics of one input path.
#include "category.h"
#include "print.h"
#include "vorda.h"

namespace
{

constexpr char title[] = "stat";
constexpr char comments[] = "Statistics data";

void print_flag(const DipPathCtx &ctx)
{
    const auto flag = ctx.dip_ctx.stat.flag.bit;
    print_value("lum_valid", flag.lum_valid);
    print_value("awb_valid", flag.awb_valid);
    print_value("shp_valid", flag.shp_valid);
    print_value("dhz_valid", flag.dhz_valid);
    print_value("mv_valid", flag.mv_valid);
    print_value("mcvp_var_valid", flag.mcvp_var_valid);
}

void print_lum(const DipPathCtx &ctx)
{
    const DipLumStat1 &lum = ctx.dip_ctx.stat.lum;
    print("Luminance histogram:\n");
    print_grid(lum.hist.hist, 6, cell(5));
    print("Overflow: %s\n", lum.hist.overflow != 0 ? "true" : "false");
    for (int i = 0; i < 4; i++)
        print("ROI%1d Luminance average: %7u\n", i, lum.avg_roi[i].avg);
    print("Regional Luminance average:\n");
    print_grid(lum.avg_rgl.avg, 8, cell(3));
    print_value("gamma_domain_avg_16b", lum.gamma_domain_avg_16b);
    print_value("gamma_domain_std_16b", lum.gamma_domain_std_16b);
    print("gamma_domain_var_16b = %llu\n",
          static_cast<unsigned long long>(lum.gamma_domain_var_16b));
    print_value("gamma_domain_cv_1024", lum.gamma_domain_cv_1024);
    print_value("dri_low_lv_ft", lum.dri_low_lv_ft);
}

void print_rtx_roi_channel(const char *label, const is_rtx_roi_param (&points)[15])
{
    print("%s\n", label);
    print_grid(points, 5, [](char *out, const is_rtx_roi_param &point) {
        *out++ = '(';
        out = put_decimal(out, +point.x, 3);
        *out++ = ' ';
        out = put_decimal(out, +point.y, 3);
        *out++ = ')';
        *out++ = ' ';
        return out;
    });
}

void print_rtx_rgl_channel(const char *channel, const is_rtx_rgl_param (&regions)[64])
{
    print("%s channel:\n", channel);
    print_grid(regions, 8, cell(5, &is_rtx_rgl_param::max_pix));
    print("%s norm:\n", channel);
    print_grid(regions, 8, cell(5, &is_rtx_rgl_param::wgt));
}

void print_gwd_rgl_channel(const char *channel, const is_gwd_rgl_param (&regions)[64])
{
    print("%s channel:\n", channel);
    print_grid(regions, 8, cell(3, &is_gwd_rgl_param::avg));
}

void print_awb(const DipPathCtx &ctx)
{
    const DipRtxStat &rtx = ctx.dip_ctx.stat.awb.rtx;
    const DipGwdStat &gwd = ctx.dip_ctx.stat.awb.gwd;

    print("[Rtx ROI]\n");
    print("White balance peak:\n");
    const uint32_t *sum = rtx.roi_stat.sum;
    print("%7u, %7u, %7u, %7u,\n", sum[0], sum[1], sum[2], sum[3]);
    print("White balance peak norm:\n");
    const uint8_t *norm = rtx.roi_stat.norm;
    print("%7u, %7u, %7u, %7u,\n", norm[0], norm[1], norm[2], norm[3]);
    print("Channel information:\n");
    print_rtx_roi_channel("g0:", rtx.roi_stat.g0);
    print_rtx_roi_channel("r:", rtx.roi_stat.r);
    print_rtx_roi_channel("b:", rtx.roi_stat.b);
    print_rtx_roi_channel("g1:", rtx.roi_stat.g1);

    print("[Rtx RGL]\n");
    print_rtx_rgl_channel("g0", rtx.rgl_stat.g0);
    print_rtx_rgl_channel("r", rtx.rgl_stat.r);
    print_rtx_rgl_channel("b", rtx.rgl_stat.b);
    print_rtx_rgl_channel("g1", rtx.rgl_stat.g1);

    print("[Gwd ROI]\n");
    for (int i = 0; i < 4; i++) {
        const IsBspGwdRoiStat &roi = gwd.roi_stat[i];
        // Energies are unsigned but print through the signed conversion.
        const auto print_energies = [](const uint32_t(&e)[4]) {
            print("%7d, %7d, %7d, %7d\n", as_signed(e[0]), as_signed(e[1]), as_signed(e[2]),
                  as_signed(e[3]));
        };
        print("ROI%d energy:\n", i);
        print_energies(roi.sum);
        print("ROI%d energy norm:\n", i);
        print_energies(roi.norm);
        print("ROI%d pixel num: %u\n", i, gwd.roi_pix_num[i]);
    }

    print("[Gwd RGL]\n");
    print_gwd_rgl_channel("g", gwd.rgl_stat.g);
    print_gwd_rgl_channel("r", gwd.rgl_stat.r);
    print_gwd_rgl_channel("b", gwd.rgl_stat.b);
}

void print_var(const DipPathCtx &ctx)
{
    const DipAfStat &af = ctx.dip_ctx.stat.af;
    print("[ROI var]\n");
    for (int i = 0; i < 4; i++) {
        print("ROI%d h1_avg = %d\n", i, af.roi_stat[i].h1_avg);
        print("ROI%d h2_avg = %d\n", i, af.roi_stat[i].h2_avg);
        print("ROI%d v1_avg = %d\n", i, af.roi_stat[i].v1_avg);
        print("ROI%d v2_avg = %d\n", i, af.roi_stat[i].v2_avg);
    }
    print("[RGL var]\n");
    print("h1_avg:\n");
    print_grid(af.rgl_stat.h1_avg, 8, cell(5));
    print("h2_avg:\n");
    print_grid(af.rgl_stat.h2_avg, 8, cell(5));
    print("v1_avg:\n");
    print_grid(af.rgl_stat.v1_avg, 8, cell(5));
    print("v2_avg:\n");
    print_grid(af.rgl_stat.v2_avg, 8, cell(5));
}

void print_shp(const DipPathCtx &ctx)
{
    const DipShpStat &shp = ctx.dip_ctx.stat.shp;
    print("ROI lpf_luma_avg: %hu\n", shp.roi_stat.lpf_luma_avg);
    print("RGL lpf_luma_avg:\n");
    print_grid(shp.rgl_stat.lpf_luma_avg, 8, cell(4));
    print("RGL lpf_luma_min:\n");
    print_grid(shp.rgl_stat.lpf_luma_min, 8, cell(4));
}

void print_dhz(const DipPathCtx &ctx)
{
    print("ROI luma_avg: %u\n", ctx.dip_ctx.stat.dhz.stat.luma_avg);
}

void print_roi(const char *owner, const MPI_RECT_POINT_S &roi)
{
    print_value(owner, ".roi.sx", roi.sx);
    print_value(owner, ".roi.sy", roi.sy);
    print_value(owner, ".roi.ex", roi.ex);
    print_value(owner, ".roi.ey", roi.ey);
}

void print_mv(const DipPathCtx &ctx)
{
    const DipMvHist &mv = ctx.dip_ctx.stat.mv;
    print("mv ROI:\n");
    print_roi("mv", mv.cfg.roi);
    print("mv histogram:\n");
    print("<#bin>(mv_x, mv_y, mv_cnt)\n");
    print("----------------------------\n");
    for (int i = 0; i < 32; i++)
        print("<#%2d> (%4d, %4d, %6u)\n", i, mv.hist.bin_x[i], mv.hist.bin_y[i],
              mv.hist.bin_count[i]);
    print_value("mv_total_cnt", mv.hist.total_cnt);
}

void print_mcvp_var(const DipPathCtx &ctx)
{
    const DipMcvpVar &mcvp = ctx.dip_ctx.stat.mcvp_var;
    print("mcvp_var ROI:\n");
    print_roi("mcvp", mcvp.cfg.roi);
    print("mcvp_var stat:\n");
    print("horizontal variance: %u\n", mcvp.var.hor_sum);
    print("vertical variance: %u\n", mcvp.var.ver_sum);
    // The sum wraps; the hardware's own hor_ver_sum is another figure.
    print("sum: %u\n", mcvp.var.hor_sum + mcvp.var.ver_sum);
}

constexpr item item_list[] = {
    {"flag", "Statistics valid flags", print_flag},
    {"lum", "Luminance histogram", print_lum},
    {"awb", "Awb statistics", print_awb},
    {"var", "Raw variance statistics", print_var},
    {"shp", "Luma statistics in SHP", print_shp},
    {"dhz", "Luma statistics in DHZ", print_dhz},
    {"mv", "MV histogram", print_mv},
    {"mcvp_var", "Variance statistics", print_mcvp_var},
};
constexpr auto order = table_order(item_list);

int print_entry(const DipPathCtx *ctx, const char *entry)
{
    return print_sections(title, item_list, order, ctx, entry);
}

void print_help()
{
    list_items<item>(title, item_list);
}

constexpr VordaCallback cb = {title, comments, print_entry, print_help};

} // namespace

void regCmd_stat()
{
    parse_rgtr(&cb);
}
