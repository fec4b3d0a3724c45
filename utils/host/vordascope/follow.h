// What `vordascope live` keeps of a camera that goes on: a ring of snapshots as the page's model,
// and what a page that has it needs to go along.
#pragma once

#include "model.h"

#include <chrono>
#include <deque>

namespace vordascope
{

// Snapshots of the last `keep` seconds, by the camera's clock where there is one. What is older is
// forgotten, at most KEPT_A_SECOND of them are kept, so memory is in proportion to what changes.
//
// The state, and news, are objects of JSON:
//
//     {"model":MODEL,"reference":RUN,     see model.h; the run that all is held against, or null
//      "age":0.04,"ended":false}          seconds since the newest snapshot came, or null
//     {"add":[NEWS, …],                   see model.h
//      "forget":[[RUN,COUNT], …],         so many snapshots from the beginning of a run on
//      "marks":[[RUN,SNAPSHOT,"…"], …],   snapshots are counted after those that are forgotten
//      "ended":true}                      each member only where there is something
class Follower
{
public:
    static constexpr size_t KEPT_A_SECOND = 60;

    explicit Follower(double keep) : keep_(keep) {}

    // A snapshot that everything is held against, before any other.
    void hold_against(const std::string &name, const Snapshot &reference);

    // What is followed from here on.
    void begin(const std::string &name);
    void add(const Snapshot &snapshot);

    // Notes something at the newest snapshot; at the first one when there is none yet.
    void mark(const std::string &text);

    // There is no more.
    void end() { ended_ = true; }

    std::string state() const;

    // What is new since the last call; empty when nothing is.
    std::string news();

    uint64_t snapshots() const { return snapshots_; }

private:
    using Clock = std::chrono::steady_clock;

    // A run: since when it goes, and its snapshots by the time of all runs together.
    struct Run {
        double begin;
        Clock::time_point begun;
        double own_begin;
        std::deque<double> stamps;
        uint32_t first = 0;
    };

    double stamp(Run &run, const Snapshot &snapshot) const;
    void forget_old();

    const double keep_;
    Model model_;
    std::optional<uint32_t> reference_;
    std::unordered_map<uint32_t, Run> runs_;
    double now_ = 0;  // seconds since the beginning, as the camera counts
    size_t kept_ = 0; // snapshots of all runs
    uint64_t snapshots_ = 0;
    Clock::time_point newest_;
    std::string added_, forgotten_, marks_;
    std::vector<std::string> early_; // marks before the first snapshot
    bool ended_ = false, end_told_ = false;
};

} // namespace vordascope
