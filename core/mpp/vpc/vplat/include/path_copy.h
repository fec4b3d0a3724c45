// Copying what an input path's lock guards, so that the camera pays one memory copy and nothing
// else.
#pragma once

#include "path_lock.h"

#include <cstddef>

// What is copied, and from under which lock. The memory is the caller's; `to` is private to it.
struct PathCopy {
    PathLock *lock;
    const void *from;
    void *to;
    size_t size; // in bytes, not 0
};

// Makes the copy if nobody holds the lock, and never waits. Returns whether it was made; if not,
// `to` holds anything. A lock that the C library refuses excludes nobody: the copy is made without
// it, and the lock left alone.
//
// While the lock is held there is no page fault and no system call; no signal takes effect but
// SIGKILL and SIGSTOP; and nothing preempts the caller, where the kernel permits it the highest
// real-time priority: with an ordinary one a busy process could make the camera wait for the lock
// until the caller gets the processor again. Signal mask and priority are afterwards as before.
[[nodiscard]] bool path_copy(const PathCopy &copy);

// The pauses between the tries of one who waits for a lock.
//
//     for (PathWait wait; !path_copy(copy);)
//         wait.pause();
class PathWait
{
public:
    // Sleeps for 1 ms the first time, then longer up to 10 ms; less when a signal is handled
    // meanwhile. Returns how many milliseconds the pauses have come to so far.
    int pause();

private:
    int next_ms_ = 1;
    int sum_ms_ = 0;
};
