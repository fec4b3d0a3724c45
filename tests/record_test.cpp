// The real recorder beside a camera that the test steps frame by frame, or one at work.
#include "camera_lock.h"
#include "harness.h"
#include "reader.h"
#include "scene.h"
#include "vorda.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <poll.h>
#include <random>
#include <sstream>
#include <sys/resource.h>
#include <unistd.h>

namespace
{

// A frame of path 0 in which somebody has changed the settings or not.
std::unique_ptr<DipPathCtx> frame_of(uint32_t frame, uint32_t changes = 0)
{
    auto ctx = std::make_unique<DipPathCtx>();
    fill_frame(ctx.get(), 0, frame);
    ctx->intl_ctx.iso.enable += static_cast<int32_t>(changes);
    return ctx;
}

// What `vorda all` prints of it, without the index line.
std::string printed(uint32_t frame, uint32_t changes = 0)
{
    register_categories();
    const auto ctx = frame_of(frame, changes);
    return captured([&] { return parse_entry(ctx.get(), "all"); }).out;
}

// The snapshots of a recording, of which all is there and understood.
std::vector<vordascope::Snapshot> expanded(const std::string &recording)
{
    std::vector<vordascope::Snapshot> result;
    vordascope::Reader reader{std::string_view(recording)};
    while (const vordascope::Snapshot *snapshot = reader.next()) {
        EXPECT_EQ(snapshot->unread_count + snapshot->left_out, 0U) << result.size();
        result.push_back(*snapshot);
    }
    EXPECT_TRUE(reader.notices().empty());
    return result;
}

// Whether a snapshot is what `vorda all` prints of its frame.
bool is_printed(const vordascope::Snapshot &snapshot, uint32_t changes = 0)
{
    const auto frame = static_cast<uint32_t>(*snapshot.frame);
    return snapshot.text.ends_with("path_idx = 0\n" + printed(frame, changes) + "; end\n");
}

// A recorder of path 0, whose frames the test makes.
class Stepped
{
public:
    explicit Stepped(std::vector<std::string> args)
        : child_(start_tool("vorda-record", args, region_.file(), {}, out_.path()))
    {
    }

    void publish(uint32_t frame, uint32_t changes)
    {
        const auto ctx = frame_of(frame, changes);
        camera_lock(&region_->path[0].lock);
        memcpy(static_cast<void *>(&region_->path[0].dip), ctx.get(), sizeof(*ctx));
        path_unlock(&region_->path[0].lock);
    }

    // Whether the recording comes to hold that frame, whole.
    bool holds(uint32_t frame)
    {
        const std::string line = "\nframe = " + std::to_string(frame) + "\n";
        return eventually([&] {
            const size_t at = text().rfind(line);
            return at != std::string::npos && text().find("\n; end\n", at) != std::string::npos;
        });
    }

    size_t size() { return std::filesystem::file_size(out_.path()); }

    // Whether the recording has grown, and by a snapshot that is whole.
    bool ends_beyond(size_t before)
    {
        const std::string end = "\n; end\n";
        std::string tail(end.size(), '\0');
        std::ifstream file(out_.path(), std::ios::binary | std::ios::ate);
        const auto size = static_cast<size_t>(file.tellg());
        if (size <= before + end.size())
            return false;
        file.seekg(static_cast<std::streamoff>(size - end.size()));
        file.read(tail.data(), static_cast<std::streamsize>(tail.size()));
        return tail == end;
    }

