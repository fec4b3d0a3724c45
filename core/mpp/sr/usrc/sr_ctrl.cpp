// Opening, look-up and closing of the shared region.
#include "sr_ctrl.h"

#include "log.h"
#include "mpi_index.h"
#include "sr.h"
#include "sr_schema.h"

#include <cerrno>
#include <fcntl.h>
#include <pthread.h>
#include <span>
#include <sys/mman.h>
#include <unistd.h>

namespace
{

struct SrShmData {
    VplatConf *conf; // the mapped region; nullptr: closed
    uint32_t size;
};

constexpr uint8_t DEFAULT_LEVEL = LOG_INFO;
constexpr LogConf g_default_log = {
    .dip_log = DEFAULT_LEVEL,
    .enc_log = DEFAULT_LEVEL,
    .is_log = DEFAULT_LEVEL,
    .isp_log = DEFAULT_LEVEL,
    .iva_log = DEFAULT_LEVEL,
    .mpi_log = DEFAULT_LEVEL,
    .osd_log = DEFAULT_LEVEL,
    .rc_log = DEFAULT_LEVEL,
    .rs_log = DEFAULT_LEVEL,
    .senif_log = DEFAULT_LEVEL,
    .sr_log = DEFAULT_LEVEL,
    .vb_log = DEFAULT_LEVEL,
    .vplat_log = DEFAULT_LEVEL,
};

SrShmData g_shm_data = {nullptr, 0};
pthread_mutex_t g_sr_ctrl_lock = PTHREAD_MUTEX_INITIALIZER;

class CtrlLockGuard
{
public:
    CtrlLockGuard() { pthread_mutex_lock(&g_sr_ctrl_lock); }
    ~CtrlLockGuard() { pthread_mutex_unlock(&g_sr_ctrl_lock); }
    CtrlLockGuard(const CtrlLockGuard &) = delete;
    CtrlLockGuard &operator=(const CtrlLockGuard &) = delete;
};

// Describes `count` records of one size that follow each other from `offset` on. The states belong
// to the items' owners and stay as they are.
void describe(SrDescptrInfo *info, size_t count, size_t offset, size_t size)
{
    for (size_t i = 0; i < count; i++) {
        info[i].offset = static_cast<uint32_t>(offset + i * size);
        info[i].size = static_cast<uint32_t>(size);
    }
}

void setMetadata(SrMemDescptr *descptr)
{
    describe(&descptr->log, 1, offsetof(VplatConf, log), sizeof(LogConf));
    describe(descptr->dev, VIDEO_DEV_NUM, offsetof(VplatConf, dev), sizeof(VplatDevConf));
    describe(descptr->chn, VIDEO_CHN_NUM, offsetof(VplatConf, chn), sizeof(VplatChnConf));
    describe(descptr->path, INPUT_PATH_NUM, offsetof(VplatConf, path), sizeof(VplatPathConf));
    describe(descptr->enc, ENC_CHN_NUM, offsetof(VplatConf, enc), sizeof(VplatEncConf));
    describe(descptr->osd, OSD_HANDLE_NUM, offsetof(VplatConf, osd), sizeof(VplatOsdConf));
}

void initLog(const VplatConf *conf)
{
    g_log_level = &conf->log;
}

void deinitLog()
{
    g_log_level = &g_default_log;
}

// An item's descriptor, nullptr when there is none, and what the record it leads to must be like.
struct ItemRef {
    const SrDescptrInfo *info;
    size_t record_size;
    size_t record_align;
};

template <typename Record>
ItemRef at(std::span<const SrDescptrInfo> table, uint32_t index)
{
    return {index < table.size() ? &table[index] : nullptr, sizeof(Record), alignof(Record)};
}

ItemRef getDescptr(const SrMemDescptr *descptr, const void *idx, SrCtrlDescptrItem item)
{
    switch (item) {
    case SR_CTRL_DESCPTR_ITEM_VIDEO_DEV:
        return at<VplatDevConf>(descptr->dev, static_cast<const MPI_DEV *>(idx)->dev);
    case SR_CTRL_DESCPTR_ITEM_VIDEO_CHN:
        return at<VplatChnConf>(descptr->chn, static_cast<const MPI_CHN *>(idx)->chn);
    case SR_CTRL_DESCPTR_ITEM_INPUT_PATH:
        return at<VplatPathConf>(descptr->path, static_cast<const MPI_PATH *>(idx)->path);
    case SR_CTRL_DESCPTR_ITEM_ENC_CHN:
        return at<VplatEncConf>(descptr->enc, static_cast<const MPI_ECHN *>(idx)->chn);
    case SR_CTRL_DESCPTR_ITEM_OSD_HANDLE:
        return at<VplatOsdConf>(descptr->osd, *static_cast<const uint32_t *>(idx));
    default:
        return {nullptr, 0, 1};
    }
}

// Makes sure that the region exists and maps it. Returns 0 or a negated error number.
int32_t mapRegion(int fd)
{
    SrKmallocParam param = {};
    if (ioctl(fd, SR_IOC_QUERY_SHM_INFO, &param) < 0) {
        const int32_t err = -errno;
        MPP_LOG(sr_log, LOG_ERR, "[Error][SR] Query shm info failed. err: %d\n", err);
        return err;
    }

    if (param.ker_addr == 0) {
        param.n_byte = sizeof(VplatConf);
        // EEXIST: another process has created the region since the query.
        if (ioctl(fd, SR_IOC_ALLOC_SHM, &param) < 0 && errno != EEXIST) {
            const int32_t err = -errno;
            MPP_LOG(sr_log, LOG_ERR, "[Error][SR] Alloc shm failed. err: %d\n", err);
            return err;
        }
    }

    void *conf = mmap(nullptr, sizeof(VplatConf), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (conf == MAP_FAILED) {
        const int32_t err = -errno;
        MPP_LOG(sr_log, LOG_ERR, "[Error][SR] Mmap shared memory error. err: %d\n", err);
        return err;
    }
    g_shm_data = {static_cast<VplatConf *>(conf), sizeof(VplatConf)};
    return 0;
}

// Tells the driver that the table of the mapped region is filled. Returns 0 or a negated error
// number.
int32_t completeOpen(int fd)
{
    if (ioctl(fd, SR_IOC_OPEN_COMPLETE) < 0)
        return -errno;
    initLog(g_shm_data.conf);
    return 0;
}

} // namespace

const LogConf *g_log_level = &g_default_log;

int32_t SR_openShm()
{
    const CtrlLockGuard guard;
    if (g_shm_data.conf != nullptr) {
        MPP_LOG(sr_log, LOG_WARNING, "[Warning][SR] SR is already opened.\n");
        return 0;
    }

    const int fd = open(SR_DEVICE, O_RDWR);
    if (fd < 0) {
        const int32_t err = -errno;
        MPP_LOG(sr_log, LOG_ERR, "[Error][SR] Cannot open %s. err: %d\n", SR_DEVICE, err);
        return err;
    }

    int32_t err = mapRegion(fd);
    if (g_shm_data.conf != nullptr) {
        setMetadata(&g_shm_data.conf->descptr);
        err = completeOpen(fd);
    }
    close(fd); // the mapping outlives it
    return err;
}

void *SR_getShmAddr(const void *idx, SrCtrlDescptrItem item)
{
    if (g_shm_data.conf == nullptr) {
        MPP_LOG(sr_log, LOG_ERR, "[Error][SR] Device node has not been opened.\n");
        return nullptr;
    }

    const CtrlLockGuard guard;
    const auto [info, size, align] = getDescptr(&g_shm_data.conf->descptr, idx, item);
    if (info == nullptr || info->state != SR_DESCPTR_PRESENT)
        return nullptr;
    // Every process of the platform can write the table, also between two looks at it: what is
    // checked is what is used, so that a record never leaves the mapping.
    const uint32_t offset = static_cast<const volatile SrDescptrInfo *>(info)->offset;
    if (offset > sizeof(VplatConf) - size || offset % align != 0)
        return nullptr;
    return reinterpret_cast<uint8_t *>(g_shm_data.conf) + offset;
}

void SR_closeShm()
{
    if (g_shm_data.conf == nullptr) {
        MPP_LOG(sr_log, LOG_WARNING, "[Warning][SR] SR is already closed!\n");
        return;
    }

    deinitLog();
    munmap(g_shm_data.conf, g_shm_data.size);
    g_shm_data = {nullptr, 0};
}
