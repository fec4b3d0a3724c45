// What is typed to find fields.
#include "filter.h"

#include <gtest/gtest.h>

namespace vordascope
{

namespace
{

const std::vector<Findable> FIELDS = {
    {{"share", "inttime"}, "Exposure time", Shape::scalar, 1, 1},
    {{"share", "sys_gain"}, "Total gain", Shape::scalar, 1, 1},
    {{"share", "colormatrix"}, "", Shape::rows, 9, 3},
    {{"cfg", "nr", "ma_y.lut_i"}, "", Shape::list, 9, 9},
    {{"cfg", "awb", "gain[0].gain.val"}, "", Shape::list, 4, 4},
    {{"stat", "awb", "Gwd RGL", "r channel"}, "", Shape::rows, 64, 8},
    {{"intl", "hdr", "mode"}, "(0: disable, 1: enable)", Shape::scalar, 1, 1},
    {{"intl", "stat", "gain_mode"}, "", Shape::scalar, 1, 1},
};

// The keys that a line finds, with the part that it asks for.
std::string found(std::string_view line)
{
    std::string lines;
    Filter(line).put_found(FIELDS, lines);
    std::string keys;
    std::string_view rest = lines;
    for (const Findable &field : FIELDS) {
        const std::string_view text = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(text.size() + 1);
        if (!text.empty())
            keys.append(keys.empty() ? "" : ", ")
                .append(field.names.back())
                .append(text == "*" ? "" : text);
    }
    EXPECT_TRUE(rest.empty());
    return keys;
}

} // namespace

TEST(Filter, FindsWhatWasTyped)
{
    const std::pair<const char *, const char *> rows[] = {
        {"GAIN", "sys_gain, gain[0].gain.val, gain_mode"},
        {"gain share", "sys_gain"},
        {"exposure", "inttime"},
        {"disable", "mode"},
        {"gwd rgl.r", "r channel"},
        {"\"gwd rgl / r\"", "r channel"},
        {"'stat.awb.Gwd RGL.r channel'", "r channel"},
        {"share.*gain", "sys_gain"},
        {"SHARE.*gain", ""},
        {"s*", "inttime, sys_gain, colormatrix, r channel"},
        {"gain -share", "gain[0].gain.val, gain_mode"},
        {"-stat -share -cfg", "mode, gain_mode"},
        {"mode -gain", "mode"},
        {"-share.*", "ma_y.lut_i, gain[0].gain.val, r channel, mode, gain_mode"},
        {"[2][2]", "colormatrix[2][2], r channel[2][2]"},
        {"[7][7]", "r channel[7][7]"},
        {"[8]", "ma_y.lut_i[8]"},
        {"share.colormatrix[2][3]", ""},
        {"gain[0]", "gain[0].gain.val"},
        {"cfg.awb.gain[0].gain.val[3]", "gain[0].gain.val[3]"},
        {"lut_i[3]", "ma_y.lut_i[3]"},
        {"share.inttime = 40000", "inttime"},
        {"mode = 0 (0: disable, 1: enable)", "mode"},
        {"gain_mode=1", "gain_mode"},
        {"r channel:", "r channel"},
        {"colormatrix[1][1] = 5", "colormatrix[1][1]"},
        {"time = 5", "inttime"},
        {"Exposure: time", "inttime"},
        {"inttime =8000", "inttime"},
        {"gain abs=5 rel=2%", "sys_gain, gain[0].gain.val, gain_mode"},
    };
    for (const auto &[line, keys] : rows)
        EXPECT_EQ(found(line), keys) << line;
    EXPECT_EQ(found(""), found("=5 abs=1"));
}

TEST(Filter, ReadsTolerances)
{
    const Filter filter("gain abs=16 rel=5%");
    EXPECT_STREQ(filter.error(), "");
    EXPECT_EQ(filter.tolerance().absolute->nearly, 16);
    EXPECT_EQ(filter.tolerance().relative->nearly, 0.05);
    EXPECT_FALSE(Filter("gain").tolerance().absolute);
    for (const char *line : {"abs=", "abs=-1", "rel=5", "rel=x%"}) {
        const Filter wrong(line);
        EXPECT_STRNE(wrong.error(), "") << line;
        EXPECT_FALSE(wrong.tolerance().absolute || wrong.tolerance().relative) << line;
    }
}

} // namespace vordascope