    Region &region() { return region_; }
    Child &child() { return *child_; }
    std::string text() { return read_file(out_.path()); }

private:
    Region region_;
    TempFile out_;
    std::unique_ptr<Child> child_;
};

TEST(Recorder, EveryFrameExpandsToWhatVordaPrintsOfIt)
{
    Stepped camera({"--whole", "3600", "all"});
    std::vector<uint32_t> frames = {0};
    ASSERT_TRUE(camera.holds(0));
    const auto step = [&](uint32_t frame) {
        camera.publish(frame, frame / 20);
        frames.push_back(frame);
        return camera.holds(frame);
    };
    for (uint32_t frame = 1; frame < 45; frame++) // the lights go down at 30
        ASSERT_TRUE(step(frame));
    ASSERT_TRUE(step(48)); // three frames that nobody could see
    kill(camera.child().pid(), SIGUSR1);
    ASSERT_TRUE(camera.child().looks_again());
    ASSERT_TRUE(step(49));
    ASSERT_TRUE(step(7)); // the camera has begun anew
    ASSERT_TRUE(step(8));
    camera.region()->descptr.path[0].state = 0;
    const Result result = camera.child().finish();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "Input path 0 is not enabled on video device 0.\n");

    const std::string text = camera.text();
    EXPECT_TRUE(text.starts_with("label host = "));
    const auto recorded = expanded(text);
    ASSERT_EQ(recorded.size(), frames.size());
    double before = 0;
    for (size_t i = 0; i < frames.size(); i++) {
        SCOPED_TRACE(frames[i]);
        EXPECT_EQ(recorded[i].frame, frames[i]);
        EXPECT_TRUE(is_printed(recorded[i], frames[i] / 20));
        EXPECT_EQ(recorded[i].missed, frames[i] == 48 ? 3U : 0U);
        const bool whole = i == 0 || frames[i] == 49 || frames[i] < frames[i - 1];
        EXPECT_EQ(recorded[i].added_to.has_value(), !whole);
        const std::string time(recorded[i].time.text());
        EXPECT_GT(std::stod(time), before);
        EXPECT_EQ(time.size() - time.find('.'), 7U); // microseconds
        before = std::stod(time);
    }
}

// At 25 frames a second and with a whole snapshot each 10 seconds, 200,000 bytes a second.
TEST(Recorder, TenSecondsOfAChangingSceneTakeTwoMillionBytes)
{
    Stepped camera({"--whole", "86400", "all"});
    ASSERT_TRUE(camera.holds(0));
    for (uint32_t frame = 1; frame < 250; frame++) {
        const size_t size = camera.size();
        camera.publish(frame, 0);
        ASSERT_TRUE(eventually([&] { return camera.ends_beyond(size); })) << frame;
    }
    kill(camera.child().pid(), SIGTERM);
    EXPECT_EQ(camera.child().finish().status, -SIGTERM);
    const std::string text = camera.text();
    EXPECT_EQ(expanded(text).size(), 250U);
    RecordProperty("bytes", static_cast<int>(text.size()));
    EXPECT_LE(text.size(), 2000000U);
}

