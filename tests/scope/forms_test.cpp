// What is made of snapshots: JSON, comparison, series, and the choice of fields by name.
#include "compare.h"
#include "every_form.h"
#include "harness.h"
#include "json.h"
#include "reading.h"
#include "select.h"
#include "series.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <set>

using namespace vordascope;
using nlohmann::json;

namespace
{

// The values in a text below the given members, in which no object has a member twice.
// NOLINTNEXTLINE(misc-no-recursion): no deeper than what is printed
size_t count_values(const json &object)
{
    if (!object.is_structured())
        return 1;
    size_t count = 0;
    for (const json &value : object)
        count += count_values(value);
    return count;
}

size_t count_values(const std::string &text, const std::vector<std::string> &members)
{
    std::vector<std::set<std::string>> seen;
    const json whole = json::parse(text, [&seen](int, json::parse_event_t event, json &value) {
        if (event == json::parse_event_t::object_start) {
            seen.emplace_back();
        } else if (event == json::parse_event_t::object_end) {
            seen.pop_back();
        } else if (event == json::parse_event_t::key) {
            EXPECT_TRUE(seen.back().insert(value.get<std::string>()).second) << value;
        }
        return true;
    });
    size_t count = 0;
    for (const std::string &member : members)
        count += count_values(whole.at(member));
    return count;
}

TEST(Json, HoldsWhatASnapshotHolds)
{
    const std::string text =
        "time = 12.50\n" + INDEX +
        "[LSC]\na[0] = 1\n[Some words]\nCCM:\nb = nan\nlist = 1, -2.50, inf\nvalid = \n"
        "path = \x01\"\\\x7F\x80\xFF\n\xC3\n=== cfg.x ===\nbig = 18446744073709551615\n"
        "low = -9223372036854775808\nhuge = 340282346638528859811704183484516925440.00\n"
        "DBC:\nm:\n1, 2\n3, 4\nnonsense\n[AE]\nb = true\nshare.a = (1,2) (3,4)\n"
        "=== cfg.empty ===\nshare.cut = 1";
    Reader reader{std::string_view(text)};
    std::string out;
    put_json(*reader.next(), "\xFF\"", out);
    EXPECT_EQ(out, "{\"vorda_json\":1,\"file\":\"\xC3\xBF\\\"\","
                   R"("dev_idx":0,"path_idx":1,"time":12.50,"cut":true,"intl":{"lsc":{"a":[1],)"
                   R"("Some words":{"CCM":{"b":null,"list":[1,-2.50,null],"valid":null,)"
                   "\"path\":\"\\u0001\\\"\\\\\\u007f\xC2\x80\xC3\xBF\\u000a\xC3\x83\"}}},"
                   R"("ae":{"b":true}},"cfg":{"x":{"big":18446744073709551615,)"
                   R"("low":-9223372036854775808,)"
                   R"("huge":340282346638528859811704183484516925440.00,)"
                   R"("DBC":{"m":[[1,2],[3,4]]}},"empty":{}},)"
                   R"("share":{"a":[[1,2],[3,4]],"cut":null},"unread":[20,25]})");

    for (const char *name : {"distinct", "zero"}) {
        const std::string recorded =
            INDEX + read_file(VORDA_SOURCE_DIR "/tests/golden/" + std::string(name) + ".txt");
        Reader whole{std::string_view(recorded)};
        const Snapshot &snapshot = *whole.next();
        out.clear();
        put_json(snapshot, "a.txt", out);
        EXPECT_EQ(out.find('\n'), std::string::npos);
        EXPECT_EQ(count_values(out, {"cfg", "intl", "share", "stat", "vinfo"}),
                  snapshot.values.size());
    }
}

struct Sides {
    std::string a;
    std::string b;
    std::string rules;
    std::string report;
    std::vector<std::string> only = {};
};

TEST(Compare, ReportsByItem)
{
    const Sides rows[] = {
        {"[A]\nx = 1\n", "[A]\nx = 1\n", "", ""},
        {"[A]\nx = 8000\nlong = -552\nf = 25.00\nz = 0\n",
         "[A]\nx = 40000\nlong = -600\nf = 12.5\nz = 7\n", "",
         "intl.a\n  x     8000 -> 40000  (+32000, +400 %)\n  long  -552 -> -600  (-48, -8.7 %)\n"
         "  f     25.00 -> 12.5  (-12.50, -50 %)\n  z     0 -> 7  (+7)\n"},
        {"[A]\nu = 0\nv = 18446744073709551615\n", "[A]\nu = 18446744073709551615\nv = -1\n", "",
         "intl.a\n  u  0 -> 18446744073709551615  (+18446744073709551615)\n"
         "  v  18446744073709551615 -> -1  (-18446744073709551616, -100 %)\n"},
        {"[A]\nu = 18446744073709551614\nw = -5\n", "[A]\nu = 18446744073709551615\nw = -3\n", "",
         "intl.a\n  u  18446744073709551614 -> 18446744073709551615  (+1, +5.42e-18 %)\n"
         "  w  -5 -> -3  (+2, +40 %)\n"},
        {"[A]\nt = /a\nb = true\nn = nan\ne = \n", "[A]\nt = /\x1b\nb = false\nn = 1\ne = 1\n", "",
         "intl.a\n  t  /a -> /\\x1b\n  b  true -> false\n  n  nan -> 1\n  e  (nothing) -> 1\n"},
        {"[A]\nl = 1, 2, 3\nm:\n1, 2\n3, 4\ns = 1, 2\n",
         "[A]\nl = 1, 4, 9\nm:\n1, 2\n3, 9\ns = 1, 2, 3\n", "",
         "intl.a\n  l  2 of 3 values, most [2]: 3 -> 9  (+6, +200 %)\n"
         "  m  1 of 4 values, most [1][1]: 4 -> 9  (+5, +125 %)\n  s  2 values -> 3 values\n"},
        {"[A]\n[H h]\nx = 1\ny = 2\nw = 1\n[B]\nx = 1\ny = 1\n[C]\nx = 1\n",
         "[A]\n[H h]\ny = 3\nz:\n1, 2\nw = 1\n[D]\nx = 5\nl = 1, 2\n", "",
         "intl.a\n  H h / x  only in before: 1\n  H h / y  2 -> 3  (+1, +50 %)\n"
         "  H h / z  only in after (2 values)\nintl.b: only in before (2 fields)\n"
         "intl.c\n  x  only in before: 1\nintl.d: only in after (2 fields)\n"},
        // Tolerances.
        {"[A]\nx = 100\ny = 100\nz = nan\n", "[A]\nx = 102\ny = 103\nz = 1\n", "* abs=2",
         "intl.a\n  y  100 -> 103  (+3, +3 %)\n  z  nan -> 1\n"},
        {"[A]\nx = 100\ny = -100\n", "[A]\nx = 98\ny = -97\n", "* rel=2%",
         "intl.a\n  y  -100 -> -97  (+3, +3 %)\n"},
        {"[A]\nx = 1.00\ny = 1.00\ninf = inf\nninf = inf\n",
         "[A]\nx = 1.10\ny = 1.11\ninf = 1\nninf = -inf\n", "* abs=1e-1 rel=0.01",
         "intl.a\n  y     1.00 -> 1.11  (+0.11, +11 %)\n  inf   inf -> 1\n  ninf  inf -> -inf\n"},
        {"[A]\nx = 71\ny = 70\n", "[A]\nx = 100\ny = 100\n", "* rel=29%",
         "intl.a\n  y  70 -> 100  (+30, +42.9 %)\n"},
        {"[A]\nx = 1.0\ny = 10000\n", "[A]\nx = 1.00\ny = 109970\n", "",
         "intl.a\n  y  10000 -> 109970  (+99970, +1000 %)\n"},
        {"[A]\nx = 9007199254740993\n", "[A]\nx = 9007199254740992\n", "",
         "intl.a\n  x  9007199254740993 -> 9007199254740992  (-1, -1.11e-14 %)\n"},
        // Selections.
        {"[A]\nx = 1\ny = 1\n[B]\nx = 1\nB0:\ny = 1\n",
         "[A]\nx = 2\ny = 2\n[B]\nx = 2\nB0:\ny = 2\n",
         "intl.b.B0\nintl.?.x",
         "intl.a\n  y  1 -> 2  (+1, +100 %)\n",
         {"intl.a", "*.y"}},
        // What is no difference of numbers, and numbers that no double holds.
        {"[A]\nm = 0 (0: off, 1: on)\nt:\n1, 2, 3\n4, 5, 6\nl = 5\n?\n!\n",
         "[A]\nm = 0 (0: on, 1: off)\nt:\n1, 2\n3, 4\n5, 6\nl = 5, \n!\n", "* abs=9 rel=90%",
         "intl.a\n  m  (0: off, 1: on) behind the value -> (0: on, 1: off)\n"
         "  t  2 x 3 values -> 3 x 2 values\n  l  a single value -> a list of 1 value\n"
         "lines that are not understood\n  only in before: ?\n"},
        {"[A]\nm = 0\n(0: off, 1: on)\nn = 1 (0: x)\n(0: y)\n",
         "[A]\nm = 0\n(0: off, 1: bypass)\nn = 1 (0: x)\n(0: z)\n", "",
         "intl.a\n  m  (0: off, 1: on) behind the value -> (0: off, 1: bypass)\n"
         "  n  (0: x)\\x0a(0: y) behind the value -> (0: x)\\x0a(0: z)\n"},
        {"[A]\nb = 18446744073709551617\nd = 0.10000000000000000001\nc = 9007199254740993\n",
         "[A]\nb = 18446744073709551618\nd = 0.1\nc = 18014398509481985\n",
         "*.c abs=9007199254740991",
         "intl.a\n  b  18446744073709551617 -> 18446744073709551618  (+1, +5.42e-18 %)\n"
         "  d  0.10000000000000000001 -> 0.1  (-0.00000000000000000001, -1e-17 %)\n"
         "  c  9007199254740993 -> 18014398509481985  (+9007199254740992, +100 %)\n"},
        {"[A]\na.b = 1\nB:\nc = 2\n[A.B]\nc = 4\n", "[A]\na.b = 1\nB:\nc = 3\n[A.B]\nc = 4\n", "",
         "intl.a\n  B / c  2 -> 3  (+1, +50 %)\n"},
        // Rules: the last one that matches holds, alone.
        {"[A]\nx = 5\ny = 5\nz = 5\nw = 5\nv = 5, 9, 5\n",
         "[A]\nx = 7\ny = 7\nz = 7\nw = 7\nv = 5, 5, -1\n",
         "intl.a exact\n*.x range=..6.5\n*.y range=7..7 abs=1\n*.z range=7.. # why\n*.w warn\n"
         "\"intl.a.v\" range=-0.5..5 warn\n",
         "intl.a\n  x  7 is outside of ..6.5\n  y  5 -> 7  (+2, +40 %)\n"
         "  w  5 -> 7  (+2, +40 %)  (warning)\n"
         "  v  1 of 3 values, first [2]: -1 is outside of -0.5..5  (warning)\n"},
    };
    for (const Sides &row : rows) {
        const std::string a = INDEX + row.a;
        const std::string b = "dev_idx = 7, path_idx = 7\n" + row.b;
        Reader reader_a{std::string_view(a)};
        Reader reader_b{std::string_view(b)};
        std::vector<Rule> list;
        std::string error;
        ASSERT_TRUE(read_rules(row.rules, "rules", list, error)) << error;
        Rules rules({}, list, row.only);
        const Comparison result =
            compare(*reader_a.next(), *reader_b.next(), rules, "before", "after");
        std::string report;
        put_report(result, "before", "after", report);
        EXPECT_EQ(report, row.report);
        EXPECT_EQ(result.same(), row.report.empty()) << row.report;
    }
}

TEST(Compare, TellsEveryValueWhereAsked)
{
    const std::string a =
        INDEX + "[A]\nl = 1, 2, 3, nan\nm:\n1, 2\n3, 4\ns = 1\nt = 1, 2\nr = 1, 2\n";
    const std::string b = INDEX + "[A]\nl = 9, 2, 5, 1\nm:\n1, 3\n3, 9\ns = 2\nt = 1\nr = 9, 9\n";
    Reader reader_a{std::string_view(a)};
    Reader reader_b{std::string_view(b)};
    std::vector<Rule> list;
    std::string error;
    ASSERT_TRUE(read_rules("*.m abs=1\n*.r range=..8", "rules", list, error)) << error;
    Rules rules({}, list, {});
    std::string report;
    put_report(compare(*reader_a.next(), *reader_b.next(), rules, "a", "b", true), "a", "b",
               report);
    EXPECT_EQ(report, "intl.a\n"
                      "  l  3 of 4 values, most [3]: nan -> 1\n"
                      "    [0]  1 -> 9  (+8, +800 %)\n"
                      "    [2]  3 -> 5  (+2, +66.7 %)\n"
                      "    [3]  nan -> 1\n"
                      "  m  1 of 4 values, most [1][1]: 4 -> 9  (+5, +125 %)\n"
                      "    [1][1]  4 -> 9  (+5, +125 %)\n"
                      "  s  1 -> 2  (+1, +100 %)\n"
                      "  t  2 values -> a single value\n"
                      "  r  2 of 2 values, first [0]: 9 is outside of ..8\n");
}

TEST(Forms, OfSavedTexts)
{
    size_t saved = 0;
    for (const char *folder : {"/tests/scope/corpus", "/tests/golden"}) {
        for (const auto &entry :
             std::filesystem::directory_iterator(VORDA_SOURCE_DIR + std::string(folder))) {
            const std::string text = read_file(entry.path());
            make_every_form(reinterpret_cast<const uint8_t *>(text.data()), text.size());
            saved++;
        }
    }
    EXPECT_GT(saved, 12U);
}

TEST(Select, PatternsAndPaths)
{
    const std::tuple<const char *, const char *, bool> rows[] = {
        {"share.fps", "share.fps", true},
        {"share.fps", "share.fp", false},
        {"share.fps", "share.*", true},
        {"share.fps", "*fps", true},
        {"share.fps", "*f*s*", true},
        {"share.fps", "*f*x*", false},
        {"share.fps", "sh?re.fps", true},
        {"share.fps", "share.fps?", false},
        {"a[0]", "a[0]", true},
        {"a[0]", "a[?]", true},
        {"a0", "a[0]", false},
        {"", "*", true},
        {"", "?", false},
        {"aab", "*ab", true},
    };
    for (const auto &[text, pattern, match] : rows)
        EXPECT_EQ(matches(text, pattern), match) << text << ' ' << pattern;
    const std::string many(5000, 'a');
    EXPECT_FALSE(matches(many, "*a*a*a*a*a*a*a*b"));

    const std::string text = INDEX + "share.inttime = 1\nshare.sys_gain = 1\nshare.isp_gain = 1\n"
                                     "=== cfg.nr ===\nmode = 1\n";
    Reader reader{std::string_view(text)};
    const Snapshot &snapshot = *reader.next();
    const std::pair<const char *, const char *> names[] = {
        {"inttime", "Near: share.inttime"},
        {"share.intime", "Near: share.inttime"},
        {"gain", "Near: share.sys_gain, share.isp_gain"},
        {"sahre", "Near: share"},
        {"xyzzy-plugh", "There is: share cfg.nr"},
        {"e", "Near: share, share.inttime, share.sys_gain, share.isp_gain, cfg.nr.mode"},
        {"s", "Near: share, share.inttime, share.sys_gain, share.isp_gain"},
    };
    for (const auto &[wanted, suggestion] : names)
        EXPECT_EQ(suggest(snapshot, wanted), suggestion) << wanted;
}

TEST(Series, ColumnsAndRows)
{
    const std::string text = "label site = -1\ntime = 1.5\n" + INDEX +
                             "share.a = 1\nshare.l = 5, 6\n[X]\nm:\n1, 2\n3, 4\np = /a,\"b\n" +
                             INDEX + "[X]\nm:\n7, 8\nn = 1\nshare.l = 9, 10\nshare.a = nan\n" +
                             INDEX + "share.a = 25.00\n";
    const auto table = [&text](const std::vector<std::string> &names) {
        Series series;
        std::string out;
        Reader reader{std::string_view(text)};
        while (const Snapshot *snapshot = reader.next()) {
            if (snapshot->number == 1) {
                if (!series.begin(*snapshot, names, out))
                    return out;
                series.put_header(out);
            }
            series.put_row(*snapshot, "=fi\nle", out);
        }
        return out;
    };
    EXPECT_EQ(table({"share.a"}), "share.a\n1\nnan\n25.00\n");
    EXPECT_EQ(table({"intl.x.n"}), "no field intl.x.n. Near: intl.x.m, intl.x.p, intl.x");
    EXPECT_EQ(
        table({"time", "snapshot", "share.l", "path_idx", "dev_idx"}),
        "time,snapshot,share.l[0],share.l[1],path_idx,dev_idx\n1.5,1,5,6,1,0\n,2,9,10,1,0\n,3,,,1,0\n");
    EXPECT_EQ(table({"intl.x.m[1]", "intl.x.m[0][1]", "share.l[1]"}),
              "intl.x.m[1][0],intl.x.m[1][1],intl.x.m[0][1],share.l[1]\n3,4,2,6\n,,,10\n,,,\n");
    EXPECT_EQ(table({"*.p", "intl.?.m*"}),
              "intl.x.p,intl.x.m[0][0],intl.x.m[0][1],intl.x.m[1][0],intl.x.m[1][1]\n"
              "\"/a,\"\"b\",1,2,3,4\n,,,,\n,,,,\n");
    // A value stands under the name of its own place; a gap alone in a row is not an empty line.
    EXPECT_EQ(table({"intl.x.m[0][0]"}), "intl.x.m[0][0]\n1\n\"\"\n\"\"\n");
    EXPECT_EQ(table({"file", "label site"}),
              "file,label site\n\"'=fi\nle\",'-1\n\"'=fi\nle\",'-1\n\"'=fi\nle\",'-1\n");
    EXPECT_EQ(table({"share"}), table({"share.a", "share.l"}));
    EXPECT_EQ(table({"share.a", "share.l[2]"}), "no field share.l[2]. Near: share.l");
}

} // namespace
