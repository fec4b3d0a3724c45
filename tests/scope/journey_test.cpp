// vordascope and vorda-record.sh as people run them.
#include "harness.h"
#include "reading.h"
#include "sr_device.h"

#include <cmath>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

using namespace vordascope;

namespace
{

const std::string SCOPE = built("utils/host/vordascope/vordascope");

Result run(const std::vector<std::string> &argv, const std::string &out = "")
{
    return Child(argv, {}, out).finish();
}

Result scope(std::vector<std::string> args, const std::string &out = "")
{
    args.insert(args.begin(), SCOPE);
    return run(args, out);
}

// Runs lines of bash, with $scope and the given names.
Result bash(const std::string &lines, const Environment &names)
{
    Environment environment = names;
    environment["scope"] = SCOPE;
    return Child({"bash", "-c", lines}, environment).finish();
}

// A capture in a file of its own.
class Capture
{
public:
    explicit Capture(const std::string &text) { std::ofstream(file_.path()) << text; }
    const std::string &path() const { return file_.path(); }

private:
    TempFile file_;
};

std::string snapshot(int inttime, const std::string &more = "")
{
    return "dev_idx = 0, path_idx = 1\nshare.inttime = " + std::to_string(inttime) + "\n" + more;
}

TEST(ScopeJourney, ChecksAndConverts)
{
    const Capture good(snapshot(1) + snapshot(2));
    const Capture bad("x = \x1b]0;x\n" + snapshot(1, "oops\n") + "share.fps = 2");
    const Capture none("nothing\n");
    const Capture two(snapshot(1) + "dev_idx = 0, path_idx = 2\nshare.inttime = 5\n");
    const std::string named = none.path();

    Result result = scope({"check", good.path()});
    EXPECT_EQ(result.out, good.path() + ": 2 snapshots, 2 fields, every line understood\n");
    EXPECT_EQ(result.status, 0);
    result = scope({"check", good.path(), bad.path()});
    EXPECT_EQ(result.out.substr(result.out.find('\n') + 1),
              bad.path() + ":1: outside of any snapshot: x = \\x1b]0;x\n" + bad.path() +
                  ":4: neither a key nor a label: oops\n" + bad.path() +
                  ":5: cut off: the line does not end: share.fps: share.fps = 2\n" + bad.path() +
                  ": 1 snapshot, 2 fields, 3 lines not understood\n");
    EXPECT_EQ(result.status, 1);

    result = scope({"json", good.path(), bad.path()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 3);
    EXPECT_NE(result.out.find(R"("cut":true,"share":{"inttime":1,"fps":null},"unread":[1,4,5]})"),
              std::string::npos);

    // One capture that cannot be read does not keep the others from it.
    for (const std::string verb : {"check", "json"}) {
        result = scope({verb, nowhere, none.path(), good.path()});
        EXPECT_EQ(result.status, 2);
        EXPECT_NE(result.err.find(nowhere + ": "), std::string::npos);
        EXPECT_NE(result.err.find(none.path() + ": no snapshot;"), std::string::npos);
        EXPECT_TRUE(result.out.ends_with(scope({verb, good.path()}).out)) << result.out;
    }

    // What goes wrong is said, with status 2.
    const std::pair<std::vector<std::string>, std::string> rows[] = {
        {{"json", none.path()}, none.path() + ": no snapshot;"},
        {{"check", nowhere}, nowhere + ": No such file or directory"},
        {{"check", "/"}, "/: Is a directory"},
        {{"series", good.path(), "share.intime"}, "no field share.intime. Near: share.inttime"},
        {{"series", none.path(), "share.inttime"}, "no snapshot;"},
        {{"series", good.path()}, "FIELD is required"},
        {{"diff", good.path() + "#3", good.path()}, "no snapshot 3"},
        {{"diff", good.path(), good.path() + "#0"}, "no snapshot 0"},
        {{"diff", good.path(), good.path() + "#18446744073709551617"},
         "no snapshot 18446744073709551617"},
        {{"diff", "-", "-#2"}, "only one side"},
        {{"diff", "--only", "shar", good.path(), good.path()}, "selects nothing. Near: share"},
        {{"diff", "--ignore-from", nowhere, good.path(), good.path()}, nowhere + ": No such file"},
        {{"diff", "--ignore-from", "/", good.path(), good.path()}, "/: Is a directory"},
        {{"diff", "--abs", "-1", good.path(), good.path()}, "--abs: N is a number of 0 or more"},
        {{"diff", "--rel", "5", good.path(), good.path()}, "--rel: it is a percentage, 5%"},
        {{"diff", "--ignore", "stat", good.path(), good.path()}, "--ignore: stat selects nothing"},
        {{"series", two.path(), "share.inttime"}, "choose one with --path 0,1, or name"},
        {{"series", "--path", "0", two.path(), "share.inttime"}, "--path: D,P is"},
        {{"series", "--path", "7,7", two.path(), "share.inttime"}, "no snapshot of that path"},
        {{"json", "--label", "0=x", good.path()}, "--label: KEY is"},
        {{"frobnicate"}, "frobnicate"},
        {{}, "a verb is missing"},
    };
    for (const auto &[args, message] : rows) {
        result = scope(args);
        EXPECT_EQ(result.status, 2) << message;
        EXPECT_NE((result.out + result.err).find(message), std::string::npos) << result.err;
    }
}

TEST(ScopeJourney, ComparesSnapshotsOfCaptures)
{
    const Capture a(snapshot(1) + "time = 7.25\n" + snapshot(2, "=== stat.lum ===\navg = 5\n"));
    const Capture b(snapshot(2, "=== stat.lum ===\navg = 6\n"));
    const Capture noisy("# what changes anyway\n\n stat \r\nstat\r\n");

    EXPECT_EQ(scope({"diff", a.path() + "#1", a.path()}).status, 0);
    EXPECT_EQ(scope({"diff", a.path() + "#1", a.path()}).out, "");
    Result result = scope({"diff", a.path() + "#last", b.path()});
    EXPECT_EQ(result.out, "--- " + a.path() + "#2: dev_idx = 0, path_idx = 1, time = 7.25\n+++ " +
                              b.path() + "#1: dev_idx = 0, path_idx = 1\n" +
                              "stat.lum\n  avg  5 -> 6  (+1, +20 %)\n1 field of 2 differs\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(scope({"diff", "--ignore", "stat", a.path() + "#2", b.path()}).status, 0);
    EXPECT_EQ(scope({"diff", "--ignore-from", noisy.path(), a.path() + "#2", b.path()}).status, 0);
    EXPECT_EQ(scope({"diff", "--only", "share", a.path() + "#2", b.path()}).status, 0);
    EXPECT_EQ(scope({"diff", "--abs", "1", a.path() + "#2", b.path()}).status, 0);
    EXPECT_EQ(scope({"diff", "--rel", "0.1", a.path() + "#2", b.path()}).status, 1);
    result = scope({"diff", "-q", a.path(), b.path()});
    EXPECT_EQ(result.out, a.path() + "#1 and " + b.path() + "#1 differ\n");
    EXPECT_EQ(result.status, 1);

    // What had to be undone is told, also of a capture that is not read to its end.
    const Capture quoted("> dev_idx = 0, path_idx = 1\n> share.inttime = 1\n");
    result = scope({"diff", a.path() + "#1", quoted.path()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err,
              "vordascope: " + quoted.path() + ": the quotation marks were taken off\n");

    // A file whose name ends like that is itself.
    const std::string odd = b.path() + "#2";
    std::ofstream(odd) << snapshot(2, "=== stat.lum ===\navg = 6\n");
    EXPECT_EQ(scope({"diff", odd, b.path()}).status, 0);
    unlink(odd.c_str());
}

TEST(ScopeJourney, HoldsCapturesAgainstRules)
{
    const Capture good(snapshot(10) + snapshot(12));
    const Capture odd(snapshot(11) + snapshot(19) + snapshot(1));
    const Capture junk("nothing\n");
    const TempFile learned;
    const TempFile xml;
    EXPECT_EQ(
        scope({"learn", "--margin", "50%", "--label", "site=roof", good.path()}, learned.path())
            .status,
        0);
    EXPECT_NE(read_file(learned.path()).find("\n#   label site = roof\n"), std::string::npos);
    EXPECT_EQ(scope({"learn", good.path(), nowhere}).out, "");
    Result result = scope({"check", "--rules", learned.path(), "--junit", xml.path(), good.path()});
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    EXPECT_NE(
        read_file(xml.path()).find("<testcase classname=\"share\" name=\"share\" time=\"0\"/>"),
        std::string::npos);
    result = scope({"check", "--rules", learned.path(), odd.path()});
    EXPECT_EQ(result.out,
              odd.path() + "#2: share.inttime: 19 is outside of 9..13\n" + odd.path() +
                  "#3: share.inttime: 1 is outside of 9..13\n" + odd.path() +
                  ": 3 snapshots, 3 fields, every line understood, 2 values out of range\n");
    EXPECT_EQ(result.status, 1);

    // Many against one: a line for each that differs, and what in.
    result = scope({"diff", "--rules", learned.path(), "--junit", xml.path(), "--label", "fw=<7>",
                    good.path(), good.path() + "#2", odd.path(), odd.path() + "#2", junk.path()});
    EXPECT_EQ(result.out, odd.path() + "#2: share.inttime\nshare\n  inttime  1 capture: " +
                              odd.path() + "#2\n1 of 3 captures differs\n");
    EXPECT_EQ(result.status, 2);
    const std::string report = read_file(xml.path());
    EXPECT_NE(report.find("tests=\"2\" failures=\"1\" errors=\"1\""), std::string::npos) << report;
    EXPECT_NE(report.find("<property name=\"fw\" value=\"&lt;7&gt;\"/>"), std::string::npos);

    // A warning changes no status, and a rule of nothing can be one.
    const Capture warn("share warn\nstat ignore\n");
    result = scope({"diff", "--rules", warn.path(), good.path(), odd.path()});
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find(warn.path() + ":2: stat selects nothing."), std::string::npos);
    result = scope({"diff", "--unused", "warn", "--rules", warn.path(), good.path(), odd.path()});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.out.find("  inttime  10 -> 11  (+1, +10 %)  (warning)\n"), std::string::npos);
    EXPECT_EQ(scope({"check", "--rules", warn.path(), good.path()}).status, 2);
}

TEST(ScopeJourney, SaysWhichCaptureItIs)
{
    const Capture own("label host = cam1\nlabel fw = 7\nmark = lamp on\nmark = -1, then 2\n"
                      "missed = 3\n" +
                      snapshot(1));
    const Capture none(snapshot(2));
    const std::vector<std::string> labels = {"--label", "site==\"r\xf6of\"", "--label", "fw=8"};
    std::vector<std::string> args = {"json", own.path()};
    args.insert(args.end(), labels.begin(), labels.end());
    Result result = scope(args);
    EXPECT_NE(result.out.find("{\"vorda_json\":1,\"file\":\"" + own.path() + "\",\"dev_idx\":0"),
              std::string::npos);
    // Of the same name, the capture's own holds.
    EXPECT_NE(result.out.find(
                  "\"labels\":{\"site\":\"=\\\"r\xc3\xb6of\\\"\",\"fw\":\"7\",\"host\":\"cam1\"}"),
              std::string::npos)
        << result.out;

    args = {"series", own.path(), none.path(), "file", "label host", "label site", "share.inttime"};
    args.insert(args.end(), labels.begin(), labels.end());
    result = scope(args);
    const std::string site = ",\"'=\"\"r\xf6of\"\"\",";
    EXPECT_EQ(result.out, "file,label host,label site,share.inttime\n" + own.path() + ",cam1" +
                              site + "1\n" + none.path() + "," + site + "2\n");
    EXPECT_EQ(scope({"series", own.path(), none.path(), "mark", "missed"}).out,
              "mark,missed\n\"lamp on; -1, then 2\",3\n,0\n");
}

TEST(ScopeJourney, GivesValuesToScripts)
{
    const Capture capture(snapshot(8000, "share.fps = 25.00\n"));
    const Result result =
        bash("x=$(\"$scope\" series --no-header - share.inttime <\"$file\"); echo \"[$x]\"",
             {{"file", capture.path()}});
    EXPECT_EQ(result.out, "[8000]\n");
    EXPECT_EQ(result.err, "");
}

TEST(ScopeJourney, WritesEachSnapshotWhenItIsComplete)
{
    const TempFile fifo;
    unlink(fifo.path().c_str());
    ASSERT_EQ(mkfifo(fifo.path().c_str(), 0600), 0);
    const TempFile rows;
    const TempFile objects;
    for (const bool as_json : {false, true}) {
        const TempFile &out = as_json ? objects : rows;
        Child child(as_json
                        ? std::vector<std::string>{SCOPE, "json", fifo.path()}
                        : std::vector<std::string>{SCOPE, "series", fifo.path(), "share.inttime"},
                    {}, out.path());
        const int fd = open(fifo.path().c_str(), O_WRONLY);
        ASSERT_GE(fd, 0);
        const auto lines = [&out] {
            const std::string text = read_file(out.path());
            return std::count(text.begin(), text.end(), '\n') + 0;
        };
        const auto send = [fd](const std::string &text) {
            return write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
        };
        const long header = as_json ? 0 : 1;
        // By the next one's index line, and by a line that ends it.
        ASSERT_TRUE(send(snapshot(1) + "dev_idx = 0, path_idx = 1\n"));
        EXPECT_TRUE(eventually([&] { return lines() == header + 1; }));
        ASSERT_TRUE(send("share.inttime = 2\n; end\n"));
        EXPECT_TRUE(eventually([&] { return lines() == header + 2; }));
        ASSERT_TRUE(send("time = 5\n" + snapshot(3)));
        close(fd);
        EXPECT_EQ(child.finish().status, 0);
        EXPECT_EQ(lines(), header + 3);
    }
    EXPECT_EQ(read_file(rows.path()), "share.inttime\n1\n2\n3\n");
}

TEST(ScopeJourney, OutputThatCannotBeWritten)
{
    std::string text;
    for (int i = 0; i < 20000; i++)
        text += snapshot(i);
    const Capture capture(text);
    const Capture other(snapshot(-1));
    const std::vector<std::vector<std::string>> verbs = {
        {"check", capture.path()},
        {"json", capture.path()},
        {"diff", capture.path(), other.path()},
        {"series", capture.path(), "share.inttime"},
    };
    for (const auto &verb : verbs) {
        const Result result = scope(verb, "/dev/full");
        EXPECT_EQ(result.status, 2) << verb[0];
        EXPECT_EQ(result.err, "vordascope: standard output: No space left on device\n");
    }
    EXPECT_EQ(scope({"--help"}, "/dev/full").status, 2);
    EXPECT_EQ(scope({"--help"}).status, 0);
    // Without standard output, and over the capture that is read.
    const std::string before = read_file(capture.path());
    for (const char *line : {"json \"$file\" >&-", "json \"$file\" >>\"$file\"",
                             "report - -o \"$file\" <\"$file\"", "check - <&-"}) {
        const Result refused = bash(std::string("\"$scope\" ") + line, {{"file", capture.path()}});
        EXPECT_EQ(refused.status, 2) << line;
        EXPECT_NE(refused.err, "") << line;
    }
    EXPECT_TRUE(read_file(capture.path()) == before);
    Result result;
    result = bash("\"$scope\" json \"$file\" | head -n 1 >/dev/null; echo ${PIPESTATUS[0]}",
                  {{"file", capture.path()}});
    EXPECT_EQ(result.out, "0\n");
    EXPECT_EQ(result.err, "");
}

TEST(ScopeJourney, NothingIsLostInSilence)
{
    std::string many = snapshot(1);
    for (int i = 0; i < 9; i++)
        many += "oops\n";
    const Capture unread(many);
    const Capture cut(snapshot(1, "share.fps = 2"));
    const Environment names = {{"file", unread.path()}, {"cut", cut.path()}};

    // Of each reason the first five lines.
    Result result = scope({"check", unread.path()});
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 7);
    EXPECT_NE(result.out.find(": 4 more: neither a key nor a label (--all shows them)\n"),
              std::string::npos);
    EXPECT_NE(result.out.find("1 snapshot, 1 field, 9 lines not understood\n"), std::string::npos);
    result = scope({"check", "--all", unread.path()});
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 10);

