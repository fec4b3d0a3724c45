// box-probe: what the tests do to the region and its locks inside the emulated camera, where they
// cannot reach themselves.
#include "camera_lock.h"
#include "harness.h"
#include "sr.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

constexpr char USAGE[] =
    "Usage: box-probe fill SNAPSHOT       path 0 gets a snapshot: distinct, zero\n"
    "       box-probe peek OFFSET LENGTH  bytes of the region, as they are\n"
    "       box-probe hold MS INTTIME     hold the lock of path 0 in the background for a time,\n"
    "                                     set the exposure time, let go\n"
    "       box-probe write               write frames of one byte each into path 0 as a camera does,\n"
    "                                     before other processes, with its lock taken most of the\n"
    "                                     time; at the end tell the longest wait for it\n"
    "       box-probe nice COMMAND...     run a COMMAND that gives way to all others\n"
    "       box-probe spin                keep a processor busy with what emulates quickly\n"
    "       box-probe die                 die with the lock of path 0, which becomes robust\n"
    "       box-probe lock                what locking path 0 answers\n"
    "       box-probe signal COMMAND...   hold the lock of path 0; send each of several signals to\n"
    "                                     a COMMAND that waits for it\n";

VplatConf *map_region()
{
    const int fd = open(SR_DEVICE, O_RDWR | O_CLOEXEC);
    void *region = mmap(nullptr, sizeof(VplatConf), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (region == MAP_FAILED) {
        perror(SR_DEVICE);
        exit(2);
    }
    close(fd);
    return static_cast<VplatConf *>(region);
}

// Returns when a process in the background has the lock.
int hold(VplatPathConf *path, long ms, int32_t inttime)
{
    int ready[2];
    if (pipe(ready) != 0)
        return 2;
    if (fork() == 0) {
        camera_lock(&path->lock);
        close(ready[0]);
        close(ready[1]);
        usleep(static_cast<useconds_t>(ms * 1000));
        path->dip.dip_ctx.share.inttime = inttime;
        path_unlock(&path->lock);
        return 0;
    }
    close(ready[1]);
    char nothing = 0;
    return read(ready[0], &nothing, 1) == 0 ? 0 : 2;
}

volatile sig_atomic_t stopped;

long microseconds()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1000000 + now.tv_nsec / 1000;
}

int write_frames(VplatPathConf *path)
{
    signal(SIGTERM, [](int) { stopped = 1; });
    const sched_param priority = {.sched_priority = 50};
    if (sched_setscheduler(0, SCHED_FIFO, &priority) != 0)
        return 2;
    auto *bytes = reinterpret_cast<uint8_t *>(&path->dip);
    constexpr size_t HALF = sizeof(path->dip) / 2;
    long longest = 0;
    for (uint8_t frame = 0; stopped == 0; frame++) {
        const long begin = microseconds();
        camera_lock(&path->lock);
        longest = std::max(longest, microseconds() - begin);
        memset(bytes, frame, HALF);
        usleep(2000);
        memset(bytes + HALF, frame, HALF);
        path_unlock(&path->lock);
        usleep(300); // a copy takes a third of it
    }
    printf("waited %ld us\n", longest);
    return 0;
}

[[noreturn]] void spin()
{
    for (;;)
        asm volatile(".rept 400\n\tnop\n\t.endr");
}

int die(PathLock *lock)
{
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
    pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST);
    pthread_mutex_init(path_mutex(lock), &attributes);
    return pthread_mutex_lock(path_mutex(lock));
}

int answer(PathLock *lock)
{
    const int error = pthread_mutex_trylock(path_mutex(lock));
    puts(error == 0 ? "free" : strerrorname_np(error));
    if (error == 0)
        pthread_mutex_unlock(path_mutex(lock));
    return error;
}

int signal_waiters(PathLock *lock, char **command)
{
    for (const int signal :
         {SIGHUP, SIGINT, SIGQUIT, SIGALRM, SIGTERM, SIGUSR1, SIGTSTP, SIGKILL}) {
        camera_lock(lock);
        const std::string before(reinterpret_cast<const char *>(lock), sizeof(*lock));
        int out[2];
        if (pipe2(out, O_CLOEXEC) != 0)
            return 2;
        const pid_t child = fork();
        if (child == 0) {
            dup2(out[1], STDOUT_FILENO);
            setpgid(0, 0); // only a group whose parent looks after it can be stopped
            ::signal(signal, SIG_DFL);
            execvp(command[0], command);
            _exit(127);
        }
        // Its first line comes before it waits.
        pollfd line = {.fd = out[0], .events = POLLIN, .revents = 0};
        const bool begun = poll(&line, 1, -1) == 1;
        const std::string proc = "/proc/" + std::to_string(child);
        const long waits = waits_of(proc);
        eventually([&] { return waits_of(proc) > waits + 3; });
        kill(child, signal);
        int status = 0;
        const bool ended =
            eventually([&] { return waitpid(child, &status, WNOHANG | WUNTRACED) == child; });
        const std::string after(reinterpret_cast<const char *>(lock), sizeof(*lock));
        printf("%s: %s%s, %s\n", sigabbrev_np(signal), begun ? "" : "without a line, ",
               !ended                ? "still waits"
               : WIFSTOPPED(status)  ? "stopped"
               : WIFSIGNALED(status) ? "ended"
                                     : "ended by itself",
               before == after ? "lock as it was" : "lock changed");
        path_unlock(lock);
        kill(child, SIGKILL);
        kill(child, SIGCONT);
        waitpid(child, &status, 0);
        close(out[0]);
        close(out[1]);
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const std::string verb = argc > 1 ? argv[1] : "";
    const auto number = [&](int i) { return strtol(argv[i], nullptr, 0); };
    VplatConf *conf = map_region();
    VplatPathConf *path = &conf->path[0];

    if (verb == "fill" && argc == 3) {
        path->dip = *snapshot_of(argv[2]);
        return 0;
    }
    if (verb == "peek" && argc == 4)
        return fwrite(reinterpret_cast<const char *>(conf) + number(2), 1,
                      static_cast<size_t>(number(3)), stdout) == 0;
    if (verb == "hold" && argc == 4)
        return hold(path, number(2), static_cast<int32_t>(number(3)));
    if (verb == "write" && argc == 2)
        return write_frames(path);
    if (verb == "nice" && argc > 2)
        return setpriority(PRIO_PROCESS, 0, 19) != 0 || execvp(argv[2], argv + 2) != 0;
    if (verb == "spin" && argc == 2)
        spin();
    if (verb == "die" && argc == 2)
        return die(&path->lock);
    if (verb == "lock" && argc == 2)
        return answer(&path->lock);
    if (verb == "signal" && argc > 2)
        return signal_waiters(&path->lock, argv + 2);
    fputs(USAGE, stderr);
    return 2;
}
