// What was agreed on: rules that say of each field what it may be.
//
// A rule is a line, GLOB [abs=N] [rel=N%] [range=A..B] [exact|ignore|warn], and a comment behind
// " #". The last rule that matches a field holds for it, alone.
//
//     stat  ignore                       # what the scene does
//     share.sys_gain  abs=16 rel=5%      # at most 16 or 5 % apart
//     share.fps       range=24..30       # no second snapshot is needed for that
//     cfg.nr          warn               # told, but no failure
//
// - A GLOB may hold blanks ("stat.awb.Gwd RGL"); in quotes it may end in a word of the rules.
// - A rule of a GLOB alone is `ignore`, so that a list of patterns is a list of rules.
// - `exact` is what holds without any rule. `range` without abs, rel or exact asks for nothing
// else.
#pragma once

#include "decimal.h"
#include "snapshot.h"

#include <optional>
#include <unordered_map>

namespace vordascope
{

// What stands between the words of rules and of filters.
constexpr std::string_view BLANKS = " \t";

// A number that somebody gave.
struct Limit {
    Decimal exact;
    double nearly = 0;
};

// Reads a limit: "12", "0.5", "1e-3".
std::optional<Limit> read_limit(std::string_view text);

// Reads a limit of 0 or more.
std::optional<Limit> read_tolerance(std::string_view text);

// Reads a percentage, "5%" or "150%".
std::optional<Limit> read_percentage(std::string_view text);

// Reads a part of a number: "5%", or "0.05", less than 1. What is more would pass everything, so it
// is no part.
std::optional<Limit> read_part(std::string_view text);

struct Rule {
    std::string glob;
    std::optional<Limit> absolute; // numbers that are no farther apart are the same
    std::optional<Limit> relative; // so are those apart by this part of the larger one
    std::optional<Limit> low;      // numbers lie in a range, its ends included
    std::optional<Limit> high;
    bool exact = false;
    bool ignore = false;
    bool warn = false;  // what differs is told, and no failure
    std::string origin; // "rules.txt:12", for messages

    bool ranged() const { return low || high; }
    bool compares() const { return !ranged() || absolute || relative || exact; }
};

// Appends the rules of a text. Returns whether all of it could be read; if not, `error` says where
// and why: "rules.txt:12:18: ...". `name` is that of the file.
bool read_rules(std::string_view text, const std::string &name, std::vector<Rule> &rules,
                std::string &error);

// The rules in force, and which of them have been met.
class Rules
{
public:
    // Fields that no rule matches are held against `standard`. Where `only` holds patterns, fields
    // that none of them matches are ignored.
    Rules(Rule standard, std::vector<Rule> rules, std::vector<std::string> only);

    // The rule that holds for a field. It stays valid as long as the rules do.
    const Rule &of(const Snapshot &snapshot, const Field &field);

    // Whether only chosen fields are looked at.
    bool chosen() const { return !only_.empty(); }

    // The rules and patterns that have not matched any field so far.
    struct Unused {
        std::string origin; // "rules.txt:12", "--only"
        std::string glob;
    };
    std::vector<Unused> unused() const;

private:
    const Rule &match(const Snapshot &snapshot, const Field &field);

    Rule standard_;
    Rule outside_; // of fields that `only_` leaves out
    std::vector<Rule> rules_;
    std::vector<std::string> only_;
    std::vector<bool> used_;                              // of the rules, then of only_
    std::unordered_map<std::string, const Rule *> known_; // by the names of a field
    std::string names_;
};

// Whether two values are the same for a rule.
bool same(const Value &a, const Value &b, const Rule &rule);

// Whether a value lies in the range of a rule.
bool in_range(const Value &value, const Rule &rule);

} // namespace vordascope
