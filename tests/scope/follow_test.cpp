// The ring of what is followed: what it keeps, what it forgets, and that news lead to the state.
#include "follow.h"
#include "reader.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace vordascope;
using nlohmann::json;

namespace
{

std::string snapshot(double time, int value)
{
    return (time < 0 ? "" : "time = " + std::to_string(time) + '\n') +
           "dev_idx = 0, path_idx = 1\nshare.inttime = " + std::to_string(value) + "\n; end\n";
}

// Follows a text, and counts along with the news as a page does.
class Page
{
public:
    explicit Page(double keep) : follower(keep) { follower.begin("pipe"); }

    void follow(const std::string &text)
    {
        Reader reader{std::string_view(text)};
        while (const Snapshot *snapshot = reader.next())
            follower.add(*snapshot);
        const std::string news = follower.news();
        if (news.empty())
            return;
        const json object = json::parse(news);
        for (const json &entry : object.value("add", json::array()))
            counts_[entry["run"]]++;
        for (const json &entry : object.value("forget", json::array()))
            counts_[entry[0]] -= entry[1].get<int>();
        std::erase_if(counts_, [](const auto &entry) { return entry.second == 0; });
    }

    // How many snapshots each run has, which state and news must agree in.
    std::map<int, int> runs() const
    {
        std::map<int, int> counts;
        const json state = json::parse(follower.state());
        for (const json &run : state["model"]["runs"])
            counts[run["run"]] = run["count"];
        EXPECT_EQ(counts, counts_);
        return counts;
    }

    Follower follower;

private:
    std::map<int, int> counts_;
};

TEST(Follower, KeepsTheLastSecondsByTheCamerasClock)
{
    Page page(10);
    for (int i = 0; i < 4000; i++) // 25 a second, as fast as it goes
        page.follow(snapshot(6000 + i * 0.04, i % 100));
    EXPECT_GE(page.runs().at(0), 250);
    EXPECT_LE(page.runs().at(0), 250 * 1.05 + 2);

    // The clock goes back: another run, and the first one ends when its time has passed.
    for (int i = 0; i < 100; i++)
        page.follow(snapshot(i * 0.04, 7));
    EXPECT_EQ(page.runs().size(), 2U);
    for (int i = 100; i < 500; i++)
        page.follow(snapshot(i * 0.04, 7));
    EXPECT_EQ(page.runs().size(), 1U);
    EXPECT_NEAR(page.runs().at(1), 255, 8);

    // Runs that are over in no time, and snapshots without time: their number is bounded.
    for (int i = 0; i < 100; i++)
        page.follow(snapshot(1, i) + snapshot(0, i));
    for (int i = 0; i < 1000; i++)
        page.follow(snapshot(-1, i));
    int all = 0;
    for (const auto &[run, count] : page.runs())
        all += count;
    EXPECT_LE(all, 10 * Follower::KEPT_A_SECOND * 1.05 + 2);
    EXPECT_GE(all, 10 * Follower::KEPT_A_SECOND);
}

TEST(Follower, TellsStateReferenceMarksAndTheEnd)
{
    const std::string reference_text = snapshot(1, 5);
    Reader reader{std::string_view(reference_text)};
    Follower follower(10);
    EXPECT_EQ(json::parse(follower.state())["age"], nullptr);
    follower.hold_against("good.txt#1", *reader.next());
    follower.begin("pipe");
    follower.mark("early"); // waits for the first snapshot
    EXPECT_EQ(follower.news(), "");

    const std::string text =
        "mark = lamp on\nlabel host = cam1\n" + snapshot(1, 8) + snapshot(2, 9);
    Reader live{std::string_view(text)};
    follower.add(*live.next());
    follower.add(*live.next());
    follower.mark("\"off\"\n");
    json news = json::parse(follower.news());
    EXPECT_EQ(news["add"].size(), 2U);
    EXPECT_EQ(news["add"][0]["marks"], json({"lamp on"}));
    EXPECT_EQ(news["add"][0]["labels"], json({{"host", "cam1"}}));
    EXPECT_FALSE(news["add"][1].contains("labels"));
    EXPECT_EQ(news["add"][1]["fields"].size(), 1U);
    EXPECT_EQ(news["marks"], json::parse(R"([[1,0,"early"],[1,1,"\"off\"\n"]])"));
    EXPECT_FALSE(news.contains("ended"));

    follower.end();
    EXPECT_EQ(follower.news(), R"({"ended":true})");
    EXPECT_EQ(follower.news(), "");
    const json state = json::parse(follower.state());
    EXPECT_EQ(state["reference"], 0);
    EXPECT_EQ(state["ended"], true);
    EXPECT_LT(state["age"], 5);
    EXPECT_EQ(state["model"]["files"], json({"good.txt#1", "pipe"}));
    EXPECT_EQ(state["model"]["runs"][1]["marks"],
              json::parse(R"([[0,"lamp on"],[0,"early"],[1,"\"off\"\n"]])"));
}

} // namespace
