// The lock at the head of every input path record in the shared region.
//
// It is the 24-byte process-shared mutex of glibc on 32-bit ARM. There it is a pthread_mutex_t and
// is locked as one. A build for any other ABI or C library, whose own mutex is laid out otherwise,
// locks the same words by the same protocol, so that its processes and those of the target exclude
// each other on one region.
#pragma once

#include <cstddef>
#include <cstdint>
#include <pthread.h>

#if defined(__arm__) && defined(__GLIBC__) && !defined(__UCLIBC__)
#define PATH_LOCK_IS_PTHREAD_MUTEX
#endif

struct PathLock {
    uint32_t word;
    uint32_t count;
    uint32_t owner;
    uint32_t kind;
    uint32_t nusers;
    uint32_t spins;
};
static_assert(sizeof(PathLock) == 24);
static_assert(offsetof(PathLock, word) == 0);
static_assert(offsetof(PathLock, kind) == 12);
static_assert(offsetof(PathLock, spins) == 20);

// The word of an ordinary lock. That of a robust one holds the number of its owner's thread, that
// of one with a priority ceiling the ceiling in its upper bits.
inline constexpr uint32_t PATH_LOCK_FREE = 0;
inline constexpr uint32_t PATH_LOCK_TAKEN = 1;
inline constexpr uint32_t PATH_LOCK_QUEUED = 2; // taken, and waited for

// Bits of the kind.
inline constexpr uint32_t PATH_LOCK_ROBUST = 0x10;
inline constexpr uint32_t PATH_LOCK_CEILING = 0x40;
inline constexpr uint32_t PATH_LOCK_SHARED = 0x80; // between processes

// A lock that nobody holds.
constexpr PathLock free_path_lock(uint32_t kind)
{
    return {.word = PATH_LOCK_FREE, .count = 0, .owner = 0, .kind = kind, .nusers = 0, .spins = 0};
}

#ifdef PATH_LOCK_IS_PTHREAD_MUTEX

static_assert(sizeof(pthread_mutex_t) == sizeof(PathLock));
static_assert(alignof(pthread_mutex_t) == alignof(PathLock));
static_assert(offsetof(pthread_mutex_t, __data.__lock) == offsetof(PathLock, word));
static_assert(offsetof(pthread_mutex_t, __data.__count) == offsetof(PathLock, count));
static_assert(offsetof(pthread_mutex_t, __data.__owner) == offsetof(PathLock, owner));
static_assert(offsetof(pthread_mutex_t, __data.__kind) == offsetof(PathLock, kind));
static_assert(offsetof(pthread_mutex_t, __data.__nusers) == offsetof(PathLock, nusers));

// The lock as the C library knows it.
inline pthread_mutex_t *path_mutex(PathLock *lock)
{
    return reinterpret_cast<pthread_mutex_t *>(lock);
}

#endif

enum class PathLockAnswer {
    HELD,    // by another thread or process
    TAKEN,   // by the caller now, who releases it; also from an owner that died
    REFUSED, // by the C library, as for a spoiled lock: not the caller's to release
};

// Takes the lock if it is free and never waits for it. Unless it was taken the lock stays as it
// was, byte for byte. A robust lock whose owner died is made consistent.
//
// Who waits tries again after a pause. Queueing would mark the lock, so that the camera pays a
// system call to wake the waiter, and would need a kernel that can name the pages of the region.
[[nodiscard]] PathLockAnswer path_trylock(PathLock *lock);

// Whether a try would find that another holds the lock. It costs one read, and what it says may be
// over when it is said.
bool path_lock_is_held(const PathLock *lock);

// Releases the lock and, if others queue for it, wakes one of them.
void path_unlock(PathLock *lock);