TEST(Recorder, ARingIsWrittenWhenItIsAskedForAndWhenTheTriggerComes)
{
    Stepped camera({"--ring", "600", "--trigger", "share.inttime>9000", "share", "stat.awb"});
    const auto says = [&](const std::string &words) {
        return eventually([&] { return camera.child().said().find(words) != std::string::npos; });
    };
    ASSERT_TRUE(says("Keeping the last "));
    uint32_t frame = 1;
    const auto go_on_to = [&](uint32_t end) {
        for (; frame < end; frame++) {
            camera.publish(frame, 0);
            ASSERT_TRUE(camera.child().looks_again());
        }
    };
    go_on_to(10);
    EXPECT_EQ(camera.text(), "");
    // It may miss frames, which it tells, but not the last one for long.
    ASSERT_TRUE(eventually([&] {
        kill(camera.child().pid(), SIGUSR1);
        return camera.child().looks_again() &&
               camera.text().find("\nframe = 9\n") != std::string::npos;
    })) << camera.child().said();
    go_on_to(60); // the lights go down at 30
    const auto exposure = [](uint32_t number) { return frame_of(number)->dip_ctx.share.inttime; };
    ASSERT_TRUE(says(" for the trigger.\n"));
    kill(camera.child().pid(), SIGTERM);
    const Result result = camera.child().finish();
    EXPECT_EQ(result.status, -SIGTERM);

    // All that was kept, in one chain for each time that it was written; nothing behind the first
    // frame that was seen of the fault.
    const std::string text = camera.text();
    std::istringstream lines(text);
    std::vector<uint32_t> frames;
    int chains = 0;
    for (std::string line, before; std::getline(lines, line); before = line) {
        if (line.starts_with("frame = "))
            frames.push_back(static_cast<uint32_t>(std::stoul(line.substr(8))));
        chains += line.starts_with("dev_idx") && !before.starts_with("added_to = ");
    }
    ASSERT_GT(frames.size(), 1U);
    for (size_t i = 0; i < frames.size(); i++) {
        EXPECT_EQ(exposure(frames[i]) > 9000, i == frames.size() - 1) << frames[i];
        EXPECT_TRUE(i == 0 || frames[i] > frames[i - 1]) << frames[i];
    }
    int writings = 0;
    for (size_t at = 0; (at = result.err.find("Wrote ", at)) != std::string::npos; at += 6)
        writings += result.err[at + 6] != '0';
    EXPECT_EQ(chains, writings) << result.err;
    EXPECT_GE(chains, 2);

    Region region;
    const Result unknown =
        start_tool("vorda-record", {"--ring", "1", "--trigger", "share.speed<1"}, region.file())
            ->finish();
    EXPECT_EQ(unknown.status, 1);
    EXPECT_NE(unknown.err.find("no number `share.speed' is recorded"), std::string::npos);
}

// A camera at work, as fast as it goes.
class AtWork
{
public:
    explicit AtWork(const Region &region, const std::string &fps)
        : camera_({VORDA_BUILD_DIR "/sim/sr-scene", "--live", "--fps", fps, region.file()}, {})
    {
        EXPECT_TRUE(eventually([&] { return region->path[0].dip.dip_ctx.frame_cnt > 2; }));
    }

private:
    Child camera_;
};

TEST(Recorder, StopsBetweenSnapshotsWhateverStopsIt)
{
    Region region;
    const AtWork camera(region, "200");
    std::mt19937 random(1);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
        for (int i = 0; i < 3; i++) {
            const TempFile out;
            const auto child = start_tool("vorda-record", {"--whole", "0.01", "all"}, region.file(),
                                          {}, out.path());
            // Not by reading it, which may be slower than the recorder writes.
            const size_t size = random() % (1 << 20);
            ASSERT_TRUE(eventually([&] { return std::filesystem::file_size(out.path()) > size; }));
            kill(child->pid(), number);
            ASSERT_TRUE(child->ends());
            EXPECT_EQ(child->finish().status, -number);
            const auto recorded = expanded(read_file(out.path()));
            ASSERT_FALSE(recorded.empty());
            for (const auto &snapshot : recorded) // of one frame, never of two
                EXPECT_TRUE(is_printed(snapshot)) << *snapshot.frame;
        }

    // A disk that is full within a snapshot.
    const TempFile out;
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    rlimit small = before;
    small.rlim_cur = 500 << 10;
    setrlimit(RLIMIT_FSIZE, &small);
    const auto full =
        start_tool("vorda-record", {"--whole", "0.01"}, region.file(), {}, out.path());
    setrlimit(RLIMIT_FSIZE, &before);
    const Result result = full->finish();
    EXPECT_EQ(result.status, 2) << result.err;
    EXPECT_NE(result.err.find("cannot write: File too large"), std::string::npos) << result.err;
    EXPECT_GE(expanded(read_file(out.path())).size(), 3U);

    // A reader that takes nothing, and one that goes.
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const std::string writer = "/proc/self/fd/" + std::to_string(ends[1]);
    auto child = start_tool("vorda-record", {"--whole", "0.01"}, region.file(), {}, writer);
    pollfd full_pipe = {.fd = ends[1], .events = POLLOUT, .revents = 0};
    ASSERT_TRUE(eventually([&] { return poll(&full_pipe, 1, 0) == 0; }));
    kill(child->pid(), SIGTERM);
    EXPECT_TRUE(child->ends());
    EXPECT_EQ(child->finish().err, "vorda-record: cannot write: the reader takes nothing.\n");
    child = start_tool("vorda-record", {"--whole", "0.01"}, region.file(), {}, writer);
    close(ends[0]);
    close(ends[1]);
    EXPECT_EQ(child->finish().status, -SIGPIPE);
}

