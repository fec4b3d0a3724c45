// The argument grammar: one row a command line.
#include "harness.h"
#include "vorda.h"

#include <gtest/gtest.h>

namespace
{

struct ArgsRow {
    std::vector<std::string> args;
    VordaCmdType type;
    int32_t dev_idx;
    int32_t path_idx;
    std::string item;
};

Result parse(std::vector<std::string> args, VordaCmd *cmd)
{
    args.insert(args.begin(), "vorda");
    std::vector<char *> argv;
    for (std::string &arg : args)
        argv.push_back(arg.data());
    return captured([&] { return parse_args(static_cast<int>(argv.size()), argv.data(), cmd); });
}

TEST(Args, TakeIndexesAndTheFirstWordWhereverTheyStand)
{
    const std::string long_word(300, 'x');
    const ArgsRow rows[] = {
        {{}, CMD_HELP, 0, 0, ""},
        {{"-d", "1"}, CMD_HELP, 1, 0, ""},
        {{"help", "-x"}, CMD_HELP, 0, 0, ""},
        {{"-h", "-x"}, CMD_HELP, 0, 0, ""},
        {{"-hx"}, CMD_HELP, 0, 0, ""},
        {{"vinfo", "-h"}, CMD_HELP, 0, 0, "vinfo"},
        {{"vinfo", "help"}, CMD_QUERY, 0, 0, "vinfo"},
        {{"vinfo", "list", "stat"}, CMD_QUERY, 0, 0, "vinfo"},
        {{"list"}, CMD_LIST, 0, 0, ""},
        {{"list", "VINFO"}, CMD_LIST, 0, 0, "VINFO"},
        {{"list", "help"}, CMD_LIST, 0, 0, "help"},
        {{"list", "list"}, CMD_LIST, 0, 0, "list"},
        {{"list", "vinfo", "stat"}, CMD_LIST, 0, 0, "vinfo"},
        {{"list", ""}, CMD_LIST, 0, 0, ""},
        {{"LIST"}, CMD_QUERY, 0, 0, "LIST"},
        {{"HELP"}, CMD_QUERY, 0, 0, "HELP"},
        {{""}, CMD_QUERY, 0, 0, ""},
        {{"vinfo", "-p", "1", "-d", "2"}, CMD_QUERY, 2, 1, "vinfo"},
        {{"-p1", "-d2", "vinfo"}, CMD_QUERY, 2, 1, "vinfo"},
        {{"-p", "1", "x", "-p", "3"}, CMD_QUERY, 0, 3, "x"},
        {{"-d-1", "x"}, CMD_QUERY, -1, 0, "x"},
        {{"-dx", "x"}, CMD_QUERY, 0, 0, "x"},
        {{"-debug", "x"}, CMD_QUERY, 0, 0, "x"},
        {{"-d", " \t\n+12y", "x"}, CMD_QUERY, 12, 0, "x"},
        {{"-d0x10", "-p", "010", "x"}, CMD_QUERY, 0, 10, "x"},
        {{"-d", "", "x"}, CMD_QUERY, 0, 0, "x"},
        {{"-p", "260", "x"}, CMD_QUERY, 0, 260, "x"},
        {{"-p", "4294967297", "-d-99999999999999999999", "x"},
         CMD_QUERY,
         INT32_MIN,
         INT32_MAX,
         "x"},
        {{"-p", std::string(255, '0') + "1", "x"}, CMD_QUERY, 0, 0, "x"},
        {{"--", "-x"}, CMD_QUERY, 0, 0, "-x"},
        {{"--", "--"}, CMD_QUERY, 0, 0, "--"},
        {{"--", "list", "-h"}, CMD_LIST, 0, 0, "-h"},
        {{long_word}, CMD_QUERY, 0, 0, long_word.substr(0, 255)},
        {{"list", long_word}, CMD_LIST, 0, 0, long_word.substr(0, 255)},
    };
    for (const ArgsRow &row : rows) {
        SCOPED_TRACE(::testing::PrintToString(row.args));
        VordaCmd cmd = {};
        const Result result = parse(row.args, &cmd);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.out + result.err, "");
        EXPECT_EQ(cmd.cmd_type, row.type);
        EXPECT_EQ(cmd.dev_idx, row.dev_idx);
        EXPECT_EQ(cmd.path_idx, row.path_idx);
        EXPECT_EQ(cmd.item, row.item);
    }
}

TEST(Args, RefuseUnknownOptionsAndMissingValues)
{
    const std::pair<std::vector<std::string>, std::string> rows[] = {
        {{"-d"}, "Missing argument for option -d.\n"},
        {{"vinfo", "-p"}, "Missing argument for option -p.\n"},
        {{"-d", "-1"}, "Missing argument for option -d.\n"},
        {{"-p", "--", "1"}, "Missing argument for option -p.\n"},
        {{"-"}, "Unknown option `-'.\n"},
        {{"--help"}, "Unknown option `--help'.\n"},
        {{"vinfo", "-x"}, "Unknown option `-x'.\n"},
        {{"-Dx"}, "Unknown option `-D'.\n"},
    };
    for (const auto &[args, message] : rows) {
        SCOPED_TRACE(::testing::PrintToString(args));
        VordaCmd cmd = {};
        const Result result = parse(args, &cmd);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, message);
    }
    EXPECT_EQ(parse({"vinfo"}, nullptr).err, "Invalid argument.\n");
    EXPECT_EQ(parse({"vinfo"}, nullptr).status, 1);
}

} // namespace