    result = scope({"series", unread.path(), "share.inttime"});
    EXPECT_NE(result.err.find("9 lines not understood; see vordascope check"), std::string::npos);
    result = scope({"diff", cut.path(), unread.path()});
    EXPECT_EQ(result.out.find("--- " + cut.path() + "#1: dev_idx = 0, path_idx = 1, cut off\n"),
              0U);

    // A file that is called like what stands for another is itself; bytes that steer a terminal show.
    result = bash(
        "cd \"$(mktemp -d)\" && trap 'rm -r \"$PWD\"' EXIT; cp \"$file\" 'standard input' && cp \"$file\" $'\\e[31m' && "
        "\"$scope\" check 'standard input' <\"$cut\"; \"$scope\" check $'\\e[31m'; "
        "\"$scope\" json $'\\e[32m'; \"$scope\" diff - -#2 <\"$cut\"; "
        "ln \"$file\" link && \"$scope\" report \"$file\" -o link",
        names);
    EXPECT_NE(result.out.find("standard input: 1 snapshot, 1 field, 9 lines"), std::string::npos);
    EXPECT_NE(result.out.find("\n\\x1b[31m:3: "), std::string::npos) << result.out;
    EXPECT_NE(result.err.find("vordascope: \\x1b[32m: No such file"), std::string::npos)
        << result.err;
    EXPECT_NE(result.err.find("the page would overwrite this capture"), std::string::npos);
    EXPECT_EQ((result.out + result.err).find('\x1b'), std::string::npos);
}

