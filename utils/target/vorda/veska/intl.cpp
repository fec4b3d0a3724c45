// The category intl: the extension settings of the DIP's modules, as attribute texts.
#include "category.h"
#include "dip_intl_save_attr.h"
#include "text.h"
#include "vorda.h"

#include <cstdio>
#include <cstdlib>

namespace
{

constexpr char title[] = "intl";
constexpr char comments[] = "internal interface data in DIP";

// One row of the item table: a module whose settings print as an attribute text.
struct intl_item {
    const char *name;
    const char *comments;
    const char *tag;                                        // the module in the error message
    int32_t (*get_text)(const DipIntlCtx &ctx, char **str); // contract of the serializers
};

template <auto member, auto get_param>
int32_t text_of(const DipIntlCtx &ctx, char **str)
{
    return get_param(&(ctx.*member), str);
}

constexpr intl_item item_list[] = {
    {"crc", "CRC extension settings", "CRC", text_of<&DipIntlCtx::crc, dip_intl_get_crc_param>},
    {"lsc", "LSC extension settings", "LSC", text_of<&DipIntlCtx::lsc, dip_intl_get_lsc_param>},
    {"ae", "AE extension settings", "AE", text_of<&DipIntlCtx::ae, dip_intl_get_ae_param>},
    {"awb", "AWB extension settings", "AWB", text_of<&DipIntlCtx::awb, dip_intl_get_awb_param>},
    {"pta", "PTA extension settings", "PTA", text_of<&DipIntlCtx::pta, dip_intl_get_pta_param>},
    {"shp", "SHP extension settings", "SHP", text_of<&DipIntlCtx::shp, dip_intl_get_shp_param>},
    {"me", "ME extension settings", "ME", text_of<&DipIntlCtx::me, dip_intl_get_me_param>},
    {"dms", "DMS extension settings", "DMS", text_of<&DipIntlCtx::dms, dip_intl_get_dms_param>},
    {"dpc", "DPC extension settings", "BSP_DPC",
     text_of<&DipIntlCtx::dpc, dip_intl_get_bsp_dpc_param>},
    {"nr", "NR extension settings", "NR", text_of<&DipIntlCtx::nr, dip_intl_get_nr_param>},
    {"hdr", "HDR extension settings", "HDR", text_of<&DipIntlCtx::hdr, dip_intl_get_hdr_param>},
    {"hdr_ae", "HDR_AE extension settings", "HDR_AE",
     text_of<&DipIntlCtx::hdr_ae, dip_intl_get_hdr_ae_param>},
    {"te", "TE extension settings", "TE", text_of<&DipIntlCtx::te, dip_intl_get_te_param>},
    {"enh", "ENH extension settings", "ENH", text_of<&DipIntlCtx::enh, dip_intl_get_enh_param>},
    {"fcs", "FCS extension settings", "FCS", text_of<&DipIntlCtx::fcs, dip_intl_get_fcs_param>},
    {"dhz", "DHZ extension settings", "DHZ", text_of<&DipIntlCtx::dhz, dip_intl_get_dhz_param>},
    {"iso", "ISO extension settings", "ISO", text_of<&DipIntlCtx::iso, dip_intl_get_iso_param>},
    {"stat", "STAT extension settings", "STAT",
     text_of<&DipIntlCtx::stat, dip_intl_get_stat_param>},
    {"daa", "DAA extension settings", "DAA", text_of<&DipIntlCtx::daa, dip_intl_get_daa_param>},
    {"front_enh", "FRONT_ENH extension settings", "FRONT_ENH",
     text_of<&DipIntlCtx::front_enh, dip_intl_get_front_enh_param>},
    {"front_me", "FRONT_ME extension settings", "FRONT_ME",
     text_of<&DipIntlCtx::front_me, dip_intl_get_front_me_param>},
    {"front_nr", "FRONT_NR extension settings", "FRONT_NR",
     text_of<&DipIntlCtx::front_nr, dip_intl_get_front_nr_param>},
    {"ctrl", "CTRL extension settings", "CTRL",
     text_of<&DipIntlCtx::ctrl, dip_intl_get_ctrl_param>},
    {"ts", "TRAIL_SUPPRESS extension settings", "TRAIL_SUPPRESS",
     text_of<&DipIntlCtx::ts, dip_intl_get_trail_suppress_param>},
    {"rgl_stat", "REGIONAL_STAT extension settings", "REGIONAL_STAT",
     text_of<&DipIntlCtx::rgl_stat, dip_intl_get_regional_stat_param>},
};

constexpr auto order =
    print_order(item_list, "crc", "lsc", "ae", "awb", "pta", "shp", "hdr", "hdr_ae", "te", "enh",
                "fcs", "dhz", "iso", "stat", "nr", "me", "daa", "dms", "dpc", "front_enh",
                "front_me", "front_nr", "ctrl", "ts", "rgl_stat");
static_assert(order.size() == std::size(item_list));

int print_entry(Text &text, const DipPathCtx *ctx, const char *entry)
{
    return for_selected<intl_item>(
        title, item_list, order, ctx, entry, [&text, ctx](const intl_item &row) {
            char *str = nullptr;
            if (row.get_text(ctx->intl_ctx, &str) != 0 || str == nullptr) {
                fprintf(stderr, "[%s] print variables error\n", row.tag);
                return 1;
            }
            text.put(str);
            free(str);
            return 0;
        });
}

const char *section_at(size_t place)
{
    return name_at<intl_item>(item_list, order, place);
}

void print_help()
{
    list_items<intl_item>(title, item_list);
}

constexpr VordaCallback cb = {title, comments, print_entry, print_help, section_at};

} // namespace

void regCmd_intl()
{
    parse_rgtr(&cb);
}
