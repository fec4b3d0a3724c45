// Preload library that answers for /dev/sr over a region file, as its driver does.
//
// It stands in front of libc's open, openat, ioctl, mmap, munmap and close; whatever does not
// concern the device goes to the kernel unchanged. System calls are made directly, because the
// first calls come before the dynamic linker could look up libc's own functions.
#include "sr_device.h"

#include "sr.h"
#include "sr_schema.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

constexpr off_t REGION_SIZE = sizeof(VplatConf);
// Any address but 0: the region exists. Its lower half is 0, so that nobody looks at that alone.
constexpr uint64_t KERNEL_ADDRESS = 0xFFFFFF8000000000;

bool is_device[1024]; // by descriptor
const void *mapped;   // the device's last mapping

[[gnu::format(printf, 1, 2)]] void observe(const char *format, ...)
{
    if (sr_observer == nullptr)
        return;
    char step[64];
    va_list args;
    va_start(args, format);
    vsnprintf(step, sizeof(step), format, args);
    va_end(args);
    sr_observer(step);
}

bool on_device(int fd)
{
    return fd >= 0 && fd < static_cast<int>(std::size(is_device)) && is_device[fd];
}

int refuse(int error)
{
    errno = error;
    return -1;
}

// The error that the environment wants a step to fail with, or 0.
int wanted_error(const char *step)
{
    const size_t length = strlen(step);
    const char *at = getenv(SR_FAIL_ENV);
    while (at != nullptr) {
        if (strncmp(at, step, length) == 0 && at[length] == ':')
            return static_cast<int>(strtol(at + length + 1, nullptr, 10));
        at = strchr(at, ',');
        if (at != nullptr)
            at++;
    }
    return 0;
}

off_t size_of(int fd)
{
    struct stat info = {};
    return fstat(fd, &info) == 0 ? info.st_size : -1;
}

int sys_open(int dir, const char *path, int flags, unsigned mode)
{
    return static_cast<int>(syscall(SYS_openat, dir, path, flags, mode));
}

int open_device(const char *region, int flags)
{
    observe("open %d", flags);
    if (const int error = wanted_error("open"))
        return refuse(error);

    const int fd = sys_open(AT_FDCWD, region, (flags & O_ACCMODE) | O_CLOEXEC, 0);
    if (fd < 0)
        return fd;
    const off_t size = size_of(fd);
    if (size != 0 && size != REGION_SIZE) {
        fprintf(stderr, "%s: %s has %lld bytes, a region has %lld.\n", SR_DEVICE, region,
                static_cast<long long>(size), static_cast<long long>(REGION_SIZE));
        syscall(SYS_close, fd);
        return refuse(EINVAL);
    }
    if (fd >= static_cast<int>(std::size(is_device))) {
        syscall(SYS_close, fd);
        return refuse(EMFILE);
    }
    is_device[fd] = true;
    return fd;
}

int open_path(int dir, const char *path, int flags, unsigned mode)
{
    const char *region = getenv(SR_REGION_ENV);
    if (region != nullptr && strcmp(path, SR_DEVICE) == 0)
        return open_device(region, flags);
    return sys_open(dir, path, flags, mode);
}

int query(int fd, SrKmallocParam *param)
{
    observe("query");
    if (const int error = wanted_error("query"))
        return refuse(error);
    const bool exists = size_of(fd) == REGION_SIZE;
    *param = {};
    param->ker_addr = exists ? KERNEL_ADDRESS : 0;
    return 0;
}

int alloc(int fd, const SrKmallocParam *param)
{
    observe("alloc %u", param->n_byte);
    const int error = wanted_error("alloc");
    if (error != 0 && error != EEXIST)
        return refuse(error);
    if (size_of(fd) == REGION_SIZE)
        return refuse(EEXIST);
    if (param->n_byte != REGION_SIZE)
        return refuse(EINVAL);
    const int result = ftruncate(fd, REGION_SIZE);
    return error != 0 ? refuse(error) : result;
}

int complete()
{
    observe("complete");
    const int error = wanted_error("complete");
    return error != 0 ? refuse(error) : 0;
}

} // namespace

void (*sr_observer)(const char *step);

extern "C" {

int open(const char *path, int flags, ...)
{
    va_list args;
    va_start(args, flags);
    const unsigned mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(args, unsigned) : 0;
    va_end(args);
    return open_path(AT_FDCWD, path, flags, mode);
}

int openat(int dir, const char *path, int flags, ...)
{
    va_list args;
    va_start(args, flags);
    const unsigned mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(args, unsigned) : 0;
    va_end(args);
    return open_path(dir, path, flags, mode);
}

int ioctl(int fd, unsigned long request, ...) noexcept
{
    va_list args;
    va_start(args, request);
    void *argument = va_arg(args, void *);
    va_end(args);

    if (on_device(fd)) {
        switch (request) {
        case SR_IOC_QUERY_SHM_INFO:
            return query(fd, static_cast<SrKmallocParam *>(argument));
        case SR_IOC_ALLOC_SHM:
            return alloc(fd, static_cast<SrKmallocParam *>(argument));
        case SR_IOC_OPEN_COMPLETE:
            return complete();
        default:
            return refuse(ENOTTY);
        }
    }
    return static_cast<int>(syscall(SYS_ioctl, fd, request, argument));
}

void *mmap64(void *address, size_t length, int protection, int flags, int fd,
             off64_t offset) noexcept
{
    const bool device = on_device(fd);
    if (device) {
        observe("map %zu %d %lld", length, protection, static_cast<long long>(offset));
        if (const int error = wanted_error("mmap")) {
            errno = error;
            return reinterpret_cast<void *>(-1);
        }
    }
#ifdef SYS_mmap2 // counts the offset in pages of 4096 bytes
    auto *result = reinterpret_cast<void *>(
        syscall(SYS_mmap2, address, length, protection, flags, fd, offset >> 12));
#else
    auto *result =
        reinterpret_cast<void *>(syscall(SYS_mmap, address, length, protection, flags, fd, offset));
#endif
    if (device)
        mapped = result;
    return result;
}

void *mmap(void *address, size_t length, int protection, int flags, int fd, off_t offset) noexcept
{
    return mmap64(address, length, protection, flags, fd, offset);
}

int munmap(void *address, size_t length) noexcept
{
    if (address == mapped)
        observe("unmap %zu", length);
    return static_cast<int>(syscall(SYS_munmap, address, length));
}

int close(int fd)
{
    if (on_device(fd)) {
        observe("close");
        is_device[fd] = false;
    }
    return static_cast<int>(syscall(SYS_close, fd));
}

int open64(const char *, int, ...) __attribute__((alias("open")));
int openat64(int, const char *, int, ...) __attribute__((alias("openat")));

} // extern "C"
