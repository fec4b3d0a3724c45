// The serializers: ownership, exhausted memory, absent records.
#include "dip_intl_save_attr.h"
#include "harness.h"
#include "log.h"
#include "vorda.h"

#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>

// The linker puts these between the product and the system allocator.
extern "C" {
void *__real_realloc(void *block, size_t size);
void __real_free(void *block);
void *__wrap_realloc(void *block, size_t size);
void __wrap_free(void *block);
}

namespace
{

struct Allocator {
    int calls = 0;
    int fail_at = -1;     // the call that fails
    bool forever = false; // so do all calls after it
    int blocks = 0;       // in use
} allocator;

} // namespace

void *__wrap_realloc(void *block, size_t size)
{
    const int call = allocator.calls++;
    if (call == allocator.fail_at ||
        (allocator.forever && allocator.fail_at >= 0 && call > allocator.fail_at))
        return nullptr;
    allocator.blocks += block == nullptr;
    return __real_realloc(block, size);
}

void __wrap_free(void *block)
{
    allocator.blocks -= block != nullptr;
    __real_free(block);
}

namespace
{

TEST(Serializers, HandTheTextOverOrNothing)
{
    const DipIntlAeParam ae = {.enable = 1, .max_weighted_hist_ratio = 80};
    char *str = nullptr;
    EXPECT_EQ(dip_intl_get_ae_param(&ae, &str), 0);
    EXPECT_STREQ(str, "[AE]\nenable = 1\nmax_weighted_hist_ratio = 80\n");
    __wrap_free(str);

    char untouched = 0;
    str = &untouched;
    allocator = {.fail_at = 0};
    EXPECT_EQ(dip_intl_get_ae_param(&ae, &str), -1);
    EXPECT_EQ(str, nullptr);
    allocator = {};
}

// Texts that end at the end of a field, and lists of the longest numbers.
TEST(Serializers, LoseNoValueAndReadNothingBeyond)
{
    const auto ctx = snapshot_of("ones");
    DipIntlLscParam &lsc = ctx->intl_ctx.lsc;
    memset(lsc.table.table_coeff_file_path, 'p', sizeof(lsc.table.table_coeff_file_path));
    for (int32_t &value : lsc.nl_adapt.strength)
        value = INT32_MIN;
    char *str = nullptr;
    EXPECT_EQ(dip_intl_get_lsc_param(&lsc, &str), 0);
    const std::string text = str;
    __wrap_free(str);
    EXPECT_NE(text.find("path = " + std::string(256, 'p') + "\n\n; noise level adaptive \n"),
              std::string::npos);
    std::string list = "nl_adapt.strength = -2147483648";
    for (int i = 1; i < 16; i++)
        list += ", -2147483648";
    EXPECT_NE(text.find(list + "\nnl_adapt.diff_thd  = -1\n"), std::string::npos);

    for (int16_t &value : ctx->intl_ctx.ts.nr_lut_adj)
        value = INT16_MIN;
    EXPECT_EQ(dip_intl_get_trail_suppress_param(&ctx->intl_ctx.ts, &str), 0);
    EXPECT_NE(strstr(str, "\nnr_lut_adj = -32768, -32768, -32768, -32768, -32768, -32768, -32768, "
                          "-32768, -32768\ncurve_protect"),
              nullptr);
    __wrap_free(str);
}

// Each allocation of each serializer fails in turn, alone and with all later ones.
TEST(Serializers, ExhaustedMemoryDeliversNothingAndLeaksNothing)
{
    register_categories();
    const auto ctx = snapshot_of("ones");
    const std::pair<std::string, std::string> items[] = {
        {"crc", "CRC"},
        {"lsc", "LSC"},
        {"ae", "AE"},
        {"awb", "AWB"},
        {"pta", "PTA"},
        {"shp", "SHP"},
        {"hdr", "HDR"},
        {"hdr_ae", "HDR_AE"},
        {"te", "TE"},
        {"enh", "ENH"},
        {"fcs", "FCS"},
        {"dhz", "DHZ"},
        {"iso", "ISO"},
        {"stat", "STAT"},
        {"nr", "NR"},
        {"me", "ME"},
        {"daa", "DAA"},
        {"dms", "DMS"},
        {"dpc", "BSP_DPC"},
        {"front_enh", "FRONT_ENH"},
        {"front_me", "FRONT_ME"},
        {"front_nr", "FRONT_NR"},
        {"ctrl", "CTRL"},
        {"ts", "TRAIL_SUPPRESS"},
        {"rgl_stat", "REGIONAL_STAT"},
    };
    std::string before; // the texts of the items before this one, in the order they print
    int calls_before = 0;
    for (const auto &[item, tag] : items) {
        const std::string message = "[" + tag + "] print variables error\n";
        const auto print = [&](const std::string &entry, int fail_at, bool forever) {
            allocator = {.fail_at = fail_at, .forever = forever};
            const Result result = captured([&] { return parse_entry(ctx.get(), entry.c_str()); });
            EXPECT_EQ(allocator.blocks, 0) << entry << " leaks";
            return result;
        };
        const Result whole = print("intl." + item, -1, false);
        EXPECT_EQ(whole.status, 0);
        const int calls = allocator.calls;
        EXPECT_GT(calls, 0);
        for (int i = 0; i < calls; i++) {
            for (const bool forever : {false, true}) {
                SCOPED_TRACE(item + ", allocation " + std::to_string(i));
                const Result alone = print("intl." + item, i, forever);
                EXPECT_EQ(alone.err, message);
                EXPECT_TRUE(alone.out.empty());
                EXPECT_EQ(alone.status, 1);
                const Result amid = print("intl", calls_before + i, forever);
                EXPECT_EQ(amid.err, message);
                EXPECT_TRUE(amid.out == before);
                EXPECT_EQ(amid.status, 1);
            }
        }
        before += whole.out;
        calls_before += calls;
    }
    allocator = {};
}

TEST(Serializers, AbsentRecordsAreLoggedAtLevelEight)
{
    LogConf levels = *g_log_level;
    const LogConf *const usual = g_log_level;
    g_log_level = &levels;
    char kept = 0;
    for (const int level : {6, 7, 8, 255}) {
        levels.dip_log = static_cast<uint8_t>(level);
        logged.clear();
        char *str = &kept;
        EXPECT_EQ(dip_intl_get_hdr_ae_param(nullptr, &str), -1);
        EXPECT_EQ(dip_intl_get_front_me_param(nullptr, &str), -1);
        EXPECT_EQ(str, &kept);
        const Log expected = {{191, "[Debug][DIP] dip_intl_get_hdr_ae_param() info == NULL"},
                              {191, "[Debug][DIP] dip_intl_get_front_me_param() info == NULL"}};
        EXPECT_EQ(logged, level >= 8 ? expected : Log());
    }
    g_log_level = usual;
}

} // namespace
