// The ring of `vordascope live`.
#include "follow.h"

#include "json.h"
#include "quantity.h"

#include <algorithm>
#include <utility>

namespace vordascope
{

namespace
{

// Forgetting has its price whatever is forgotten: it waits until this part of the ring is too much.
constexpr double FORGET_PART = 0.05;

std::string number_text(uint64_t number)
{
    return std::to_string(number);
}

void append(std::string &list, const std::string &element)
{
    list += list.empty() ? "" : ",";
    list += element;
}

double seconds(std::chrono::steady_clock::duration time)
{
    return std::chrono::duration<double>(time).count();
}

} // namespace

void Follower::hold_against(const std::string &name, const Snapshot &reference)
{
    model_.begin_file(name);
    if (const auto place = model_.add(reference))
        reference_ = place->run;
}

void Follower::begin(const std::string &name)
{
    model_.begin_file(name);
}

double Follower::stamp(Run &run, const Snapshot &snapshot) const
{
    if (snapshot.timed)
        return run.begin + std::max(0.0, number_of(snapshot.time) - run.own_begin);
    return run.begin + seconds(Clock::now() - run.begun);
}

void Follower::add(const Snapshot &snapshot)
{
    std::string news;
    const std::optional<Model::Place> place = model_.add(snapshot, &news);
    if (!place)
        return;
    append(added_, news);
    newest_ = Clock::now();
    snapshots_++;
    const double own = snapshot.timed ? number_of(snapshot.time) : 0;
    Run &run = runs_.try_emplace(place->run, Run{now_, newest_, own, {}}).first->second;
    now_ = std::max(now_, stamp(run, snapshot));
    run.stamps.push_back(now_);
    kept_++;
    forget_old();
    for (const std::string &text : std::exchange(early_, {}))
        mark(text);
}

void Follower::forget_old()
{
    const auto most = static_cast<size_t>(keep_ * KEPT_A_SECOND) + 1;
    const bool many = static_cast<double>(kept_) > static_cast<double>(most) * (1 + FORGET_PART);
    for (auto found = runs_.begin(); found != runs_.end();) {
        auto &[number, run] = *found;
        const double oldest = now_ - keep_;
        size_t count = 0;
        if (run.stamps.front() < oldest - FORGET_PART * keep_ || run.stamps.back() < oldest)
            count =
                static_cast<size_t>(std::lower_bound(run.stamps.begin(), run.stamps.end(), oldest) -
                                    run.stamps.begin());
        if (many)
            count = std::max(count, std::min(run.stamps.size(), kept_ - most));
        if (count > 0) {
            run.stamps.erase(run.stamps.begin(),
                             run.stamps.begin() + static_cast<std::ptrdiff_t>(count));
            run.first += static_cast<uint32_t>(count);
            kept_ -= count;
            model_.forget({number, run.first});
            append(forgotten_, '[' + number_text(number) + ',' + number_text(count) + ']');
        }
        found = run.stamps.empty() ? runs_.erase(found) : std::next(found);
    }
}

void Follower::mark(const std::string &text)
{
    if (snapshots_ == 0) {
        early_.push_back(text);
        return;
    }
    const std::optional<Model::Place> place = model_.mark(text);
    if (!place)
        return;
    std::string entry = '[' + number_text(place->run) + ',' + number_text(place->snapshot) + ',';
    put_json_string(text, entry);
    append(marks_, entry + ']');
}

std::string Follower::state() const
{
    std::string out = "{\"model\":" + model_.json() + ",\"reference\":";
    out += reference_ ? number_text(*reference_) : "null";
    out += ",\"age\":";
    out += snapshots_ > 0 ? std::to_string(seconds(Clock::now() - newest_)) : "null";
    return out + (ended_ ? ",\"ended\":true}" : ",\"ended\":false}");
}

std::string Follower::news()
{
    std::string out;
    for (const auto &[name, list] :
         {std::pair{"add", &added_}, {"forget", &forgotten_}, {"marks", &marks_}}) {
        if (!list->empty())
            append(out, '"' + std::string(name) + "\":[" + *list + ']');
        list->clear();
    }
    if (ended_ && !end_told_)
        append(out, "\"ended\":true");
    end_told_ = ended_;
    return out.empty() ? "" : '{' + out + '}';
}

} // namespace vordascope
