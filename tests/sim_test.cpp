// The programs beside the stand-in device: what they do with regions, and what they refuse.
#include "camera_lock.h"
#include "harness.h"
#include "scene.h"

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

const std::string native_vorda = VORDA_BUILD_DIR "/vorda";
const std::string sr_run = VORDA_BUILD_DIR "/sim/sr-run";
const std::string sr_scene = VORDA_BUILD_DIR "/sim/sr-scene";
const std::string sr_capture = VORDA_BUILD_DIR "/sim/sr-capture";
const Environment environment = {{"ASAN_OPTIONS", "verify_asan_link_order=0"}};

std::string all_of(const TempFile &file)
{
    return run_vorda({"all"}, file.path()).out;
}

TEST(Sim, ErrorsSayWhatIsWrongAndHelpIsNoError)
{
    const TempFile text(1000);
    const std::pair<std::vector<std::string>, std::string> rows[] = {
        {{sr_run}, "sr-run: missing command\nTry 'sr-run --help'.\n"},
        {{sr_run, "--region"}, "sr-run: missing file for --region\nTry 'sr-run --help'.\n"},
        {{sr_run, "--fast", "true"}, "sr-run: unknown option --fast\nTry 'sr-run --help'.\n"},
        {{sr_run, "--unlock", "true"}, "sr-run: --unlock needs --region\nTry 'sr-run --help'.\n"},
        {{sr_run, "--region", nowhere, "true"},
         "sr-run: " + nowhere + ": No such file or directory\n"},
        {{sr_run, "--region", "/", "true"}, "sr-run: /: Is a directory\n"},
        {{sr_run, "--region", text.path(), "true"},
         "sr-run: " + text.path() + ": not a region, its size is another one\n"},
        {{sr_run, "--", nowhere}, "sr-run: " + nowhere + ": No such file or directory\n"},
        {{sr_scene}, "sr-scene: missing file\nTry 'sr-scene --help'.\n"},
        {{sr_scene, "--fps", "x", "f"},
         "sr-scene: --fps takes a number from 0 to 1000, not x\nTry 'sr-scene --help'.\n"},
        {{sr_scene, "--slow", "f"}, "sr-scene: unknown option --slow\nTry 'sr-scene --help'.\n"},
        {{sr_scene, "f", "g"},
         "sr-scene: one file is enough, not also g\nTry 'sr-scene --help'.\n"},
        {{sr_scene, nowhere}, "sr-scene: " + nowhere + ": No such file or directory\n"},
        {{sr_scene, text.path()},
         "sr-scene: " + text.path() + ": exists and is no region; --force overwrites it\n"},
        {{sr_capture, "f"}, "sr-capture: unexpected word f\nTry 'sr-capture --help'.\n"},
        {{sr_run, sr_capture}, "sr-capture: /dev/sr: there is no region yet\n"},
    };
    for (const auto &[argv, message] : rows) {
        const Result result = Child(argv, environment).finish();
        EXPECT_EQ(result.err, message);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.status, 2);
    }
    EXPECT_EQ(read_file(text.path()), std::string(1000, '\0'));

    for (const std::string &program : {sr_run, sr_scene, sr_capture})
        for (const char *help : {"-h", "--help"}) {
            const Result result = Child({program, help}, {}).finish();
            EXPECT_TRUE(result.out.starts_with("Usage: sr-")) << result.out;
            EXPECT_EQ(result.err, "");
            EXPECT_EQ(result.status, 0);
        }
}

TEST(Sim, ASceneIsTheSameAgainAndGoesOnWhenAsked)
{
    const TempFile first;
    const TempFile second(1000);
    EXPECT_EQ(Child({sr_scene, first.path()}, {}).finish().status, 0);
    EXPECT_EQ(Child({sr_scene, "--force", second.path()}, {}).finish().status, 0);
    EXPECT_EQ(std::filesystem::file_size(second.path()), sizeof(VplatConf));
    const std::string before = all_of(first);
    EXPECT_TRUE(all_of(second) == before);

    Child live({sr_scene, "--live", "--fps", "200", first.path()}, {});
    EXPECT_TRUE(eventually([&] { return all_of(first) != before; }));
    kill(live.pid(), SIGTERM);
    EXPECT_EQ(live.finish().status, 0); // it ends after a whole frame
}

