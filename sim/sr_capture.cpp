// sr-capture: writes the shared region of a camera to standard output, to be read elsewhere.
//
// Each path is copied under its lock, as vorda does it: the camera waits for one copy, nobody
// queues and no signal falls between lock and unlock. In what is written every lock is free.
#include "camera_lock.h"
#include "path_lock.h"
#include "sr.h"
#include "sr_schema.h"
#include "usage.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
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

bool copy_if_free(VplatPathConf *path, VplatPathConf *copy)
{
    memcpy(copy, path, sizeof(*copy)); // brings the pages in before the lock is taken
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &before);
    bool copied = false;
    if (const PathLockGuard guard(&path->lock); guard) {
        memcpy(copy, path, sizeof(*copy));
        copied = true;
    }
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return copied;
}

void copy_path(VplatPathConf *path, VplatPathConf *copy, int index)
{
    constexpr int TRIES = 500; // for half a second
    constexpr timespec NAP = {.tv_sec = 0, .tv_nsec = 1000000};
    int tries = 0;
    while (!copy_if_free(path, copy) && ++tries < TRIES)
        nanosleep(&NAP, nullptr);
    if (tries == TRIES)
        fprintf(stderr, "%s: path %d stays locked; its values may be of two frames.\n", PROGRAM,
                index);
    free_lock(&copy->lock);
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