TEST(ScopeJourney, OnATerminal)
{
    const Capture capture(snapshot(1));
    const Capture other(snapshot(2));
    const TempFile slow;
    unlink(slow.path().c_str());
    ASSERT_EQ(mkfifo(slow.path().c_str(), 0600), 0);
    const Environment names = {
        {"file", capture.path()}, {"other", other.path()}, {"slow", slow.path()}};
    // Of what is read from a pipe the second half comes a second after the program has opened it.
    const auto on_a_terminal = [&names](const std::string &line) {
        return bash("(exec 3>\"$slow\"; cat \"$file\" >&3; sleep 1.1; cat \"$file\" >&3) & "
                    "script -qec '\"$scope\" " +
                        line + "' /dev/null </dev/null",
                    names);
    };
    // How far it has come, of input that takes its time, and nothing of that stays.
    Result result = on_a_terminal("check \"$slow\" >/dev/null");
    EXPECT_TRUE(result.out.starts_with(slow.path() + ": 1 snapshot, 0 MB\r\33[K")) << result.out;
    EXPECT_TRUE(result.out.ends_with("\r\33[K"));
    // Of many captures those that differ alone have a row, which takes the place of the line.
    result = on_a_terminal("diff -q \"$file\" \"$file\" \"$slow\" \"$other\"");
    EXPECT_TRUE(result.out.ends_with(" captures\r\33[K" + other.path() + "#1\r\n")) << result.out;
    result = bash("script -qec '\"$scope\" report \"$file\"' /dev/null </dev/null", names);
    EXPECT_NE(result.out.find("a page is nothing for a terminal"), std::string::npos);
    EXPECT_EQ(result.status, 2);
}

