// Taking and releasing the lock of an input path record.
#include "path_lock.h"

#include <atomic>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

std::atomic_ref<uint32_t> word_of(PathLock *lock)
{
    return std::atomic_ref<uint32_t>(lock->word);
}

// Those who queue may be other processes, so the futex is not a private one.
void wake_one(PathLock *lock)
{
    syscall(SYS_futex, &lock->word, FUTEX_WAKE, 1, nullptr, nullptr, 0);
}

} // namespace

bool path_lock_is_held(const PathLock *lock)
{
    constexpr uint32_t CEILING_BITS = 0xFFF80000;
    const volatile PathLock *seen = lock; // others change it
    uint32_t word = seen->word;
    if ((seen->kind & PATH_LOCK_CEILING) != 0)
        word &= ~CEILING_BITS;
    // A dead owner's lock is to be had.
    return word != PATH_LOCK_FREE && (word & FUTEX_OWNER_DIED) == 0;
}

#ifdef PATH_LOCK_IS_PTHREAD_MUTEX

#include <cerrno>

namespace
{

// The C library refuses a robust lock that nobody can recover, but leaves the caller in it as its
// owner.
void leave_no_mark(PathLock *lock)
{
    if ((word_of(lock).exchange(PATH_LOCK_FREE) & FUTEX_WAITERS) != 0)
        wake_one(lock);
}

} // namespace

PathLockAnswer path_trylock(PathLock *lock)
{
    const uint32_t count = lock->count;
    switch (pthread_mutex_trylock(path_mutex(lock))) {
    case EBUSY:
        return PathLockAnswer::HELD;
    case EOWNERDEAD:
        // Unlocked as it is, it would be unusable for the camera for ever.
        pthread_mutex_consistent(path_mutex(lock));
        return PathLockAnswer::TAKEN;
    case 0:
        return PathLockAnswer::TAKEN;
    case ENOTRECOVERABLE:
        leave_no_mark(lock);
        lock->count = count;
        return PathLockAnswer::REFUSED;
    default:
        return PathLockAnswer::REFUSED;
    }
}

void path_unlock(PathLock *lock)
{
    pthread_mutex_unlock(path_mutex(lock));
}

#else

PathLockAnswer path_trylock(PathLock *lock)
{
    uint32_t seen = PATH_LOCK_FREE;
    return word_of(lock).compare_exchange_strong(seen, PATH_LOCK_TAKEN, std::memory_order_acquire)
               ? PathLockAnswer::TAKEN
               : PathLockAnswer::HELD;
}

void path_unlock(PathLock *lock)
{
    if (word_of(lock).exchange(PATH_LOCK_FREE, std::memory_order_release) == PATH_LOCK_QUEUED)
        wake_one(lock);
}

#endif