TEST(Sim, ACommandSeesARegionOrAFreshOne)
{
    const Region region;
    EXPECT_EQ(
        Child({sr_run, "--region", region.file(), "--", native_vorda, "vinfo.bayer"}, environment)
            .finish()
            .out,
        "dev_idx = 0, path_idx = 0\nvinfo.bayer = 1 (Phase R)\n");
    EXPECT_EQ(Child({sr_run, native_vorda, "vinfo"}, environment).finish().err,
              "Input path 0 is not enabled on video device 0.\n");

    // What is preloaded besides stays so.
    const std::string preload =
        Child({sr_run, "printenv", "LD_PRELOAD"}, {{"LD_PRELOAD", "libm.so.6"}}).finish().out;
    EXPECT_TRUE(preload.ends_with("/libsr_device.so:libm.so.6\n")) << preload;
}

TEST(Sim, ABuildFolderMayHaveABlankAndAColonInItsName)
{
    const Region region;
    TempFile folder;
    const std::string moved = folder.path() + " a:b";
    std::filesystem::create_directory(moved);
    for (const char *name : {"sr-run", "libsr_device.so"})
        std::filesystem::copy(VORDA_BUILD_DIR + std::string("/sim/") + name, moved + "/" + name);
    const Result result =
        Child({moved + "/sr-run", "--region", region.file(), native_vorda, "vinfo.bayer"},
              environment)
            .finish();
    EXPECT_EQ(result.out, "dev_idx = 0, path_idx = 0\nvinfo.bayer = 1 (Phase R)\n");
    EXPECT_EQ(result.err, "");
    std::filesystem::remove_all(moved);
}

// A region whose lock was held when it was captured: nobody releases it.
TEST(Sim, ACapturedLockIsNamedAndOpenedInACopy)
{
    const Region region;
    region->path[1].lock.word = 1;
    Child waiting({sr_run, "--region", region.file(), native_vorda, "-p", "1", "vinfo.bayer"},
                  environment);
    const std::string notice =
        "sr-run: " + region.file() +
        ": the lock of path 1 is taken. If nobody is left to release it, as in a\n"
        "captured region, run it with --unlock.\n";
    EXPECT_TRUE(eventually([&] { return waiting.said() == notice; })) << waiting.said();
    kill(waiting.pid(), SIGKILL);
    EXPECT_EQ(waiting.finish().status, -SIGKILL); // vorda waits for the lock

    const std::string before = read_file(region.file());
    const std::string text = "dev_idx = 0, path_idx = 1\nvinfo.bayer = 0 (Phase Gr)\n";
    const std::vector<std::string> unlocked = {sr_run,       "--unlock", "--region", region.file(),
                                               native_vorda, "-p",       "1",        "vinfo.bayer"};
    EXPECT_EQ(Child(unlocked, environment).finish().out, text);
    EXPECT_TRUE(read_file(region.file()) == before);
}

// A camera at work keeps it for a moment, which is no news.
TEST(Sim, ALockThatIsReleasedSoonIsNotNamed)
{
    const Region region;
    Result result;
    for (int attempt = 0; attempt < 20; attempt++) { // one who looked for too long has a message
        camera_lock(&region->path[1].lock);
        Child child({sr_run, "--region", region.file(), native_vorda, "-p1", "vinfo.bayer"},
                    environment);
        ASSERT_TRUE(child.looks_again());
        path_unlock(&region->path[1].lock);
        result = child.finish();
        EXPECT_EQ(result.status, 0);
        if (result.err.empty())
            break;
    }
    EXPECT_EQ(result.err, "");
}

// Root may write whatever its mode says, so somebody else runs the programs then, from a folder that
// is open to all.
TEST(Sim, ARegionThatCannotBeWrittenIsOpenedInACopy)
{
    const Region region;
    region->path[1].lock.word = 1; // for good, as far as vorda can tell
    const std::string before = read_file(region.file());
    chmod(region.file().c_str(), 0444);
    const TempFile name;
    const std::string folder = name.path() + ".d";
    std::filesystem::create_directory(folder);
    for (const char *file : {"sim/sr-run", "sim/libsr_device.so", "vorda"})
        std::filesystem::copy(VORDA_BUILD_DIR "/" + std::string(file), folder);
    std::vector<std::string> argv = {
        folder + "/sr-run", "--region", region.file(), folder + "/vorda", "-p", "1", "vinfo.bayer"};
    if (geteuid() == 0)
        argv.insert(argv.begin(), {"setpriv", "--reuid=65534", "--clear-groups"});
    const Result result = Child(argv, environment).finish();
    EXPECT_EQ(result.out, "dev_idx = 0, path_idx = 1\nvinfo.bayer = 0 (Phase Gr)\n");
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(read_file(region.file()) == before);
    std::filesystem::remove_all(folder);
}

