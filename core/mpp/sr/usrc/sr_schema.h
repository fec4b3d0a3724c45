// Layout of the shared region.
//
//   VplatConf       0  +---------------------------+
//                      | descr. table SrMemDescptr |  state, offset and size of every item
//                1800  +---------------------------+
//                      | log          LogConf      |  levels that all processes share
//                1816  +---------------------------+
//                      | dev[1]       chn[8]       |
//               40744  +---------------------------+
//                      | path[4]      VplatPathConf|  one DIP context each
//              565064  +---------------------------+
//                      | enc[8]       osd[128]     |
//              594696  +---------------------------+
#pragma once

#include "log.h"
#include "vplat_types.h"

#include <cstddef>
#include <cstdint>

inline constexpr size_t VIDEO_DEV_NUM = 1;
inline constexpr size_t VIDEO_CHN_NUM = 8;
inline constexpr size_t INPUT_PATH_NUM = 4;
inline constexpr size_t ENC_CHN_NUM = 8;
inline constexpr size_t OSD_HANDLE_NUM = 128;

inline constexpr uint32_t SR_DESCPTR_PRESENT = 1; // any other state: the item is absent

struct SrDescptrInfo {
    uint32_t state;
    uint32_t offset; // of the item's record, from the start of the region
    uint32_t size;   // of the item's record, in bytes
};
static_assert(sizeof(SrDescptrInfo) == 12);
static_assert(offsetof(SrDescptrInfo, offset) == 4);
static_assert(offsetof(SrDescptrInfo, size) == 8);

struct SrMemDescptr {
    SrDescptrInfo log;
    SrDescptrInfo dev[VIDEO_DEV_NUM];
    SrDescptrInfo chn[VIDEO_CHN_NUM];
    SrDescptrInfo path[INPUT_PATH_NUM];
    SrDescptrInfo enc[ENC_CHN_NUM];
    SrDescptrInfo osd[OSD_HANDLE_NUM];
};
static_assert(sizeof(SrMemDescptr) == 1800);
static_assert(offsetof(SrMemDescptr, dev) == 12);
static_assert(offsetof(SrMemDescptr, chn) == 24);
static_assert(offsetof(SrMemDescptr, path) == 120);
static_assert(offsetof(SrMemDescptr, enc) == 168);
static_assert(offsetof(SrMemDescptr, osd) == 264);

// Records that only their owners read.

struct VplatDevConf {
    uint8_t opaque[1196];
};
static_assert(sizeof(VplatDevConf) == 1196);

struct VplatChnConf {
    uint8_t opaque[4716];
};
static_assert(sizeof(VplatChnConf) == 4716);

struct VplatEncConf {
    uint8_t opaque[120];
};
static_assert(sizeof(VplatEncConf) == 120);

struct VplatOsdConf {
    uint8_t opaque[224];
};
static_assert(sizeof(VplatOsdConf) == 224);

struct VplatConf {
    SrMemDescptr descptr;
    LogConf log;
    uint8_t gap_1813[3];
    VplatDevConf dev[VIDEO_DEV_NUM];
    VplatChnConf chn[VIDEO_CHN_NUM];
    VplatPathConf path[INPUT_PATH_NUM];
    VplatEncConf enc[ENC_CHN_NUM];
    VplatOsdConf osd[OSD_HANDLE_NUM];
};
static_assert(sizeof(VplatConf) == 594696);
static_assert(offsetof(VplatConf, log) == 1800);
static_assert(offsetof(VplatConf, dev) == 1816);
static_assert(offsetof(VplatConf, chn) == 3012);
static_assert(offsetof(VplatConf, path) == 40744);
static_assert(offsetof(VplatConf, enc) == 565064);
static_assert(offsetof(VplatConf, osd) == 566024);
