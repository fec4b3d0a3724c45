// Looks into the time between the lock and the unlock of a path. The linker puts the probe between
// the product and its lock: --wrap=_Z12path_trylockP8PathLock --wrap=_Z11path_unlockP8PathLock.
#pragma once

#include <functional>

extern int lock_tries; // so far
extern std::function<void()> after_lock;
extern std::function<void()> before_unlock;
