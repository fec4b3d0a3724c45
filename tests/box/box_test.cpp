// vorda on an emulated camera: the ARM binary, a real kernel and a real driver.
#include "harness.h"
#include "machine.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <utility>

namespace
{

const std::string index_line = "dev_idx = 0, path_idx = 0\n";
const std::string no_path = "Input path 0 is not enabled on video device 0.\n";
const std::string no_mpp = "Unable to initialize MPP.\n";

// The driver comes anew, with parameters for it.
std::string reload(const std::string &parameters = "")
{
    return "rmmod sr; insmod /lib/sr.ko " + parameters + "; dmesg -c >/dev/null; ";
}

std::string lines_with(const std::string &text, const std::string &word)
{
    std::istringstream lines(text);
    std::string found;
    for (std::string line; std::getline(lines, line);)
        if (line.find(word) != std::string::npos)
            found += line + "\n";
    return found;
}

size_t count_of(const std::string &text, const std::string &word)
{
    size_t count = 0;
    for (size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
        count++;
    return count;
}

TEST(Box, PrintsWhatTheHostPrints)
{
    const Region region;
    box(reload() + "sr-scene /dev/sr");
    for (const std::string category : {"cfg", "intl", "share", "stat", "vinfo", "all"}) {
        const Answer answer = box("vorda -p 1 " + category);
        EXPECT_TRUE(answer.out == run_vorda({"-p", "1", category}, region.file()).out) << answer;
        EXPECT_EQ(answer.err, "");
        EXPECT_EQ(answer.log, "");
        EXPECT_EQ(answer.status, 0);
    }
    for (const std::string kind : {"distinct", "zero"}) {
        const Answer answer = box("box-probe fill " + kind + "; vorda all");
        EXPECT_TRUE(answer.out ==
                    index_line + read_file(VORDA_SOURCE_DIR "/tests/golden/" + kind + ".txt"))
            << answer;
        EXPECT_EQ(answer.status, 0);
    }
}

TEST(Box, CreatesTheRegionThatIsNotThereYet)
{
    const Answer first = box(reload() + "vorda vinfo");
    EXPECT_EQ(first.out, index_line);
    EXPECT_EQ(first.err, no_path);
    EXPECT_EQ(first.log, "");
    EXPECT_EQ(first.driver, "vorda: open = 0\n"
                            "vorda: query = 0\n"
                            "vorda: alloc 594696 = 0\n"
                            "vorda: mmap 598016 = 0\n"
                            "vorda: complete = 0\n"
                            "vorda: release = 0\n");
    EXPECT_EQ(first.status, 1);

    const Answer second = box("vorda vinfo 2>&1");
    EXPECT_EQ(second.out, index_line + no_path);
    EXPECT_EQ(second.driver, "vorda: open = 0\n"
                             "vorda: query = 0\n"
                             "vorda: mmap 598016 = 0\n"
                             "vorda: complete = 0\n"
                             "vorda: release = 0\n");
}

TEST(Box, TwoOpenersAtOnceCreateOneRegion)
{
    for (int round = 0; round < 3; round++) {
        const Answer answer =
            box(reload() + "vorda vinfo & vorda vinfo & wait; sr-scene /dev/sr; vorda vinfo.bayer");
        EXPECT_EQ(answer.err, no_path + no_path);
        EXPECT_EQ(answer.log, "");
        EXPECT_EQ(count_of(answer.driver, "vorda: alloc 594696 = 0"), 1U) << answer;
        EXPECT_EQ(count_of(answer.driver, "vorda: complete = 0"), 3U) << answer;
        EXPECT_TRUE(answer.out.ends_with("vinfo.bayer = 1 (Phase R)\n")) << answer;
    }
    // The other opener creates it between the query and the request.
    const Answer late = box(reload("fail_alloc=17") + "vorda vinfo");
    EXPECT_EQ(late.err, no_path);
    EXPECT_EQ(late.log, "");
    EXPECT_EQ(lines_with(late.driver, "alloc") + lines_with(late.driver, "complete"),
              "vorda: alloc 594696 = -17\nvorda: complete = 0\n");
}

TEST(Box, EachStepOfTheOpeningMayFail)
{
    struct Row {
        std::string step;
        std::string error;
        std::string log;
        std::string asked;
    };
    const std::string log = "local7.err vorda: [Error][SR] ";
    const Row rows[] = {
        {"open", "13", log + "Cannot open /dev/sr. err: -13\n", "vorda: open = -13\n"},
        {"query", "5", log + "Query shm info failed. err: -5\n", "vorda: query = -5\n"},
        {"alloc", "12", log + "Alloc shm failed. err: -12\n", "vorda: alloc 594696 = -12\n"},
        {"mmap", "12", log + "Mmap shared memory error. err: -12\n", "vorda: mmap 598016 = -12\n"},
        {"complete", "16", "", "vorda: complete = -16\n"},
    };
    box(reload());
    for (const auto &[step, error, message, asked] : rows) {
        const std::string parameter = "/sys/module/sr/parameters/fail_" + step;
        const Answer answer = box("echo " + error + " >" + parameter + "; vorda vinfo; s=$?; " +
                                  "echo 0 >" + parameter + "; exit $s");
        EXPECT_EQ(answer.out, index_line);
        EXPECT_EQ(answer.err, no_mpp);
        EXPECT_EQ(answer.log, message);
        // Nothing is asked for after the failure, and what was opened is closed.
        EXPECT_TRUE(answer.driver.ends_with(asked + (step == "open" ? "" : "vorda: release = 0\n")))
            << answer;
        EXPECT_EQ(answer.status, 1);
    }
}

TEST(Box, NoDeviceOrNoRightToOpenIt)
{
    const std::string log = "local7.err vorda: [Error][SR] Cannot open /dev/sr. err: ";
    const std::pair<std::string, std::string> rows[] = {
        {reload() + "su nobody -c 'vorda vinfo'", "-13"},
        {"rmmod sr; vorda vinfo", "-2"},
        {"mknod /dev/sr c 10 250; vorda vinfo; s=$?; rm /dev/sr; insmod /lib/sr.ko; exit $s",
         "-19"},
    };
    for (const auto &[line, error] : rows) {
        const Answer answer = box(line);
        EXPECT_EQ(answer.out, index_line);
        EXPECT_EQ(answer.err, no_mpp);
        EXPECT_EQ(lines_with(answer.log, "vorda"), log + error + "\n");
        EXPECT_EQ(answer.driver, "");
        EXPECT_EQ(answer.status, 1);
    }
}

TEST(Box, ASnapshotWaitsForTheHolderAndReadsWhatItLeft)
{
    const Answer answer = box(reload() + "sr-scene /dev/sr; box-probe hold 500 4711;"
                                         "vorda -p 1 share.inttime; vorda share.inttime;"
                                         "box-probe lock; box-probe peek 40744 24 >&2");
    EXPECT_EQ(answer.out, "dev_idx = 0, path_idx = 1\nshare.inttime = 8000\n" + index_line +
                              "share.inttime = 4711\nfree\n")
        << answer;
    std::string lock(24, '\0');
    lock[12] = '\x80'; // shared between processes
    EXPECT_TRUE(answer.err == lock);
}

// The number that stands behind a word.
long number_after(const std::string &text, const std::string &word)
{
    const size_t at = text.find(word);
    return at == std::string::npos ? -1 : strtol(text.c_str() + at + word.size(), nullptr, 10);
}

TEST(Box, TheWaitingToolIsSmallAndKeepsNothingOpen)
{
    const Answer answer =
        box(reload() + "sr-scene /dev/sr; box-probe hold 60000 0;"
                       "vorda share >/dev/null & cd /proc/$!;"
                       "until awk '/^volun/ && $2 > 20 { n = 1 } END { exit !n }'"
                       " status; do usleep 1000; done; cat smaps_rollup status maps; ls fd;"
                       "kill -9 $!; killall -9 box-probe; wait");
    // Its own pages are those that the C library needs: a snapshot that cannot be taken yet has none.
    // What is resident beside them is the region and the C library.
    const long anonymous = number_after(answer.out, "Anonymous:");
    EXPECT_GT(anonymous, 0) << answer;
    EXPECT_LE(anonymous, 100) << answer;
    EXPECT_LE(number_after(answer.out, "Rss:"), 2048) << answer;
    EXPECT_EQ(count_of(answer.out, "/dev/sr"), 1U) << answer;
    EXPECT_TRUE(answer.out.ends_with("\n0\n1\n2\n")) << answer;
}

// The sum that the shell's crc32 prints of a text.
std::string crc32(const std::string &text)
{
    uint32_t crc = 0xFFFFFFFF;
    for (const char byte : text) {
        crc ^= static_cast<uint8_t>(byte);
        for (int bit = 0; bit < 8; bit++)
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
    }
    char sum[9];
    snprintf(sum, sizeof(sum), "%08x", ~crc);
    return sum;
}

// Takes snapshots beside a writer of frames that consist of one byte, which is given as a command;
// every snapshot must be of one of them.
void expect_whole_snapshots(Answer (*camera)(const std::string &), int count,
                            const std::string &parameters, const std::string &writer)
{
    std::set<std::string> whole;
    for (const std::string &frame : whole_frames())
        whole.insert(crc32(index_line + frame));
    ASSERT_EQ(whole.size(), 256U);

    const Answer answer = camera(
        reload(parameters) + "sr-scene --stamp /dev/sr; " + writer +
        " >/dev/null & mkdir /tmp/frames; cd /tmp/frames; for i in $(seq " + std::to_string(count) +
        "); do vorda all >$i; done;"
        "kill $! && wait $!; crc32 *; rm -r /tmp/frames");
    std::istringstream sums(answer.out);
    std::set<std::string> seen;
    int snapshots = 0;
    for (std::string sum, number; sums >> sum >> number; snapshots++) {
        EXPECT_TRUE(whole.contains(sum)) << "torn snapshot " << number;
        seen.insert(sum);
    }
    EXPECT_EQ(snapshots, count) << answer;
    EXPECT_GT(seen.size(), 10U); // the frames did change meanwhile
    EXPECT_EQ(answer.err, "");   // neither the tool nor the writer failed
}

TEST(Box, EverySnapshotIsOfOneFrame)
{
    expect_whole_snapshots(box, 80, "", "sr-scene --live --fps 250 --stamp /dev/sr");
}

// In pages without a name nobody can queue for a lock: a camera that comes upon a taken one dies.
TEST(Box, EverySnapshotIsOfOneFrameInARegionThatTheKernelCannotName)
{
    EXPECT_EQ(one_core_box("cat /proc/sys/kernel/randomize_va_space").out, "2\n");
    expect_whole_snapshots(one_core_box, 15, "unnamed=1", "box-probe write");
    expect_whole_snapshots(one_core_box, 15, "unnamed=1",
                           "sr-scene --live --fps 200 --stamp /dev/sr");
}

// A tool that gives way to a busy process, which would have its turn between lock and unlock too.
TEST(Box, TheCameraNeverWaitsForAToolThatGivesWay)
{
    const Answer answer =
        one_core_box(reload() + "sr-scene /dev/sr; (while :; do :; done) & "
                                "box-probe write & for i in $(seq 20); do"
                                " box-probe nice vorda vinfo.type >/dev/null; done;"
                                "kill $! && wait $!");
    const long longest = number_after(answer.out, "waited ");
    EXPECT_GE(longest, 0) << answer;
    EXPECT_LT(longest, 100) << answer; // microseconds
    EXPECT_EQ(answer.err, "");
}

TEST(Box, AnySignalEndsTheWait)
{
    const Answer answer = box(reload() + "sr-scene /dev/sr; box-probe signal vorda share");
    std::string expected;
    for (const std::string signal : {"HUP", "INT", "QUIT", "ALRM", "TERM", "USR1", "TSTP", "KILL"})
        expected += signal + (signal == "TSTP" ? ": stopped" : ": ended") + ", lock as it was\n";
    EXPECT_EQ(answer.out, expected) << answer;
}

// The frames of a recording, each with how many before it are told to be missed.
std::vector<std::pair<long, long>> frames_of(const std::string &heads)
{
    std::vector<std::pair<long, long>> frames;
    std::istringstream lines(heads);
    std::string word;
    std::string equals;
    for (long number = 0; lines >> word >> equals >> number;)
        if (word == "frame")
            frames.emplace_back(number, 0);
        else if (!frames.empty())
            frames.back().second = number;
    return frames;
}

// The live scene, when it has begun.
std::string camera_at_work()
{
    return reload() +
           "sr-scene --live /dev/sr & until vorda vinfo.type >/dev/null 2>&1; do :; done; ";
}

// Half a minute of a camera at work, on one processor that another process keeps busy, in pieces that
// the machine answers in time.
TEST(Box, TheRecorderSeesEveryFrameBesideABusyProcess)
{
    for (int piece = 0; piece < 2; piece++) {
        const Answer answer = one_core_box(
            camera_at_work() +
            "box-probe spin & vorda-record -n 375 all >/tmp/quarter & wait $!; echo status $? >&2;"
            "grep -e ^frame -e ^missed /tmp/quarter; rm /tmp/quarter");
        EXPECT_EQ(answer.err, "status 0\n") << answer;
        const auto frames = frames_of(answer.out);
        ASSERT_EQ(frames.size(), 375U) << answer;
        for (size_t i = 0; i < frames.size(); i++) {
            EXPECT_EQ(frames[i].first, frames[0].first + static_cast<long>(i));
            EXPECT_EQ(frames[i].second, 0) << "before " << frames[i].first;
        }
    }
}

// Each frame that a recorder could not see, which is stopped for a second, is told.
TEST(Box, TheRecorderSaysWhichFramesItMissed)
{
    const std::string a_second = "vorda-record -n 25 share.fps >/dev/null;"; // as frames tell it
    const Answer answer = one_core_box(
        camera_at_work() + "vorda-record share.inttime >/tmp/gap & recorder=$!;" + a_second +
        "kill -STOP $recorder;" + a_second + "kill -CONT $recorder;" + a_second +
        "kill $recorder; wait $recorder; echo status $? >&2;"
        "grep -e ^frame -e ^missed /tmp/gap; rm /tmp/gap");
    EXPECT_NE(answer.err.find("status 143\n"), std::string::npos) << answer;
    const auto frames = frames_of(answer.out);
    ASSERT_GT(frames.size(), 30U) << answer;
    long most = 0;
    for (size_t i = 1; i < frames.size(); i++) {
        EXPECT_EQ(frames[i].second, frames[i].first - frames[i - 1].first - 1);
        EXPECT_TRUE(frames[i].second == 0 || most == 0) << "a second gap";
        most = std::max(most, frames[i].second);
    }
    EXPECT_GT(most, 15); // while it was stopped
}

TEST(Box, ALockWhoseOwnerDiedStaysUsable)
{
    const Answer answer = box(reload() + "sr-scene /dev/sr; box-probe die; box-probe lock;"
                                         "vorda share.inttime; box-probe lock");
    EXPECT_EQ(answer.out, "EOWNERDEAD\n" + index_line + "share.inttime = 8000\nfree\n") << answer;
}

TEST(Box, ClosedStandardDescriptorsGetNeitherDeviceNorLog)
{
    const std::string line = "for d in '<&-' '>&-' '<&- >&-' '2>&-' '<&- 2>&-' '>&- 2>&-'"
                             " '<&- >&- 2>&-'; do eval vorda vinfo.bayer $d; done; ";
    const Answer mapped = box(reload() +
                              "sr-scene /dev/sr; vorda share >/dev/null;"
                              "box-probe peek 0 594696 | crc32 >&2; " +
                              line + "box-probe peek 0 594696 | crc32 >&2");
    const std::string printed = index_line + "vinfo.bayer = 1 (Phase R)\n";
    EXPECT_EQ(mapped.out, printed + printed + printed) << mapped;
    EXPECT_EQ(mapped.err.substr(0, 9), mapped.err.substr(9)) << mapped;
    EXPECT_EQ(mapped.log, "");

    // Not even /dev/null is there.
    const Answer missing =
        box("rmmod sr; rm /dev/null; " + line + "mknod -m 666 /dev/null c 1 3; insmod /lib/sr.ko");
    EXPECT_EQ(missing.out, index_line + index_line + index_line);
    EXPECT_EQ(missing.err, no_mpp + no_mpp + no_mpp);
    EXPECT_EQ(count_of(missing.log, "\n"), 7U) << missing;
    EXPECT_EQ(count_of(missing.log, "Cannot open /dev/sr. err: -2\n"), 7U) << missing;
}

} // namespace
