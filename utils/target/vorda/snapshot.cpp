// Taking a consistent copy of one input path's context while the DIP keeps changing it.
#include "vorda.h"

#include "path_copy.h"
#include "sr_ctrl.h"
#include "stdout_text.h"
#include "vplat_types.h"

#include <cstdio>
#include <fcntl.h>

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

void open_standard_descriptors()
{
    for (int fd = 0; fd <= 2; fd++)
        if (fcntl(fd, F_GETFD) < 0)
            open("/dev/null", O_RDWR);
}

MPI_PATH input_path(int32_t dev_idx, int32_t path_idx)
{
    constexpr uint8_t UPPER_BYTE = 0x80;
    return {
        .dev = static_cast<uint8_t>(dev_idx),
        .path = static_cast<uint8_t>(path_idx),
        .dummy1 = UPPER_BYTE,
        .dummy0 = UPPER_BYTE,
    };
}

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