// vordascope with the library that lets calls fail.
Result failing(std::vector<std::string> args, const std::string &name, const std::string &value,
               const std::string &out = "")
{
    args.insert(args.begin(), SCOPE);
    return Child(args,
                 {{"LD_PRELOAD", preloadable(built("tests/libscope_failing.so"))}, {name, value}},
                 out)
        .finish();
}

TEST(ScopeJourney, CallsThatFail)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__clang__)
    GTEST_SKIP() << "the sanitizer has its own malloc";
#endif
    const Capture a("label x = y\n" + snapshot(1, "[X]\nm:\n1, 2\n3, 4\np = text\noops\n") +
                    snapshot(2));
    const Capture b(snapshot(3, "[X]\nm:\n1, 2\n3, 5\n"));
    const Capture rules("share range=0..2\nintl warn\n");
    const TempFile page;
    const TempFile out;
    const std::vector<std::vector<std::string>> verbs = {
        {"check", "--rules", rules.path(), "--junit", page.path(), a.path(), b.path()},
        {"json", a.path(), b.path()},
        {"diff", "--rules", rules.path(), a.path(), b.path(), a.path() + "#last"},
        {"learn", a.path(), b.path()},
        {"series", a.path(), b.path(), "share", "label x"},
        {"response", a.path(), "share.inttime"},
        {"report", "-o", page.path(), a.path(), b.path()},
    };
    for (const auto &verb : verbs) {
        const int status = scope(verb).status;
        int failures = 0;
        for (int calls = 0;; calls += 1 + calls / 8) {
            const Result result = failing(verb, "VORDA_MALLOCS", std::to_string(calls));
            if (result.status == status && result.err.find("memory") == std::string::npos)
                break;
            EXPECT_EQ(result.status, 2) << verb[0] << ' ' << calls << ' ' << result.err;
            EXPECT_NE(result.err.find("vordascope: not enough memory"), std::string::npos)
                << verb[0] << ' ' << calls << ' ' << result.err;
            failures++;
        }
        EXPECT_GT(failures, 20) << verb[0];

        if (verb[0] == "report")
            continue;
        const Result result = failing(verb, "VORDA_CLOSE", "1", out.path());
        EXPECT_EQ(result.status, 2) << verb[0];
        EXPECT_NE(result.err.find("vordascope: standard output: Input/output error\n"),
                  std::string::npos)
            << verb[0];
    }
}

