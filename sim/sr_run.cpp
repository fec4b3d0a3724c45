// sr-run: runs a command with a stand-in for /dev/sr in place.
#include "sr_device.h"
#include "sr_schema.h"
#include "usage.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace
{

constexpr char PROGRAM[] = "sr-run";
constexpr char USAGE[] =
    "Usage: sr-run [--region FILE] [--unlock] [--] COMMAND...\n"
    "Runs COMMAND with a stand-in for /dev/sr; COMMAND may be qemu-arm with a program of the arm\n"
    "preset. Without --region it sees a fresh region, which lasts as long as COMMAND.\n"
    "  --region FILE  the region is FILE, which sr-scene or an earlier run has filled, which was\n"
    "                 captured on a camera, or which is empty\n"
    "  --unlock       COMMAND works on a copy of FILE in which the locks of all paths are free; so it\n"
    "                 does by itself when FILE is read-only\n"
    "  -h, --help     print this help\n";

struct Options {
    const char *region = nullptr;
    bool unlock = false;
    char **command = nullptr;
};

// A path that COMMAND and its children can open in place of the descriptor.
std::string path_of(int fd)
{
    return "/proc/self/fd/" + std::to_string(fd);
}

// A copy of a region in memory, with its locks free, that COMMAND inherits; -1 after a message.
int unlocked_copy(int fd, const char *file)
{
    auto copy = std::vector<char>(sizeof(VplatConf));
    const ssize_t size = pread(fd, copy.data(), copy.size(), 0);
    const int memory = memfd_create("sr", 0);
    if (size < 0 || memory < 0) {
        bad_file(PROGRAM, file, strerror(errno));
        return -1;
    }
    auto *conf = reinterpret_cast<VplatConf *>(copy.data());
    if (size == static_cast<ssize_t>(sizeof(VplatConf)))
        for (VplatPathConf &path : conf->path)
            path.lock = free_path_lock(path.lock.kind);
    if (write(memory, copy.data(), static_cast<size_t>(size)) != size) {
        bad_file(PROGRAM, file, strerror(errno));
        return -1;
    }
    return memory;
}

// A path whose lock stays taken for a fifth of a second, much longer than a camera at work keeps
// it; -1 if there is none.
int held_path(int fd)
{
    constexpr int TRIES = 200;
    int held = -1;
    for (int i = 0; i < TRIES; i++) {
        held = -1;
        for (size_t path = 0; path < INPUT_PATH_NUM && held < 0; path++) {
            uint32_t word = 0;
            const auto at =
                static_cast<off_t>(offsetof(VplatConf, path) + path * sizeof(VplatPathConf) +
                                   offsetof(VplatPathConf, lock));
            if (pread(fd, &word, sizeof(word), at) == sizeof(word) && word != PATH_LOCK_FREE)
                held = static_cast<int>(path);
        }
        if (held < 0)
            break;
        const timespec millisecond = {.tv_sec = 0, .tv_nsec = 1000000};
        nanosleep(&millisecond, nullptr);
    }
    return held;
}

// Where COMMAND finds the region; "" after a message.
std::string region_path(const Options &options)
{
    if (options.region == nullptr)
        return path_of(memfd_create("sr", 0));

    const int fd = open(options.region, O_RDONLY | O_CLOEXEC);
    struct stat info = {};
    const char *trouble = nullptr;
    if (fd < 0 || fstat(fd, &info) != 0)
        trouble = strerror(errno);
    else if (S_ISDIR(info.st_mode))
        trouble = strerror(EISDIR);
    else if (info.st_size != 0 && info.st_size != static_cast<off_t>(sizeof(VplatConf)))
        trouble = "not a region, its size is another one";
    if (trouble != nullptr) {
        bad_file(PROGRAM, options.region, trouble);
        return "";
    }

    if (options.unlock || access(options.region, W_OK) != 0) {
        const int copy = unlocked_copy(fd, options.region);
        return copy < 0 ? "" : path_of(copy);
    }
    if (const int path = held_path(fd); path >= 0)
        fprintf(stderr,
                "%s: %s: the lock of path %d is taken. If nobody is left to release it, as in a\n"
                "captured region, run it with --unlock.\n",
                PROGRAM, options.region, path);
    close(fd);
    char *path = realpath(options.region, nullptr); // COMMAND may change its folder
    std::string result = path != nullptr ? path : options.region;
    free(path);
    return result;
}

std::string folder_of(const std::string &file)
{
    return file.substr(0, file.rfind('/') + 1); // "" where there is none
}

// The preload library: it stands beside this program; for an emulated program, in its build folder.
std::string library_for(char **command, bool emulated)
{
    constexpr char LIBRARY[] = "libsr_device.so";
    if (emulated) {
        for (char **word = command + 1; *word != nullptr; word++) {
            for (const char *below : {"sim/", ""}) {
                std::string library = folder_of(*word) + below + LIBRARY;
                if (access(library.c_str(), R_OK) == 0)
                    return library;
            }
        }
        return "";
    }
    char self[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", self, sizeof(self));
    return folder_of({self, length > 0 ? static_cast<size_t>(length) : 0}) + LIBRARY;
}

int run(const Options &options)
{
    const std::string region = region_path(options);
    if (region.empty())
        return BAD_USAGE;
    setenv(SR_REGION_ENV, region.c_str(), 1);

    const std::string program = options.command[0];
    const bool emulated = program.substr(folder_of(program).size()).starts_with("qemu-arm");
    const std::string library = library_for(options.command, emulated);
    if (access(library.c_str(), R_OK) != 0)
        return bad_usage(PROGRAM, "no sim/libsr_device.so in the build folder of ",
                         emulated ? "the emulated program" : "sr-run");
    std::string preload = preloadable(library);

    std::vector<char *> words = {options.command[0]};
    std::string setting = "LD_PRELOAD=";
    if (emulated) { // the library is for the emulated program, not for the emulator
        setting += preload;
        for (char *word : {const_cast<char *>("-E"), setting.data()})
            words.push_back(word);
    } else {
        if (const char *others = getenv("LD_PRELOAD"); others != nullptr && *others != '\0')
            preload = preload + ":" + others;
        setenv("LD_PRELOAD", preload.c_str(), 1);
    }
    for (char **word = options.command + 1; *word != nullptr; word++)
        words.push_back(*word);
    words.push_back(nullptr);

    execvp(words[0], words.data());
    return bad_file(PROGRAM, words[0], strerror(errno));
}

} // namespace

int main(int argc, char **argv)
{
    Options options;
    int i = 1;
    for (; i < argc && argv[i][0] == '-'; i++) {
        const std::string word = argv[i];
        if (word == "--") {
            i++;
            break;
        }
        if (word == "-h" || word == "--help") {
            fputs(USAGE, stdout);
            return 0;
        }
        if (word == "--unlock") {
            options.unlock = true;
        } else if (word != "--region") {
            return bad_usage(PROGRAM, "unknown option ", argv[i]);
        } else if (i + 1 == argc) {
            return bad_usage(PROGRAM, "missing file for --region");
        } else {
            options.region = argv[++i];
        }
    }
    if (i == argc)
        return bad_usage(PROGRAM, "missing command");
    if (options.unlock && options.region == nullptr)
        return bad_usage(PROGRAM, "--unlock needs --region");
    options.command = argv + i;
    return run(options);
}
