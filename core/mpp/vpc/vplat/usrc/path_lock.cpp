// Taking and releasing the lock of an input path record.
#include "path_lock.h"

#ifdef PATH_LOCK_IS_PTHREAD_MUTEX

#include <cerrno>

bool path_trylock(PathLock *lock)
{
    const int error = pthread_mutex_trylock(&lock->mutex);
    // Unlocked as it is, it would be unusable for the camera for ever.
    if (error == EOWNERDEAD)
        pthread_mutex_consistent(&lock->mutex);
    return error != EBUSY;
}

void path_unlock(PathLock *lock)
{
    pthread_mutex_unlock(&lock->mutex);
}

#else

#include <atomic>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

constexpr uint32_t FREE = 0;
constexpr uint32_t TAKEN = 1;
constexpr uint32_t CONTENDED = 2;

} // namespace

bool path_trylock(PathLock *lock)
{
    uint32_t seen = FREE;
    return std::atomic_ref<uint32_t>(lock->word)
        .compare_exchange_strong(seen, TAKEN, std::memory_order_acquire);
}

void path_unlock(PathLock *lock)
{
    const std::atomic_ref<uint32_t> word(lock->word);
    // Those who queue may be other processes, so the futex is not a private one.
    if (word.exchange(FREE, std::memory_order_release) == CONTENDED)
        syscall(SYS_futex, &lock->word, FUTEX_WAKE, 1, nullptr, nullptr, 0);
}

#endif
