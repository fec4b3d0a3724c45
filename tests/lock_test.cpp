// The real binary beside a holder of the lock: it waits without a trace, and what it prints is of
// one frame.
#include "camera_lock.h"
#include "harness.h"
#include "vorda.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <set>

namespace
{

// Starts a tool and returns when it has come to the lock of its path, which somebody holds.
std::unique_ptr<Child> start_waiting(const Region &region)
{
    // The emulator then prints the tool's system calls.
    auto child = start_vorda({"share.inttime"}, region.file(), {{"QEMU_STRACE", "1"}});
    const std::string proc = "/proc/" + std::to_string(child->pid());
    EXPECT_TRUE(eventually([&] {
        // Until it is the tool's process it has this one's mappings.
        return std::filesystem::read_symlink(proc + "/exe") !=
                   std::filesystem::read_symlink("/proc/self/exe") &&
               read_file(proc + "/maps").find(region.file()) != std::string::npos;
    }));
    EXPECT_TRUE(child->looks_again());
    return child;
}

std::string bytes_of(const PathLock &lock)
{
    return {reinterpret_cast<const char *>(&lock), sizeof(lock)};
}

std::string share_of(const Result &result)
{
    return result.out.substr(result.out.find('\n') + 1);
}

TEST(Lock, ASnapshotWaitsForTheHolderWithoutAMark)
{
    Region region;
    PathLock *lock = &region->path[0].lock;
    const std::string free = bytes_of(*lock);
    camera_lock(lock);
    const std::string held = bytes_of(*lock);
    const auto child = start_waiting(region);
    EXPECT_EQ(bytes_of(*lock), held);
    region->path[0].dip.dip_ctx.share.inttime = 4711;
    path_unlock(lock);
    const Result result = child->finish();
    EXPECT_EQ(share_of(result), "share.inttime = 4711\n");
    EXPECT_EQ(result.err.find("futex("), std::string::npos) << result.err;
    EXPECT_EQ(bytes_of(*lock), free);

    // Another path's lock does not matter.
    camera_lock(&region->path[1].lock);
    EXPECT_EQ(run_vorda({"share.inttime"}, region.file()).status, 0);
    path_unlock(&region->path[1].lock);
}

class Live
{
public:
    Live(const Region &region, const std::vector<std::string> &options)
        : writer_(argv(region, options), {})
    {
        // Until its first frame the region holds another one.
        const DipCtx &dip = region->path[0].dip.dip_ctx;
        EXPECT_TRUE(eventually([&] { return dip.tid_run == uint32_t(dip.sys_state); }));
    }

private:
    static std::vector<std::string> argv(const Region &region, std::vector<std::string> options)
    {
        options.insert(options.begin(), {VORDA_BUILD_DIR "/sim/sr-scene", "--live", "--fps", "0",
                                         "--stamp", region.file()});
        return options;
    }

    Child writer_;
};

TEST(Lock, EverySnapshotIsOfOneFrame)
{
    const std::set<std::string> frames = whole_frames();
    ASSERT_EQ(frames.size(), 256U);
    // Where the lock is left out most are torn. Waiting for a camera that hardly ever lets go of it is
    // what takes the time.
    constexpr int SNAPSHOTS = 16;
    std::set<std::string> seen;
    {
        const Region region;
        const Live live(region, {});
        for (int i = 0; i < SNAPSHOTS; i++) {
            const Result result = run_vorda({"all"}, region.file());
            ASSERT_TRUE(frames.contains(share_of(result)))
                << "torn snapshot " << i << ", status " << result.status << result.err;
            seen.insert(share_of(result));
        }
    }
    EXPECT_GT(seen.size(), 3U); // the frames did change meanwhile

    // The same check notices a writer that leaves the lock out.
    const Region region;
    const Live live(region, {"--no-lock"});
    bool torn = false;
    for (int i = 0; i < 5000 && !torn; i++)
        torn = !frames.contains(share_of(run_vorda({"all"}, region.file())));
    EXPECT_TRUE(torn);
}

} // namespace
