// The promise to the camera: a snapshot is of one frame, the lock is held for one copy and nothing
// else, and it is never left behind.
#include "harness.h"
#include "lock_probe.h"
#include "vorda.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <linux/seccomp.h>
#include <random>
#include <set>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

// Sanitizers make a run slow, and have pages of their own.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool INSTRUMENTED = true;
#elif defined(__has_feature)
constexpr bool INSTRUMENTED = __has_feature(address_sanitizer);
#else
constexpr bool INSTRUMENTED = false;
#endif

bool emulated()
{
    return getenv("VORDA_EMULATOR") != nullptr;
}

uint32_t lock_word(const Region &region)
{
    return std::atomic_ref<uint32_t>(region->path[0].lock.word).load();
}

std::string share_of(const Result &result)
{
    return result.out.substr(result.out.find('\n') + 1);
}

TEST(Lock, ASnapshotWaitsForTheHolderAndReadsWhatItLeft)
{
    Region region;
    path_lock(&region->path[0].lock);
    const auto child = start_vorda({"share.inttime"}, region.file());
    EXPECT_TRUE(eventually(10000, [&] { return lock_word(region) == 2; })); // it waits
    EXPECT_FALSE(child->ends_within(100));
    region->path[0].dip.dip_ctx.share.inttime = 4711;
    path_unlock(&region->path[0].lock);
    EXPECT_EQ(share_of(child->finish()), "share.inttime = 4711\n");
    EXPECT_EQ(lock_word(region), 0U);
    // The other fields of the mutex belong to its other users.
    EXPECT_EQ(region->path[0].lock.owner, 0U);
    EXPECT_EQ(region->path[0].lock.kind, 0x80U);
    EXPECT_EQ(region->path[0].lock.nusers, 0U);

    // Another path's lock is nobody's business.
    path_lock(&region->path[1].lock);
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
        EXPECT_TRUE(eventually(10000, [&] { return dip.tid_run == uint32_t(dip.sys_state); }));
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

// What `vorda all` prints of each of the 256 frames that consist of one byte.
std::set<std::string> whole_frames()
{
    register_categories();
    std::set<std::string> texts;
    const auto ctx = std::make_unique<DipPathCtx>();
    for (int byte = 0; byte < 256; byte++) {
        memset(static_cast<void *>(ctx.get()), byte, sizeof(*ctx));
        texts.insert(captured([&] { return parse_entry(ctx.get(), "all"); }).out);
    }
    return texts;
}

TEST(Lock, EverySnapshotIsOfOneFrame)
{
    const std::set<std::string> frames = whole_frames();
    ASSERT_EQ(frames.size(), 256U);
    const int snapshots = emulated() ? 50 : INSTRUMENTED ? 200 : 2000;
    std::set<std::string> seen;
    {
        const Region region;
        const Live live(region, {});
        for (int i = 0; i < snapshots; i++) {
            const Result result = run_vorda({"all"}, region.file());
            ASSERT_TRUE(frames.contains(share_of(result)))
                << "torn snapshot " << i << ", status " << result.status << result.err;
            seen.insert(share_of(result));
        }
    }
    EXPECT_GT(seen.size(), 10U); // the frames did change meanwhile

    // The same check notices a writer that leaves the lock out.
    const Region region;
    const Live live(region, {"--no-lock"});
    bool torn = false;
    for (int i = 0; i < 5000 && !torn; i++)
        torn = !frames.contains(share_of(run_vorda({"all"}, region.file())));
    EXPECT_TRUE(torn);
}

TEST(Lock, NoSignalLeavesItBehind)
{
    const int signals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGALRM, SIGTSTP};
    const int rounds = emulated() ? 24 : INSTRUMENTED ? 120 : 600;
    std::mt19937 random(7);
    int waited = 0;
    int hit = 0;
    const Region region;
    PathLock *lock = &region->path[0].lock;
    for (int i = 0; i < rounds; i++) {
        const int signal = signals[static_cast<size_t>(i) % std::size(signals)];
        path_lock(lock);
        const auto child = start_vorda({"share"}, region.file());
        // Most signals hit a tool that waits for the lock or is about to copy; the others come
        // anywhere between its start and its end.
        const bool at_lock = i % 4 != 0;
        if (at_lock)
            waited += eventually(10000, [&] { return lock_word(region) == 2; });
        const auto delay = static_cast<useconds_t>(random() % 300);
        if (i % 2 == 0) {
            usleep(delay);
            kill(child->pid(), signal);
            path_unlock(lock);
        } else {
            path_unlock(lock);
            usleep(delay);
            kill(child->pid(), signal);
        }
        // Stopped or ended, the tool lets go of the lock.
        ASSERT_TRUE(eventually(10000, [&] {
            siginfo_t info = {};
            waitid(P_PID, static_cast<id_t>(child->pid()), &info,
                   WEXITED | WSTOPPED | WNOHANG | WNOWAIT);
            return info.si_pid != 0;
        })) << i;
        ASSERT_EQ(lock_word(region), 0U) << "round " << i << ", signal " << signal;
        kill(child->pid(), SIGCONT);
        hit += child->finish().status != 0;
    }
    EXPECT_GT(waited, rounds / 2);
    EXPECT_GT(hit, rounds / 4);
    printf("%d signals, %d to a tool at the lock, %d ended it\n", rounds, waited, hit);
}

// Takes a snapshot in a fresh process, which a probe ends before it unlocks; returns its status.
int snapshot_apart(const Region &region)
{
    fflush(stdout);
    const pid_t pid = fork();
    if (pid == 0) {
        setenv("SR_REGION", region.file().c_str(), 1);
        auto *ctx = new DipPathCtx; // its pages are not there yet
        get_dip_ctx({.dev = 0, .path = 0, .dummy1 = 0x80, .dummy0 = 0x80}, ctx);
        _exit(99);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    region->path[0].lock.word = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

long faults()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt + usage.ru_majflt;
}

TEST(Lock, NoPageFaultWhileItIsHeld)
{
    if (INSTRUMENTED)
        GTEST_SKIP();
    const Region region;
    long start = 0;
    after_lock = [&] { start = faults(); };
    before_unlock = [&] { _exit(static_cast<int>(std::min(faults() - start, 98L))); };
    for (int i = 0; i < 20; i++)
        EXPECT_EQ(snapshot_apart(region), 0);
    after_lock = nullptr;
    before_unlock = nullptr;
}

TEST(Lock, NoSystemCallWhileItIsHeld)
{
    const Region region;
    // In strict mode the kernel kills at any system call but the plain exit.
    after_lock = [] { prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT); };
    before_unlock = [] { syscall(SYS_exit, 0); };
    EXPECT_EQ(snapshot_apart(region), 0);
    before_unlock = [] { syscall(SYS_getppid), syscall(SYS_exit, 0); };
    EXPECT_EQ(snapshot_apart(region), -SIGKILL); // the check can fail
    after_lock = nullptr;
    before_unlock = nullptr;
}

} // namespace
