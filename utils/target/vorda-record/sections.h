// The sections of a snapshot: what is recorded, and the text of each in one frame.
//
// A section is an item of a category whose items have a line that tells where they begin, or all
// that is recorded of another category. Within it a recording counts the lines that changed.
#pragma once

#include "heap_text.h"
#include "vorda.h"

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

// The text of every section of one frame.
class SectionTexts
{
public:
    size_t size() const { return count_; }
    std::string_view operator[](size_t section) const;
    std::string_view all() const { return text_.written(); }

private:
    friend class Sections;

    HeapText text_;
    std::array<size_t, 128> ends_;
    size_t count_ = 0;
};

class Sections
{
public:
    // Adds what an entry names in vorda's words: "all", "category" or "category.item". What is
    // there already is not added again. The text stays the caller's and is kept. Returns 0, or 1
    // after a message on standard error.
    int add(const char *entry);

    // Writes the text of every section into `texts`, which begins anew. `before`, if not nullptr, has
    // the texts of a frame with the same settings (DipIntlCtx): they are long, hardly ever change and
    // need not be made again. Returns 0, or 1 after a message on standard error: an item does not
    // exist, or memory is exhausted.
    int print(const DipPathCtx &ctx, SectionTexts *texts, const SectionTexts *before) const;

    // The text of the first number of that name, "category.key" or "category.item.key" as the case
    // may be, without blanks before it; empty if there is none.
    std::string_view number(const SectionTexts &texts, std::string_view name) const;

private:
    // What is printed at one go; a section consists of one or more.
    struct Part {
        const VordaCallback *category;
        const char *item; // "": all of it
    };

    std::span<const Part> parts() const { return std::span(parts_).first(count_); }
    bool begins_section(size_t part) const;
    int add_category(const VordaCallback &category, const char *item);
    int add_item(const VordaCallback &category, const char *item);
    int insert(size_t at, Part part);

    std::array<Part, 128> parts_;
    size_t count_ = 0;
};
