// The promise to the camera: its lock is never queued for, is held for one copy and nothing else,
// and is never left behind.
#include "camera_lock.h"
#include "harness.h"
#include "lock_probe.h"
#include "path_copy.h"
#include "sr_ctrl.h"
#include "sr_device.h"
#include "vorda.h"

#include <array>
#include <atomic>
#include <bit>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/futex.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sched.h>
#include <string_view>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

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
    PathLock lock = free_path_lock(PATH_LOCK_SHARED);
    const Words free = words(lock);
    EXPECT_FALSE(path_lock_is_held(&lock));
    ASSERT_EQ(path_trylock(&lock), PathLockAnswer::TAKEN);
    EXPECT_EQ(lock.word, PATH_LOCK_TAKEN);
    const Words held = words(lock);
    EXPECT_TRUE(path_lock_is_held(&lock));
    EXPECT_EQ(path_trylock(&lock), PathLockAnswer::HELD);
    EXPECT_EQ(words(lock), held);
    path_unlock(&lock);
    EXPECT_EQ(words(lock), free);
}

TEST(PathLock, ItsReleaseWakesACameraThatQueues)
{
    static PathLock lock = free_path_lock(PATH_LOCK_SHARED);
    static std::atomic<bool> taken = false;
    ASSERT_EQ(path_trylock(&lock), PathLockAnswer::TAKEN);
    std::thread([] {
        camera_lock(&lock);
        taken = true;
    }).detach();
    EXPECT_TRUE(eventually([] { return words(lock)[0] == PATH_LOCK_QUEUED; }));
    EXPECT_FALSE(taken);
    path_unlock(&lock);
    EXPECT_TRUE(eventually([] { return taken.load(); }));
    EXPECT_NE(words(lock)[0], 0U);
}

#ifdef PATH_LOCK_IS_PTHREAD_MUTEX
bool copy_under(PathLock *lock)
{
    const int from = 1;
    int to = 0;
    return path_copy({.lock = lock, .from = &from, .to = &to, .size = sizeof(from)}) && to == 1;
}

TEST(PathLock, StaysUsableAfterItsOwnerDied)
{
    PathLock lock = free_path_lock(PATH_LOCK_SHARED | PATH_LOCK_ROBUST);
    lock.word = FUTEX_OWNER_DIED;
    lock.owner = 4711;
    EXPECT_TRUE(copy_under(&lock));
    EXPECT_EQ(lock.word, PATH_LOCK_FREE);
    EXPECT_EQ(lock.owner, 0U); // in place of the mark of an unusable mutex
    EXPECT_EQ(pthread_mutex_trylock(path_mutex(&lock)), 0);
}