// BusyBox's shell, with commands from one folder before all others.
Environment with_path(const std::string &folder)
{
    // Not by its full name, in which there may be a colon.
    return {{"PATH", std::filesystem::relative(folder).string() + ":" + getenv("PATH")}};
}

TEST(Record, WritesSnapshotsBelowTheirTimes)
{
    const Region region;
    Environment environment = with_path(built("."));
    environment["LD_PRELOAD"] = preloadable(built("sim/libsr_device.so"));
    environment["ASAN_OPTIONS"] = "verify_asan_link_order=0:detect_leaks=0";
    environment[SR_REGION_ENV] = region.file();
    const std::string script = VORDA_SOURCE_DIR "/utils/host/vordascope/vorda-record.sh";
    const auto record = [&](std::vector<std::string> args) {
        args.insert(args.begin(), {"busybox", "sh", script});
        return Child(args, environment).finish();
    };
    const Result result = record({"-n", "3", "-i", "0.02", "-p", "1", "share"});
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
    Reader reader{std::string_view(result.out)};
    std::vector<double> times;
    for (int i = 1; i <= 3; i++) {
        const Snapshot *recorded = reader.next();
        ASSERT_NE(recorded, nullptr);
        EXPECT_TRUE(recorded->timed && recorded->unread.empty());
        EXPECT_EQ(recorded->path_idx, 1U);
        EXPECT_EQ(recorded->fields.size(), 16U);
        times.push_back(std::stod(std::string(recorded->time.text())));
    }
    // On the clock: one that comes late is followed soon, and two periods lie between three.
    EXPECT_TRUE(std::ranges::is_sorted(times));
    EXPECT_GE(times[2] - times[0], 0.015); // two periods, less what a hundredth hides
    EXPECT_EQ(reader.next(), nullptr);

    EXPECT_NE(record({"-n", "1"}).out.find("=== stat.mcvp_var ===\n"), std::string::npos);
    EXPECT_EQ(record({"-n", "2", "share.nothing"}).status, 1);
    for (const std::vector<std::string> &args : {std::vector<std::string>{"-n", "0"},
                                                 {"-n", "99999999999999999999"},
                                                 {"-i"},
                                                 {"-i", "."},
                                                 {"-i", "0.001"},
                                                 {"-i", "-1"}}) {
        const Result refused = record(args);
        EXPECT_EQ(refused.status, 1);
        EXPECT_EQ(refused.err.find("vorda-record.sh: -"), 0U) << refused.err;
        EXPECT_EQ(refused.out, "");
    }
    const Result help = record({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.out.find("Usage: vorda-record.sh [-n COUNT]"), 0U);
}

// Whether vorda waits for a lock, the loop for its time, or neither: what is there is whole.
TEST(Record, AnySignalStopsItBetweenSnapshots)
{
    char folder[] = "/tmp/vorda-record-XXXXXX";
    ASSERT_NE(mkdtemp(folder), nullptr);
    const std::string vorda = std::string(folder) + "/vorda";
    const std::string started = std::string(folder) + "/started";
    // The second time it waits for a lock that nobody releases.
    std::ofstream(vorda) << "#!/bin/sh\necho 'dev_idx = 0, path_idx = 0'\n[ ! -e " << started
                         << " ] || exec sleep 600\n: >" << started << "\necho 'share.a = 1'\n";
    chmod(vorda.c_str(), 0700);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        for (const std::string period : {"0.01", "600"}) {
            unlink(started.c_str());
            const TempFile out;
            // Its own session, as a terminal would have it; only the loop gets the signal.
            Child child({"setsid", "busybox", "sh",
                         VORDA_SOURCE_DIR "/utils/host/vordascope/vorda-record.sh", "-i", period},
                        with_path(folder), out.path());
            ASSERT_TRUE(eventually([&] { return read_file(out.path()).ends_with("; end\n"); }));
            const std::string session = std::to_string(child.pid());
            ASSERT_TRUE(eventually([&] {
                return run({"pgrep", "-s", session, "-f", "^sleep [56]"}).status == 0;
            }));
            kill(child.pid(), number);
            ASSERT_TRUE(child.ends());
            EXPECT_EQ(child.finish().status, 0);
            const std::string text = read_file(out.path());
            EXPECT_EQ(text.substr(0, 7), "time = ");
            EXPECT_EQ(text.substr(text.find('\n') + 1),
                      "dev_idx = 0, path_idx = 0\nshare.a = 1\n; end\n");
            // Nothing that it began goes on.
            EXPECT_TRUE(eventually([&] {
                return run({"pgrep", "-s", session}).status == 1;
            })) << number
                << " " << period;
        }
    unlink(started.c_str());
    unlink(vorda.c_str());
    rmdir(folder);
}

// A step of exposure time from snapshot 41 on, ten a second, and what follows two snapshots later.
std::string step_recording(int level, double tau)
{
    std::string text;
    for (int i = 0; i < 160; i++) {
        const auto at = [&](int begin) {
            return i < begin ? 0 : 1 - std::exp((begin - 1 - i) / tau);
        };
        text += "time = " + std::to_string(6000 + i * 0.1) + "\n" +
                snapshot(level + int(std::lround(level * at(40))),
                         "share.sys_gain = 1024\nshare.list = 7, " +
                             std::to_string(std::lround(100 + 60 * at(42))) + "\n");
    }
    return text;
}

TEST(ScopeJourney, MeasuresAnswers)
{
    const Capture fast(step_recording(8000, 5));
    const Capture slow(step_recording(4000, 10));
    Result result = scope({"response", "--cause", "share.inttime", fast.path() + "#11-last",
                           slow.path(), "share.inttime", "share.list[1]", "exposure.stops"});
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
    const auto row = [&result](int i) {
        const Result line = bash("sed -n " + std::to_string(i) + "p <<< \"$out\" | tr -s ' '",
                                 {{"out", result.out}});
        return line.out.substr(line.out.find(' ') + 1);
    };
    EXPECT_EQ(row(1), "field answer before after departs delay rise settles band\n");
    EXPECT_EQ(row(2), "share.inttime step 8000 16000 #41, 4.00 s 0 (0.00 s) 11 (1.10 s) "
                      "14 (1.40 s) 400, 5 % of 8000\n");
    EXPECT_EQ(row(3), "share.inttime step 4000 8000 #41, 4.00 s 0 (0.00 s) 22 (2.20 s) "
                      "29 (2.90 s) 200, 5 % of 4000\n");
    EXPECT_EQ(row(4).find("share.list[1] step 100 160 #43, 4.20 s 2 (0.20 s) "), 0) << row(4);
    EXPECT_EQ(row(6).find("exposure.stops step 22.966 23.966 #41, "), 0) << row(6);
    EXPECT_EQ(row(8), "is computed: log2(share.inttime x share.sys_gain)\n");

    // A selection that ends too early, what came before as a reference, and CSV.
    result = scope({"response", "--csv", "--label", "fw=7", "--reference", slow.path() + "#1-9",
                    fast.path() + "#30-45", "share.inttime", "share.sys_gain"});
    const std::string name = fast.path() + "#30-45";
    EXPECT_EQ(result.out.substr(result.out.find('\n') + 1),
              name +
                  ",share.inttime,moving,30,45,16,4000,,8000,13057,420.25,8405,30,2.9,,,,,,,"
                  "13057,45,1.0775728732897085,,,,,,,7\n" +
                  name +
                  ",share.sys_gain,steady,30,45,16,1024,,1024,1024,51.2,1024,,,,,,,,,,,,,"
                  ",,,,,7\n");
    EXPECT_NE(result.out.find(",undershoot_part,label fw\n"), std::string::npos);

    // A clock that goes back begins another run; a second path is one of its own.
    const Capture mixed(step_recording(8000, 5) + step_recording(4000, 5) +
                        "dev_idx = 0, path_idx = 0\nshare.inttime = 5\n");
    result = scope({"response", mixed.path(), "share.inttime"});
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 4);
    EXPECT_NE(result.out.find("path_idx = 1, run 2)  share.inttime  step             4000"),
              std::string::npos)
        << result.out;
    for (const std::vector<std::string> &wrong :
         {std::vector<std::string>{fast.path()},
          {fast.path() + "#5", "share.inttime"},
          {fast.path() + "#9-8", "share.inttime"},
          {fast.path() + "#900-999", "share.inttime"},
          {fast.path(), "share.intime"},
          {fast.path(), "share.inttime", "--cause", "share.list"}}) {
        std::vector<std::string> args = wrong;
        args.insert(args.begin(), "response");
        result = scope(args);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.err.find("vordascope: "), 0);
        EXPECT_EQ(result.out, "");
    }
}

