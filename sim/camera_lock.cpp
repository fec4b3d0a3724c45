#include "camera_lock.h"

#ifdef PATH_LOCK_IS_PTHREAD_MUTEX

void camera_lock(PathLock *lock)
{
    pthread_mutex_lock(path_mutex(lock));
}

#else

#include <atomic>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

void camera_lock(PathLock *lock)
{
    if (path_trylock(lock) == PathLockAnswer::TAKEN)
        return;
    // From here on the lock is taken as queued for: others may have begun to queue meanwhile.
    const std::atomic_ref<uint32_t> word(lock->word);
    while (word.exchange(PATH_LOCK_QUEUED, std::memory_order_acquire) != PATH_LOCK_FREE)
        syscall(SYS_futex, &lock->word, FUTEX_WAIT, PATH_LOCK_QUEUED, nullptr, nullptr, 0);
}

#endif
