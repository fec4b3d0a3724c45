// The interface of the shared-region driver behind /dev/sr.
#pragma once

#include <cstddef>
#include <cstdint>
#include <sys/ioctl.h>

inline constexpr char SR_DEVICE[] = "/dev/sr";

// Argument of the query and allocation requests.
struct SrKmallocParam {
    uint32_t n_byte;   // in: size of the region to create
    uint32_t offs;     // not used by the client
    uint64_t ker_addr; // out: address of the region in the kernel, 0 while there is none
};
static_assert(sizeof(SrKmallocParam) == 16);
static_assert(offsetof(SrKmallocParam, offs) == 4);
static_assert(offsetof(SrKmallocParam, ker_addr) == 8);

inline constexpr unsigned long SR_IOC_ALLOC_SHM = _IOWR('m', 0, SrKmallocParam);
inline constexpr unsigned long SR_IOC_QUERY_SHM_INFO = _IOWR('m', 2, SrKmallocParam);
inline constexpr unsigned long SR_IOC_OPEN_COMPLETE = _IO('m', 0);
static_assert(SR_IOC_ALLOC_SHM == 0xC0106D00);
static_assert(SR_IOC_QUERY_SHM_INFO == 0xC0106D02);
static_assert(SR_IOC_OPEN_COMPLETE == 0x6D00);
