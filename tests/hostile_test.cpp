// Whatever a snapshot holds prints, and nothing beyond it is read; the sanitizers watch.
#include "fuzz_target.h"
#include "harness.h"
#include "vorda.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <random>

namespace
{

TEST(Hostile, RandomSnapshotsPrintWhole)
{
    register_categories();
    std::mt19937 random(1);
    const auto ctx = std::make_unique<DipPathCtx>();
    auto *bytes = reinterpret_cast<uint8_t *>(ctx.get());
    for (int round = 0; round < 100; round++) {
        // From every byte alike to most bytes zero or all ones.
        for (size_t i = 0; i < sizeof(*ctx); i++) {
            const auto byte = static_cast<uint8_t>(random());
            bytes[i] = round % 3 == 0 ? byte : static_cast<uint8_t>(byte < 0x80 ? 0 : 0xFF);
        }
        const Result result = captured([&] { return parse_entry(ctx.get(), "all"); });
        ASSERT_EQ(result.err, "");
        ASSERT_EQ(result.status, 0);
        for (const char *last :
             {"\n=== cfg.weak_win_shp ===\n", "\n[REGIONAL_STAT]\n", "\nsum: ", "\nvinfo.ispv2 = "})
            ASSERT_NE(result.out.find(last), std::string::npos) << last;
    }
}

// What the fuzzer found worth keeping.
TEST(Hostile, SavedInputsOfTheFuzzerPrintOnTheRightStreamOnly)
{
    for (const auto &entry :
         std::filesystem::directory_iterator(VORDA_SOURCE_DIR "/tests/corpus")) {
        SCOPED_TRACE(entry.path());
        const std::string bytes = read_file(entry.path());
        const Result result = captured([&] { return run_fuzz_input(bytes); });
        // Words on one stream, the other says nothing; what succeeds is no error message.
        EXPECT_TRUE(result.status == 0 || (result.status == 1 && result.out.empty()));
        EXPECT_NE(result.out.empty(), result.err.empty());
        EXPECT_EQ((result.out + result.err).back(), '\n');
        if (result.status == 0) {
            EXPECT_TRUE(result.err.empty() || result.err.starts_with("Available items:\n"));
        }
    }
}

} // namespace
