// One copy under a path's lock, and what makes it cheap for the camera.
#include "path_copy.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstring>
#include <ctime>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

// Holds back every signal that can be held back. A process that a signal ends or stops between
// lock and unlock would leave the camera's path locked for ever.
class SignalHold
{
public:
    // cppcheck-suppress uninitMemberVar // the kernel fills it
    SignalHold() { set_mask(~KernelMask{0}, &before_); }
    ~SignalHold() { set_mask(before_, nullptr); }
    SignalHold(const SignalHold &) = delete;
    SignalHold &operator=(const SignalHold &) = delete;

private:
    using KernelMask = uint64_t;

    // Not by the C library, which leaves out the signals that it uses itself, 32 and 33. Anybody
    // can send those too, and they end the process.
    static void set_mask(KernelMask mask, KernelMask *before)
    {
        syscall(SYS_rt_sigprocmask, SIG_SETMASK, &mask, before, sizeof(mask));
    }

    KernelMask before_;
};

// Puts the process before all others as long as it lives, where that is permitted.
class HighestPriority
{
public:
    HighestPriority() : policy_(ask(SYS_sched_getscheduler))
    {
        const int kept = policy_ & SCHED_RESET_ON_FORK;
        constexpr sched_param highest = {.sched_priority = 99}; // of Linux
        // A deadline could not be given back by the same calls, and is as good.
        raised_ = policy_ >= 0 && (policy_ & ~SCHED_RESET_ON_FORK) != SCHED_DEADLINE &&
                  ask(SYS_sched_getparam, &before_) == 0 &&
                  sched_setscheduler(0, SCHED_FIFO | kept, &highest) == 0;
    }
    ~HighestPriority()
    {
        if (raised_)
            sched_setscheduler(0, policy_, &before_);
    }
    HighestPriority(const HighestPriority &) = delete;
    HighestPriority &operator=(const HighestPriority &) = delete;

private:
    // By its number: the C library's names for it would each add a symbol, and the binary a page.
    static int ask(long what, sched_param *answer = nullptr)
    {
        return static_cast<int>(syscall(what, 0, answer));
    }

    int policy_;
    sched_param before_;
    bool raised_;
};

// Brings every page of both sides into memory, at the priority that the process has: the faults of
// a first copy take several times as long as the copy.
void bring_pages_in(const PathCopy &copy)
{
    constexpr size_t SMALLEST_PAGE = 4096;
    const auto *from = static_cast<const volatile char *>(copy.from);
    auto *to = static_cast<volatile char *>(copy.to);
    for (size_t at = 0; at < copy.size; at += SMALLEST_PAGE)
        to[at] = from[at];
    to[copy.size - 1] = from[copy.size - 1];
}

} // namespace

bool path_copy(const PathCopy &copy)
{
    // Looked at first, since all that follows is much dearer, and in vain.
    if (path_lock_is_held(copy.lock))
        return false;
    bring_pages_in(copy);

    const SignalHold hold;
    const HighestPriority priority;

    // A rehearsal, whose bytes the real copy overwrites: it brings source, destination and the code
    // of the copy into the caches, so that the camera waits for nothing but one warm copy. No
    // system call stands between the two, since it would cool them.
    memcpy(copy.to, copy.from, copy.size);
    std::atomic_signal_fence(std::memory_order_seq_cst); // the compiler must not drop it

    const PathLockAnswer answer = path_trylock(copy.lock);
    if (answer == PathLockAnswer::HELD)
        return false;
    memcpy(copy.to, copy.from, copy.size);
    if (answer == PathLockAnswer::TAKEN)
        path_unlock(copy.lock);
    return true;
}

int PathWait::pause()
{
    constexpr int LONGEST_MS = 10;
    constexpr long MS = 1000000;
    const timespec time = {.tv_sec = 0, .tv_nsec = next_ms_ * MS};
    nanosleep(&time, nullptr);
    sum_ms_ += next_ms_;
    next_ms_ = std::min(2 * next_ms_, LONGEST_MS);
    return sum_ms_;
}
