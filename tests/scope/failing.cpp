// Preloaded into vordascope: memory runs out, or standard output cannot be closed. The environment
// says which: VORDA_MALLOCS is how many calls of malloc succeed once the program has begun its work,
// which it does by calling signal(), and VORDA_CLOSE lets close(1) fail.
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" void *__libc_malloc(size_t size);

namespace
{

long left = -1; // calls that succeed; below 0 all do

} // namespace

extern "C" void *malloc(size_t size)
{
    if (left == 0) {
        errno = ENOMEM;
        return nullptr;
    }
    left -= left > 0;
    return __libc_malloc(size);
}

extern "C" sighandler_t signal(int number, sighandler_t handler) noexcept
{
    const auto real =
        reinterpret_cast<sighandler_t (*)(int, sighandler_t)>(dlsym(RTLD_NEXT, "signal"));
    const sighandler_t before = real(number, handler);
    if (const char *calls = getenv("VORDA_MALLOCS"))
        left = strtol(calls, nullptr, 10);
    return before;
}

extern "C" int close(int fd)
{
    if (fd == STDOUT_FILENO && getenv("VORDA_CLOSE") != nullptr) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_close, fd));
}
