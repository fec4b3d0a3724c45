// Taking and releasing the lock of an input path record.
#include "path_lock.h"

#ifdef PATH_LOCK_IS_PTHREAD_MUTEX

void path_lock(PathLock *lock)
{
    pthread_mutex_lock(lock);
}

void path_unlock(PathLock *lock)
{
    pthread_mutex_unlock(lock);
}

#else

#include <atomic>
#include <climits>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

constexpr uint32_t FREE = 0;
constexpr uint32_t TAKEN = 1;
constexpr uint32_t CONTENDED = 2;

// The waiters may be other processes, so the futex is not a private one.
void futex(uint32_t *word, int operation, uint32_t value)
{
    syscall(SYS_futex, word, operation, value, nullptr, nullptr, 0);
}

} // namespace

void path_lock(PathLock *lock)
{
    const std::atomic_ref<uint32_t> word(lock->word);
    uint32_t seen = FREE;
    if (word.compare_exchange_strong(seen, TAKEN, std::memory_order_acquire))
        return;
    // From here on the lock is taken as contended: others may have begun to wait meanwhile.
    while (word.exchange(CONTENDED, std::memory_order_acquire) != FREE)
        futex(&lock->word, FUTEX_WAIT, CONTENDED);
}

void path_unlock(PathLock *lock)
{
    const std::atomic_ref<uint32_t> word(lock->word);
    if (word.exchange(FREE, std::memory_order_release) == CONTENDED)
        futex(&lock->word, FUTEX_WAKE, 1);
}

#endif
