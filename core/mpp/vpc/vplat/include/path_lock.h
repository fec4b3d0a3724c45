// The lock at the head of every input path record in the shared region.
//
// It is the 24-byte process-shared mutex of glibc on 32-bit ARM. There it is a pthread_mutex_t and
// is locked as one. A build for any other ABI or C library, whose own mutex is laid out otherwise,
// locks the same bytes by the same protocol, so that its processes and those of the target exclude
// each other on one region.
#pragma once

#include <cstddef>
#include <cstdint>
#include <pthread.h>

#if defined(__arm__) && defined(__GLIBC__) && !defined(__UCLIBC__)
#define PATH_LOCK_IS_PTHREAD_MUTEX
#endif

#ifdef PATH_LOCK_IS_PTHREAD_MUTEX

struct PathLock {
    pthread_mutex_t mutex;
};
static_assert(offsetof(PathLock, mutex.__data.__lock) == 0);
static_assert(offsetof(PathLock, mutex.__data.__count) == 4);
static_assert(offsetof(PathLock, mutex.__data.__owner) == 8);
static_assert(offsetof(PathLock, mutex.__data.__kind) == 12);
static_assert(offsetof(PathLock, mutex.__data.__nusers) == 16);

#else

struct PathLock {
    uint32_t word; // 0: free, 1: taken, 2: taken and waited for
    uint32_t count;
    uint32_t owner;
    uint32_t kind;
    uint32_t nusers;
    uint32_t spins;
};
static_assert(offsetof(PathLock, word) == 0);
static_assert(offsetof(PathLock, kind) == 12);
static_assert(offsetof(PathLock, spins) == 20);

#endif

static_assert(sizeof(PathLock) == 24);

// Takes the lock if it is free and never waits for it. Returns false when another thread or process
// holds it; the lock then stays as it was, byte for byte. Whatever else the C library answers, to a
// spoiled lock say, counts as taken and is released by the caller. A robust lock whose owner died
// is taken and made consistent.
//
// Who waits tries again after a pause. Queueing would mark the lock, so that the camera pays a
// system call to wake the waiter, and would need a kernel that can name the pages of the region.
[[nodiscard]] bool path_trylock(PathLock *lock);

// Releases the lock and, if others queue for it, wakes one of them.
void path_unlock(PathLock *lock);

// Holds a path's lock for the time of a scope, if it was free.
class PathLockGuard
{
public:
    explicit PathLockGuard(PathLock *lock) : lock_(path_trylock(lock) ? lock : nullptr) {}
    ~PathLockGuard()
    {
        if (lock_ != nullptr)
            path_unlock(lock_);
    }
    PathLockGuard(const PathLockGuard &) = delete;
    PathLockGuard &operator=(const PathLockGuard &) = delete;

    explicit operator bool() const { return lock_ != nullptr; }

private:
    PathLock *lock_;
};
