// sr-run: runs a command with a stand-in for /dev/sr in place.
#include "sr_device.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace
{

constexpr int BAD_USAGE = 2;

constexpr char USAGE[] =
    "Usage: sr-run [--region FILE] [--] COMMAND...\n"
    "Runs COMMAND with a stand-in for /dev/sr. The region is FILE, which an earlier run or\n"
    "sr-scene has filled or which is empty; without it, a fresh region that lasts as long as\n"
    "COMMAND.\n";

int fail(const char *message, const char *what)
{
    fprintf(stderr, "sr-run: %s%s\n%s", message, what, USAGE);
    return BAD_USAGE;
}

// The preload library stands beside this program.
std::string library_path()
{
    char self[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", self, sizeof(self));
    const std::string program(self, length > 0 ? static_cast<size_t>(length) : 0);
    return program.substr(0, program.rfind('/') + 1) + "libsr_device.so";
}

} // namespace

int main(int argc, char **argv)
{
    const char *region = nullptr;
    int i = 1;
    for (; i < argc && argv[i][0] == '-'; i++) {
        if (strcmp(argv[i], "--") == 0) {
            i++;
            break;
        }
        if (strcmp(argv[i], "--help") == 0) {
            fputs(USAGE, stdout);
            return 0;
        }
        if (strcmp(argv[i], "--region") != 0)
            return fail("unknown option ", argv[i]);
        if (i + 1 == argc)
            return fail("missing file for --region", "");
        region = argv[++i];
    }
    if (i == argc)
        return fail("missing command", "");

    if (region != nullptr) {
        char *path = realpath(region, nullptr); // COMMAND may change its folder
        if (path == nullptr || access(path, R_OK | W_OK) != 0) {
            fprintf(stderr, "sr-run: %s: %s\n", region, strerror(errno));
            return BAD_USAGE;
        }
        setenv(SR_REGION_ENV, path, 1);
        free(path);
    } else {
        const int fd = memfd_create("sr", 0); // inherited by COMMAND
        setenv(SR_REGION_ENV, ("/proc/self/fd/" + std::to_string(fd)).c_str(), 1);
    }

    std::string preload = library_path();
    if (const char *others = getenv("LD_PRELOAD"); others != nullptr && *others != '\0')
        preload = preload + ":" + others;
    setenv("LD_PRELOAD", preload.c_str(), 1);

    execvp(argv[i], argv + i);
    fprintf(stderr, "sr-run: %s: %s\n", argv[i], strerror(errno));
    return BAD_USAGE;
}
