// The promise to the camera: its lock is never queued for, is held for one copy and nothing else,
// and is never left behind.
#include "camera_lock.h"
#include "harness.h"
#include "lock_probe.h"
#include "sr_ctrl.h"
#include "sr_device.h"
#include "vorda.h"

#include <array>
#include <atomic>
#include <bit>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/futex.h>
#include <linux/seccomp.h>
#include <string_view>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

// The linker puts this between the product and the system: the clock of the wait.
extern "C" {
int __real_nanosleep(const timespec *time, timespec *rest);
int __wrap_nanosleep(const timespec *time, timespec *rest);
}

namespace
{

// What happens in place of a nap.
std::function<void(const timespec &)> at_nap;

} // namespace

int __wrap_nanosleep(const timespec *time, timespec *rest)
{
    if (!at_nap)
        return __real_nanosleep(time, rest);
    at_nap(*time);
    return 0;
}

namespace
{

// Sanitizers have pages of their own; an emulator has those and its own system calls.
#if defined(__SANITIZE_ADDRESS__) || defined(PATH_LOCK_IS_PTHREAD_MUTEX)
constexpr bool BARE = false;
#elif defined(__has_feature)
constexpr bool BARE = !__has_feature(address_sanitizer);
#else
constexpr bool BARE = true;
#endif

constexpr uint32_t PROCESS_SHARED = 0x80;

// The six words of the lock: whether it is taken, a count, its owner, its kind, users, spins.
using Words = std::array<uint32_t, 6>;

Words words(const PathLock &lock)
{
    return std::bit_cast<Words>(lock);
}

PathLock lock_of(const Words &words)
{
    return std::bit_cast<PathLock>(words);
}

TEST(PathLock, IsTakenWhenFreeAndUntouchedOtherwise)
{
    const Words free = {0, 0, 0, PROCESS_SHARED, 0, 0};
    PathLock lock = lock_of(free);
    ASSERT_TRUE(path_trylock(&lock));
    EXPECT_EQ(words(lock)[0], 1U);
    const Words held = words(lock);
    EXPECT_FALSE(path_trylock(&lock));
    EXPECT_EQ(words(lock), held);
    path_unlock(&lock);
    EXPECT_EQ(words(lock), free);
}

TEST(PathLock, ItsReleaseWakesACameraThatQueues)
{
    static PathLock lock = lock_of({0, 0, 0, PROCESS_SHARED, 0, 0});
    static std::atomic<bool> taken = false;
    ASSERT_TRUE(path_trylock(&lock));
    std::thread([] {
        camera_lock(&lock);
        taken = true;
    }).detach();
    EXPECT_TRUE(eventually(10000, [] { return words(lock)[0] == 2; }));
    EXPECT_FALSE(taken);
    path_unlock(&lock);
    EXPECT_TRUE(eventually(10000, [] { return taken.load(); }));
    EXPECT_NE(words(lock)[0], 0U);
}

#ifdef PATH_LOCK_IS_PTHREAD_MUTEX
TEST(PathLock, StaysUsableAfterItsOwnerDied)
{
    constexpr uint32_t ROBUST = 0x10;
    PathLock lock = lock_of({FUTEX_OWNER_DIED, 0, 4711, PROCESS_SHARED | ROBUST, 1, 0});
    EXPECT_TRUE(path_trylock(&lock));
    path_unlock(&lock);
    EXPECT_EQ(words(lock)[0], 0U);
    EXPECT_EQ(words(lock)[2], 0U); // no owner, in place of the mark of an unusable mutex
    EXPECT_EQ(pthread_mutex_trylock(&lock.mutex), 0);
}
#endif

// What a snapshot in a process of its own left behind.
struct Apart {
    int status;    // as in Result; 99: the snapshot returned
    uint32_t word; // of the path's lock
};

constexpr int RETURNED = 99;

// Takes a snapshot in a fresh process, after a preparation there. A lock that is held is released
// at its third nap.
Apart snapshot_apart(
    Region &region, const std::function<void()> &prepare = [] {})
{
    PathLock *lock = &region->path[0].lock;
    const PathLock free = lock_of({0, 0, 0, PROCESS_SHARED, 0, 0});
    fflush(stdout);
    const pid_t pid = fork();
    if (pid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        alarm(60); // it may wait for ever
        dup2(open("/dev/null", O_WRONLY), 1);
        setenv(SR_REGION_ENV, region.file().c_str(), 1);
        auto *ctx = new DipPathCtx; // its pages are not there yet
        at_nap = [&, naps = 0](const timespec &) mutable {
            if (++naps == 3)
                *lock = free;
        };
        prepare();
        get_dip_ctx({.dev = 0, .path = 0, .dummy1 = 0x80, .dummy0 = 0x80}, ctx);
        _exit(RETURNED);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    const uint32_t word = words(*lock)[0];
    *lock = free;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), word};
}

class Snapshot : public ::testing::Test
{
protected:
    ~Snapshot() override
    {
        after_lock = nullptr;
        before_unlock = nullptr;
        at_nap = nullptr;
        sr_observer = nullptr;
        SR_closeShm();
        unsetenv(SR_REGION_ENV);
        unsetenv(SR_FAIL_ENV);
    }

    // Takes a snapshot of path 0 in this process.
    Result take(const std::string &failures = "")
    {
        setenv(SR_REGION_ENV, region_.file().c_str(), 1);
        setenv(SR_FAIL_ENV, failures.c_str(), 1);
        logged.clear();
        return captured([this] {
            return get_dip_ctx({.dev = 0, .path = 0, .dummy1 = 0x80, .dummy0 = 0x80}, &ctx_);
        });
    }

