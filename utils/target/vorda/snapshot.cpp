// Taking a consistent copy of one input path's context while the DIP keeps changing it.
#include "vorda.h"

#include "sr_ctrl.h"
#include "vplat_types.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstring>

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

void copy_locked(VplatPathConf *path, DipPathCtx *ctx)
{
    const SignalHold hold;

    // A rehearsal, whose bytes the real copy overwrites: it brings every page of source and
    // destination, and the code of the copy, into memory and cache, so that the DIP waits for
    // nothing but one warm copy. No system call stands between the two, since it would cool them.
    memcpy(ctx, &path->dip, sizeof(*ctx));
    std::atomic_signal_fence(std::memory_order_seq_cst); // the compiler must not drop it

    const PathLockGuard guard(&path->lock);
    memcpy(ctx, &path->dip, sizeof(*ctx));
}

} // namespace

int get_dip_ctx(MPI_PATH idx, DipPathCtx *ctx)
{
    printf("dev_idx = %u, path_idx = %u\n", idx.dev, idx.path);

    if (SR_openShm() != 0) {
        fputs("Unable to initialize MPP.\n", stderr);
        return 1;
    }

    void *path = SR_getShmAddr(&idx, SR_CTRL_DESCPTR_ITEM_INPUT_PATH);
    if (path == nullptr)
        fprintf(stderr, "Input path %d is not enabled on video device %d.\n", idx.path, idx.dev);
    else
        copy_locked(static_cast<VplatPathConf *>(path), ctx);

    SR_closeShm();
    return path == nullptr;
}
