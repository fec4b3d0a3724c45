// What the categories print. Whole categories are compared with files in golden/ (written anew when
// VORDA_GOLDEN=write is in the environment); rows of single changes check the rules that one
// snapshot cannot show.
#include "harness.h"
#include "stdout_text.h"
#include "vorda.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

// The linker puts this between the categories and their registry.
int real_parse_rgtr(const VordaCallback *cb) __asm__("__real__Z10parse_rgtrPK13VordaCallback");
int wrap_parse_rgtr(const VordaCallback *cb) __asm__("__wrap__Z10parse_rgtrPK13VordaCallback");

namespace
{

std::vector<VordaCallback> registered;

} // namespace

int wrap_parse_rgtr(const VordaCallback *cb)
{
    registered.push_back(*cb);
    return real_parse_rgtr(cb);
}

namespace
{

Result print(const DipPathCtx &ctx, const std::string &entry)
{
    register_categories();
    return captured([&] { return parse_entry(&ctx, entry.c_str()); });
}

Result print(const VordaCallback &category, const DipPathCtx *ctx, const char *entry)
{
    return captured([&] {
        StdoutText text;
        return category.print_entry(text, ctx, entry);
    });
}

const std::string categories[] = {"cfg", "intl", "share", "stat", "vinfo"};

// The items of a category, as it lists them.
std::vector<std::string> listed_items(const std::string &category)
{
    register_categories();
    const Result result = captured([&] { return parse_help("vorda", category.c_str()); });
    std::vector<std::string> items;
    for (const auto &[name, description] : parse_listing(result.err, category))
        items.push_back(name);
    return items;
}

TEST(Category, WholeCategoriesPrintAsRecorded)
{
    for (const std::string kind : {"distinct", "zero"}) {
        const auto ctx = snapshot_of(kind);
        std::string all;
        for (const std::string &category : categories) {
            const Result result = print(*ctx, category);
            EXPECT_EQ(result.status, 0);
            EXPECT_EQ(result.err, "");
            EXPECT_TRUE(result.out == print(*ctx, category + ".").out) << category;
            all += result.out;
        }
        EXPECT_EQ(difference_from_golden(kind + ".txt", all), "");
        EXPECT_TRUE(print(*ctx, "all").out == all) << kind;
    }
}

TEST(Category, ItemsPrintTheirPartOfTheWhole)
{
    const auto ctx = snapshot_of("distinct");
    for (const std::string &category : categories) {
        std::vector<std::string> items = listed_items(category);
        const std::string whole = print(*ctx, category).out;
        size_t at = 0;
        while (at < whole.size()) {
            const auto next = std::find_if(items.begin(), items.end(), [&](const auto &item) {
                const std::string part = print(*ctx, category + "." + item).out;
                return whole.compare(at, part.size(), part) == 0 && !part.empty();
            });
            ASSERT_NE(next, items.end()) << whole.substr(at, 80);
            at += print(*ctx, category + "." + *next).out.size();
            items.erase(next);
        }
        // Only the parts of the calibration print on their own alone.
        const std::vector<std::string> rest = {"dbc", "dcc", "crc", "lsc"};
        EXPECT_EQ(items, category == "cfg" ? rest : std::vector<std::string>());
    }
}

// What a category makes of its arguments, whoever calls it.
TEST(Category, RefusesAnAbsentSnapshotAndPrintsAllOfAnAbsentEntry)
{
    register_categories();
    ASSERT_EQ(registered.size(), std::size(categories));
    const auto ctx = snapshot_of("zero");
    for (size_t i = 0; i < registered.size(); i++) {
        EXPECT_EQ(registered[i].title, categories[i]);
        for (const char *entry : {"", static_cast<const char *>(nullptr), "x"}) {
            const Result none = print(registered[i], nullptr, entry);
            EXPECT_EQ(none.err, "Invalid attributes.\n") << categories[i];
            EXPECT_EQ(none.out, "");
            EXPECT_EQ(none.status, 1);
        }
        const Result all = print(registered[i], ctx.get(), nullptr);
        EXPECT_TRUE(all.out == print(*ctx, categories[i]).out) << categories[i];
        EXPECT_EQ(all.status, 0);
    }
}

TEST(Category, ListingsAreAsRecorded)
{
    register_categories();
    std::string all;
    for (const std::string &category : categories) {
        const Result result = captured([&] { return parse_help("vorda", category.c_str()); });
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.out, "");
        all += result.err;
    }
    EXPECT_EQ(difference_from_golden("listings.txt", all), "");
}

