// The region client over the stand-in device, which is linked in.
#include "harness.h"
#include "log.h"
#include "mpi_index.h"
#include "sr_ctrl.h"
#include "sr_device.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace
{

constexpr int ERROR = 187;
constexpr int WARNING = 188;

size_t open_descriptors()
{
    size_t count = 0;
    for ([[maybe_unused]] const auto &entry : std::filesystem::directory_iterator("/proc/self/fd"))
        count++;
    return count;
}

class SrCtrl : public ::testing::Test
{
protected:
    SrCtrl() { use(region_.file(), ""); }
    ~SrCtrl() override
    {
        SR_closeShm();
        unsetenv(SR_REGION_ENV);
        unsetenv(SR_FAIL_ENV);
    }

    static void use(const std::string &file, const std::string &failures)
    {
        setenv(SR_REGION_ENV, file.c_str(), 1);
        setenv(SR_FAIL_ENV, failures.c_str(), 1);
        logged.clear();
    }

    static bool is_mapped(const std::string &file)
    {
        return read_file("/proc/self/maps").find(file) != std::string::npos;
    }

    Region region_;
};

TEST_F(SrCtrl, EachFailureOfOpeningIsReportedAndLeavesNothingBehind)
{
    struct Row {
        std::string step;
        std::string message;
    };
    const Row rows[] = {
        {"open", "[Error][SR] Cannot open /dev/sr. err: "},
        {"query", "[Error][SR] Query shm info failed. err: "},
        {"alloc", "[Error][SR] Alloc shm failed. err: "},
        {"mmap", "[Error][SR] Mmap shared memory error. err: "},
    };
    const size_t before = open_descriptors();
    for (const Row &row : rows) {
        for (const int error : {EPERM, ENOENT, EINTR, EIO, ENXIO, EAGAIN, ENOMEM, EACCES, EBUSY,
                                ENODEV, EINVAL, ENFILE, EMFILE, ENOTTY, ENOSPC, ENOSYS}) {
            SCOPED_TRACE(row.step + ":" + std::to_string(error));
            const TempFile none; // the region does not exist yet
            use(none.path(), row.step + ":" + std::to_string(error));
            EXPECT_EQ(SR_openShm(), -error);
            EXPECT_EQ(logged, Log({{ERROR, row.message + std::to_string(-error) + "\n"}}));
            EXPECT_FALSE(is_mapped(none.path()));
            EXPECT_EQ(open_descriptors(), before);
        }
    }
}

TEST_F(SrCtrl, FailedCompletionStaysOpenWithDefaultLevels)
{
    region_->log.sr_log = 0;
    const size_t before = open_descriptors();
    use(region_.file(), "complete:" + std::to_string(EIO));
    EXPECT_EQ(SR_openShm(), -EIO);
    EXPECT_EQ(logged, Log());
    EXPECT_EQ(open_descriptors(), before);
    EXPECT_NE(g_log_level, &region_->log);
    EXPECT_EQ(g_log_level->sr_log, 6);
    EXPECT_EQ(SR_openShm(), 0);
    EXPECT_EQ(logged, Log({{WARNING, "[Warning][SR] SR is already opened.\n"}}));
    SR_closeShm();
    EXPECT_EQ(logged.size(), 1U);
}

TEST_F(SrCtrl, CreatesTheRegionUnlessAnotherProcessWasFaster)
{
    for (const std::string failures : {"", "alloc:17"}) {
        const TempFile none;
        use(none.path(), failures);
        EXPECT_EQ(SR_openShm(), 0);
        EXPECT_TRUE(is_mapped(none.path()));
        SR_closeShm();
        EXPECT_FALSE(is_mapped(none.path()));
        EXPECT_EQ(std::filesystem::file_size(none.path()), 594696U);
        EXPECT_EQ(logged, Log());
    }
}

TEST_F(SrCtrl, OpeningFillsTheTableAndKeepsTheStates)
{
    auto *words = reinterpret_cast<uint32_t *>(&region_->descptr);
    for (uint32_t i = 0; i < sizeof(SrMemDescptr) / 4; i++)
        words[i] = 1000000 + i;
    ASSERT_EQ(SR_openShm(), 0);

    struct Table {
        uint32_t first;
        uint32_t count;
        uint32_t offset;
        uint32_t size;
    };
    for (const Table &table :
         {Table{0, 1, 1800, 13}, Table{1, 1, 1816, 1196}, Table{2, 8, 3012, 4716},
          Table{10, 4, 40744, 131080}, Table{14, 8, 565064, 120}, Table{22, 128, 566024, 224}}) {
        for (uint32_t i = 0; i < table.count; i++) {
            const uint32_t *info = words + 3 * (table.first + i);
            EXPECT_EQ(info[0], 1000000 + 3 * (table.first + i));
            EXPECT_EQ(info[1], table.offset + i * table.size);
            EXPECT_EQ(info[2], table.size);
        }
    }
}

TEST_F(SrCtrl, LookUpHonoursBoundsAndStates)
{
    for (SrDescptrInfo *info = &region_->descptr.log; info != std::end(region_->descptr.osd);
         info++)
        info->state = SR_DESCPTR_PRESENT;
    ASSERT_EQ(SR_openShm(), 0);
    const MPI_DEV first = {};
    const auto *base =
        static_cast<uint8_t *>(SR_getShmAddr(&first, SR_CTRL_DESCPTR_ITEM_VIDEO_DEV)) -
        offsetof(VplatConf, dev);

    // The highest index of each kind, its record, and the lowest index beyond.
    struct Row {
        SrCtrlDescptrItem item;
        uint32_t last;
        uint32_t offset;
        uint32_t beyond;
    };
    for (const Row &row : {Row{SR_CTRL_DESCPTR_ITEM_VIDEO_DEV, 0xFFFFFF00, 1816, 1},
                           Row{SR_CTRL_DESCPTR_ITEM_VIDEO_CHN, 0xFFFF07FF, 36024, 0x0800},
                           Row{SR_CTRL_DESCPTR_ITEM_INPUT_PATH, 0x808003FF, 433984, 0x0400},
                           Row{SR_CTRL_DESCPTR_ITEM_ENC_CHN, 0xFFFFFF07, 565904, 8},
                           Row{SR_CTRL_DESCPTR_ITEM_OSD_HANDLE, 127, 594472, 0x80000000}}) {
        EXPECT_EQ(SR_getShmAddr(&row.last, row.item), base + row.offset);
        EXPECT_EQ(SR_getShmAddr(&row.beyond, row.item), nullptr);
    }
    for (const int kind : {-1, 0, 6, 7})
        EXPECT_EQ(SR_getShmAddr(&first, static_cast<SrCtrlDescptrItem>(kind)), nullptr);

    const MPI_PATH path = {.dev = 9, .path = 2, .dummy1 = 0x80, .dummy0 = 0x80};
    for (const uint32_t state : {0U, 2U, 0xFFFFFFFFU}) {
        region_->descptr.path[2].state = state;
        EXPECT_EQ(SR_getShmAddr(&path, SR_CTRL_DESCPTR_ITEM_INPUT_PATH), nullptr);
    }
    // Somebody tampers with the table after the opening.
    for (const uint32_t offset : {594696U - 131072U, 302905U, 0xFFFFFFF8U}) {
        region_->descptr.path[2] = {.state = SR_DESCPTR_PRESENT, .offset = offset, .size = 1};
        EXPECT_EQ(SR_getShmAddr(&path, SR_CTRL_DESCPTR_ITEM_INPUT_PATH), nullptr);
    }
    EXPECT_EQ(logged, Log());
}

TEST_F(SrCtrl, LevelsOfTheRegionGateTheMessagesWhileItIsMapped)
{
    const MPI_PATH path = {};
    EXPECT_EQ(SR_getShmAddr(&path, SR_CTRL_DESCPTR_ITEM_INPUT_PATH), nullptr);
    SR_closeShm();
    EXPECT_EQ(logged, Log({{ERROR, "[Error][SR] Device node has not been opened.\n"},
                           {WARNING, "[Warning][SR] SR is already closed!\n"}}));

    for (const int level : {3, 4, 5, 8}) {
        logged.clear();
        region_->log.sr_log = static_cast<uint8_t>(level);
        EXPECT_EQ(SR_openShm(), 0);
        EXPECT_EQ(SR_openShm(), 0);
        EXPECT_EQ(logged.size(), level > 4 ? 1U : 0U) << level;
        SR_closeShm();
    }
    logged.clear();
    SR_closeShm();
    EXPECT_EQ(logged.size(), 1U);
}

} // namespace
