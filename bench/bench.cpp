// Times, as pairs of ours and a baseline in one run; scripts/bench makes ratios of them.
#include "dip_intl_save_attr.h"
#include "heap_text.h"
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
    before_unlock = [&] { unlocked = Clock::now(); };
    after_lock = [&] {
        before_unlock(); // its code is cold: fetched at the end, it would count as ours
        locked = Clock::now();
    };
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
    after_lock = before_unlock = nullptr;
    state.counters["bare"] = middle(bare);
    state.counters["ours"] = middle(ours);
}

struct AttrText {
    const char *name;
    int32_t (*save)(const DipIntlCtx &intl, char **str);
};

template <auto member, auto get_param>
int32_t save(const DipIntlCtx &intl, char **str)
{
    return get_param(&(intl.*member), str);
}

const AttrText texts[] = {
    {"crc", save<&DipIntlCtx::crc, dip_intl_get_crc_param>},
    {"lsc", save<&DipIntlCtx::lsc, dip_intl_get_lsc_param>},
    {"ae", save<&DipIntlCtx::ae, dip_intl_get_ae_param>},
    {"awb", save<&DipIntlCtx::awb, dip_intl_get_awb_param>},
    {"pta", save<&DipIntlCtx::pta, dip_intl_get_pta_param>},
    {"shp", save<&DipIntlCtx::shp, dip_intl_get_shp_param>},
    {"hdr", save<&DipIntlCtx::hdr, dip_intl_get_hdr_param>},
    {"hdr_ae", save<&DipIntlCtx::hdr_ae, dip_intl_get_hdr_ae_param>},
    {"te", save<&DipIntlCtx::te, dip_intl_get_te_param>},
    {"enh", save<&DipIntlCtx::enh, dip_intl_get_enh_param>},
    {"fcs", save<&DipIntlCtx::fcs, dip_intl_get_fcs_param>},
    {"dhz", save<&DipIntlCtx::dhz, dip_intl_get_dhz_param>},
    {"iso", save<&DipIntlCtx::iso, dip_intl_get_iso_param>},
    {"stat", save<&DipIntlCtx::stat, dip_intl_get_stat_param>},
    {"nr", save<&DipIntlCtx::nr, dip_intl_get_nr_param>},
    {"me", save<&DipIntlCtx::me, dip_intl_get_me_param>},
    {"daa", save<&DipIntlCtx::daa, dip_intl_get_daa_param>},
    {"dms", save<&DipIntlCtx::dms, dip_intl_get_dms_param>},
    {"dpc", save<&DipIntlCtx::dpc, dip_intl_get_bsp_dpc_param>},
    {"front_enh", save<&DipIntlCtx::front_enh, dip_intl_get_front_enh_param>},
    {"front_me", save<&DipIntlCtx::front_me, dip_intl_get_front_me_param>},
    {"front_nr", save<&DipIntlCtx::front_nr, dip_intl_get_front_nr_param>},
    {"ctrl", save<&DipIntlCtx::ctrl, dip_intl_get_ctrl_param>},
    {"ts", save<&DipIntlCtx::ts, dip_intl_get_trail_suppress_param>},
    {"rgl_stat", save<&DipIntlCtx::rgl_stat, dip_intl_get_regional_stat_param>},
};

std::string saved(const AttrText &text)
{
    char *str = nullptr;
    text.save(scene_region()->path[0].dip.intl_ctx, &str);
    std::string result = str;
    free(str);
    return result;
}

void text_ours(benchmark::State &state, const AttrText &text)
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

void text_asprintf(benchmark::State &state, const AttrText &text)
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

void text_copy(benchmark::State &state, const AttrText &text)
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
        HeapText text;
        for (int64_t i = 0; i < state.range(0); i++) {
            text.value("scene_change", values[7]);
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
    // The snapshots of lock_window print index lines; the report goes to a file.
    benchmark::Initialize(&argc, argv);
    benchmark::RegisterBenchmark("lock_window", lock_window)->Iterations(2000);
    for (const AttrText &text : texts) {
        const std::string name = text.name;
        benchmark::RegisterBenchmark((name + "/ours").c_str(), text_ours, text);
        benchmark::RegisterBenchmark((name + "/asprintf").c_str(), text_asprintf, text);
        benchmark::RegisterBenchmark((name + "/copy").c_str(), text_copy, text);
    }
    benchmark::RegisterBenchmark("growth", text_growth)->Arg(25)->Arg(250)->Arg(2500);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