TEST(Category, RefusesUnknownItems)
{
    const auto ctx = snapshot_of("zero");
    for (const std::string &category : categories) {
        const std::string first = listed_items(category)[0];
        for (const std::string &item : std::initializer_list<std::string>{
                 "x", "all", first + ".x", first + " ", first.substr(1), "."}) {
            const Result result = print(*ctx, category + "." + item);
            EXPECT_EQ(result.err, "Unknown entry " + category + "." + item + ".\n");
            EXPECT_EQ(result.out, "");
            EXPECT_EQ(result.status, 1);
        }
    }
    for (const char *entry : {"intl.fsc", "intl.gmv", "intl.eis", "intl.lm", "intl.bsp_dpc",
                              "intl.trail_suppress", "vinfo.TYPE"})
        EXPECT_EQ(print(*ctx, entry).status, 1);
}

struct Change {
    std::string entry;
    std::function<void(DipPathCtx &)> change; // of an all-zero snapshot
    std::string out;                          // all of the output, or with "..." a part of it
};

void expect_changes(std::initializer_list<Change> changes)
{
    for (const Change &row : changes) {
        SCOPED_TRACE(row.entry + ": " + row.out);
        const auto ctx = snapshot_of("zero");
        row.change(*ctx);
        const std::string out = print(*ctx, row.entry).out;
        if (row.out.starts_with("..."))
            EXPECT_NE(out.find(row.out.substr(3)), std::string::npos) << out;
        else
            EXPECT_EQ(out, row.out);
    }
}

TEST(Vinfo, FollowsTheWholeLinkWordAndTheWindows)
{
    const auto link = [](uint32_t bmp, uint8_t stitch_en, uint8_t hdr_en) {
        return [=](DipPathCtx &ctx) {
            ctx.dip_ctx.dev_attr = {.snp_link = {bmp}, .stitch_en = stitch_en, .hdr_en = hdr_en};
        };
    };
    const auto windows = [](int32_t count, std::initializer_list<int32_t> list) {
        return [count, list = std::vector<int32_t>(list)](DipPathCtx &ctx) {
            ctx.dip_ctx.active_win_cnt = count;
            std::copy(list.begin(), list.end(), ctx.dip_ctx.flat_win_list);
        };
    };
    const auto bayer = [](int32_t value) {
        return
            [=](DipPathCtx &ctx) { ctx.dip_ctx.path_attr.bayer = static_cast<MPI_BAYER_E>(value); };
    };
    expect_changes({
        {"vinfo.type", link(3, 1, 1), "vinfo.type = 2 (Dual sensors, stitching)\n"},
        {"vinfo.type", link(3, 0, 1), "vinfo.type = 1 (Dual sensors)\n"},
        {"vinfo.type", link(7, 1, 1), "vinfo.type = 4 (Triple sensors)\n"},
        {"vinfo.type", link(15, 1, 1), "vinfo.type = 5 (Quadruple sensors)\n"},
        {"vinfo.type", link(0, 1, 1), "vinfo.type = -1 (Unknown)\n"},
        {"vinfo.type", link(6, 1, 0), "vinfo.type = 0 (Single sensor)\n"},
        {"vinfo.type", link(0x80000003, 1, 2), "vinfo.type = 3 (Single HDR sensor)\n"},
        {"vinfo.bayer", bayer(0), "vinfo.bayer = 0 (Phase Gr)\n"},
        {"vinfo.bayer", bayer(1), "vinfo.bayer = 1 (Phase R)\n"},
        {"vinfo.bayer", bayer(2), "vinfo.bayer = 2 (Phase B)\n"},
        {"vinfo.bayer", bayer(3), "vinfo.bayer = 3 (Phase Gb)\n"},
        {"vinfo.bayer", bayer(4), "vinfo.bayer = -1 (Unknown)\n"},
        {"vinfo.bayer", bayer(-1), "vinfo.bayer = -1 (Unknown)\n"},
        {"vinfo.valid_win", windows(0, {5}), "vinfo.valid_win = \n"},
        {"vinfo.valid_win", windows(-1, {5}), "vinfo.valid_win = \n"},
        {"vinfo.valid_win", windows(2, {0, 5}), "vinfo.valid_win = (0,0) (1,1)\n"},
        {"vinfo.valid_win", windows(3, {-5, INT32_MIN, INT32_MAX}),
         "vinfo.valid_win = (-1,-1) (-536870912,0) (536870911,3)\n"},
        {"vinfo.valid_win", windows(INT32_MAX, {0, 1, 2, 3, 4, 5, 6, 7}),
         "vinfo.valid_win = (0,0) (0,1) (0,2) (0,3) (1,0) (1,1) (1,2) (1,3)\n"},
    });
}

