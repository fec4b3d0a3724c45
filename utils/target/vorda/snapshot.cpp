// Taking a consistent copy of one input path's context while the DIP keeps changing it.
#include "vorda.h"

#include "path_copy.h"
#include "sr_ctrl.h"
#include "stdout_text.h"
#include "vplat_types.h"

#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace
{

// What is wrong with a descriptor, as poll() says it.
int trouble_with(int fd)
{
    pollfd asked = {.fd = fd, .events = 0, .revents = 0};
    poll(&asked, 1, 0);
    return asked.revents;
}

// Waits for as long as others hold the lock, without a place in their queue: between two tries any
// signal ends the tool, and the camera never has to wake it. Returns whether `ctx` holds the
// snapshot; not so when there is nobody left to read it.
bool copy_when_free(VplatPathConf *path, DipPathCtx *ctx)
{
    constexpr int PATIENCE_MS = 2000;
    const PathCopy copy = {
        .lock = &path->lock, .from = &path->dip, .to = ctx, .size = sizeof(*ctx)};
    bool told = false;
    for (PathWait wait; !path_copy(copy);) {
        const int ms = wait.pause();
        if (trouble_with(STDOUT_FILENO) != 0) // its reader has gone
            return false;
        if (!told && ms >= PATIENCE_MS) {
            told = true;
            if (isatty(STDERR_FILENO) != 0)
                fputs("Waiting: another process holds the lock.\n", stderr);
        }
    }
    return true;
}

} // namespace

void open_standard_descriptors()
{
    for (int fd = 0; fd <= 2; fd++)
        if (trouble_with(fd) == POLLNVAL)
            open("/", O_RDONLY);
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

    bool copied = false;
    if (void *path = SR_getShmAddr(&idx, SR_CTRL_DESCPTR_ITEM_INPUT_PATH); path != nullptr)
        copied = copy_when_free(static_cast<VplatPathConf *>(path), ctx);
    else
        fprintf(stderr, "Input path %d is not enabled on video device %d.\n", idx.path, idx.dev);

    SR_closeShm();
    return copied ? 0 : 1;
}