TEST(PathLock, IsReleasedOnlyWhenItWasTaken)
{
    constexpr uint32_t CEILING_50 = 50 << 19;
    constexpr uint32_t UNRECOVERABLE = 0x7FFFFFFE; // as an owner
    constexpr uint32_t ROBUST = PATH_LOCK_SHARED | PATH_LOCK_ROBUST;
    constexpr uint32_t CEILING = PATH_LOCK_SHARED | PATH_LOCK_CEILING;
    const std::pair<Words, bool> rows[] = {
        {{1, 0, 7, PATH_LOCK_SHARED, 1, 0}, false},
        {{CEILING_50, 0, 0, CEILING, 0, 0}, true},
        {{CEILING_50 | 1, 0, 7, CEILING, 1, 0}, false},
        {{0, 3, UNRECOVERABLE, ROBUST, 1, 0}, true},
    };
    for (const auto &[before, copied] : rows) {
        PathLock lock = lock_of(before);
        EXPECT_EQ(copy_under(&lock), copied);
        EXPECT_EQ(words(lock), before);
    }
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
    const PathLock free = free_path_lock(PATH_LOCK_SHARED);
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

std::string_view bytes_of(const DipPathCtx *ctx)
{
    return {reinterpret_cast<const char *>(ctx), sizeof(*ctx)};
}

class PathSnapshot : public ::testing::Test
{
protected:
    ~PathSnapshot() override
    {
        after_lock = nullptr;
        before_unlock = nullptr;
        at_nap = nullptr;
        SR_closeShm();
        unsetenv(SR_REGION_ENV);
    }

    // Takes a snapshot of path 0 in this process.
    Result take()
    {
        setenv(SR_REGION_ENV, region_.file().c_str(), 1);
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

TEST_F(PathSnapshot, IsWhatTheRegionHoldsUnderTheLock)
{
    DipPathCtx *dip = &region_->path[0].dip;
    *dip = *snapshot_of("zero");
    const auto later = snapshot_of("distinct"); // after the rehearsal
    after_lock = [&] { *dip = *later; };
    before_unlock = [&] { *dip = *snapshot_of("ones"); };
    sigset_t mask;
    sigemptyset(&mask);
    sigaddset(&mask, SIGUSR2); // it begins with this signal held back, and ends with it
    sigprocmask(SIG_SETMASK, &mask, nullptr);
    EXPECT_EQ(take().status, 0);
    sigemptyset(&mask);
    sigprocmask(SIG_SETMASK, &mask, &mask);
    EXPECT_EQ(sigismember(&mask, SIGUSR2), 1);
    EXPECT_EQ(sigismember(&mask, SIGUSR1), 0);
    EXPECT_TRUE(bytes_of(&ctx_) == bytes_of(later.get()));
    EXPECT_FALSE(mapped());
    EXPECT_EQ(logged, Log());
}

TEST_F(PathSnapshot, ClosesWhatItOpenedWhereThereIsNoPath)
{
    region_->descptr.path[0].state = 0;
    EXPECT_EQ(take().status, 1);
    EXPECT_FALSE(mapped());
    EXPECT_EQ(logged, Log());
}

TEST_F(PathSnapshot, ASignalUnderTheLockTakesEffectAfterIt)
{
    std::vector<int> numbers = {SIGHUP,  SIGINT,  SIGQUIT, SIGUSR1,
                                SIGPIPE, SIGALRM, SIGTERM, SIGXCPU};
    if (BARE) // the C library's own two, which an emulator needs too
        numbers.insert(numbers.end(), {32, 33});
    for (const int number : numbers) {
        for (std::function<void()> *moment : {&after_lock, &before_unlock}) {
            *moment = [number] { syscall(SYS_tgkill, getpid(), gettid(), number); };
            const Apart apart = snapshot_apart(region_, [number] {
                const unsigned long by_default[4] = {}; // the kernel's struct sigaction
                syscall(SYS_rt_sigaction, number, by_default, nullptr, 8);
            });
            *moment = nullptr;
            EXPECT_EQ(apart.status, -number);
            EXPECT_EQ(apart.word, 0U) << number;
        }
    }
}

// Policy, priority and niceness of this process.
using Priority = std::array<int, 3>;

Priority priority()
{
    sched_param param = {};
    sched_getparam(0, &param);
    return {sched_getscheduler(0), param.sched_priority, getpriority(PRIO_PROCESS, 0)};
}

TEST_F(PathSnapshot, NobodyPreemptsItUnderTheLock)
{
    const int highest = sched_get_priority_max(SCHED_FIFO);
    const sched_param ordinary = {.sched_priority = 0};
    const sched_param before_all = {.sched_priority = highest};
    if (sched_setscheduler(0, SCHED_FIFO, &before_all) != 0)
        GTEST_SKIP() << "this process may not have a real-time priority";
    sched_setscheduler(0, SCHED_BATCH | SCHED_RESET_ON_FORK, &ordinary);
    const Priority before = priority();
    Priority inside = {};
    after_lock = [&] { inside = priority(); };
    EXPECT_EQ(take().status, 0);
    EXPECT_EQ(inside, (Priority{SCHED_FIFO | SCHED_RESET_ON_FORK, highest, before[2]}));
    EXPECT_EQ(priority(), before);
#ifndef PATH_LOCK_IS_PTHREAD_MUTEX
    // A lock that is to be had only at first sight.
    PathLock lock = lock_of({FUTEX_OWNER_DIED, 0, 0, 0, 0, 0});
    const PathCopy copy = {.lock = &lock, .from = &before, .to = &inside, .size = sizeof(before)};
    lock_tries = 0;
    EXPECT_FALSE(path_copy(copy));
    EXPECT_EQ(lock_tries, 1);
    EXPECT_EQ(inside, before); // rehearsed before it tried
    EXPECT_EQ(priority(), before);
#endif
}

TEST_F(PathSnapshot, NoPageFaultUnderTheLock)
{
    if (!BARE)
        GTEST_SKIP();
    const auto faults = [] {
        rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_minflt + usage.ru_majflt;
    };
    long start = 0;
    bool counts = false;
    before_unlock = [&] {
        if (const long end = faults(); counts)
            _exit(static_cast<int>(std::min(end - start, 98L)));
    };
    after_lock = [&] {
        counts = false;  // the camera of this test takes the lock too
        before_unlock(); // the probe's own code, of which a fresh process has no page yet
        start = faults();
        counts = true;
    };
    for (int i = 0; i < 20; i++) {
        if (i % 2 == 1)
            camera_lock(&region_->path[0].lock); // the first tries fail
        EXPECT_EQ(snapshot_apart(region_).status, 0);
    }
}

TEST_F(PathSnapshot, NoSystemCallUnderTheLock)
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

TEST_F(PathSnapshot, WaitsWithoutTryingInPausesThatGrow)
{
    camera_lock(&region_->path[0].lock);
    std::vector<long> naps;
    const auto nothing = std::make_unique<DipPathCtx>();
    memset(static_cast<void *>(nothing.get()), 0xA5, sizeof(*nothing));
    ctx_ = *nothing;
    at_nap = [&](const timespec &nap) {
        naps.push_back(nap.tv_nsec / 1000);
        EXPECT_EQ(lock_tries, 0);
        EXPECT_TRUE(bytes_of(&ctx_) == bytes_of(nothing.get())); // not rehearsed either
        if (naps.size() == 6)
            path_unlock(&region_->path[0].lock);
    };
    lock_tries = 0;
    EXPECT_EQ(take().status, 0);
    EXPECT_EQ(naps, (std::vector<long>{1000, 2000, 4000, 8000, 10000, 10000}));
    EXPECT_EQ(lock_tries, 1);
}

TEST_F(PathSnapshot, TellsATerminalOfALongWaitAndEndsWithItsReader)
{
    PathLock *lock = &region_->path[0].lock;
    camera_lock(lock);
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_EQ(unlockpt(terminal), 0);
    const int tool_side = open(ptsname(terminal), O_RDWR | O_NOCTTY | O_CLOEXEC);
    long ms = 0;
    long told_after = 0;
    at_nap = [&](const timespec &nap) {
        dup2(tool_side, STDERR_FILENO);
        pollfd message = {.fd = terminal, .events = POLLIN, .revents = 0};
        if (told_after == 0 && poll(&message, 1, 0) == 1)
            told_after = ms;
        ms += nap.tv_nsec / 1000000;
        if (ms > 9000)
            path_unlock(lock);
    };
    EXPECT_EQ(take().status, 0);
    EXPECT_GE(told_after, 2000);
    EXPECT_LT(told_after, 2020);
    char message[200] = {};
    EXPECT_GT(read(terminal, message, sizeof(message) - 1), 0);
    EXPECT_STREQ(message, "Waiting: another process holds the lock.\r\n");

    camera_lock(lock);
    int naps = 0;
    at_nap = [&](const timespec &) {
        int ends[2];
        if (++naps == 2 && pipe(ends) == 0) {
            dup2(ends[1], STDOUT_FILENO);
            close(ends[1]);
            close(ends[0]);
        }
        if (naps == 9)
            path_unlock(lock);
    };
    EXPECT_EQ(take().status, 1);
    EXPECT_EQ(naps, 2);
    EXPECT_TRUE(path_lock_is_held(lock));
    EXPECT_FALSE(mapped());
    close(terminal);
    close(tool_side);
}

// The kernel refuses to wait on pages that it cannot name, as some drivers map them.
TEST_F(PathSnapshot, TheWaitNeedsNoFutex)
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
