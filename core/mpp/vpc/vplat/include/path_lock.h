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

using PathLock = pthread_mutex_t;
static_assert(offsetof(PathLock, __data.__lock) == 0);
static_assert(offsetof(PathLock, __data.__count) == 4);
static_assert(offsetof(PathLock, __data.__owner) == 8);
static_assert(offsetof(PathLock, __data.__kind) == 12);
static_assert(offsetof(PathLock, __data.__nusers) == 16);

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

// Takes the lock, waiting for as long as another thread or process holds it.
void path_lock(PathLock *lock);

// Releases the lock, which the caller holds, and wakes one waiter.
void path_unlock(PathLock *lock);

// Holds a path's lock for the time of a scope.
class PathLockGuard
{
public:
    explicit PathLockGuard(PathLock *lock) : lock_(lock) { path_lock(lock_); }
    ~PathLockGuard() { path_unlock(lock_); }
    PathLockGuard(const PathLockGuard &) = delete;
    PathLockGuard &operator=(const PathLockGuard &) = delete;

private:
    PathLock *lock_;
};
