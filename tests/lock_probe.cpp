#include "lock_probe.h"

#include "path_lock.h"

int lock_tries;
std::function<void()> after_lock;
std::function<void()> before_unlock;

PathLockAnswer real_path_trylock(PathLock *lock) __asm__("__real__Z12path_trylockP8PathLock");
void real_path_unlock(PathLock *lock) __asm__("__real__Z11path_unlockP8PathLock");
PathLockAnswer wrap_path_trylock(PathLock *lock) __asm__("__wrap__Z12path_trylockP8PathLock");
void wrap_path_unlock(PathLock *lock) __asm__("__wrap__Z11path_unlockP8PathLock");

PathLockAnswer wrap_path_trylock(PathLock *lock)
{
    lock_tries++;
    const PathLockAnswer answer = real_path_trylock(lock);
    if (answer == PathLockAnswer::TAKEN && after_lock)
        after_lock();
    return answer;
}

void wrap_path_unlock(PathLock *lock)
{
    if (before_unlock)
        before_unlock();
    real_path_unlock(lock);
}
