#include "lock_probe.h"

#include "path_lock.h"

std::function<void()> after_lock;
std::function<void()> before_unlock;

void real_path_lock(PathLock *lock) __asm__("__real__Z9path_lockP8PathLock");
void real_path_unlock(PathLock *lock) __asm__("__real__Z11path_unlockP8PathLock");
void wrap_path_lock(PathLock *lock) __asm__("__wrap__Z9path_lockP8PathLock");
void wrap_path_unlock(PathLock *lock) __asm__("__wrap__Z11path_unlockP8PathLock");

void wrap_path_lock(PathLock *lock)
{
    real_path_lock(lock);
    if (after_lock)
        after_lock();
}

void wrap_path_unlock(PathLock *lock)
{
    if (before_unlock)
        before_unlock();
    real_path_unlock(lock);
}