TEST(Share, PrintsFractionsAndSigns)
{
    const auto fps = [](float value) {
        return [=](DipPathCtx &ctx) { ctx.dip_ctx.share.fps = value; };
    };
    expect_changes({
        {"share.fps", fps(29.997F), "share.fps = 30.00\n"},
        {"share.fps", fps(std::numeric_limits<float>::infinity()), "share.fps = inf\n"},
        {"share.fps", fps(std::nanf("")), "share.fps = nan\n"},
        {"share.fps", fps(-std::numeric_limits<float>::max()),
         "share.fps = -340282346638528859811704183484516925440.00\n"},
        {"share.sensor_gain", [](DipPathCtx &ctx) { ctx.dip_ctx.share.sensor_gain = 3000000000; },
         "share.sensor_gain = -1294967296\n"},
    });
}

TEST(Stat, SumsWrapAndFlagsKeepTheirPlaces)
{
    expect_changes({
        {"stat.mcvp_var",
         [](DipPathCtx &ctx) {
             ctx.dip_ctx.stat.mcvp_var.var = {
                 .hor_sum = 0xFFFFFFFF, .ver_sum = 1, .hor_ver_sum = 7};
         },
         "...\nsum: 0\n"},
        {"stat.flag", [](DipPathCtx &ctx) { ctx.dip_ctx.stat.flag.val = 0xFFFFFFC0 | 4; },
         "=== stat.flag ===\nlum_valid = 0\nawb_valid = 0\nshp_valid = 0\ndhz_valid = 0\n"
         "mv_valid = 1\nmcvp_var_valid = 0\n"},
        {"stat.flag", [](DipPathCtx &ctx) { ctx.dip_ctx.stat.flag.val = 0x21; },
         "=== stat.flag ===\nlum_valid = 1\nawb_valid = 0\nshp_valid = 0\ndhz_valid = 1\n"
         "mv_valid = 0\nmcvp_var_valid = 0\n"},
        {"stat.lum", [](DipPathCtx &ctx) { ctx.dip_ctx.stat.lum.hist.overflow = 0x80; },
         "...\nOverflow: true\n"},
    });
}

