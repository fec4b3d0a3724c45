// Client of the shared region in which the media platform keeps its live configuration.
//
// One process maps the region at most once. Several threads may open it, and each may look items up
// once its own SR_openShm has returned. A look-up beside the first opening of another thread is a
// race, and so is SR_closeShm beside anything.
#pragma once

#include <cstdint>

// Kinds of items that the region's descriptor table lists.
enum SrCtrlDescptrItem : int32_t {
    SR_CTRL_DESCPTR_ITEM_VIDEO_SYS = 0,
    SR_CTRL_DESCPTR_ITEM_VIDEO_DEV = 1,
    SR_CTRL_DESCPTR_ITEM_VIDEO_CHN = 2,
    SR_CTRL_DESCPTR_ITEM_INPUT_PATH = 3,
    SR_CTRL_DESCPTR_ITEM_ENC_CHN = 4,
    SR_CTRL_DESCPTR_ITEM_OSD_HANDLE = 5,
    SR_CTRL_DESCPTR_ITEM_NUM = 6,
};

// Maps the region, creating it when it does not exist yet, and fills in the offsets and sizes of
// its descriptor table. Opening an open client only warns.
//
// Returns 0 when the region is mapped, otherwise the negated error number of the failing step:
// opening the device, querying, creating or mapping the region, or completing the opening. Nothing
// stays mapped after a failure, but for one: when the completion fails the client stays open, and
// SR_closeShm closes it. The device itself is never left open.
int32_t SR_openShm();

// Finds the record of an item. `idx` is the address of a 32-bit index: MPI_DEV, MPI_CHN, MPI_PATH
// or MPI_ECHN by the kind of the item, or an OSD handle as uint32_t.
//
// Returns the record's address inside the mapping, valid until SR_closeShm, or nullptr when the
// client is closed, the index is beyond the item's table, or the item is not present.
void *SR_getShmAddr(const void *idx, SrCtrlDescptrItem item);

// Unmaps the region. Closing a closed client only warns.
void SR_closeShm();
