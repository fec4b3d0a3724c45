// Rules: read, learned of good captures, and held against others.
#include "dip_ctx_types.h"
#include "gate.h"
#include "harness.h"
#include "learn.h"
#include "reading.h"
#include "scene.h"
#include "vorda.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <map>

using namespace vordascope;

namespace
{

TEST(Rules, ErrorsNameTheirPlace)
{
    const std::pair<const char *, const char *> rows[] = {
        {"share\n  share.fps asb=3\n", "r:2:13: a rule has abs="},
        {"share.fps abs=-1", "r:1:15: abs is a number of 0 or more"},
        {"share.fps rel=5", "r:1:15: rel is a percentage, 5%, or"},
        {"share.fps range=3..2", "r:1:17: a range is A..B"},
        {"share.fps range=..", "r:1:17: a range is A..B"},
        {"share.fps exact abs=1", "r:1:1: what is exact has no tolerance"},
        {"share.fps ignore warn", "r:1:1: what is ignored has no other rule"},
        {"share.fps abs=1 often", "r:1:14: only words of the rule follow"},
        {"\"share.fps abs=1", "r:1:1: the quotation does not end"},
        {" abs=1 # of what?", "r:1:2: a pattern of fields is missing"},
    };
    for (const auto &[text, message] : rows) {
        std::vector<Rule> rules;
        std::string error;
        EXPECT_FALSE(read_rules(text, "r", rules, error)) << text;
        EXPECT_TRUE(error.starts_with(message)) << error;
    }
}

// What vorda prints of a frame of the scene.
Snapshot frame(uint32_t number)
{
    register_categories();
    const auto ctx = std::make_unique<DipPathCtx>();
    fill_frame(ctx.get(), 0, number);
    const std::string text = INDEX + captured([&] { return parse_entry(ctx.get(), "all"); }).out;
    return *Reader(std::string_view(text)).next();
}

// Gives a field of the snapshot another first value in a copy of its text; what lies behind moves.
void change(const Snapshot &snapshot, const Field &field, std::string &text)
{
    const Value &value = *snapshot.begin(field);
    const bool number = value.number() || value.kind == Kind::empty;
    text.replace(static_cast<size_t>(value.begin - snapshot.text.data()), value.size,
                 number                        ? "123456789012345678901"
                 : value.kind == Kind::boolean ? value.text() == "true" ? "false" : "true"
                                               : "another text");
}

// The fields of a snapshot, at most one of each item a round.
std::vector<std::vector<const Field *>> in_rounds(const Snapshot &snapshot)
{
    std::map<std::string, size_t> seen;
    std::vector<std::vector<const Field *>> rounds;
    for (const Field &field : snapshot.fields) {
        const size_t round = seen[snapshot.item(field)]++;
        rounds.resize(std::max(rounds.size(), round + 1));
        rounds[round].push_back(&field);
    }
    return rounds;
}

TEST(Learn, GoodSnapshotsPassAndEachChangedFieldIsFound)
{
    std::vector<Snapshot> good;
    for (const uint32_t number : {0U, 40U, 80U, 120U})
        good.push_back(frame(number));
    Learner learner;
    for (const Snapshot &snapshot : good)
        learner.add(snapshot);
    std::string text;
    learner.put_rules({}, text);
    EXPECT_NE(text.find("\nshare.inttime  abs="), std::string::npos) << text;
    std::vector<Rule> list;
    std::string error;
    ASSERT_TRUE(read_rules(text, "learned", list, error)) << error;
    Rules rules({}, list, {});

    for (const Snapshot &a : good) {
        for (const Snapshot &b : good)
            EXPECT_TRUE(compare(a, b, rules, "a", "b").same());
        EXPECT_TRUE(hold(a, rules).same());
    }
    EXPECT_TRUE(rules.unused().empty());

    for (const auto &round : in_rounds(good[0])) {
        std::string other(good[0].text);
        for (auto field = round.rbegin(); field != round.rend(); ++field)
            change(good[0], **field, other);
        std::vector<std::string> expected;
        for (const Field *field : round) {
            const std::string block = good[0].block(*field);
            expected.push_back(good[0].item(*field) + '.' + block + (block.empty() ? "" : " / ") +
                               std::string(field->key));
        }
        Reader reader{std::string_view(other)};
        const Comparison result = compare(good[1], *reader.next(), rules, "a", "b");
        std::vector<std::string> found;
        for (const ItemDifferences &item : result.items)
            for (const Difference &difference : item.differences)
                found.push_back(item.item + '.' + difference.name);
        EXPECT_EQ(found, expected);
    }
    EXPECT_GT(good[0].fields.size(), 1700U);
}

TEST(Learn, WhatVaries)
{
    const std::string head = INDEX + "[A B]\n[A]\n";
    const std::string texts[] = {
        head + "x = 1.50\nl = 1, 2, 3\nt = /a\nz = nan\nn = -5\ny y abs = 1\nonce = 1\n",
        head + "x = 2.25\nl = 1, 9, 3\nt = /b\nz = 1\nn = 5\ny y abs = 3\nl2 = 1, 2\n",
        head + "x = 1.75\nl = 0, 2, 3\nt = /a\nz = 1\nn = 0\ny y abs = 2\nl2 = 1\n",
    };
    Learner learner;
    for (const std::string &text : texts)
        learner.add(*Reader(std::string_view(text)).next());
    std::string rules;
    learner.put_rules(*read_decimal("0.1"), rules);
    EXPECT_EQ(
        rules,
        "intl.a  exact  # 3 snapshots, 0 of 7 fields constant\n"
        "intl.a.x  abs=0.825 range=1.425..2.325  # 3 snapshots, at most 0.75 apart\n"
        "intl.a.l  abs=7.7 range=-0.7..9.7  # 3 snapshots, 2 of 3 values varied, at most 7 apart\n"
        "intl.a.t  ignore  # what is no number varies\n"
        "intl.a.z  ignore  # what is no number varies\n"
        "intl.a.n  abs=11 range=-6..6  # 3 snapshots, at most 10 apart\n"
        "\"intl.a.y y abs\"  abs=2.2 range=0.8..3.2  # 3 snapshots, at most 2 apart\n"
        "intl.a.once  ignore  # only in 1 of 3 snapshots\n"
        "intl.a.l2  ignore  # only in 2 of 3 snapshots\n");
}

TEST(Gate, TellsCiServersWhichItemsDiffer)
{
    // Many captures with long texts, and names that XML does not take as they are.
    const std::string name = "<&\"\x01>" + std::string(300, 'x');
    std::string a = INDEX;
    std::string b = INDEX;
    for (int item = 0; item < 300; item++)
        for (int i = 0; i < 30; i++) {
            const std::string section = "=== cfg.i" + std::to_string(item) + " ===\n";
            a += i == 0 ? section : "";
            b += i == 0 ? section : "";
            a += "k" + std::to_string(i) + " = <&>\n";
            b += "k" + std::to_string(i) + " = " + (item % 2 != 0 ? "\"\x1b" : "<&>") + '\n';
        }
    Reader reader_a{std::string_view(a)};
    Reader reader_b{std::string_view(b)};
    Rules rules({}, {}, {});
    const Comparison result = compare(*reader_a.next(), *reader_b.next(), rules, "a", name);
    Gate gate("a <reference>");
    for (int i = 0; i < 100; i++)
        gate.add(name + std::to_string(i), result);
    gate.add_trouble("nowhere", "No such file");
    EXPECT_EQ(gate.different(), 100U);
    std::string xml;
    gate.put_junit("2026-01-02T03:04:05", "host", {{"site", "a <\"roof\"> \x1b"}}, xml);
    EXPECT_LT(xml.size(), Gate::JUNIT_MOST);
    EXPECT_GT(xml.size(), Gate::JUNIT_MOST / 4);
    const auto count = [&xml](const std::string &what) {
        int found = 0;
        for (size_t at = xml.find(what); at != std::string::npos; at = xml.find(what, at + 1))
            found++;
        return found;
    };
    EXPECT_EQ(count("<testcase "), 301);
    EXPECT_EQ(count("<failure "), 150);
    EXPECT_EQ(count("message=\"100 of 100 captures differ\""), 150);
    EXPECT_EQ(count("tests=\"301\" failures=\"150\" errors=\"1\""), 1);

    const TempFile file;
    std::ofstream(file.path()) << xml;
    const Result valid = Child({"xmllint", "--noout", "--schema",
                                VORDA_SOURCE_DIR "/tests/scope/junit.xsd", file.path()},
                               {})
                             .finish();
    EXPECT_EQ(valid.status, 0) << valid.err;
}

} // namespace
