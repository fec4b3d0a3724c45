// Taking a path's lock as the camera's processes do.
#pragma once

#include "path_lock.h"

#include <cstdint>
#include <cstring>

// Takes the lock, queueing for it while others hold it. path_unlock releases it.
void camera_lock(PathLock *lock);

// Makes a lock of a copied region free, with no owner and no users; it keeps its kind.
inline void free_lock(PathLock *lock)
{
    constexpr size_t KIND = 3;
    uint32_t words[6] = {};
    static_assert(sizeof(words) == sizeof(*lock));
    memcpy(&words[KIND], reinterpret_cast<char *>(lock) + KIND * sizeof(uint32_t),
           sizeof(uint32_t));
    memcpy(static_cast<void *>(lock), words, sizeof(words));
}
