// The category stat: the image statistics of one input path.
#include "category.h"
#include "text.h"
#include "vorda.h"

#include <cinttypes>
#include <cstdio>

namespace
{

constexpr char title[] = "stat";
constexpr char comments[] = "Statistics data";

void print_flag(Text &text, const DipStatFlag &flag)
{
    const auto bit = flag.bit;
    text.value("lum_valid", bit.lum_valid);
    text.value("awb_valid", bit.awb_valid);
    text.value("shp_valid", bit.shp_valid);
    text.value("dhz_valid", bit.dhz_valid);
    text.value("mv_valid", bit.mv_valid);
    text.value("mcvp_var_valid", bit.mcvp_var_valid);
}

void print_lum(Text &text, const DipLumStat1 &lum)
{
    text.put("Luminance histogram:\n");
    text.grid(lum.hist.hist, 6, 5);
    text.put("Overflow: ", lum.hist.overflow != 0 ? "true" : "false", "\n");
    for (int i = 0; i < 4; i++)
        text.put("ROI", i, " Luminance average: ", Padded(lum.avg_roi[i].avg, 7), "\n");
    text.put("Regional Luminance average:\n");
    text.grid(lum.avg_rgl.avg, 8, 3);
    text.value("gamma_domain_avg_16b", lum.gamma_domain_avg_16b);
    text.value("gamma_domain_std_16b", lum.gamma_domain_std_16b);
    char var[24]; // a 64-bit number has at most 20 digits
    snprintf(var, sizeof(var), "%" PRIu64, lum.gamma_domain_var_16b);
    text.put("gamma_domain_var_16b = ", var, "\n");
    text.value("gamma_domain_cv_1024", lum.gamma_domain_cv_1024);
    text.value("dri_low_lv_ft", lum.dri_low_lv_ft);
}

void print_rtx_roi_channel(Text &text, const char *label, const is_rtx_roi_param (&points)[15])
{
    text.put(label, "\n");
    for (int i = 0; i < 15; i++)
        text.put("(", Padded(points[i].x, 3), " ", Padded(points[i].y, 3),
                 i % 5 == 4 ? ") \n" : ") ");
}

// Prints one member of the records of all regions.
template <typename Record, typename T>
void print_regions(Text &text, const Record (&regions)[ISP_STAT_RGL_NUM], T Record::*member,
                   uint8_t width)
{
    T values[ISP_STAT_RGL_NUM];
    for (size_t i = 0; i < ISP_STAT_RGL_NUM; i++)
        values[i] = regions[i].*member;
    text.grid(values, 8, width);
}

void print_rtx_rgl_channel(Text &text, const char *channel, const is_rtx_rgl_param (&regions)[64])
{
    text.put(channel, " channel:\n");
    print_regions(text, regions, &is_rtx_rgl_param::max_pix, 5);
    text.put(channel, " norm:\n");
    print_regions(text, regions, &is_rtx_rgl_param::wgt, 5);
}

void print_gwd_rgl_channel(Text &text, const char *channel, const is_gwd_rgl_param (&regions)[64])
{
    text.put(channel, " channel:\n");
    print_regions(text, regions, &is_gwd_rgl_param::avg, 3);
}

void print_awb(Text &text, const DipAwbStat &awb)
{
    const DipRtxStat &rtx = awb.rtx;
    const DipGwdStat &gwd = awb.gwd;

    text.put("[Rtx ROI]\n"
             "White balance peak:\n");
    text.closed_run("", rtx.roi_stat.sum, 7, ",\n");
    text.put("White balance peak norm:\n");
    text.closed_run("", rtx.roi_stat.norm, 7, ",\n");
    text.put("Channel information:\n");
    print_rtx_roi_channel(text, "g0:", rtx.roi_stat.g0);
    print_rtx_roi_channel(text, "r:", rtx.roi_stat.r);
    print_rtx_roi_channel(text, "b:", rtx.roi_stat.b);
    print_rtx_roi_channel(text, "g1:", rtx.roi_stat.g1);

    text.put("[Rtx RGL]\n");
    print_rtx_rgl_channel(text, "g0", rtx.rgl_stat.g0);
    print_rtx_rgl_channel(text, "r", rtx.rgl_stat.r);
    print_rtx_rgl_channel(text, "b", rtx.rgl_stat.b);
    print_rtx_rgl_channel(text, "g1", rtx.rgl_stat.g1);

    text.put("[Gwd ROI]\n");
    for (int i = 0; i < 4; i++) {
        const IsBspGwdRoiStat &roi = gwd.roi_stat[i];
        // Energies are unsigned but print through the signed conversion.
        text.put("ROI", i, " energy:\n");
        text.closed_run("", as_signed(roi.sum), 7);
        text.put("ROI", i, " energy norm:\n");
        text.closed_run("", as_signed(roi.norm), 7);
        text.put("ROI", i, " pixel num: ", gwd.roi_pix_num[i], "\n");
    }

    text.put("[Gwd RGL]\n");
    print_gwd_rgl_channel(text, "g", gwd.rgl_stat.g);
    print_gwd_rgl_channel(text, "r", gwd.rgl_stat.r);
    print_gwd_rgl_channel(text, "b", gwd.rgl_stat.b);
}

void print_var(Text &text, const DipAfStat &af)
{
    text.put("[ROI var]\n");
    for (int i = 0; i < 4; i++) {
        text.put("ROI", i, " h1_avg = ", af.roi_stat[i].h1_avg, "\n");
        text.put("ROI", i, " h2_avg = ", af.roi_stat[i].h2_avg, "\n");
        text.put("ROI", i, " v1_avg = ", af.roi_stat[i].v1_avg, "\n");
        text.put("ROI", i, " v2_avg = ", af.roi_stat[i].v2_avg, "\n");
    }
    text.put("[RGL var]\n"
             "h1_avg:\n");
    text.grid(af.rgl_stat.h1_avg, 8, 5);
    text.put("h2_avg:\n");
    text.grid(af.rgl_stat.h2_avg, 8, 5);
    text.put("v1_avg:\n");
    text.grid(af.rgl_stat.v1_avg, 8, 5);
    text.put("v2_avg:\n");
    text.grid(af.rgl_stat.v2_avg, 8, 5);
}

void print_shp(Text &text, const DipShpStat &shp)
{
    text.put("ROI lpf_luma_avg: ", shp.roi_stat.lpf_luma_avg, "\n");
    text.put("RGL lpf_luma_avg:\n");
    text.grid(shp.rgl_stat.lpf_luma_avg, 8, 4);
    text.put("RGL lpf_luma_min:\n");
    text.grid(shp.rgl_stat.lpf_luma_min, 8, 4);
}

void print_dhz(Text &text, const DipDhzStat &dhz)
{
    text.put("ROI luma_avg: ", dhz.stat.luma_avg, "\n");
}

void print_roi(Text &text, const char *owner, const MPI_RECT_POINT_S &roi)
{
    text.value(owner, ".roi.sx", roi.sx);
    text.value(owner, ".roi.sy", roi.sy);
    text.value(owner, ".roi.ex", roi.ex);
    text.value(owner, ".roi.ey", roi.ey);
}

void print_mv(Text &text, const DipMvHist &mv)
{
    text.put("mv ROI:\n");
    print_roi(text, "mv", mv.cfg.roi);
    text.put("mv histogram:\n"
             "<#bin>(mv_x, mv_y, mv_cnt)\n"
             "----------------------------\n");
    for (int i = 0; i < 32; i++) {
        text.put("<#", Padded(i, 2), "> (");
        text.put(Padded(mv.hist.bin_x[i], 4), ", ");
        text.put(Padded(mv.hist.bin_y[i], 4), ", ");
        text.put(Padded(mv.hist.bin_count[i], 6), ")\n");
    }
    text.value("mv_total_cnt", mv.hist.total_cnt);
}

void print_mcvp_var(Text &text, const DipMcvpVar &mcvp)
{
    text.put("mcvp_var ROI:\n");
    print_roi(text, "mcvp", mcvp.cfg.roi);
    text.put("mcvp_var stat:\n");
    text.put("horizontal variance: ", mcvp.var.hor_sum, "\n");
    text.put("vertical variance: ", mcvp.var.ver_sum, "\n");
    // The sum wraps; the hardware's own hor_ver_sum is another figure.
    text.put("sum: ", mcvp.var.hor_sum + mcvp.var.ver_sum, "\n");
}

constexpr item item_list[] = {
    {"flag", "Statistics valid flags", part<print_flag, &DipCtx::stat, &DipAllStat::flag>},
    {"lum", "Luminance histogram", part<print_lum, &DipCtx::stat, &DipAllStat::lum>},
    {"awb", "Awb statistics", part<print_awb, &DipCtx::stat, &DipAllStat::awb>},
    {"var", "Raw variance statistics", part<print_var, &DipCtx::stat, &DipAllStat::af>},
    {"shp", "Luma statistics in SHP", part<print_shp, &DipCtx::stat, &DipAllStat::shp>},
    {"dhz", "Luma statistics in DHZ", part<print_dhz, &DipCtx::stat, &DipAllStat::dhz>},
    {"mv", "MV histogram", part<print_mv, &DipCtx::stat, &DipAllStat::mv>},
    {"mcvp_var", "Variance statistics", part<print_mcvp_var, &DipCtx::stat, &DipAllStat::mcvp_var>},
};
constexpr auto order = table_order(item_list);

int print_entry(Text &text, const DipPathCtx *ctx, const char *entry)
{
    return print_items(text, title, item_form::section, item_list, order, ctx, entry);
}

const char *section_at(size_t place)
{
    return name_at<item>(item_list, order, place);
}

void print_help()
{
    list_items<item>(title, item_list);
}

constexpr VordaCallback cb = {title, comments, print_entry, print_help, section_at};

} // namespace

void regCmd_stat()
{
    parse_rgtr(&cb);
}
