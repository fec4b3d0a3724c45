// Taking a consistent copy of one input path's context while the DIP keeps changing it.
#include "vorda.h"

#include "sr_ctrl.h"
#include "stdout_text.h"
#include "vplat_types.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>

namespace
{

// Holds back every signal that can be held back. A process that a signal ends or stops between
// lock and unlock would leave the camera's path locked for ever.
class SignalHold
{
public:
    SignalHold()
    {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_SETMASK, &all, &before_);
    }
    ~SignalHold() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
    SignalHold(const SignalHold &) = delete;
    SignalHold &operator=(const SignalHold &) = delete;

private:
    sigset_t before_;
};

// Copies the context if the path's lock is free; returns whether it was.
bool copy_if_free(VplatPathConf *path, DipPathCtx *ctx)
{
    const SignalHold hold;

    // A rehearsal, whose bytes the real copy overwrites: it brings every page of source and
    // destination, and the code of the copy, into memory and cache, so that the DIP waits for
    // nothing but one warm copy. No system call stands between the two, since it would cool them.
    memcpy(ctx, &path->dip, sizeof(*ctx));
    std::atomic_signal_fence(std::memory_order_seq_cst); // the compiler must not drop it

    const PathLockGuard guard(&path->lock);
    if (!guard)
        return false;
    memcpy(ctx, &path->dip, sizeof(*ctx));
    return true;
}

// Waits for as long as others hold the lock, without a place in their queue: between two tries any
// signal ends the tool, and the camera never has to wake it.
void copy_when_free(VplatPathConf *path, DipPathCtx *ctx)
{
    constexpr int QUICK_TRIES = 4; // a writer that is about to finish
    constexpr timespec NAP = {.tv_sec = 0, .tv_nsec = 1000000};

    for (int tries = 1; !copy_if_free(path, ctx); tries++)
        if (tries >= QUICK_TRIES)
            nanosleep(&NAP, nullptr);
}

} // namespace

int get_dip_ctx(MPI_PATH idx, DipPathCtx *ctx)
{
    // Written before anything that may fail or wait.
    StdoutText().put("dev_idx = ", idx.dev, ", path_idx = ", idx.path, "\n");

    if (SR_openShm() != 0) {
        fputs("Unable to initialize MPP.\n", stderr);
        return 1;
    }

    void *path = SR_getShmAddr(&idx, SR_CTRL_DESCPTR_ITEM_INPUT_PATH);
    if (path == nullptr)
        fprintf(stderr, "Input path %d is not enabled on video device %d.\n", idx.path, idx.dev);
    else
        copy_when_free(static_cast<VplatPathConf *>(path), ctx);

    SR_closeShm();
    return path == nullptr;
}
