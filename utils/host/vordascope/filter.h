// What somebody looks for, typed as one line.
//
//     gain lut              words, all of which occur in a field's name or in what is said of it
//     share.*gain           patterns of the command line, which the field or what it is part of match
//     -stat                 without what that pattern selects; where it selects nothing, without
//                           the names in which it occurs
//     [3][4]  lut[7]        an element of a list or grid, or a row, alone or behind a name
//     share.inttime = 8000  a line as vorda prints it: the field of that name, whatever its value, or
//                           the words in front where no field has that name
//     abs=16 rel=5%         numbers that are no farther apart are the same, as in rules
//     =8000                 a value, which is for the caller to look for
//
// Words are found in capitals and small letters alike; in quotes a word may hold blanks.
#pragma once

#include "rules.h"

#include <span>

namespace vordascope
{

// A field that may be looked for.
struct Findable {
    std::vector<std::string_view> names; // of its category, its item, its blocks, and its key
    std::string_view about;              // what else is said of it: titles, a legend
    Shape shape = Shape::scalar;
    uint32_t count = 1;
    uint32_t columns = 1; // of rows
};

class Filter
{
public:
    explicit Filter(std::string_view line);

    // What `abs` and `rel` ask for.
    const Rule &tolerance() const { return tolerance_; }

    // Why a tolerance cannot be read, "" where all can; then that one is left out.
    const char *error() const { return error_; }

    // Appends a line for each field: "" for one that is not looked for, "*" for one that is, and
    // "[3][4]" where that part of it is.
    void put_found(std::span<const Findable> fields, std::string &out) const;

private:
    struct Word {
        std::string text; // in small letters; of a pattern as typed
        bool pattern = false;
        bool whole = false;         // a whole name, not a part of one
        std::string stem;           // text without the element behind it
        std::vector<uint32_t> part; // that element: one index, or row and column
    };
    struct Without {
        std::string pattern;
        std::string text; // in small letters
    };

    class Texts;

    void take(std::string_view word);
    void take_tolerance(std::string_view name, std::string_view value);
    static Word word_of(std::string_view text, bool whole);
    static bool finds(const Word &word, const Findable &field, const Texts &texts,
                      std::span<const uint32_t> &part);

    std::vector<Word> words_;
    std::vector<Word> name_; // in front of the value of a line; none or one
    std::vector<Without> without_;
    Rule tolerance_;
    const char *error_ = "";
};

} // namespace vordascope
