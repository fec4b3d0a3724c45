// Comparisons of many captures with one reference: what they differ in, for people and for CI
// servers. Its memory is in proportion to the fields that differ, whatever the number of captures.
#pragma once

#include "compare.h"

#include <map>

namespace vordascope
{

class Gate
{
public:
    explicit Gate(std::string reference) : reference_(std::move(reference)) {}

    // Takes in how a capture differs from the reference.
    void add(const std::string &name, const Comparison &comparison);

    // Takes in that a capture could not be read.
    void add_trouble(const std::string &name, std::string_view why);

    uint64_t captures() const { return captures_; }
    uint64_t different() const { return different_; }

    // Appends which fields differ, in how many captures, and in which ones.
    void put_summary(std::string &out) const;

    // Appends the form that CI servers read: a test case an item, at most JUNIT_MOST bytes besides
    // the labels, which are its properties. `timestamp` is as in RFC 3339 without a zone, `host`
    // where this ran.
    static constexpr size_t JUNIT_MOST = 1000000;
    void put_junit(std::string_view timestamp, std::string_view host,
                   const std::vector<Label> &labels, std::string &out) const;

private:
    // The captures that something is true of: how many, and the first ones.
    struct Captures {
        uint64_t count = 0;
        std::vector<std::string> first;
        std::string last;

        void add(const std::string &name);
        void put(std::string &out) const;
    };
    struct Item {
        size_t place; // in order of appearance
        uint64_t failures = 0;
        std::map<std::string, Captures> fields; // by their names
        std::string text;                       // reports of the first failures
        std::string warnings;
    };

    Item &item_of(const std::string &name);
    std::vector<std::pair<const std::string *, const Item *>> in_order() const;

    std::string reference_;
    uint64_t captures_ = 0;
    uint64_t different_ = 0;
    std::map<std::string, Item> items_;
    std::vector<std::pair<std::string, std::string>> troubles_; // captures that cannot be read, why
    uint64_t trouble_count_ = 0;
};

} // namespace vordascope
