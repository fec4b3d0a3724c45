// sr-capture: writes the shared region of a camera to standard output, to be read elsewhere.
//
// Each path is copied under its lock, as vorda does it: the camera waits for one copy, nobody
// queues and no signal falls between lock and unlock. In what is written every lock is free.
#include "path_copy.h"
#include "sr.h"
#include "sr_schema.h"
#include "usage.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace
{

constexpr char PROGRAM[] = "sr-capture";
constexpr char USAGE[] = "Usage: sr-capture > FILE\n"
                         "Writes the shared region behind /dev/sr, for sr-run --region FILE.\n";

// The region as others map it; nullptr after a message.
VplatConf *map_region()
{
    const int fd = open(SR_DEVICE, O_RDWR | O_CLOEXEC);
    SrKmallocParam param = {};
    if (fd < 0 || ioctl(fd, SR_IOC_QUERY_SHM_INFO, &param) != 0) {
        bad_file(PROGRAM, SR_DEVICE, strerror(errno));
        return nullptr;
    }
    if (param.ker_addr == 0) {
        bad_file(PROGRAM, SR_DEVICE, "there is no region yet");
        return nullptr;
    }
    void *region = mmap(nullptr, sizeof(VplatConf), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (region == MAP_FAILED)
        bad_file(PROGRAM, SR_DEVICE, strerror(errno));
    close(fd);
    return region == MAP_FAILED ? nullptr : static_cast<VplatConf *>(region);
}

void copy_path(VplatPathConf *path, VplatPathConf *copy, int index)
{
    constexpr int LONGEST_MS = 500;
    const PathCopy whole = {.lock = &path->lock, .from = path, .to = copy, .size = sizeof(*copy)};
    PathWait wait;
    bool copied = path_copy(whole);
    while (!copied && wait.pause() < LONGEST_MS)
        copied = path_copy(whole);
    if (!copied) {
        memcpy(copy, path, sizeof(*copy));
        fprintf(stderr, "%s: path %d stays locked; its values may be of two frames.\n", PROGRAM,
                index);
    }
    copy->lock = free_path_lock(copy->lock.kind);
}

int write_out(const VplatConf &conf)
{
    const char *at = reinterpret_cast<const char *>(&conf);
    for (size_t left = sizeof(conf); left > 0;) {
        const ssize_t length = write(STDOUT_FILENO, at, left);
        if (length <= 0)
            return bad_file(PROGRAM, "standard output", strerror(errno));
        at += length;
        left -= static_cast<size_t>(length);
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc > 1 && (strcmp(argv[1], "-h") == 0 || strcmp(argv[1], "--help") == 0)) {
        fputs(USAGE, stdout);
        return 0;
    }
    if (argc > 1)
        return bad_usage(PROGRAM, "unexpected word ", argv[1]);
    if (isatty(STDOUT_FILENO) != 0)
        return bad_usage(PROGRAM, "standard output is a terminal; say where the region goes");
    VplatConf *conf = map_region();
    if (conf == nullptr)
        return BAD_USAGE;

    static VplatConf copy; // large
    memcpy(&copy, conf, sizeof(*conf));
    for (size_t i = 0; i < INPUT_PATH_NUM; i++)
        copy_path(&conf->path[i], &copy.path[i], static_cast<int>(i));
    return write_out(copy);
}
