// The region client over the stand-in device, which is linked in.
#include "harness.h"
#include "log.h"
#include "mpi_index.h"
#include "sr_ctrl.h"
#include "sr_device.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

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
        sr_observer = nullptr;
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
                                ENODEV, EINVAL, ENFILE, EMFILE, ENOTTY, ENOSPC, ENOSYS, EEXIST}) {
            if (error == EEXIST && row.step == "alloc")
                continue; // no failure
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

using Steps = std::vector<std::string>;
Steps steps;

TEST_F(SrCtrl, AsksTheDriverForNothingElseAndInThisOrder)
{
    sr_observer = [](const char *step) { steps.emplace_back(step); };
    steps.clear();
    EXPECT_EQ(SR_openShm(), 0);
    SR_closeShm();
    EXPECT_EQ(steps,
              Steps({"open 2", "query", "map 594696 3 0", "complete", "close", "unmap 594696"}));

    const TempFile none;
    use(none.path(), "");
    steps.clear();
    EXPECT_EQ(SR_openShm(), 0);
    SR_closeShm();
    EXPECT_EQ(steps, Steps({"open 2", "query", "alloc 594696", "map 594696 3 0", "complete",
                            "close", "unmap 594696"}));
    EXPECT_EQ(logged, Log());
}

TEST_F(SrCtrl, CompletesWithTheTableFilledAndUnmapsWithTheLevelsPutBack)
{
    static const SrMemDescptr *table = nullptr;
    static uint32_t last = 0;
    static const LogConf *levels = nullptr;
    table = &region_->descptr;
    const LogConf *const defaults = g_log_level;
    sr_observer = [](const char *step) {
        if (step == std::string("complete"))
            last = table->osd[127].offset;
        if (step == std::string("unmap 594696"))
            levels = g_log_level;
    };
    EXPECT_EQ(SR_openShm(), 0);
    EXPECT_EQ(last, 594472U);
    EXPECT_NE(g_log_level, defaults);
    SR_closeShm();
    EXPECT_EQ(levels, defaults);
}

// The first thread stops at a step until the second waits for the lock.
TEST_F(SrCtrl, ASecondThreadWaitsForTheFirst)
{
    static std::atomic<bool> stopped;
    static std::atomic<bool> resumed;
    static std::string stop_at;
    static std::atomic<int> opens;
    sr_observer = [](const char *step) {
        opens += step == std::string("open 2");
        if (step != stop_at)
            return;
        stopped = true;
        resumed.wait(false);
    };
    static const MPI_PATH path = {};
    struct Row {
        std::string step;
        std::function<void()> second;
    };
    const Row rows[] = {
        {"query", [] { SR_openShm(); }},
        {"complete", [] { SR_getShmAddr(&path, SR_CTRL_DESCPTR_ITEM_INPUT_PATH); }},
    };
    for (const Row &row : rows) {
        stop_at = row.step;
        stopped = resumed = false;
        opens = 0;
        std::thread first([] { SR_openShm(); });
        EXPECT_TRUE(eventually([] { return stopped.load(); }));
        std::atomic<bool> done = false;
        std::atomic<long> waits = -1;
        const std::string self = "/proc/self/task/";
        std::string task;
        std::thread other([&] {
            task = self + std::to_string(gettid());
            waits = waits_of(task);
            row.second();
            done = true;
        });
        EXPECT_TRUE(eventually([&] { return waits >= 0 && waits_of(task) > waits; }));
        EXPECT_FALSE(done) << row.step;
        EXPECT_EQ(opens, 1);
        resumed = true;
        resumed.notify_all();
        first.join();
        other.join();
        EXPECT_TRUE(done);
        SR_closeShm();
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
    for (size_t i = 0; i < sizeof(LogConf); i++)
        EXPECT_EQ((&g_log_level->dip_log)[i], 6) << i;
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
    for (const uint32_t size : {0U, 131081U, 0xFFFFFFFFU}) { // only the offset counts
        region_->descptr.path[3].size = size;
        const uint32_t last = 0x0300;
        EXPECT_EQ(SR_getShmAddr(&last, SR_CTRL_DESCPTR_ITEM_INPUT_PATH), base + 433984);
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
