// Base types of the media platform: sizes, regions and enumerations that many records share.
#pragma once

#include <cstdint>

struct MPI_SIZE_S {
    uint16_t width;
    uint16_t height;
};
static_assert(sizeof(MPI_SIZE_S) == 4);

struct MPI_POINT_S {
    uint16_t x;
    uint16_t y;
};
static_assert(sizeof(MPI_POINT_S) == 4);

struct MPI_SHIFT_S {
    int16_t x;
    int16_t y;
};
static_assert(sizeof(MPI_SHIFT_S) == 4);

struct MPI_MOTION_VEC_S {
    int16_t x;
    int16_t y;
};
static_assert(sizeof(MPI_MOTION_VEC_S) == 4);

struct MPI_PORCH_S {
    uint16_t hor;
    uint16_t ver;
};
static_assert(sizeof(MPI_PORCH_S) == 4);

struct MPI_RECT_S {
    uint16_t x;
    uint16_t y;
    uint16_t width;
    uint16_t height;
};
static_assert(sizeof(MPI_RECT_S) == 8);

// A region by its start and end corners.
struct MPI_RECT_POINT_S {
    int16_t sx;
    int16_t sy;
    int16_t ex;
    int16_t ey;
};
static_assert(sizeof(MPI_RECT_POINT_S) == 8);

struct MPI_RANGE_S {
    uint32_t min;
    uint32_t max;
};
static_assert(sizeof(MPI_RANGE_S) == 8);

// Enumerations have a fixed underlying type: a record may hold any 32-bit value.

// The colour of the Bayer pattern's first pixel.
enum MPI_BAYER_E : int32_t {
    MPI_BAYER_PHASE_G0 = 0,
    MPI_BAYER_PHASE_R = 1,
    MPI_BAYER_PHASE_B = 2,
    MPI_BAYER_PHASE_G1 = 3,
    MPI_BAYER_PHASE_NUM = 4,
};

enum MPI_POS_E : int32_t {
    MPI_POS_NONE = 0,
    MPI_POS_UP = 1,
    MPI_POS_DOWN = 2,
    MPI_POS_LEFT = 3,
    MPI_POS_RIGHT = 4,
    MPI_POS_NUM = 5,
};

enum MPI_ALG_OPT_E : int32_t {
    ALG_OPT_AUTO = 0,
    ALG_OPT_HALF_AUTO = 1,
    ALG_OPT_MANUAL = 2,
    ALG_OPT_NUM = 3,
};
