// Lines that were wrapped, joined again.
#pragma once

#include "snapshot.h"

#include <array>
#include <string>
#include <vector>

namespace vordascope
{

// Columns of a line that somebody would wrap, and of a word that did not fit behind it.
inline constexpr size_t WRAP_MIN = 40;
inline constexpr size_t WRAP_WORD = 16;

// A line that may not say what it seems to.
struct Doubt {
    std::string_view line;
    uint64_t number;
    bool text_only; // its numbers are what they seem
};

// Undoes what fold, mail clients and editors do to long lines: they break them at a width, anywhere
// or between words, where they keep the blank or take it away.
//
// Two lines were one when the second can be no line where it stands, and when its first word would
// not have fitted behind the first. Rows of a grid can be lines by themselves: they are joined when
// there is but one way to make rows of equal length of them. Nothing is joined unless at least two
// lines have gone on in the one below.
class Unwrap
{
public:
    // Joins the lines of a snapshot's body; they keep their numbers, and its text is then this
    // object's until the next call. `broken`: some field goes on as none does, so that lines have
    // been wrapped even when none can be joined. Otherwise only grids are doubted that are rather
    // halves of a wider one. Returns false when nothing is joined and nothing is doubted.
    bool undo(Head &head, bool broken);

    // What stays in doubt then, in its order.
    const std::vector<Doubt> &doubts() const { return doubts_; }

    // How many lines have been joined to others so far, and the width where they were broken.
    uint64_t joined() const { return joined_; }
    size_t width() const { return width_; }

private:
    // What a line can be by itself.
    enum class Form : uint8_t { none, blank, layout, section, label, keyed, row };
    // Where lines are broken: between words they keep the blank, lose it, or either.
    enum class Breaks : uint8_t { unknown, anywhere, between_words, behind_blanks, at_blanks };
    // What the end of a row is: its own, perhaps, or none.
    enum class Seam : uint8_t { end, open, none };
    // Ways to count columns: a tab is one, or goes on to a multiple of eight.
    static constexpr std::array<size_t, 2> TABS = {1, 8};

    struct Line {
        std::string_view text; // without its end
        std::string_view whole;
        uint64_t number = 0;
        Form form = Form::none;
    };
    struct Row {
        Line line;
        uint32_t count; // of numbers
        Seam seam;      // to the next one
    };

    static Form form_of(std::string_view line);
    static bool take_line(Part &rest, Line &line);
    static bool goes_on(Form form, bool plain, std::string_view line, const Line &next);
    static bool make(const std::vector<Row> &rows, uint32_t columns);
    void look(const Head &head);
    bool may_break(std::string_view line) const;
    bool beyond(std::string_view line, std::string_view next) const;
    bool near(std::string_view line, std::string_view next) const;
    bool full(std::string_view line, std::string_view next) const;
    void write(Part part);
    bool within_key() const;
    void begin_line(const Line &line);
    void finish_line();
    void join(const Line &next);
    void add_row(const Line &line);
    void close_rows();
    uint32_t columns() const;
    bool settle_seams(bool tuples);
    bool is_high(uint32_t columns, uint32_t count) const;
    bool halves(uint32_t columns) const;
    bool vector_of(uint32_t count) const;

    std::array<size_t, TABS.size()> longest_ = {};
    Breaks breaks_ = Breaks::unknown;
    bool undoing_ = false;
    bool broken_ = false;

    std::string text_;
    std::vector<Part> parts_; // where they begin
    std::vector<Doubt> doubts_;

    // The line that is being written: where it begins, the piece of it that came last, what it is
    // so far, whether it holds nothing but numbers, and what is doubted of it.
    size_t begin_ = 0;
    uint64_t number_ = 0;
    Line last_;
    Form form_ = Form::blank;
    bool plain_ = false;
    bool doubted_ = false;
    bool text_doubted_ = false;
    bool renumber_ = false; // lines before the next one have been joined

    std::string_view label_;
    std::vector<Row> rows_;

    uint64_t joined_ = 0;
    size_t width_ = 0;
};

} // namespace vordascope
