// Taking a consistent copy of one input path's context while the DIP keeps changing it.
#include "vorda.h"

#include "path_copy.h"
#include "sr_ctrl.h"
#include "stdout_text.h"
#include "vplat_types.h"

#include <cstdio>

namespace
{

// Waits for as long as others hold the lock, without a place in their queue: between two tries any
// signal ends the tool, and the camera never has to wake it.
void copy_when_free(VplatPathConf *path, DipPathCtx *ctx)
{
    const PathCopy copy = {
        .lock = &path->lock, .from = &path->dip, .to = ctx, .size = sizeof(*ctx)};
    for (PathWait wait; !path_copy(copy);)
        wait.pause();
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
