// sr-scene: fills a region file with a plausible scene and, if asked, keeps it alive.
#include "camera_lock.h"
#include "scene.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/mman.h>
#include <time.h>
#include <unistd.h>

namespace
{

constexpr int BAD_USAGE = 2;

constexpr char USAGE[] =
    "Usage: sr-scene [--live] [--fps N] [--stamp] [--no-lock] FILE\n"
    "Fills the region FILE, which is created when missing, with a scene of two sensors.\n"
    "  --live     go on frame by frame until stopped, under each path's lock\n"
    "  --fps N    frames a second with --live (default 25; 0: as fast as possible)\n"
    "  --stamp    fill every byte of a frame with the same value, another one each frame\n"
    "  --no-lock  leave the locks out, to see torn frames\n";

struct Options {
    const char *file = nullptr;
    bool live = false;
    long fps = 25;
    bool stamp = false;
    bool lock = true;
};

volatile sig_atomic_t stopped;

// Returns whether the command line makes sense.
bool parse(int argc, char **argv, Options *options)
{
    for (int i = 1; i < argc; i++) {
        const char *arg = argv[i];
        if (strcmp(arg, "--live") == 0) {
            options->live = true;
        } else if (strcmp(arg, "--fps") == 0 && i + 1 < argc) {
            char *end = nullptr;
            options->fps = strtol(argv[++i], &end, 10);
            if (*end != '\0' || options->fps < 0 || options->fps > 1000)
                return false;
        } else if (strcmp(arg, "--stamp") == 0) {
            options->stamp = true;
        } else if (strcmp(arg, "--no-lock") == 0) {
            options->lock = false;
        } else if (arg[0] == '-' || options->file != nullptr) {
            return false;
        } else {
            options->file = arg;
        }
    }
    return options->file != nullptr;
}

// Maps the region file, with its size set right; nullptr after a message.
VplatConf *map_region(const char *file)
{
    void *region = MAP_FAILED;
    const int fd = open(file, O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (fd >= 0 && ftruncate(fd, sizeof(VplatConf)) == 0)
        region = mmap(nullptr, sizeof(VplatConf), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (region == MAP_FAILED)
        fprintf(stderr, "sr-scene: %s: %s\n", file, strerror(errno));
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

} // namespace

int main(int argc, char **argv)
{
    Options options;
    if (!parse(argc, argv, &options)) {
        fputs(USAGE, stderr);
        return BAD_USAGE;
    }
    VplatConf *conf = map_region(options.file);
    if (conf == nullptr)
        return BAD_USAGE;

    // A frame is finished before the process ends, so no lock is left behind.
    signal(SIGINT, stop);
    signal(SIGTERM, stop);

    init_region(conf);
    const auto ctx = std::make_unique<DipPathCtx>();
    uint32_t frame = 0;
    write_frame(conf, ctx.get(), frame, options);
    while (options.live && stopped == 0) {
        if (options.fps > 0) {
            constexpr long SECOND = 1000000000;
            const timespec period = {.tv_sec = SECOND / options.fps / SECOND,
                                     .tv_nsec = SECOND / options.fps % SECOND};
            nanosleep(&period, nullptr);
        }
        write_frame(conf, ctx.get(), ++frame, options);
    }
    return 0;
}
