// The registry with categories of the test's own, then full.
#include "harness.h"
#include "vorda.h"

#include <gtest/gtest.h>

namespace
{

DipPathCtx snapshot;
std::string calls;

template <char name, int status>
int note_entry(Text &, const DipPathCtx *, const char *entry)
{
    calls += std::string(1, name) + "(" + entry + ")";
    return status;
}

void note_help()
{
    calls += "help";
}

// The registry is never emptied, so one test fills it in order.
TEST(Registry, LeadsToTheFirstCategoryOfATitleAndRefusesThe65th)
{
    const VordaCallback a = {"a", "First", note_entry<'a', 3>, note_help, nullptr};
    const VordaCallback b = {"b", nullptr, note_entry<'b', 0>, note_help, nullptr};
    for (const VordaCallback &lacking :
         {VordaCallback{nullptr, "", a.print_entry, note_help, nullptr},
          VordaCallback{"x", "", nullptr, note_help, nullptr},
          VordaCallback{"x", "", a.print_entry, nullptr, nullptr}})
        EXPECT_EQ(parse_rgtr(&lacking), 1);
    EXPECT_EQ(parse_rgtr(nullptr), 1);
    EXPECT_EQ(parse_rgtr(&a), 0);
    EXPECT_EQ(parse_rgtr(&b), 0);

    struct Row {
        std::string entry;
        std::string calls;
        std::string err;
        int status;
    };
    const Row rows[] = {
        {"a", "a()", "", 3},
        {"a.", "a()", "", 3},
        {"b.x.y", "b(x.y)", "", 0},
        {"all", "a()b()", "", 0},
        {"all.x", "", "Unknown category `all'.\n", 1},
        {".x", "", "Unknown category `'.\n", 1},
        {"", "", "Unknown category `'.\n", 1},
        {"ab", "", "Unknown category `ab'.\n", 1},
        {"b." + std::string(300, 'x'), "b(" + std::string(253, 'x') + ")", "", 0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.entry);
        calls.clear();
        const Result result = captured([&] { return parse_entry(&snapshot, row.entry.c_str()); });
        EXPECT_EQ(calls, row.calls);
        EXPECT_EQ(result.err, row.err);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.status, row.status);
    }
    EXPECT_EQ(captured([] { return parse_entry(nullptr, "a"); }).err, "Invalid attributes.\n");
    EXPECT_EQ(captured([] { return parse_entry(&snapshot, nullptr); }).status, 1);
    EXPECT_EQ(captured([] { return parse_help(nullptr, "a"); }).err, "Invalid attributes.\n");

    calls.clear();
    EXPECT_EQ(parse_help("prog", "b"), 0);
    EXPECT_EQ(calls, "help");
    const Result unknown = captured([] { return parse_help("prog", "c"); });
    EXPECT_EQ(unknown.err, "Unknown category `c'.\n");
    EXPECT_EQ(unknown.out, "");
    EXPECT_EQ(unknown.status, 1);
    EXPECT_EQ(captured([] { return parse_help("prog", nullptr); }).out,
              "Available categories:\n- a: First.\n- b: .\n"
              "Use `prog list <category>' to list available entries in the specific category.\n");

    // A later category of the same title is accepted and never reached; the 65th is refused.
    const VordaCallback again = {"a", "Again", note_entry<'c', 0>, note_help, nullptr};
    for (int i = 2; i < 64; i++)
        EXPECT_EQ(parse_rgtr(&again), 0);
    EXPECT_EQ(parse_rgtr(&again), 1);
    calls.clear();
    EXPECT_EQ(parse_entry(&snapshot, "a.x"), 3);
    EXPECT_EQ(calls, "a(x)");
}

} // namespace