    bool mapped() const
    {
        const std::string maps = read_file("/proc/self/maps");
        const size_t ours = maps.find(region_.file()); // the mapping of the test itself
        return maps.find(region_.file(), ours + 1) != std::string::npos;
    }

    Region region_;
    DipPathCtx ctx_;
};

TEST_F(Snapshot, IsWhatTheRegionHoldsUnderTheLock)
{
    DipPathCtx *dip = &region_->path[0].dip;
    *dip = *snapshot_of("zero");
    const auto later = snapshot_of("distinct"); // after the rehearsal
    after_lock = [&] { *dip = *later; };
    sigset_t mask;
    sigemptyset(&mask);
    sigaddset(&mask, SIGUSR2); // it begins with this signal held back, and ends with it
    sigprocmask(SIG_SETMASK, &mask, nullptr);
    EXPECT_EQ(take().status, 0);
    sigemptyset(&mask);
    sigprocmask(SIG_SETMASK, &mask, &mask);
    EXPECT_EQ(sigismember(&mask, SIGUSR2), 1);
    EXPECT_EQ(sigismember(&mask, SIGUSR1), 0);
    const auto bytes = [](const DipPathCtx *ctx) {
        return std::string_view(reinterpret_cast<const char *>(ctx), sizeof(*ctx));
    };
    EXPECT_TRUE(bytes(&ctx_) == bytes(later.get()));
    EXPECT_FALSE(mapped());
    EXPECT_EQ(logged, Log());
}

TEST_F(Snapshot, PrintsTheIndexLineBeforeItOpensTheDevice)
{
    static off_t printed = 0;
    sr_observer = [](const char *step) {
        if (step == std::string("open 2"))
            printed = lseek(STDOUT_FILENO, 0, SEEK_CUR);
    };
    EXPECT_EQ(take().out, "dev_idx = 0, path_idx = 0\n");
    EXPECT_EQ(printed, 26);
}

TEST_F(Snapshot, ClosesWhatItOpenedAndNothingElse)
{
    region_->descptr.path[0].state = 0;
    EXPECT_EQ(take().status, 1);
    EXPECT_FALSE(mapped());
    EXPECT_EQ(logged, Log());

    EXPECT_EQ(take("open:2").status, 1);
    EXPECT_EQ(logged.size(), 1U); // that it cannot open; nothing about a closing
    EXPECT_EQ(take("complete:5").status, 1);
    EXPECT_TRUE(mapped());
    EXPECT_EQ(logged, Log());
}

TEST_F(Snapshot, ASignalUnderTheLockTakesEffectAfterIt)
{
    for (const int number :
         {SIGHUP, SIGINT, SIGQUIT, SIGUSR1, SIGPIPE, SIGALRM, SIGTERM, SIGXCPU}) {
        for (std::function<void()> *moment : {&after_lock, &before_unlock}) {
            *moment = [number] { raise(number); };
            const Apart apart = snapshot_apart(region_, [number] { signal(number, SIG_DFL); });
            *moment = nullptr;
            EXPECT_EQ(apart.status, -number);
            EXPECT_EQ(apart.word, 0U) << number;
        }
    }
}

TEST_F(Snapshot, NoPageFaultUnderTheLock)
{
    if (!BARE)
        GTEST_SKIP();
    const auto faults = [] {
        rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_minflt + usage.ru_majflt;
    };
    long start = 0;
    after_lock = [&] { start = faults(); };
    before_unlock = [&] { _exit(static_cast<int>(std::min(faults() - start, 98L))); };
    for (int i = 0; i < 20; i++) {
        if (i % 2 == 1)
            camera_lock(&region_->path[0].lock); // the first tries fail
        EXPECT_EQ(snapshot_apart(region_).status, 0);
    }
}

TEST_F(Snapshot, NoSystemCallUnderTheLock)
{
    if (!BARE)
        GTEST_SKIP();
    // In strict mode the kernel kills at any system call but the plain exit.
    after_lock = [] { prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT); };
    before_unlock = [] { syscall(SYS_exit, 0); };
    EXPECT_EQ(snapshot_apart(region_).status, 0);
    before_unlock = [] { syscall(SYS_getppid), syscall(SYS_exit, 0); };
    EXPECT_EQ(snapshot_apart(region_).status, -SIGKILL); // the check can fail
}

TEST_F(Snapshot, NapsBetweenItsTries)
{
    PathLock *lock = &region_->path[0].lock;
    camera_lock(lock);
    int naps = 0;
    at_nap = [&](const timespec &nap) {
        EXPECT_GE(nap.tv_nsec, 1000000);
        if (++naps == 100)
            path_unlock(lock);
    };
    lock_tries = 0;
    EXPECT_EQ(take().status, 0);
    EXPECT_LE(lock_tries, naps + 4); // before the first nap it is quicker
}

// The kernel refuses to wait on pages that it cannot name, as some drivers map them.
TEST_F(Snapshot, TheWaitNeedsNoFutex)
{
    if (!BARE)
        GTEST_SKIP();
    const auto kill_at_futex = [] {
        sock_filter program[] = {
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_futex, 0, 1),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        };
        const sock_fprog filter = {.len = std::size(program), .filter = program};
        prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter);
    };
    camera_lock(&region_->path[0].lock);
    EXPECT_EQ(snapshot_apart(region_, kill_at_futex).status, RETURNED);
    camera_lock(&region_->path[0].lock);
    EXPECT_EQ(snapshot_apart(region_, [&] { kill_at_futex(), camera_lock(&region_->path[0].lock); })
                  .status,
              -SIGSYS); // the check can fail
}

} // namespace
