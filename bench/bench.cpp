// Times, as pairs of ours and a baseline in one run; scripts/bench makes ratios of them.
#include "attr_text.h"
#include "dip_intl_save_attr.h"
#include "lock_probe.h"
#include "scene.h"
#include "sr_device.h"
#include "vorda.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace
{

using Clock = std::chrono::steady_clock;

// The middle of many times, in nanoseconds: the longer ones had an interrupt in them.
double middle(std::vector<Clock::duration> &times)
{
    const auto at = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), at, times.end());
    return std::chrono::duration<double, std::nano>(*at).count();
}

// The scene in a memory file that the stand-in device answers with.
VplatConf *scene_region()
{
    static VplatConf *conf = [] {
        const int fd = memfd_create("region", 0);
        if (fd < 0 || ftruncate(fd, sizeof(VplatConf)) != 0)
            abort();
        void *region = mmap(nullptr, sizeof(VplatConf), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
        setenv(SR_REGION_ENV, ("/proc/self/fd/" + std::to_string(fd)).c_str(), 1);
        auto *result = static_cast<VplatConf *>(region);
        init_region(result);
        fill_frame(&result->path[0].dip, 0, 0);
        return result;
    }();
    return conf;
}

// From lock to unlock, as the DIP would wait, and a bare warm copy, in turns. Every snapshot maps
// the region anew, and before it the caches are full of something else.
void lock_window(benchmark::State &state)
{
    const DipPathCtx &source = scene_region()->path[0].dip;
    const auto ctx = std::make_unique<DipPathCtx>();
    std::vector<char> other(16 << 20);
    Clock::time_point locked;
    Clock::time_point unlocked;
    after_lock = [&] { locked = Clock::now(); };
    before_unlock = [&] { unlocked = Clock::now(); };
    std::vector<Clock::duration> ours;
    std::vector<Clock::duration> bare;
    for ([[maybe_unused]] const auto _ : state) {
        memset(other.data(), static_cast<int>(ours.size()), other.size());
        get_dip_ctx({.dev = 0, .path = 0, .dummy1 = 0x80, .dummy0 = 0x80}, ctx.get());
        ours.push_back(unlocked - locked);

        memcpy(ctx.get(), &source, sizeof(*ctx));
        benchmark::ClobberMemory();
        const auto start = Clock::now();
        memcpy(ctx.get(), &source, sizeof(*ctx));
        bare.push_back(Clock::now() - start);
        benchmark::DoNotOptimize(*ctx);
    }
    after_lock = nullptr;
    before_unlock = nullptr;
    state.counters["bare"] = middle(bare);
    state.counters["ours"] = middle(ours);
}

struct Text {
    const char *name;
    int32_t (*save)(const DipIntlCtx &intl, char **str);
};

#define TEXT(member, function)                                                                 \
    {                                                                                          \
#member, [](const DipIntlCtx &intl,                                                    \
                    char **str) { return dip_intl_get_##function##_param(&intl.member, str); } \
    }

const Text texts[] = {
    TEXT(crc, crc),
    TEXT(lsc, lsc),
    TEXT(ae, ae),
    TEXT(awb, awb),
    TEXT(pta, pta),
    TEXT(shp, shp),
    TEXT(hdr, hdr),
    TEXT(hdr_ae, hdr_ae),
    TEXT(te, te),
    TEXT(enh, enh),
    TEXT(fcs, fcs),
    TEXT(dhz, dhz),
    TEXT(iso, iso),
    TEXT(stat, stat),
    TEXT(nr, nr),
    TEXT(me, me),
    TEXT(daa, daa),
    TEXT(dms, dms),
    TEXT(dpc, bsp_dpc),
    TEXT(front_enh, front_enh),
    TEXT(front_me, front_me),
    TEXT(front_nr, front_nr),
    TEXT(ctrl, ctrl),
    TEXT(ts, trail_suppress),
    TEXT(rgl_stat, regional_stat),
};

std::string saved(const Text &text)
{
    char *str = nullptr;
    text.save(scene_region()->path[0].dip.intl_ctx, &str);
    std::string result = str;
    free(str);
    return result;
}

void text_ours(benchmark::State &state, const Text &text)
{
    const DipIntlCtx &intl = scene_region()->path[0].dip.intl_ctx;
    for ([[maybe_unused]] const auto _ : state) {
        char *str = nullptr;
        text.save(intl, &str);
        benchmark::DoNotOptimize(str);
        free(str);
    }
}

// The steps in which a text grows when each piece is appended: the lines up to an array, then one
// step an element.
std::vector<std::string> append_steps(const std::string &text)
{
    std::vector<std::string> steps;
    size_t at = 0;
    while (at < text.size()) {
        const size_t comma = text.find(", ", at);
        const size_t end = comma == std::string::npos ? text.size() : comma + 2;
        steps.push_back(text.substr(at, end - at));
        at = end;
    }
    return steps;
}

void text_asprintf(benchmark::State &state, const Text &text)
{
    const std::string whole = saved(text);
    const std::vector<std::string> steps = append_steps(whole);
    for ([[maybe_unused]] const auto _ : state) {
        char *str = strdup("");
        for (const std::string &step : steps) {
            char *before = str;
            // A step is an element, or a piece of fixed text with its last value.
            const bool element = step.find_first_not_of("-0123456789, ") == std::string::npos;
            const int length = element ? asprintf(&str, "%s%d, ", before, atoi(step.c_str()))
                                       : asprintf(&str, "%s%s", before, step.c_str());
            free(before);
            if (length < 0)
                abort();
        }
        if (str != whole && text.name != std::string("pta") && text.name != std::string("shp") &&
            text.name != std::string("enh"))
            abort(); // padded elements aside, the same text
        free(str);
    }
}

void text_copy(benchmark::State &state, const Text &text)
{
    const std::string whole = saved(text);
    for ([[maybe_unused]] const auto _ : state) {
        char *str = strdup(whole.c_str());
        benchmark::DoNotOptimize(str);
        free(str);
    }
}

// A text of so many arrays.
void text_growth(benchmark::State &state)
{
    int32_t values[16] = {};
    for (int i = 0; i < 16; i++)
        values[i] = i * i * i;
    for ([[maybe_unused]] const auto _ : state) {
        AttrText text;
        for (int64_t i = 0; i < state.range(0); i++) {
            text.put("scene_change = %d\n", values[7]);
            text.open_run("search_texture_th = ", values);
        }
        char *str = nullptr;
        text.deliver(&str);
        benchmark::DoNotOptimize(str);
        free(str);
    }
}

} // namespace

int main(int argc, char **argv)
{
    // The index lines of the snapshots are nobody's business here.
    benchmark::Initialize(&argc, argv);
    benchmark::RegisterBenchmark("lock_window", lock_window)->Iterations(2000);
    for (const Text &text : texts) {
        const std::string name = text.name;
        benchmark::RegisterBenchmark((name + "/ours").c_str(), text_ours, text);
        benchmark::RegisterBenchmark((name + "/asprintf").c_str(), text_asprintf, text);
        benchmark::RegisterBenchmark((name + "/copy").c_str(), text_copy, text);
    }
    benchmark::RegisterBenchmark("growth", text_growth)->Arg(25)->Arg(250)->Arg(2500);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
