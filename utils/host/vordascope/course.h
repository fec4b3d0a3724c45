// How one value goes over the snapshots of a run: its changes, and these as JSON.
#pragma once

#include "snapshot.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vordascope
{

// A list of `count` elements, each of which `append` writes by its index.
template <typename Append>
void append_list(std::string &out, size_t count, Append append)
{
    out += '[';
    for (size_t i = 0; i < count; i++) {
        if (i != 0)
            out += ',';
        append(i);
    }
    out += ']';
}

// The changes of one value. Its memory is in proportion to their number: what stays the same costs
// nothing.
class Course
{
public:
    // From snapshot `at` on, which is behind all that were put before, the value is this one.
    // Returns whether that is a change.
    bool put(uint32_t at, const Value &value);
    bool put(uint32_t at, uint64_t value);

    // The snapshots before `first` are of no interest any more.
    void forget(uint32_t first);

    bool empty() const { return numbers_.empty() && literals_.empty(); }
    size_t changes() const { return numbers_.size() + literals_.size(); }

    // Appends the newest value as JSON; "null" where there is none.
    void append_last(std::string &out) const;

    // Appends the changes as JSON, see model.h; snapshot `first` is 0 there.
    void append(std::string &out, uint32_t first) const;

private:
    struct Number {
        uint32_t at;
        int64_t value; // in units of its last decimal
    };
    struct Literal {
        uint32_t at;
        std::string json;
    };

    bool put_number(uint32_t at, int64_t value);
    bool last_is_number() const;
    uint32_t change_at(size_t number, size_t literal, bool &is_number) const;
    void append_number(std::string &out, int64_t value) const;

    std::vector<Number> numbers_;   // values that have `decimals_` decimals
    std::vector<Literal> literals_; // all others; no snapshot has a change in both
    uint8_t decimals_ = 0;
};

} // namespace vordascope
