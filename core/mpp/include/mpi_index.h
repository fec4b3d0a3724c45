// Index values of the media platform: 32-bit words whose bytes name device, channel, path and
// window. Byte 0 is the least significant one.
#pragma once

#include <bit>
#include <cstdint>

struct alignas(4) MPI_DEV {
    uint8_t dev;
    uint8_t dummy2;
    uint8_t dummy1;
    uint8_t dummy0;
};
static_assert(sizeof(MPI_DEV) == 4);

struct alignas(4) MPI_CHN {
    uint8_t dev;
    uint8_t chn;
    uint8_t dummy1;
    uint8_t dummy0;
};
static_assert(sizeof(MPI_CHN) == 4);

struct alignas(4) MPI_PATH {
    uint8_t dev;
    uint8_t path;
    uint8_t dummy1;
    uint8_t dummy0;
};
static_assert(sizeof(MPI_PATH) == 4);
static_assert(std::bit_cast<uint32_t>(MPI_PATH{1, 2, 0x80, 0x80}) == 0x80800201);

struct alignas(4) MPI_WIN {
    uint8_t dev;
    uint8_t chn;
    uint8_t win;
    uint8_t dummy0;
};
static_assert(sizeof(MPI_WIN) == 4);

struct alignas(4) MPI_ECHN {
    uint8_t chn;
    uint8_t dummy2;
    uint8_t dummy1;
    uint8_t dummy0;
};
static_assert(sizeof(MPI_ECHN) == 4);

// A set of input paths, one bit each.
union MPI_PATH_BMP_U {
    uint32_t bmp;
    struct {
        uint32_t path0_en : 1;
        uint32_t path1_en : 1;
        uint32_t path2_en : 1;
        uint32_t path3_en : 1;
    } bit;
};
static_assert(sizeof(MPI_PATH_BMP_U) == 4);
