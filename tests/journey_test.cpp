// Journeys of the real binary over the stand-in device: streams, statuses, and the device's and the
// reader's misbehaviour.
#include "harness.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <regex>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

const std::string vorda = built("vorda");

TEST(Journey, HelpAndListingsNeverTouchTheDevice)
{
    const Environment no_device = {{"SR_FAIL", "open:13"}};
    const std::string usage = "Usage:\n"
                              "1. " +
                              vorda +
                              " list [category]\n"
                              "   List available entries under specified category\n"
                              "   or leave it blank to show available categories.\n"
                              "   Eg. " +
                              vorda +
                              " list stat\n"
                              "2. " +
                              vorda +
                              " [Options] entry\n"
                              "   Read the specified entry from the system.\n"
                              "   Eg. " +
                              vorda +
                              " stat\n"
                              "\n"
                              "Options:\n"
                              " -d dev_idx:\n"
                              "    Specify device index (default: 0).\n"
                              " -p path_idx:\n"
                              "    Specify path index (default: 0).\n"
                              " -h :\n"
                              "    Print this help.\n";
    for (const std::vector<std::string> &args :
         {std::vector<std::string>{}, {"help"}, {"-h"}, {"-d", "1"}, {"vinfo", "-h"}}) {
        const Result result = run_vorda(args, "", no_device);
        EXPECT_EQ(result.err, usage);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.status, 1);
    }

    const Result list = run_vorda({"list"}, "", no_device);
    EXPECT_EQ(list.out, "Available categories:\n"
                        "- cfg: Computation results of DIP modules.\n"
                        "- intl: internal interface data in DIP.\n"
                        "- share: Cross-module data in DIP.\n"
                        "- stat: Statistics data.\n"
                        "- vinfo: Video system information.\n"
                        "Use `" +
                            vorda +
                            " list <category>' to list available entries in the "
                            "specific category.\n");
    EXPECT_EQ(list.err, "");
    EXPECT_EQ(list.status, 0);

    const Result vinfo = run_vorda({"list", "VInfo"}, "", no_device);
    EXPECT_EQ(vinfo.out, "");
    EXPECT_TRUE(vinfo.err.starts_with("Available items:\n - vinfo          : Print every item.\n"
                                      " - vinfo.type     : Type of video system"));
    EXPECT_EQ(vinfo.status, 0);

    const Result refused = run_vorda({"-x"}, "", no_device);
    EXPECT_EQ(refused.err, "Unknown option `-x'.\n");
    EXPECT_EQ(refused.status, 1);
}

TEST(Journey, PrintsTheSnapshotOfTheChosenPath)
{
    Region region;
    for (int path = 0; path < 4; path++) {
        region->descptr.path[path].state = SR_DESCPTR_PRESENT;
        region->path[path].dip.dip_ctx.share.inttime = 100 + path;
    }
    region->descptr.path[2].state = 0;

    struct Row {
        std::vector<std::string> args;
        std::string out;
        std::string err;
        int status;
    };
    const Row rows[] = {
        {{"share.inttime"}, "dev_idx = 0, path_idx = 0\nshare.inttime = 100\n", "", 0},
        {{"-p", "1", "SHARE.IntTime"}, "dev_idx = 0, path_idx = 1\nshare.inttime = 101\n", "", 0},
        {{"-d-1", "share.inttime", "-p259"},
         "dev_idx = 255, path_idx = 3\nshare.inttime = 103\n",
         "",
         0},
        {{"-p2", "-d7", "share"},
         "dev_idx = 7, path_idx = 2\n",
         "Input path 2 is not enabled on video device 7.\n",
         1},
        {{"-p", "260", "share"},
         "dev_idx = 0, path_idx = 4\n",
         "Input path 4 is not enabled on video device 0.\n",
         1},
        {{"-p128", "share"},
         "dev_idx = 0, path_idx = 128\n",
         "Input path 128 is not enabled on video device 0.\n",
         1},
        {{"share.x"}, "dev_idx = 0, path_idx = 0\n", "Unknown entry share.x.\n", 1},
        {{"VINFO.AZ@[`{\xC4"},
         "dev_idx = 0, path_idx = 0\n",
         "Unknown entry vinfo.az@[`{\xC4.\n",
         1},
        {{"LIST"}, "dev_idx = 0, path_idx = 0\n", "Unknown category `list'.\n", 1},
        {{"--", "-x"}, "dev_idx = 0, path_idx = 0\n", "Unknown category `-x'.\n", 1},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(::testing::PrintToString(row.args));
        const Result result = run_vorda(row.args, region.file());
        EXPECT_EQ(result.out, row.out);
        EXPECT_EQ(result.err, row.err);
        EXPECT_EQ(result.status, row.status);
    }
}

TEST(Journey, TheIndexLineIsOutWhileTheToolWaits)
{
    Region region;
    const TempFile out;
    region->path[0].lock.word = 1; // taken
    const auto child = start_vorda({"share.inttime"}, region.file(), {}, out.path());
    const std::string index_line = "dev_idx = 0, path_idx = 0\n";
    EXPECT_TRUE(eventually([&] { return read_file(out.path()) == index_line; }));
    region->path[0].lock.word = 0;
    EXPECT_EQ(child->finish().status, 0);
    EXPECT_TRUE(read_file(out.path()).starts_with(index_line + "share.inttime = "));
}