TEST(ScopeDocuments, TheManualAndTheCompletionKnowVerbsAndOptions)
{
    const std::string manual = read_file(VORDA_BUILD_DIR "/vordascope.1");
    const std::string help = scope({"--help"}).out;
    size_t options = 0;
    for (const std::string verb : {"check", "json", "diff", "learn", "series", "response",
                                   "metrics", "report", "live", "mark"}) {
        EXPECT_NE(help.find("\n  " + verb), std::string::npos) << verb;
        EXPECT_NE(manual.find("\n.SS " + verb), std::string::npos) << verb;
        const std::string text = scope({verb, "--help"}).out;
        for (size_t at = text.find("--"); at != std::string::npos; at = text.find("--", at + 2)) {
            const std::string option = text.substr(at, text.find_first_of(" :,", at) - at);
            std::string escaped = option;
            for (size_t dash = 0; (dash = escaped.find('-', dash)) != std::string::npos; dash += 2)
                escaped.replace(dash, 1, "\\-");
            EXPECT_NE(manual.find(escaped), std::string::npos) << option;
            options++;
        }
    }
    EXPECT_GT(options, 8U);

    const auto completed = [](const std::string &words) {
        const Result result = bash("source '" VORDA_SOURCE_DIR
                                   "/completion/vordascope.bash'; COMP_WORDS=(\"$scope\" " +
                                       words +
                                       "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _vordascope; "
                                       "echo \"${COMPREPLY[*]}\"",
                                   {});
        EXPECT_EQ(result.err, "");
        return result.out;
    };
    EXPECT_EQ(completed("ch"), "check\n");
    EXPECT_EQ(completed("diff --ig"), "--ignore --ignore-from\n");
    const Capture capture(
        snapshot(1, "share.isp_gain = 1\nshare.fps = 25.00\n[X]\nlong key: 1\nlong kez: 2\n") +
        "dev_idx = 1, path_idx = 0\nshare.inttime = 1\n");
    EXPECT_EQ(completed("series " + capture.path() + " share.i"), "share.inttime share.isp_gain\n");
    for (const std::string word : {R"(intl.x.long\\\ k)", R"("'intl.x.long k")"})
        EXPECT_EQ(completed("series " + capture.path() + " " + word),
                  "intl.x.long\\ key intl.x.long\\ kez\n");
    EXPECT_EQ(completed("series --label host = cam1 " + capture.path() + " share.f"),
              "share.fps\n");
    EXPECT_EQ(completed("live --la"), "--label\n");
    EXPECT_EQ(completed("response " + capture.path() + "#1-9 share.f"), "share.fps\n");
}

} // namespace
