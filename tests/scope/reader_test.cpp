// The reader: its grammar by rows, all that vorda prints, and texts that nobody meant to be read.
#include "dip_ctx_types.h"
#include "harness.h"
#include "reading.h"
#include "scene.h"
#include "vorda.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <set>

namespace vordascope
{

struct SlotsOf {
    const Snapshot &snapshot;

    // Calls use(key, its hash, how many slots it is away from its own).
    template <typename Use>
    void for_each(Use use) const
    {
        const std::vector<Snapshot::Slot> &slots = snapshot.slots_;
        for (size_t i = 0; i < slots.size(); i++)
            if (slots[i].member != NONE && slots[i].member % 2 == 0)
                use(snapshot.fields[slots[i].member / 2].key, slots[i].hash,
                    (i - slots[i].hash) & (slots.size() - 1));
    }
    size_t count() const { return snapshot.slots_.size(); }
    size_t crowd() const { return snapshot.crowd_.size(); }
};

} // namespace vordascope

using namespace vordascope;
using namespace std::string_literals;

namespace
{

const std::string CUT = "cut off: the line does not end\n";
const std::string DAMAGED = "does not go on as its field began, which is damaged\n";
const std::string LEFT_OUT = "left out: the snapshot that it is added to is not before it\n";

struct Row {
    std::string text;
    std::string fields;
};

void expect_rows(const std::string &before, const std::vector<Row> &rows)
{
    for (const Row &row : rows)
        EXPECT_EQ(read_all(before + row.text), row.fields) << row.text;
}

TEST(Reader, Lines)
{
    expect_rows(
        INDEX + "=== cfg.x ===\n",
        {
            // Keys and values.
            {"mode = -3\n", "cfg.x.mode = -3\n"},
            {"level_r  = 1022\n", "cfg.x.level_r = 1022\n"},
            {"TE enable = 1\nROI0 pixel num: 518400\n",
             "cfg.x.TE enable = 1\ncfg.x.ROI0 pixel num = 518400\n"},
            {"Overflow: false\na = true\n", "cfg.x.Overflow = false\ncfg.x.a = true\n"},
            {"avg:   16525\n", "cfg.x.avg = 16525\n"},
            {"a = nan\nb = -nan\nc = -inf\nd = inf\n",
             "cfg.x.a = nan\ncfg.x.b = -nan\ncfg.x.c = -inf\ncfg.x.d = inf\n"},
            {"fps = 25.00\nbig = 340282346638528859811704183484516925440.00\n",
             "cfg.x.fps = 25.00\ncfg.x.big = 340282346638528859811704183484516925440.00\n"},
            {"var = 18446744073709551615\nlow = -9223372036854775808\n",
             "cfg.x.var = 18446744073709551615\ncfg.x.low = -9223372036854775808\n"},
            {"a = 18446744073709551616\nb = -9223372036854775809\n",
             "cfg.x.a = 18446744073709551616 (inexact)\ncfg.x.b = -9223372036854775809 (inexact)\n"},
            {"path = /a b; c\nq = 1.\nr = 007\ns = 1 2\nt = 5 (x\n",
             "cfg.x.path = \"/a b; c\"\ncfg.x.q = \"1.\"\ncfg.x.r = \"007\"\ncfg.x.s = \"1 2\"\n"
             "cfg.x.t = \"5 (x\"\n"},
            {"valid_win = \nnext =\n", "cfg.x.valid_win = -\ncfg.x.next = -\n"},
            // Scalars with a comma, and lists in their four forms.
            {"gain = 1,\ncoeff =   435,\n", "cfg.x.gain = 1\ncfg.x.coeff = 435\n"},
            {"a = 1, 2\nb = 3, 4, \nc = 5, 6,\nd = 7, 8, \t; [0, 1023]\ne = 9, \n",
             "cfg.x.a = [1,2]\ncfg.x.b = [3,4]\ncfg.x.c = [5,6]\ncfg.x.d = [7,8]\ncfg.x.e = [9]\n"},
            {"rg =96, -120, \ngain_curve.x    = 0, 204, \nb =  8,  16, \n",
             "cfg.x.rg = [96,-120]\ncfg.x.gain_curve.x = [0,204]\ncfg.x.b = [8,16]\n"},
            {"w-7 = 32, 33, ; manual\n", "cfg.x.w-7 = [32,33]\n"},
            // Legends and derived numbers.
            {"mode = 0 (0: normal, 1: disable)\n", "cfg.x.mode = 0\n"},
            {"mode = 0\n(0: normal, 1: 2D only)\n", "cfg.x.mode = 0\n"},
            {"m[0] = 96 (96)\nm[1] = 1012 (-12)\n", "cfg.x.m = [96,1012]\n"},
            {"type = 2 (Dual sensors, stitching)\n", "cfg.x.type = 2\n"},
            // Comments.
            {"; a = 1\n;b\n\n   \na = 1\t; s3.4 [-128, 127]\nb = 2 ; Enable\nc = 3;x\n",
             "cfg.x.a = 1\ncfg.x.b = 2\ncfg.x.c = 3\n"},
            {"Unable to acquire corresponding window cfg.\n", ""},
            // Elements line by line, rows with numbers in their keys.
            {"a.x[0] = 1\na.x[1] = 2,\na.y[0] = 3\n", "cfg.x.a.x = [1,2]\ncfg.x.a.y = [3]\n"},
            {"g[0].enable = 1,\ng[0].val[0] = 2,\ng[0].val[1] = 3,\ng[1].val[0] = 4,\n",
             "cfg.x.g[0].enable = 1\ncfg.x.g[0].val = [2,3]\ncfg.x.g[1].val = [4]\n"},
            {"v_0-0  =  1,  2, \n\nv_0-1  =  3,  4, \nx_0 = 5\ny_0 = 6\nx_1 = 7\n",
             "cfg.x.v_0-0 = [1,2]\ncfg.x.v_0-1 = [3,4]\ncfg.x.x_0 = 5\ncfg.x.y_0 = 6\ncfg.x.x_1 = 7\n"},
            // Tuples.
            {"bind_win = (0,0)\nvalid_win = (5,1) (-16,-1)\n",
             "cfg.x.bind_win = [[0,0]]\ncfg.x.valid_win = [[5,1],[-16,-1]]\n"},
        });
}

TEST(Reader, RowsAndBlocks)
{
    expect_rows(
        INDEX + "=== stat.x ===\n",
        {
            // A vector in rows of six, ragged or not; in one row; of a size that its label tells.
            {"PTA Curve[8]:\n 1, 2, 3, 4, 5, 6, \n 7, 8, \n",
             "stat.x.PTA Curve[8] = [1,2,3,4,5,6,7,8]\n"},
            {"hist:\n1, 2, 3, 4, 5, 6, \n7, 8, 9, 10, 11, 12, \n",
             "stat.x.hist = [1,2,3,4,5,6,7,8,9,10,11,12]\n"},
            {"peak:\n  13500,    7804,\nenergy:\n1, 2\n",
             "stat.x.peak = [13500,7804]\nstat.x.energy = [1,2]\n"},
            {"c[4]:\n1, 2\n3, 4\nd[5]:\n1, 2\n3, 4\n",
             "stat.x.c[4] = [1,2,3,4]\nstat.x.d[5] = [[1,2],[3,4]]\n"},
            // Maps; blanks before the colon.
            {"table.coeff.ee :\n1, 2, \n3, 4, \n", "stat.x.table.coeff.ee = [[1,2],[3,4]]\n"},
            {"m:\n  1740,   -552\n  -298,   1581\n   -31\n",
             "stat.x.m = [[1740,-552],[-298,1581],[-31]]\n"},
            // Points, and a numbered table below its head.
            {"g0:\n(  4   3) ( 13   3) \n(  4  11) \n", "stat.x.g0 = [[4,3],[13,3],[4,11]]\n"},
            {"mv histogram:\n<#bin>(mv_x, mv_cnt)\n------\n<# 0> ( -32,      5)\n<# 1> (   0,      7)\n"
             "total = 2\n",
             "stat.x.mv histogram = [[-32,5],[0,7]]\nstat.x.total = 2\n"},
            // Blocks: by capitals, by heading, by label; a label in a label.
            {"DBC0:\nmode = 1\nee:\n1, 2, \n3, 4, \nDBC1:\nmode = 2\n",
             "stat.x.DBC0.mode = 1\nstat.x.DBC0.ee = [[1,2],[3,4]]\nstat.x.DBC1.mode = 2\n"},
            {"[ROI var]\nROI0 h1_avg = 5\n[RGL var]\nh1_avg:\n5, 6\nROI0 h1_avg = 7\n",
             "stat.x.ROI var.ROI0 h1_avg = 5\nstat.x.RGL var.h1_avg = [5,6]\n"
             "stat.x.RGL var.ROI0 h1_avg = 7\n"},
            {"mv ROI:\nmv.roi.sx = 1\nmv.roi.sy = 2\nmv hist:\n1, 2\ntotal = 3\n",
             "stat.x.mv ROI.mv.roi.sx = 1\nstat.x.mv ROI.mv.roi.sy = 2\nstat.x.mv hist = [1,2]\n"
             "stat.x.total = 3\n"},
            {"[Rtx ROI]\npeak:\n1, 2\nChannel information:\ng0:\n(1 2) \nr:\n(3 4) \n[Rtx RGL]\ng0:\n5, 6\n",
             "stat.x.Rtx ROI.peak = [1,2]\nstat.x.Rtx ROI.Channel information.g0 = [[1,2]]\n"
             "stat.x.Rtx ROI.Channel information.r = [[3,4]]\nstat.x.Rtx RGL.g0 = [5,6]\n"},
        });
}

TEST(Reader, Sections)
{
    expect_rows(
        INDEX,
        {
            {"[NR]\na = 1\n[BSP_DPC]\na = 2\n[HDRAE]\na = 3\n[TRAIL_SUPPRESS]\na = 4\n"
             "[REGIONAL_STAT]\na = 5\n",
             "intl.nr.a = 1\nintl.dpc.a = 2\nintl.hdr_ae.a = 3\nintl.ts.a = 4\nintl.rgl_stat.a = 5\n"},
            {"=== cfg.te ===\na = 1\nshare.fps = 25.00\nshare.noise_level:\nnoise_level.level_iso = 100\n"
             "noise_level_bin = 1, 2\nshare.colormatrix:\n1, 2\n3, 4\nshare.color_temp = 5\n"
             "vinfo.type = 1 (Dual)\n",
             "cfg.te.a = 1\nshare.fps = 25.00\nshare.noise_level.noise_level.level_iso = 100\n"
             "share.noise_level.noise_level_bin = [1,2]\nshare.colormatrix = [[1,2],[3,4]]\n"
             "share.color_temp = 5\nvinfo.type = 1\n"},
            // In another section such a key is still one of its own.
            {"=== cfg.enh ===\ncfg.luma.y_mode = 1\n", "cfg.enh.cfg.luma.y_mode = 1\n"},
            {"=== new ===\na = 1\n=== new.item ===\na = 2\n", "new.a = 1\nnew.item.a = 2\n"},
        });
}

TEST(Reader, WhatCannotBeRead)
{
    const std::string neither = "neither a key nor a label\n";
    expect_rows(
        INDEX + "=== cfg.x ===\n",
        {
            {"a = 1\nnonsense\na = 2\nb = 2\n",
             "cfg.x.a = 1\ncfg.x.b = 2\n? 4: " + neither + "? 5: a second field of this name\n"},
            {"1, 2, 3\n(1 2) \n<# 0> (1, 2)\n",
             "? 3: a row without a label\n? 4: a row without a label\n? 5: a row without a label\n"},
            {"m:\n1, 2\n3, 4, 5\n6\n7, 8\nx = 1\n",
             "cfg.x.m = damaged\ncfg.x.x = 1\n? 5: " + DAMAGED},
            {"h:\n<# 0> (1, 2)\n<# 2> (1, 2)\n<# 1> (1, 3)\n",
             "cfg.x.h = damaged\n? 5: " + DAMAGED},
            {"a[1] = 1\nb[0] = 1\nb[2] = 3\n",
             "cfg.x.b = damaged\n? 3: an element out of order\n? 5: " + DAMAGED},
            {"b[0] = 1\nc[0] = 1\nb[1] = 3\nb[2] = 4\n",
             "cfg.x.b = damaged\ncfg.x.c = [1]\n? 5: " + DAMAGED},
            // A line that was wrapped: between numbers, within one, behind a comma; told once.
            {"l = 1, 2, 3,\n4, 5\n6, 7\ns = 5\n",
             "cfg.x.l = damaged\ncfg.x.s = 5\n? 4: " + DAMAGED},
            {"l = 1, 2, 32\n00, 6400\n", "cfg.x.l = damaged\n? 4: " + DAMAGED},
            {"w = \n(1,2)\nl = 1, 2\n, 3\n",
             "cfg.x.w = damaged\ncfg.x.l = damaged\n? 4: " + DAMAGED + "? 6: " + DAMAGED},
            {"l = 1, 2, x3, 4\nm: 1, 2^C\nn = 5, 6, -\npath = 1, 2, x\n",
             "cfg.x.l = damaged\ncfg.x.m = damaged\ncfg.x.n = damaged\n"
             "cfg.x.path = \"1, 2, x\"\n? 3: " +
                 DAMAGED + "? 4: " + DAMAGED + "? 5: " + DAMAGED},
            // Only a file's name goes on.
            {"lens = f/1.8\ngain (dB) = 5\nn = 1\noops\n",
             "cfg.x.lens = \"f/1.8\"\ncfg.x.n = 1\n? 4: " + neither + "? 6: " + neither},
            {"DBC = 1\nDBC:\na = 2\n", "cfg.x.DBC = 1\n? 5: in a block of a name that is taken\n"},
            {"\x80 = 1\n$x = 2\na\0b = 3\n+ 5\n- 5\n(0x: y)\n[x\n=== ===\n"s,
             "? 3: neither a key nor a row\n? 4: neither a key nor a row\n"
             "? 5: neither a key nor a label\n? 6: neither a key nor a row\n"
             "? 7: neither a key nor a row\n? 8: neither a key nor a row\n? 9: no heading\n"
             "? 10: no section\n"},
            {"=== time.x ===\na = 1\n=== cfg.y ===\na = 2\n",
             "cfg.y.a = 2\n? 3: a section of a name that is taken\n? 4: outside of any section\n"},
        });
    expect_rows(
        "",
        {
            {INDEX + "a = 1\nb:\n[Some heading]\n1, 2\n",
             "? 2: outside of any section\n? 3: outside of any section\n? 4: outside of any section\n"
             "? 5: a row without a label\n"},
            {"", ""},
            {"no index\n\n; but a comment\nlines = 1\n",
             "? 1: outside of any snapshot\n? 4: outside of any snapshot\n"},
            // Before the first snapshot what cannot be one is left out, other lines are told.
            {"banner\n" + INDEX + "share.a = 1\n", "share.a = 1\n"},
            {"banner\n1, 2\n" + INDEX + "share.a = 1\n",
             "share.a = 1\n? 1: outside of any snapshot\n? 2: outside of any snapshot\n"},
            {"dev_idx = 0, path_idx = \ndev_idx = 99999999999, path_idx = 0\n",
             "? 1: outside of any snapshot\n? 2: outside of any snapshot\n"},
        });
}

TEST(Reader, SnapshotsBeginAndEnd)
{
    expect_rows(
        "",
        {
            {"dev_idx = 1, path_idx = 2\nshare.a = 1\ndev_idx = 3, path_idx = 4\nshare.a = 2\n",
             "share.a = 1\n-- 3 4\nshare.a = 2\n"},
            {"time = 12.34\n" + INDEX + "share.a = 1\ntime = 13\n" + INDEX + "share.a = 2\n",
             "time 12.34\nshare.a = 1\n-- 0 1\ntime 13\nshare.a = 2\n"},
            {INDEX + "share.a = 1\n; end\ntime = 13.5\n" + INDEX + "share.a = 2\n; end\n\nmore\n",
             "share.a = 1\n-- 0 1\ntime 13.5\nshare.a = 2\n-- 0 0\n"},
            {INDEX + "share.a = 1\n; end\nmore\n" + INDEX + "share.a = 2\n; end\nb = 3\n# ",
             "share.a = 1\n-- 0 1\nshare.a = 2\n"
             "-- 0 0\n? 8: outside of any snapshot\n? 9: " +
                 CUT},
            {"user@host:~$ vorda\n" + INDEX + "share.m:\n1, 2\n3, 4\nuser@host:~$ ",
             "share.m = [[1,2],[3,4]]\n"},
            {"\xEF\xBB\xBF" + INDEX + "share.a = 1\n" + INDEX + "\xEF\xBB\xBFx\n",
             "share.a = 1\n-- 0 1\n? 4: neither a key nor a row\n"},
            // Other head lines, in any order; a label holds from there on.
            {"label site = roof\nframe = 7\nmark = fan = on; 2\nmissed = 2\nlabel b = \ntime = 1\n" +
                 INDEX + "share.a = 1\nlabel site = cellar\n" + INDEX + "frame = 8\n",
             "time 1\nframe 7\nmissed 2\nlabel site: roof\nlabel b: \nmark fan = on; 2\nshare.a = 1\n"
             "-- 0 1\nlabel site: cellar\nlabel b: \n? 11: outside of any section\n"},
            // A time line that stands elsewhere is a field, or what a loop has left behind.
            {INDEX + "share.a = 1\ntime = 7\nb = 2\ntime = 8\n",
             "share.a = 1\nshare.time = 7\nshare.b = 2\n? 5: no snapshot follows it\n"},
            {"time = 7\n\n" + INDEX, "? 1: no snapshot follows it\n"},
            {"time = 7\ntime = 8\n" + INDEX, "time 8\n? 1: no snapshot follows it\n"},
            {"dev_idx = 0, path_idx = 1\r\nshare.a = 1\r\n\r\nshare.b = x\r\r\n",
             "share.a = 1\nshare.b = \"x\"\n"},
        });

    // A line without its end may be half of one.
    const std::string text = INDEX + "share.a = 8000\n";
    for (size_t size = INDEX.size() + 1; size < text.size(); size++) {
        const bool keyed = size > text.rfind(" =") + 1;
        EXPECT_EQ(read_all(text.substr(0, size)),
                  std::string(keyed ? "share.a = damaged\n" : "") + "? 2: " + CUT);
    }
    expect_rows("",
                {
                    // What goes on line by line may have lost lines.
                    {INDEX + "=== cfg.x ===\nm:\n1, 2\n3, 4\n5", "cfg.x.m = damaged\n? 6: " + CUT},
                    {INDEX + "=== cfg.x ===\nm[0] = 1\nm[1] = 2\nm[2] = 3",
                     "cfg.x.m = damaged\n? 5: " + CUT},
                    // So may what has no end line where others have one.
                    {"time = 1\n" + INDEX + "share.a = 1\n; end\ntime = 2\n" + INDEX +
                         "share.b = 2\nshare.c:\n1, 2\n",
                     "time 1\nshare.a = 1\n-- 0 1\ntime 2\nshare.b = 2\nshare.c = damaged\n"
                     "? 6: cut off: no end line follows this snapshot\n"},
                    {"time = 1\n" + INDEX + "share.a = 1\n; end\n" + INDEX + "share.b = 2\n",
                     "time 1\nshare.a = 1\n-- 0 1\nshare.b = 2\n"},
                    // Captures that were joined without a line end, and with a mark in the middle.
                    {INDEX + "share.a = 80dev_idx = 2, path_idx = 3\nshare.b = 1\n",
                     "share.a = damaged\n? 2: " + CUT + "-- 2 3\nshare.b = 1\n"},
                    {INDEX + "share.a = 80time = 2.00\n" + INDEX + "share.b = 1\n; endtime = 3\n" +
                         INDEX + "share.c = 1\n",
                     "share.a = damaged\n? 2: " + CUT +
                         "-- 0 1\ntime 2.00\nshare.b = 1\n-- 0 1\ntime 3\nshare.c = 1\n"
                         "? 6: cut off: no end line follows this snapshot\n"},
                    {"banner" + INDEX + "share.a = 1\n\xEF\xBB\xBF" + INDEX + "share.b = 1\n",
                     "share.a = 1\n-- 0 1\nshare.b = 1\n"},
                    {INDEX + "share.a = 1\nshare.time = 7\n" + INDEX,
                     "share.a = 1\nshare.time = 7\n-- 0 1\n"},
                    // Attribute texts have no index line.
                    {"\xEF\xBB\xBF[NR]\nmode = 1\n[LSC]\nmode = 2\n",
                     "intl.nr.mode = 1\nintl.lsc.mode = 2\n"},
                    {"[EXTERNAL]\n" + INDEX + "share.a = 1\n[NR]\nmode = 1\n",
                     "share.a = 1\nintl.nr.mode = 1\n"},
                });
    Reader reader(std::string_view(text).substr(0, text.size() - 1));
    EXPECT_TRUE(reader.next()->cut);
}

TEST(Reader, UndoesWhatBecameOfTexts)
{
    const std::string text = "time = 1\n" + INDEX + "share.m:\n  1, 2\n  3, 4\nshare.a = 5\n";
    const std::string fields = "time 1\nshare.m = [[1,2],[3,4]]\nshare.a = 5\n";
    const auto lines = [&text](const std::string &before, const std::string &end) {
        std::string result;
        for (size_t at = 0, next; at < text.size(); at = next + 1) {
            next = text.find('\n', at);
            result += before + text.substr(at, next - at) + end;
        }
        return result;
    };
    const auto wide = [&text](size_t zero, std::string result) {
        for (const char c : text)
            result += zero != 0 ? std::string{c, '\0'} : std::string{'\0', c};
        return result;
    };
    std::string blanks;
    for (const char c : text)
        blanks += c == ' ' ? "\xC2\xA0"s : std::string(1, c);
    std::string tabs = text;
    std::replace(tabs.begin(), tabs.end(), ' ', '\t');
    const std::string texts[] = {
        wide(1, ""),
        wide(0, ""),
        wide(1, "\xFF\xFE"),
        wide(0, "\xFE\xFF"),
        lines("> ", "\n"),
        lines("    ", "\r\n"),
        lines("", "\r"),
        lines("\33[1;32m", "\33[m\n"),
        lines("\33]0;root@cam\a\33[?25h", "\r\n"),
        lines("", "  \n"),
        lines("", "\n\r"),
        blanks,
        tabs,
    };
    for (const std::string &other : texts) {
        EXPECT_EQ(read_all(other), fields) << other;
        Reader reader{std::string_view(other)};
        EXPECT_EQ(reader.notices().size(), 1U) << other;
    }
    EXPECT_EQ(Reader(text).notices().size(), 0U);
    // A capture may be quoted in an answer that holds another.
    const std::string answer = text + "\nJane wrote:\n\n" + lines("> ", "\n") + "\nBye,\nJohn\n";
    EXPECT_EQ(read_all(answer), fields + "-- 0 1\n" + fields.substr(fields.find("share")));
    // A comma at the end of a line that blanks were added to makes no list.
    EXPECT_EQ(read_all(INDEX.substr(0, INDEX.size() - 1) + " \n[A]  \na = 1,  \nb = 1, 2  \n"),
              "intl.a.a = 1\nintl.a.b = [1,2]\n");
}

TEST(Reader, AddedSnapshotsComeOutWhole)
{
    const auto head = [](int frame, int to) {
        return "frame = " + std::to_string(frame) + "\n" +
               (to != 0 ? "added_to = " + std::to_string(to) + "\n" : "") + INDEX;
    };
    const std::string end = "; end\n";
    const std::string whole = head(1, 0) + "=== stat.x ===\na = 1\n[Two]\nb = 2\n[NR]\nc = 3\n" +
                              "share.d = 4\nshare.l:\nl.e = 5\nvinfo.f = 6\n" + end;
    const std::string first =
        "frame 1\nstat.x.a = 1\nstat.x.Two.b = 2\nintl.nr.c = 3\nshare.d = 4\n"
        "share.l.l.e = 5\nvinfo.f = 6\n";
    expect_rows(
        whole,
        {
            // Sections take the place of their own, whole, and stay for the next one.
            {head(2, 1) + "[NR]\nc = 30\n" + end + head(3, 2) + "share.d = 40\nvinfo.f = 60\n" +
                 end,
             first +
                 "-- 0 1\nframe 2\nstat.x.a = 1\nstat.x.Two.b = 2\nintl.nr.c = 30\nshare.d = 4\n"
                 "share.l.l.e = 5\nvinfo.f = 6\n"
                 "-- 0 1\nframe 3\nstat.x.a = 1\nstat.x.Two.b = 2\nintl.nr.c = 30\nshare.d = 40\n"
                 "vinfo.f = 60\n"},
            // Nothing changed; a section that was not there follows what it follows.
            {head(2, 1) + end + "time = 5\nmark = m\n" + head(3, 2) +
                 "=== stat.x ===\na = 9\n=== stat.y ===\ng = 7\n" + end,
             first + "-- 0 1\n" + "frame 2" + first.substr(7) +
                 "-- 0 1\ntime 5\nframe 3\nmark m\nstat.x.a = 9\nstat.y.g = 7\nintl.nr.c = 3\n"
                 "share.d = 4\nshare.l.l.e = 5\nvinfo.f = 6\n"},
            // Lines keep their numbers, wherever they come from.
            {"1, 2\n" + head(2, 1) + "[NR]\n$\n" + end + head(3, 2) + "[LSC]\n%\n" + end,
             first +
                 "-- 0 1\nframe 2\nstat.x.a = 1\nstat.x.Two.b = 2\nshare.d = 4\nshare.l.l.e = 5\n"
                 "vinfo.f = 6\n? 14: outside of any snapshot\n? 19: neither a key nor a row\n"
                 "-- 0 1\nframe 3\nstat.x.a = 1\nstat.x.Two.b = 2\nshare.d = 4\nshare.l.l.e = 5\n"
                 "vinfo.f = 6\n? 19: neither a key nor a row\n? 25: neither a key nor a row\n"},
            // What is added to something else is left out, and what is added to that, until the
            // next whole one.
            {head(3, 2) + "[NR]\nc = 30\n" + end + head(4, 3) + end + head(5, 0) + "share.d = 1\n" +
                 end + head(6, 5) + end,
             first + "? 15: " + LEFT_OUT + "? 21: " + LEFT_OUT +
                 "-- 0 1\nframe 5\nshare.d = 1\n-- 0 1\nframe 6\nshare.d = 1\n"},
            {"frame = 2\nadded_to = 1\ndev_idx = 1, path_idx = 1\nshare.d = 1\n",
             first + "? 16: cut off: no end line follows this snapshot\n? 15: " + LEFT_OUT},
            {"frame = 2\nadded_to = 1\n" + INDEX + "share.d = 1\nshare.l:\nl.e = 5",
             first + "? 15: left out: it is not there in full\n"},
            // Lines take the place of others of their section, which they may follow or be many.
            {head(2, 1) + "=== stat.x ===\n@ 1\na = 10\n@ 3 [Two]\nb = 20\n=== share ===\n@ 1-3\n" +
                 "share.d = 40\nshare.k:\nk.e = 50\n[NR]\n@ 1\nc = ?\n" + end + head(3, 2) +
                 "=== stat.x ===\n@ 2\n[Six]\n" + end,
             first + "-- 0 1\nframe 2\nstat.x.a = 10\nstat.x.Two.b = 20\nintl.nr.c = \"?\"\n"
                     "share.d = 40\nshare.k.k.e = 50\nvinfo.f = 6\n"
                     "-- 0 1\nframe 3\nstat.x.a = 10\nstat.x.Six.b = 20\nintl.nr.c = \"?\"\n"
                     "share.d = 40\nshare.k.k.e = 50\nvinfo.f = 6\n"},
        });
    for (const std::string runs :
         {"=== stat.x ===\n@ 0\na = 1\n", "=== stat.x ===\n@ 4\nb = 1\n",
          "=== stat.x ===\n@ 3-4\nb = 1\nd = 1\n", "=== stat.x ===\n@ 1-2\na = 1\n",
          "=== stat.x ===\n@ 1\na = 1\na = 2\n", "=== stat.x ===\n@ 3\nb = 1\n@ 1\na = 1\n",
          "=== stat.x ===\n@ 2-1\na = 1\n", "=== stat.x ===\n@ 3 [Three]\nb = 1\n",
          "=== stat.x ===\n@ 1 [Two]\na = 1\n", "=== stat.x ===\n@ 3 [Two] l:\nb = 1\n",
          "=== stat.x ===\n@ 1x\na = 1\n", "=== stat.z ===\n@ 1\na = 1\n"})
        expect_rows(whole + head(2, 1), {{runs + end, first + "? 15: left out: it does not fit the "
                                                              "snapshot that it is added to\n"}});
}

std::string printed(const DipPathCtx &ctx, const std::string &entry);

// Prompts and mails around captures are left out; nothing that vorda has printed is, in whatever
// state.
TEST(Reader, LeavesOutWhatStandsAroundCaptures)
{
    const std::string text =
        INDEX + "=== stat.x ===\nm:\n1, 2, \n3, 4, \nshare.l = 5, 6, 7, \nshare.a = 8\n";
    const std::string fields = "stat.x.m = [[1,2],[3,4]]\nshare.l = [5,6,7]\nshare.a = 8\n";
    const std::pair<const char *, uint64_t> around[] = {
        {"root@cam:~# ", 1},
        {"root@cam:~# logout\nConnection to 10.0.0.1 closed.\n", 2},
        {"/ # exit\n", 1},
        {"[root@cam ~]# uptime\n 21:42:52 up  3:24,  load average: 0.34, 0.39, 1.08\n", 2},
        {"logout\n", 1},
        {"\nBest regards\nJohn", 2},
        {"Best regards,\n\nJohn\n", 2},
        {"\r\n-- \r\nJohn\r\nPhone: 12345\r\n12, Some Street\r\n", 4},
        {"\nOn Monday, 2 March, Jane wrote:\n> share.a = 5\n>\n> Jane\n", 3},
        {"\n________\nFrom: Jane\nSubject: captures\n\nHi John,\nthere they are\n", 5},
    };
    for (const auto &[mail, lines] : around) {
        for (const std::string &end : {""s, "; end\n"s}) {
            const std::string first = text + end + mail;
            EXPECT_EQ(read_all(first), fields) << mail;
            const bool ended = first.ends_with('\n');
            const std::string two = first + (ended ? "" : "\n") + text + end + mail;
            EXPECT_EQ(read_all(two), fields + "-- 0 1\n" + fields + (end.empty() ? "" : "-- 0 0\n"))
                << mail;
            Reader both{std::string_view(two)};
            while (both.next() != nullptr)
                ;
            ASSERT_EQ(both.notices().size(), 1U) << mail;
            EXPECT_TRUE(both.notices()[0].starts_with("lines around the captures were left out (" +
                                                      std::to_string(2 * lines) + ")"))
                << both.notices()[0];
        }
    }

    const auto ctx = std::make_unique<DipPathCtx>();
    fill_frame(ctx.get(), 0, 3);
    size_t texts = 0;
    const auto expect_none_left_out = [&texts](const std::string &damaged) {
        Reader reader{std::string_view(damaged)};
        while (const Snapshot *snapshot = reader.next())
            ASSERT_EQ(snapshot->left_out, 0U) << damaged;
        texts++;
    };
    for (const char *entry : {"share", "vinfo", "stat.awb", "stat.mv", "stat.ae", "intl.lsc",
                              "intl.nr", "cfg.csm", "cfg.te", "cfg.cal"}) {
        const std::string whole = printed(*ctx, entry);
        const size_t begin = whole.size() - std::min(whole.size() - INDEX.size(), size_t{200});
        for (size_t at = begin; at < whole.size(); at++) {
            expect_none_left_out(whole.substr(0, at));
            expect_none_left_out(whole.substr(0, at) + "\n");
            expect_none_left_out(whole.substr(0, at) + whole.substr(at + 1));
            std::string other = whole;
            for (const char c : {'$', '\x81', ' ', '.', '1', '\n'}) {
                other[at] = c;
                expect_none_left_out(other);
            }
        }
    }
    EXPECT_GT(texts, 10000U);
}

// A recording as the recorder makes it of these texts, all but the first added.
std::string summed_recording(const std::vector<std::string> &texts)
{
    std::string recording;
    for (size_t i = 0; i < texts.size(); i++) {
        const std::string text =
            "time = " + std::to_string(i + 4) + ".5\nframe = " + std::to_string(i + 1) + "\n" +
            (i != 0 ? "added_to = " + std::to_string(i) + "\n" : "") + INDEX + texts[i];
        uint32_t sum = 2166136261; // there are no other blanks at a line's end than behind a comma
        for (size_t at = 0; at < text.size(); at++)
            if (text[at] != ' ' || text[at + 1] != '\n')
                sum = (sum ^ static_cast<uint8_t>(text[at])) * 16777619;
        recording += "sum = " + std::to_string(sum) + "\n" + text + "; end\n";
    }
    return recording;
}

// The head lines and fields of a snapshot.
std::string shown(const Snapshot &snapshot)
{
    const std::string all = describe(snapshot);
    return all.substr(0, std::min(all.find("? "), all.size()));
}

// Whatever becomes of the bytes of a recording, what is added to a snapshot comes out as it was
// printed, or not at all; and what did not come out as it was printed is told.
TEST(Reader, DamagedRecordingsShowNothingThatWasNotPrinted)
{
    const std::string recording = summed_recording(
        {"=== stat.x ===\na = 1\n[Two]\nb:\n1, 2, \n3, 4, \nc:\n5, 6, \n7, 8, \nshare.d = 4\n",
         "=== stat.x ===\n@ 4-5 [Two] b:\n1, 7, \n2, 4, \n=== share ===\n@ 1\nshare.d = 5\n",
         "=== stat.x ===\n@ 4-5 [Two] b:\n1, 8, \n1, 4, \n=== share ===\n@ 1\nshare.d = 6\n",
         "=== stat.x ===\n@ 7-8 [Two] c:\n1, 9, \n0, 0, \n", "share.d = 7\n"});
    std::set<std::string> printed;
    Reader whole{std::string_view(recording)};
    while (const Snapshot *snapshot = whole.next()) {
        EXPECT_EQ(snapshot->unread_count, 0U);
        printed.insert(shown(*snapshot));
    }
    ASSERT_EQ(printed.size(), 5U);

    size_t shown_added = 0;
    const auto expect_printed = [&](const std::string &text) {
        Reader reader{std::string_view(text)};
        bool told = !reader.notices().empty();
        while (const Snapshot *snapshot = reader.next()) {
            shown_added += snapshot->indexed && snapshot->added_to;
            told = told || snapshot->unread_count != 0 || snapshot->left_out != 0;
            const bool exact = snapshot->indexed && (snapshot->added_to || !told);
            ASSERT_TRUE(!exact || printed.contains(shown(*snapshot))) << shown(*snapshot) << text;
        }
    };
    for (size_t at = 0; at < recording.size(); at++) {
        for (const size_t size : {1U, 2U, 7U, 30U, 60U, 90U, 150U, 250U, 1000U})
            expect_printed(recording.substr(0, at) +
                           recording.substr(std::min(at + size, recording.size())));
        std::string other = recording;
        other[at] = other[at] == '1' ? '2' : '1';
        expect_printed(other);
        other[at] = '\n';
        expect_printed(other);
    }
    EXPECT_GT(shown_added, recording.size());

    // Blanks and ends of lines may come and go.
    std::string other;
    for (const char c : recording)
        other += c == '\n' ? "\r\n"s : std::string(1, c);
    for (size_t at; (at = other.find(", \r")) != std::string::npos;)
        other.erase(at + 1, 1);
    for (size_t at = 0; (at = other.find(", ", at)) != std::string::npos; at += 3)
        if (other[at + 2] != 'p') // of the index line
            other.insert(at + 1, " ");
    EXPECT_EQ(read_all(other), read_all(recording));
}

TEST(Reader, TextsMayHoldLineEnds)
{
    expect_rows(
        INDEX + "[LSC]\n",
        {
            {"path = /a\n\x80\n\n$b\n\n; comment\n\x81\n",
             "intl.lsc.path = \"/a\n\x80\n\n$b\"\n? 9: neither a key nor a row\n"},
            {"path = \n\xFF\nnext = 1\n", "intl.lsc.path = \"\n\xFF\"\nintl.lsc.next = 1\n"},
            // A line that has a form is no part of it, whether it has a place or not.
            {"path = /a\npath = /b\n=== time.x ===\na = 1\n1, 2\n\x80\n",
             "intl.lsc.path = \"/a\"\n? 4: a second field of this name\n"
             "? 5: a section of a name that is taken\n? 6: outside of any section\n"
             "? 7: a row without a label\n? 8: neither a key nor a row\n"},
            // What it forges is read; a field that comes twice is told.
            {"path = /a\nenable = 1\nenable = 0\n",
             "intl.lsc.path = \"/a\"\nintl.lsc.enable = 1\n? 5: a second field of this name\n"},
            {"path = /a\n=== cfg.y ===\n\x80\n",
             "intl.lsc.path = \"/a\"\n? 5: neither a key nor a row\n"},
        });
}

// Everything that a snapshot prints, with its index line.
std::string printed(const DipPathCtx &ctx, const std::string &entry)
{
    register_categories();
    return INDEX + captured([&] { return parse_entry(&ctx, entry.c_str()); }).out;
}

// Expects that every line is understood, and that every value but Overflow and files is a number.
void expect_understood(const std::string &text)
{
    const std::string fields = read_all(text);
    EXPECT_EQ(fields.find("\n? "), std::string::npos) << fields.substr(fields.find("\n? "));
    Reader reader{std::string_view(text)};
    while (const Snapshot *snapshot = reader.next())
        for (const Field &field : snapshot->fields)
            for (uint32_t i = 0; i < field.count; i++) {
                const Kind kind = snapshot->begin(field)[i].kind;
                const bool named = field.key == "Overflow"                   ? kind == Kind::boolean
                                   : field.key.ends_with("_coeff_file_path") ? kind >= Kind::text
                                   : field.key == "valid_win"                ? kind != Kind::text
                                                                             : kind < Kind::boolean;
                EXPECT_TRUE(named)
                    << snapshot->path(field) << ": " << snapshot->begin(field)[i].text();
            }
}

TEST(Reader, RecordedTexts)
{
    size_t count = 0;
    for (const auto &entry :
         std::filesystem::directory_iterator(VORDA_SOURCE_DIR "/tests/golden")) {
        const std::string text = INDEX + read_file(entry.path());
        if (!text.starts_with(INDEX + "=== cfg."))
            continue;
        SCOPED_TRACE(entry.path());
        expect_understood(text);
        Reader reader{std::string_view(text)};
        EXPECT_GT(reader.next()->values.size(), 11000U);
        count++;
    }
    EXPECT_GE(count, 2U);
}

TEST(Reader, EverythingThatVordaPrints)
{
    // Two sensors, one, a stitched pair, and no window bound.
    const std::vector<std::function<void(DipCtx &)>> changes = {
        [](DipCtx &) {},
        [](DipCtx &dip) { dip.dev_attr.snp_link.bmp = 1; },
        [](DipCtx &dip) { dip.dev_attr.stitch_en = 1; },
        [](DipCtx &dip) { dip.active_win_cnt = 0; },
    };
    for (const auto &change : changes) {
        const auto ctx = std::make_unique<DipPathCtx>();
        fill_frame(ctx.get(), 0, 3);
        change(ctx->dip_ctx);
        std::string all = printed(*ctx, "all");
        expect_understood(all);
        std::string items;
        for (const std::string category : {"cfg", "intl", "share", "stat", "vinfo"}) {
            const Result listing = captured([&] { return parse_help("vorda", category.c_str()); });
            for (const auto &[item, comments] : parse_listing(listing.err, category)) {
                const std::string text = printed(*ctx, category + "." + item);
                SCOPED_TRACE(category + "." + item);
                expect_understood(text);
                items += text;
            }
        }
        expect_understood(items);
    }
}

// What wraps lines: where it breaks them, what it leaves there, and how many of a thousand fields
// are as they were once that is undone.
struct Wrap {
    const char *name;
    const char *before; // each line
    const char *end;
    size_t tab;
    size_t undone;
    bool at_blanks;
    bool keeps_blank;
};
constexpr Wrap WRAPS[] = {
    {"fold", "", "\n", 8, 999, false, true},      {"fold -s", "", "\n", 8, 999, true, true},
    {"fold -b", "", "\r\n", 1, 999, false, true}, {"fold -bs", "", "\n", 1, 999, true, true},
    {"a mail", "", "\n", 1, 987, true, false},    {"an answer", "> ", "\n", 1, 987, true, false},
    {"an editor", "", "\n", 8, 987, true, false},
};

std::string wrapped(const std::string &text, const Wrap &wrap, size_t width)
{
    std::string result;
    for (size_t at = 0; at < text.size();) {
        size_t column = strlen(wrap.before);
        size_t end = at;
        for (; text[end] != '\n'; end++) {
            column = text[end] == '\t' ? (column / wrap.tab + 1) * wrap.tab : column + 1;
            if (column > width)
                break;
        }
        size_t next = end;
        if (text[end] == '\n') {
            next++;
        } else if (const size_t blank = text.find_last_of(" \t", end - wrap.keeps_blank);
                   wrap.at_blanks && blank != std::string::npos && blank > at) {
            next = blank + 1;
            end = wrap.keeps_blank ? next : text.find_last_not_of(" \t", blank) + 1;
        }
        result.append(wrap.before).append(text, at, end - at).append(wrap.end);
        at = next;
    }
    return result;
}

bool equal_values(const Value &a, const Value &b)
{
    return a.kind == b.kind && a.text() == b.text();
}

// How many fields of a text that was wrapped are as they were; all others are damaged.
size_t count_undone(const Snapshot &whole, const std::string &broken)
{
    SCOPED_TRACE(std::string_view(broken).substr(0, 5000));
    Reader reader{std::string_view(broken)};
    const Snapshot &read = *reader.next();
    size_t equal = 0;
    for (const Field &field : read.fields) {
        if (read.damaged(field))
            continue;
        const Field *const before = whole.same_field(read, field);
        const Value *const values = read.begin(field);
        if (before == nullptr) {
            ADD_FAILURE() << "new: " << read.path(field);
        } else if (field.shape != before->shape || field.columns != before->columns ||
                   !std::equal(values, values + field.count, whole.begin(*before),
                               whole.begin(*before) + before->count, equal_values)) {
            ADD_FAILURE() << read.path(field) << ": " << describe(read, field) << ", not "
                          << describe(whole, *before);
        }
        equal++;
    }
    return equal;
}

TEST(Reader, WrappedTextsGiveNoWrongValue)
{
    const auto ctx = std::make_unique<DipPathCtx>();
    fill_frame(ctx.get(), 0, 3);
    register_categories();
    std::vector<Snapshot> items;
    for (const std::string category : {"cfg", "intl", "share", "stat", "vinfo"}) {
        const Result listing = captured([&] { return parse_help("vorda", category.c_str()); });
        for (const auto &[item, comments] : parse_listing(listing.err, category))
            items.push_back(*Reader(std::string_view(printed(*ctx, category + "." + item))).next());
    }
    ASSERT_GT(items.size(), 50U);
    const std::string all = printed(*ctx, "all");
    Reader reader{std::string_view(all)};
    const Snapshot whole = *reader.next();
    size_t narrowest = 60;
    for (const Wrap &wrap : WRAPS) {
        size_t undone = 0;
        size_t fields = 0;
        // Every third width, others for the next.
        for (size_t width = narrowest; width <= 100 && !HasFailure(); width += 3) {
            SCOPED_TRACE(std::string(wrap.name) + " " + std::to_string(width));
            undone += count_undone(whole, wrapped(all, wrap, width));
            fields += whole.fields.size();
            for (const Snapshot &item : items)
                count_undone(item, wrapped(std::string(item.text), wrap, width));
        }
        EXPECT_GT(undone * 1000, fields * wrap.undone) << wrap.name;
        narrowest = narrowest == 62 ? 60 : narrowest + 1;
    }
    const std::string broken = wrapped(all, WRAPS[0], 78);
    Reader told{std::string_view(broken)};
    told.next();
    ASSERT_EQ(told.notices().size(), 1U);
    EXPECT_TRUE(told.notices()[0].starts_with("its lines were wrapped at 78 columns"));
}

TEST(Reader, UndoesWrapsWhereThereIsNoDoubt)
{
    const std::string head = INDEX + "=== cfg.x ===\n";
    const std::string doubt = "may have been wrapped, which damages it\n";
    const std::string row = "10, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, \n";
    ASSERT_EQ(row.size(), 61U);
    const std::string values = "10,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17";
    // Two lists that were wrapped at 60 columns.
    const std::string number(55, '1');
    const std::string broken = "a = " + number + ",\n 1\nb = " + number + ",\n 2\n";
    const std::string list = " = [" + number + " (inexact),";
    const std::string read = "cfg.x.a" + list + "1]\ncfg.x.b" + list + "2]\n";
    std::string rows;
    for (int i = 0; i < 17; i++)
        rows += row;
    const std::string comment = "d = 5 ; " + std::string(51, 'c') + " \n";

    EXPECT_EQ(read_all(head + broken), read);
    // Lines keep their numbers.
    EXPECT_EQ(read_all(head + broken + "$x\n"), read + "? 7: neither a key nor a row\n");
    // One line alone may be an accident.
    EXPECT_EQ(read_all(head + broken.substr(0, 64)), "cfg.x.a = damaged\n? 4: " + DAMAGED);
    // Rows that are as long are whole ones, halves, or two; others can be but parts.
    EXPECT_EQ(read_all(head + broken + "m:\n" + row + row + row + row),
              read + "cfg.x.m = damaged\n? 8: " + doubt);
    EXPECT_EQ(read_all(head + broken + "m:\n" + row + "18, \n" + row + "18, \n"),
              read + "cfg.x.m = [[" + values + ",18],[" + values + ",18]]\n");
    EXPECT_EQ(read_all(head + broken + "m[68]:\n" + row + row + row + row),
              read + "cfg.x.m[68] = [" + values + "," + values + "," + values + "," + values +
                  "]\n");
    // Nothing but a map that is twice as high as wide says that these are halves.
    EXPECT_EQ(read_all(head + "m:\n" + rows + rows), "cfg.x.m = damaged\n? 4: " + doubt);
    EXPECT_EQ(read_all(head + "m:\n" + rows).find("damaged"), std::string::npos);
    // Within a key; within a name, where a blank may be missing; what may be in a comment.
    EXPECT_EQ(read_all(head + broken + std::string(60, 'k') + "\ney = 7\n"),
              read + "cfg.x." + std::string(60, 'k') + "ey = 7\n");
    EXPECT_EQ(read_all(head + "a = " + number.substr(1) + ",\n1\n" + "b = " + number + ",\n2\n" +
                       std::string(60, 'k') + "\ney = 7\n"),
              "cfg.x.a = [" + number.substr(1) + " (inexact),1]\ncfg.x.b" + list + "2]\ncfg.x." +
                  std::string(60, 'k') + "ey = 7\n");
    EXPECT_EQ(read_all(head + broken + "path = " + std::string(53, '/') + "\nname\n"),
              read + "cfg.x.path = damaged\n? 7: " + doubt);
    EXPECT_EQ(read_all(head + broken + comment + "e = 6\n"),
              read + "cfg.x.d = 5\ncfg.x.e = damaged\n? 8: " + doubt);
    // A text with long lines and one that is no line of vorda stays as it is.
    EXPECT_EQ(read_all(head + "m:\n" + row + row + row + comment + "oops\ne = 6\n"),
              "cfg.x.m = [[" + values + "],[" + values + "],[" + values + "]]\ncfg.x.d = 5\n" +
                  "cfg.x.e = 6\n? 8: neither a key nor a label\n");
}

// The texts of snapshots that nobody would print.
TEST(Reader, HostileSnapshots)
{
    std::mt19937 random(1);
    const auto ctx = std::make_unique<DipPathCtx>();
    auto *bytes = reinterpret_cast<uint8_t *>(ctx.get());
    for (int round = 0; round < 30; round++) {
        for (size_t i = 0; i < sizeof(*ctx); i++)
            bytes[i] = static_cast<uint8_t>(random());
        const std::string fields = read_all(printed(*ctx, "all"));
        EXPECT_NE(fields.find("\nvinfo.ispv2 = "), std::string::npos);
    }
}

TEST(Reader, LongLinesAndManyNames)
{
    std::string list = INDEX + "share.a = 0";
    std::string names = INDEX + "[A]\n";
    std::string sections = INDEX;
    for (int i = 1; i < 200000; i++) {
        list += ", " + std::to_string(i);
        names += "k" + std::to_string(i) + " = 1\n";
        sections += "=== s.n" + std::to_string(i) + " ===\n";
    }
    for (const std::string &text :
         {list + "\n", names, sections, INDEX + std::string(5000000, 'x') + "\n"}) {
        Reader reader{std::string_view(text)};
        const Snapshot *snapshot = reader.next();
        EXPECT_EQ(snapshot->text.size(), text.size());
        EXPECT_EQ(reader.next(), nullptr);
    }
    Reader reader{std::string_view(list += "\n")};
    const Place last = find(*reader.next(), "share.a[199999]");
    ASSERT_NE(last.field, nullptr);
    EXPECT_EQ(last.field->count, 200000U);

    // Input without an end is taken apart, however it arrives.
    const std::string endless(2 * OUTSIDE_MAX + 5, 'x');
    Reader apart{std::string_view(endless)};
    for (const size_t size : {OUTSIDE_MAX, OUTSIDE_MAX, size_t{5}}) {
        const Snapshot *snapshot = apart.next();
        ASSERT_NE(snapshot, nullptr);
        EXPECT_EQ(snapshot->text.size(), size);
        EXPECT_EQ(snapshot->unread.front().line, 1U);
    }
    EXPECT_EQ(apart.next(), nullptr);
}

// Keys that were chosen for neighbouring slots: a look-up takes few steps all the same, and the
// memory is in proportion to the keys.
TEST(Snapshot, KeysThatCollideTakeFewSteps)
{
    constexpr size_t STEPS_MOST = 64;
    const std::string head = INDEX + "[A]\n";
    std::string many = head;
    for (int i = 0; i < 600000; i++)
        many += "k" + std::to_string(i) + " = 1\n";
    std::string chosen = head;
    size_t keys = 0;
    Reader reader{std::string_view(many)};
    SlotsOf{*reader.next()}.for_each([&](std::string_view key, uint32_t hash, size_t) {
        if ((hash & 0x1E000) == 0) {
            chosen.append(key) += " = 1\n";
            keys++;
        }
    });
    ASSERT_GT(keys, 35000U);

    Reader again{std::string_view(chosen)};
    const Snapshot &snapshot = *again.next();
    const SlotsOf slots{snapshot};
    EXPECT_EQ(snapshot.fields.size(), keys);
    EXPECT_LE(slots.count(), 4 * keys);
    size_t farthest = 0;
    slots.for_each(
        [&](std::string_view, uint32_t, size_t away) { farthest = std::max(farthest, away); });
    EXPECT_LT(farthest, STEPS_MOST);
    EXPECT_GT(slots.crowd(), keys / 2);
    for (const Field &field : snapshot.fields)
        ASSERT_EQ(snapshot.same_field(snapshot, field), &field);
}

TEST(Snapshot, FindsWhatAPathNames)
{
    const std::string text = INDEX +
                             "[A]\nx = 1\nl = 5, 6\nTE Curve[3]:\n7, 8, 9\nm:\n1, 2\n3, 4\n5\n"
                             "y[0] = 10\ny[1] = 11\n[Two words]\nB:\nx = 12\n";
    Reader reader{std::string_view(text)};
    const Snapshot &snapshot = *reader.next();
    const std::pair<const char *, const char *> rows[] = {
        {"intl.a.x", "1"},
        {"intl.a.l", "5 6"},
        {"intl.a.l[1]", "6"},
        {"intl.a.m", "1 2 3 4 5"},
        {"intl.a.m[1]", "3 4"},
        {"intl.a.m[2]", "5"},
        {"intl.a.m[1][1]", "4"},
        {"intl.a.y[1]", "11"},
        {"intl.a.TE Curve[3]", "7 8 9"},
        {"intl.a.TE Curve[3][0]", "7"},
        {"intl.a.Two words.B.x", "12"},
        {"intl.a", ""},
        {"intl.a.", ""},
        {"x", ""},
        {"intl.a.x[0]", ""},
        {"intl.a.l[2]", ""},
        {"intl.a.l[0][0]", ""},
        {"intl.a.m[2][1]", ""},
        {"intl.a.m[3]", ""},
        {"intl.a.m[0", ""},
        {"intl.a.Two words", ""},
        {"intl.a.l[4294967296]", ""},
    };
    for (const auto &[path, values] : rows) {
        const Place place = find(snapshot, path);
        std::string found;
        for (uint32_t i = 0; i < place.count; i++)
            found += (i > 0 ? " " : "") +
                     std::string(snapshot.begin(*place.field)[place.first + i].text());
        EXPECT_EQ(found, values) << path;
    }
    const Field &last = snapshot.fields.back();
    EXPECT_EQ(snapshot.item(last), "intl.a");
    EXPECT_EQ(snapshot.block(last), "Two words / B");
}

} // namespace