TEST(Journey, AFileMayBeNoRegionOrNotYet)
{
    const TempFile none;
    const TempFile odd(4711);
    const Result wrong = run_vorda({"vinfo"}, odd.path());
    EXPECT_EQ(wrong.err, "/dev/sr: " + odd.path() + " has 4711 bytes, a region has 594696.\n" +
                             "Unable to initialize MPP.\n");
    const Result missing = run_vorda({"vinfo"}, nowhere);
    EXPECT_EQ(missing.out, "dev_idx = 0, path_idx = 0\n"); // before it opens the device
    EXPECT_EQ(missing.err, "Unable to initialize MPP.\n");
    EXPECT_EQ(missing.status, 1);

    // A region that vorda itself creates has no path.
    const Result fresh = run_vorda({"vinfo"}, none.path());
    EXPECT_EQ(fresh.err, "Input path 0 is not enabled on video device 0.\n");
    EXPECT_EQ(std::filesystem::file_size(none.path()), sizeof(VplatConf));
}

TEST(Journey, ChangesNothingButTheDescriptorTable)
{
    Region region;
    std::string before(reinterpret_cast<const char *>(&region->log),
                       sizeof(VplatConf) - sizeof(SrMemDescptr));
    run_vorda({"all"}, region.file());
    EXPECT_TRUE(before == std::string(reinterpret_cast<const char *>(&region->log), before.size()));
}

TEST(Journey, SurvivesOutputThatCannotBeWritten)
{
    const Region region;
    EXPECT_EQ(run_vorda({"all"}, region.file(), {}, "/dev/full").status, 0);

    // A reader that leaves early ends the run the usual way.
    const std::string fifo = region.file() + ".fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const int reader = open(fifo.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const auto child = start_vorda({"all"}, region.file(), {}, fifo);
    close(reader);
    EXPECT_EQ(child->finish().status, -SIGPIPE);
    unlink(fifo.c_str());
    EXPECT_TRUE(region->path[0].lock.word == 0);
}

// The manual leaves the items to the listings, but names only some that there are.
TEST(Documents, TheManualNamesItemsThatThereAre)
{
    const std::string manual = read_file(VORDA_BUILD_DIR "/vorda.1");
    const std::regex name("\\b(cfg|intl|share|stat|vinfo)\\.([a-z_]+)");
    size_t names = 0;
    for (std::sregex_iterator at(manual.begin(), manual.end(), name), end; at != end; ++at) {
        const std::string printed = run_vorda({"list", (*at)[1]}, "").err;
        const bool key = read_file(VORDA_SOURCE_DIR "/tests/golden/distinct.txt")
                             .find("\n" + at->str() + " = ") != std::string::npos;
        EXPECT_TRUE(key || printed.find(" - " + at->str() + " ") != std::string::npos) << at->str();
        names++;
    }
    EXPECT_GT(names, 0U);
}

TEST(Documents, CompletionOffersTheToolsOwnNames)
{
    // The command line ends in the word to complete; the tool is found by the name that is typed.
    const auto offered = [](const std::string &words, const std::string &typed) {
        const std::string script =
            "source \"$source/completion/vorda.bash\"; COMP_WORDS=('" + typed + "' " + words +
            "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); cd \"$build\"; _vorda; "
            "echo \"${COMPREPLY[@]}\"";
        return Child({"bash", "-c", script}, {{"source", VORDA_SOURCE_DIR},
                                              {"build", VORDA_BUILD_DIR},
                                              {"HOME", VORDA_BUILD_DIR}})
            .finish()
            .out;
    };
    const std::string here = "./vorda";
    EXPECT_EQ(offered("''", here), "cfg intl share stat vinfo all list help\n");
    EXPECT_EQ(offered("s", here), "share stat\n");
    EXPECT_EQ(offered("list ''", here), "cfg intl share stat vinfo\n");
    EXPECT_EQ(offered("-p 1 vinfo.b", here), "vinfo.bayer vinfo.bind_win\n");
    EXPECT_EQ(offered("cfg.front_n", here), "cfg.front_nr\n");
    EXPECT_EQ(offered("-", here), "-d -p -h\n");
    for (const char *nothing :
         {"-d ''", "x.y", "share ''", "-p 1 cfg.nr c", "list cfg ''", "list -p 1 cfg ''", "help l"})
        EXPECT_EQ(offered(nothing, here), "\n") << nothing;
    EXPECT_EQ(offered("share -", here), "-d -p -h\n"); // options may follow
    EXPECT_EQ(offered("li", "~/vorda"), "list\n");
    EXPECT_EQ(offered("vin", "\"./vorda\""), "vinfo\n");
    EXPECT_EQ(offered("vin", "$(touch ran)vorda"), "\n");
    EXPECT_FALSE(std::filesystem::exists(VORDA_BUILD_DIR "/ran"));
}

} // namespace