TEST(Cfg, FindsTheSlotOfTheBoundWindow)
{
    // Window (1,1) is bound; slot i of every per-window array begins with the number i + 1.
    const auto windows = [](int32_t count, std::vector<int32_t> list) {
        return [=](DipPathCtx &ctx) {
            DipCtx &dip = ctx.dip_ctx;
            dip.win_info.win_idx = {.dev = 3, .chn = 1, .win = 1, .dummy0 = 0};
            dip.active_win_cnt = count;
            std::copy(list.begin(), list.end(), dip.flat_win_list);
            for (uint8_t i = 0; i < DIP_WIN_NUM; i++)
                dip.cfg.isp_lm[i] = {
                    .enable = static_cast<uint8_t>(i + 1), .conf_low_th = 0, .conf_high_th = 0};
        };
    };
    const std::string head = "=== cfg.isp_lm ===\n";
    const std::string none = head + "Unable to acquire corresponding window cfg.\n";
    const auto slot = [&](int i) {
        return head + "cfg.enable = " + std::to_string(i + 1) +
               "\ncfg.conf_low_th = 0\ncfg.conf_high_th = 0\n";
    };
    expect_changes({
        {"cfg.isp_lm", windows(3, {5, 2, 5}), slot(2)},
        {"cfg.isp_lm", windows(2, {5, 2, 5}), slot(0)},
        {"cfg.isp_lm", windows(0, {5, 5}), none},
        {"cfg.isp_lm", windows(-8, {5, 5}), none},
        {"cfg.isp_lm", windows(8, {0, 1, 2, 3, 4, 6, 7, 8}), none},
        {"cfg.isp_lm", windows(9, {0, 5, 2, 3, 4, 6, 7, 8}), slot(1)},
        {"cfg.isp_lm", windows(INT32_MAX, {5, 5, 5, 5, 5, 5, 5, 5}), slot(7)},
    });
    const auto ctx = snapshot_of("zero");
    for (const std::string item : {"front_nr", "nr", "enh", "shp", "weak_win_shp"}) {
        const Result result = print(*ctx, "cfg." + item);
        EXPECT_EQ(result.out,
                  "=== cfg." + item + " ===\nUnable to acquire corresponding window cfg.\n");
        EXPECT_EQ(result.status, 0);
    }
    EXPECT_EQ(print(*ctx, "cfg.front_enh").out.find("Unable"), std::string::npos);
}

TEST(Cfg, StitchedSensorsPrintTwoCalibrations)
{
    const auto ctx = snapshot_of("distinct");
    DipCtx &dip = ctx->dip_ctx;
    const auto lines_from = [](const std::string &text, const std::string &label) {
        const size_t at = text.find("\n" + label + "\n");
        return at == std::string::npos ? "" : text.substr(at + label.size() + 2);
    };
    dip.dev_attr.stitch_en = 0;
    const std::string single = print(*ctx, "cfg.dcc").out;
    std::swap(dip.cfg.cal[0], dip.cfg.cal[1]);
    const std::string other = print(*ctx, "cfg.dcc").out;
    std::swap(dip.cfg.cal[0], dip.cfg.cal[1]);
    dip.dev_attr.stitch_en = 0x80;
    const std::string head = "=== cfg.dcc ===\n";
    EXPECT_EQ(print(*ctx, "cfg.dcc").out, head + "DCC0:\n" + single.substr(head.size()) +
                                              "DCC1:\n" + other.substr(head.size()));

    // The curves have no mode of their own: both show that of the colour correction beside them.
    const std::string crc = print(*ctx, "cfg.crc").out;
    const auto mode = [&](int i) {
        return "mode = " + std::to_string(dip.cfg.cal[i].dcc.cfg.mode) + " (";
    };
    EXPECT_TRUE(lines_from(crc, "CRC0:").starts_with(mode(0)));
    EXPECT_TRUE(lines_from(crc, "CRC1:").starts_with(mode(1)));

    std::string rest = print(*ctx, "cfg.cal").out;
    for (const char *label :
         {"DBC0:", "DBC1:", "DCC0:", "DCC1:", "CRC0:", "CRC1:", "LSC0:", "LSC1:"}) {
        rest = lines_from(rest, label);
        EXPECT_NE(rest, "") << label;
    }
}

TEST(Cfg, EnhancementSlopesAreTenBitNumbers)
{
    const auto slope = [](uint16_t value) {
        return [=](DipPathCtx &ctx) { ctx.dip_ctx.cfg.front_enh.cfg.gain_curve.m_2s[0] = value; };
    };
    const std::string key = "...cfg.gain_curve.m_2s[0] = ";
    expect_changes({
        {"cfg.front_enh", slope(511), key + "511 (511)\n"},
        {"cfg.front_enh", slope(512), key + "512 (-512)\n"},
        {"cfg.front_enh", slope(1023), key + "1023 (-1)\n"},
        {"cfg.front_enh", slope(65535), key + "65535 (64511)\n"},
    });
}

} // namespace
