#include "camera_lock.h"

#ifdef PATH_LOCK_IS_PTHREAD_MUTEX

void camera_lock(PathLock *lock)
{
    pthread_mutex_lock(&lock->mutex);
}

#else

#include <atomic>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

void camera_lock(PathLock *lock)
{
    if (path_trylock(lock))
        return;
    // From here on the lock is taken as contended: others may have begun to queue meanwhile.
    constexpr uint32_t FREE = 0;
    constexpr uint32_t CONTENDED = 2;
    const std::atomic_ref<uint32_t> word(lock->word);
    while (word.exchange(CONTENDED, std::memory_order_acquire) != FREE)
        syscall(SYS_futex, &lock->word, FUTEX_WAIT, CONTENDED, nullptr, nullptr, 0);
}

#endif