TEST(Sim, ACaptureIsWholeAndItsLocksAreFree)
{
    const Region region;
    region->path[0].lock.word = 1; // for longer than the capture waits
    region->path[0].lock.owner = 4711;
    const TempFile file;
    const Result result =
        Child({sr_run, "--region", region.file(), sr_capture}, environment, file.path()).finish();
    EXPECT_NE(result.err.find("path 0 stays locked"), std::string::npos) << result.err;
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(region->path[0].lock.word, 1U);
    region->path[0].lock.word = 0;
    region->path[0].lock.owner = 0;
    EXPECT_TRUE(read_file(file.path()) == read_file(region.file()));
}

TEST(Sim, ACaptureIsOfWhatThereIsWhenTheLockIsReleased)
{
    Region region;
    const TempFile file;
    Result result;
    for (int attempt = 0; attempt < 20; attempt++) { // one who waited for too long has a message
        camera_lock(&region->path[0].lock);
        Child child({sr_run, "--region", region.file(), sr_capture}, environment, file.path());
        const std::string proc = "/proc/" + std::to_string(child.pid());
        ASSERT_TRUE(eventually([&] {
            return std::filesystem::read_symlink(proc + "/exe").filename() == "sr-capture" &&
                   read_file(proc + "/maps").find(region.file()) != std::string::npos;
        }));
        ASSERT_TRUE(child.looks_again());
        region->path[0].dip.dip_ctx.frame_cnt++;
        path_unlock(&region->path[0].lock);
        result = child.finish();
        EXPECT_EQ(result.status, 0);
        if (result.err.find("stays locked") == std::string::npos)
            break;
    }
    EXPECT_EQ(result.err.find("stays locked"), std::string::npos) << result.err;
    EXPECT_TRUE(read_file(file.path()) == read_file(region.file()));
}

// Lets a traced program go on to where its next system call begins or ends; `op` tells which.
__ptrace_syscall_info next_stop(pid_t pid)
{
    __ptrace_syscall_info info = {};
    for (int status = 0; WSTOPSIG(status) != (SIGTRAP | 0x80);) {
        ptrace(PTRACE_SYSCALL, pid, nullptr, nullptr);
        if (waitpid(pid, &status, __WALL) != pid || !WIFSTOPPED(status))
            return info; // it has ended
    }
    ptrace(PTRACE_GET_SYSCALL_INFO, pid, sizeof(info), &info);
    return info;
}

// Each path has another frame while all signals are held back: that one is captured.
TEST(Sim, ACaptureCopiesWhileAllSignalsAreHeldBack)
{
    constexpr uint32_t FRAME = 4711;
    const Region region;
    const TempFile file;
    Environment traced = environment;
    traced["ASAN_OPTIONS"] += ":detect_leaks=0"; // for which it would trace itself
    Child child({"sh", "-c", "kill -STOP $$; exec \"$@\"", "sh", sr_run, "--region", region.file(),
                 sr_capture},
                traced, file.path());
    const pid_t pid = child.pid();
    const std::string stat = "/proc/" + std::to_string(pid) + "/stat";
    ASSERT_TRUE(eventually([&] { return read_file(stat).find(") T ") != std::string::npos; }));
    if (ptrace(PTRACE_SEIZE, pid, nullptr, PTRACE_O_TRACESYSGOOD) != 0 && errno == EPERM)
        GTEST_SKIP() << "this process may not trace another";
    kill(pid, SIGCONT);
    const auto goes_on_to_mask = [&](uint64_t mask) {
        for (;;) {
            const __ptrace_syscall_info info = next_stop(pid);
            if (info.op == PTRACE_SYSCALL_INFO_NONE)
                return false;
            if (info.op == PTRACE_SYSCALL_INFO_ENTRY && info.entry.nr == SYS_rt_sigprocmask &&
                static_cast<uint64_t>(ptrace(PTRACE_PEEKDATA, pid, info.entry.args[1], nullptr)) ==
                    mask)
                return true;
        }
    };
    for (VplatPathConf &path : region->path) {
        ASSERT_TRUE(goes_on_to_mask(UINT64_MAX));
        next_stop(pid);
        path.dip.dip_ctx.frame_cnt = FRAME;
        ASSERT_TRUE(goes_on_to_mask(0));
        path.dip.dip_ctx.frame_cnt = 0;
    }
    ptrace(PTRACE_DETACH, pid, nullptr, nullptr);
    EXPECT_EQ(child.finish().status, 0);
    const std::string captured = read_file(file.path());
    ASSERT_EQ(captured.size(), sizeof(VplatConf));
    for (const VplatPathConf &path : reinterpret_cast<const VplatConf *>(captured.data())->path)
        EXPECT_EQ(path.dip.dip_ctx.frame_cnt, FRAME);
}

} // namespace