TEST(Recorder, ASignalEndsTheWaitForALockThatStaysTaken)
{
    Stepped camera({"share"});
    ASSERT_TRUE(camera.holds(0));
    PathLock &lock = camera.region()->path[0].lock;
    camera_lock(&lock);
    const std::string held(reinterpret_cast<const char *>(&lock), sizeof(lock));
    camera.region()->path[0].dip.dip_ctx.frame_cnt = 1;
    ASSERT_TRUE(camera.child().looks_again());
    kill(camera.child().pid(), SIGHUP);
    ASSERT_TRUE(camera.child().ends());
    EXPECT_EQ(camera.child().finish().status, -SIGHUP);
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(&lock), sizeof(lock)), held);
    path_unlock(&lock);
}

// The region's file is cut short, as a driver takes its memory away.
TEST(Recorder, SaysThatTheRegionHasGoneAway)
{
    Stepped camera({"share"});
    ASSERT_TRUE(camera.holds(0));
    ASSERT_EQ(truncate(camera.region().file().c_str(), 0), 0);
    const Result result = camera.child().finish();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "vorda-record: the shared region has gone away.\n");
}

TEST(Recorder, KeepsAPeriodOnTheClockAndRecordsWhatIsAskedFor)
{
    Region region;
    const auto record = [&](const std::vector<std::string> &args) {
        return start_tool("vorda-record", args, region.file())->finish();
    };
    // A still camera: only the times differ.
    const Result result = record(
        {"-n", "41", "-i", "0.05", "share.fps", "stat.dhz", "SHARE.inttime", "-p1", "share.fps"});
    EXPECT_EQ(result.status, 0) << result.err;
    const size_t first = result.out.find("dev_idx");
    EXPECT_EQ(result.out.substr(first, result.out.find("; end") - first),
              "dev_idx = 0, path_idx = 1\nshare.fps = 25.00\nshare.inttime = 8000\n"
              "=== stat.dhz ===\nROI luma_avg: 660\n");
    std::vector<double> times;
    for (size_t at = 0; (at = result.out.find("time = ", at)) != std::string::npos; at += 7)
        if (at == 0 || result.out[at - 1] == '\n')
            times.push_back(std::stod(result.out.substr(at + 7)));
    ASSERT_EQ(times.size(), 41U);
    // One that is late is followed sooner; behind a pause after the work none would be.
    int sooner = 0;
    for (size_t i = 1; i < times.size(); i++)
        sooner += times[i] - times[i - 1] < 0.049999;
    EXPECT_GT(sooner, 3);
    EXPECT_EQ(result.out.find("missed"), std::string::npos);

    for (const std::vector<std::string> &args : {std::vector<std::string>{"-n", "0"},
                                                 {"-n", "4294967296"},
                                                 {"-i", "."},
                                                 {"-i", "1e3"},
                                                 {"--ring", "601"},
                                                 {"--trigger", "share.fps<20"},
                                                 {"--ring", "1", "--trigger", "x<"},
                                                 {"-q"},
                                                 {"nothing"},
                                                 {"share.nothing"},
                                                 {"-p", "2"}}) {
        const Result refused = record(args);
        EXPECT_EQ(refused.status, 1) << args[0];
        EXPECT_EQ(refused.out, "");
        EXPECT_NE(refused.err, "");
    }
    const Result help = record({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.starts_with("Usage: vorda-record "));
}

} // namespace
