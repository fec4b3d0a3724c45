// sr-scene: fills a region with a plausible scene and, if asked, keeps it alive.
#include "camera_lock.h"
#include "scene.h"
#include "sr.h"
#include "usage.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace
{

constexpr char PROGRAM[] = "sr-scene";
constexpr char USAGE[] =
    "Usage: sr-scene [--live] [--fps N] [--step] [--stamp] [--no-lock] [--force] FILE\n"
    "Fills the region FILE, which is created when missing, with a scene of two sensors. FILE may be\n"
    "the device itself.\n"
    "  --live     go on frame by frame until stopped, under each path's lock: the lights go down at\n"
    "             frame 30, change their colour at 120 and come back at 200; 300 begins anew\n"
    "  --fps N    frames a second with --live (default 25; 0: as fast as possible)\n"
    "  --step     with --live: a frame for each line of standard input, until that ends\n"
    "  --stamp    fill every byte of a frame with the same value, another one each frame\n"
    "  --no-lock  leave the locks out, to see torn frames\n"
    "  --force    overwrite FILE even if it is no region\n"
    "  -h, --help print this help\n";

struct Options {
    const char *file = nullptr;
    bool live = false;
    long fps = 25;
    bool step = false;
    bool stamp = false;
    bool lock = true;
    bool force = false;
    bool help = false;
};

volatile sig_atomic_t stopped;

// Returns 0, or the status to end with after a message.
int parse(int argc, char **argv, Options *options)
{
    for (int i = 1; i < argc; i++) {
        const std::string_view arg = argv[i];
        if (arg == "--live") {
            options->live = true;
        } else if (arg == "--fps") {
            char *end = nullptr;
            const char *number = i + 1 < argc ? argv[++i] : "nothing";
            options->fps = strtol(number, &end, 10);
            if (end == number || *end != '\0' || options->fps < 0 || options->fps > 1000)
                return bad_usage(PROGRAM, "--fps takes a number from 0 to 1000, not ", number);
        } else if (arg == "--step") {
            options->step = true;
        } else if (arg == "--stamp") {
            options->stamp = true;
        } else if (arg == "--no-lock") {
            options->lock = false;
        } else if (arg == "--force") {
            options->force = true;
        } else if (arg == "-h" || arg == "--help") {
            options->help = true;
        } else if (arg.starts_with('-')) {
            return bad_usage(PROGRAM, "unknown option ", argv[i]);
        } else if (options->file != nullptr) {
            return bad_usage(PROGRAM, "one file is enough, not also ", argv[i]);
        } else {
            options->file = argv[i];
        }
    }
    return options->file != nullptr || options->help ? 0 : bad_usage(PROGRAM, "missing file");
}

// Makes a file as long as a region; asks a device for its region. Returns whether there is one.
bool provide_region(int fd, bool device)
{
    if (!device)
        return ftruncate(fd, sizeof(VplatConf)) == 0;
    SrKmallocParam param = {.n_byte = sizeof(VplatConf), .offs = 0, .ker_addr = 0};
    return ioctl(fd, SR_IOC_ALLOC_SHM, &param) == 0 || errno == EEXIST;
}

// Maps the region of a file or a device; nullptr after a message.
VplatConf *map_region(const char *file, bool force)
{
    void *region = MAP_FAILED;
    const int fd = open(file, O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    struct stat info = {};
    if (fd >= 0 && fstat(fd, &info) == 0 && info.st_size != 0 &&
        info.st_size != static_cast<off_t>(sizeof(VplatConf)) && !force)
        bad_file(PROGRAM, file, "exists and is no region; --force overwrites it");
    else if (fd < 0 || !provide_region(fd, S_ISCHR(info.st_mode)) ||
             (region = mmap(nullptr, sizeof(VplatConf), PROT_READ | PROT_WRITE, MAP_SHARED, fd,
                            0)) == MAP_FAILED)
        bad_file(PROGRAM, file, strerror(errno));
    if (fd >= 0)
        close(fd);
    return region == MAP_FAILED ? nullptr : static_cast<VplatConf *>(region);
}

void publish(VplatPathConf *path, const DipPathCtx &ctx, bool lock)
{
    if (lock)
        camera_lock(&path->lock);
    memcpy(&path->dip, &ctx, sizeof(ctx));
    if (lock)
        path_unlock(&path->lock);
}

void write_frame(VplatConf *conf, DipPathCtx *ctx, uint32_t frame, const Options &options)
{
    for (int path = 0; path < SCENE_PATH_NUM; path++) {
        if (options.stamp)
            std::fill_n(reinterpret_cast<uint8_t *>(ctx), sizeof(*ctx),
                        static_cast<uint8_t>(frame));
        else
            fill_frame(ctx, path, frame);
        publish(&conf->path[path], *ctx, options.lock);
    }
}

void stop(int)
{
    stopped = 1;
}

// Waits until the next frame is due. Returns whether one is.
bool wait_for_frame(const Options &options)
{
    if (options.step) {
        int c = 0;
        do
            c = getchar();
        while (c != '\n' && c != EOF);
        return c == '\n';
    }
    if (options.fps > 0) {
        constexpr long SECOND = 1000000000;
        const timespec period = {.tv_sec = SECOND / options.fps / SECOND,
                                 .tv_nsec = SECOND / options.fps % SECOND};
        nanosleep(&period, nullptr);
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    Options options;
    if (const int status = parse(argc, argv, &options); status != 0)
        return status;
    if (options.help) {
        fputs(USAGE, stdout);
        return 0;
    }
    VplatConf *conf = map_region(options.file, options.force);
    if (conf == nullptr)
        return BAD_USAGE;

    // A frame is finished before the process ends, so no lock is left behind.
    struct sigaction action = {};
    action.sa_handler = stop; // without SA_RESTART: the wait for a line ends
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);

    init_region(conf);
    const auto ctx = std::make_unique<DipPathCtx>();
    uint32_t frame = 0;
    write_frame(conf, ctx.get(), frame, options);
    while (options.live && stopped == 0 && wait_for_frame(options))
        write_frame(conf, ctx.get(), ++frame, options);
    return 0;
}
