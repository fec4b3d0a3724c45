// What is recorded, section by section.
#include "sections.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace
{

// The place behind "key = " or "key: " at the beginning of a line; blanks may stand around.
std::string_view value_on_line(std::string_view line, std::string_view key)
{
    if (!line.starts_with(key))
        return {};
    line.remove_prefix(key.size());
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    if (line.empty() || (line[0] != '=' && line[0] != ':'))
        return {};
    line.remove_prefix(1);
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    return line;
}

// Takes "word." off a name; what does not begin with it becomes empty.
void take_word(std::string_view *name, std::string_view word)
{
    const bool begins =
        name->starts_with(word) && name->size() > word.size() && (*name)[word.size()] == '.';
    name->remove_prefix(begins ? word.size() + 1 : name->size());
}

bool is_number(std::string_view text)
{
    if (text.starts_with('-'))
        text.remove_prefix(1);
    return !text.empty() && text[0] >= '0' && text[0] <= '9';
}

std::string_view find_number(std::string_view text, std::string_view key)
{
    while (!text.empty()) {
        const std::string_view line(text.data(), std::min(text.find('\n'), text.size()));
        if (const std::string_view value = value_on_line(line, key); is_number(value))
            return value;
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return {};
}

// Whether a category has nothing but the settings of the modules to print from.
bool prints_settings(const VordaCallback &category)
{
    return std::string_view(category.title) == "intl";
}

} // namespace

std::string_view SectionTexts::operator[](size_t section) const
{
    const size_t begin = section > 0 ? ends_[section - 1] : 0;
    return {all().data() + begin, ends_[section] - begin};
}

int Sections::add(const char *entry)
{
    if (strcmp(entry, "all") == 0) {
        for (const VordaCallback &category : parse_categories())
            if (add_category(category, "") != 0)
                return 1;
        return 0;
    }

    const std::string_view title(entry, strcspn(entry, "."));
    for (const VordaCallback &category : parse_categories())
        if (category.title == title)
            return add_category(category,
                                entry[title.size()] == '.' ? entry + title.size() + 1 : "");
    fprintf(stderr, "Unknown category `%.*s'.\n", static_cast<int>(title.size()), entry);
    return 1;
}

int Sections::add_category(const VordaCallback &category, const char *item)
{
    if (category.section_at == nullptr || *item != '\0')
        return add_item(category, item);
    const char *name = nullptr;
    for (size_t place = 0; (name = category.section_at(place)) != nullptr; place++)
        if (add_item(category, name) != 0)
            return 1;
    return 0;
}

int Sections::add_item(const VordaCallback &category, const char *item)
{
    const auto of_category = [&](const Part &part) { return part.category == &category; };
    const auto same = [&](const Part &part) {
        return of_category(part) && (*part.item == '\0' || strcmp(part.item, item) == 0);
    };
    if (std::ranges::any_of(parts(), same))
        return 0;
    // What is recorded of a category without sections stays together.
    const auto first = std::ranges::find_if(parts(), of_category);
    const auto begin = static_cast<size_t>(first - parts().begin());
    if (category.section_at != nullptr || begin == count_)
        return insert(count_, {&category, item});
    const auto last = std::find_if_not(first, parts().end(), of_category);
    if (*item != '\0')
        return insert(static_cast<size_t>(last - parts().begin()), {&category, item});
    // All of it includes what there is.
    const auto behind = parts_.begin() + (last - parts().begin());
    parts_[begin].item = "";
    std::copy(behind, parts_.begin() + static_cast<ptrdiff_t>(count_),
              parts_.begin() + static_cast<ptrdiff_t>(begin) + 1);
    count_ -= static_cast<size_t>(last - first) - 1;
    return 0;
}

int Sections::insert(size_t at, Part part)
{
    if (count_ == parts_.size()) {
        fprintf(stderr, "Too many entries, at most %zu.\n", parts_.size());
        return 1;
    }
    Part *place = parts_.data() + at;
    std::move_backward(place, parts_.data() + count_, parts_.data() + count_ + 1);
    *place = part;
    count_++;
    return 0;
}

bool Sections::begins_section(size_t part) const
{
    return part == 0 || parts_[part].category->section_at != nullptr ||
           parts_[part].category != parts_[part - 1].category;
}

int Sections::print(const DipPathCtx &ctx, SectionTexts *texts, const SectionTexts *before) const
{
    texts->text_.clear();
    texts->count_ = 0;
    for (size_t i = 0; i < count_; i++) {
        if (begins_section(i))
            texts->count_++;
        if (before != nullptr && prints_settings(*parts_[i].category))
            texts->text_.put((*before)[texts->count_ - 1]);
        else if (parts_[i].category->print_entry(texts->text_, &ctx, parts_[i].item) != 0)
            return 1;
        texts->ends_[texts->count_ - 1] = texts->text_.written().size();
    }
    if (texts->text_.failed()) {
        fputs("vorda-record: out of memory.\n", stderr);
        return 1;
    }
    return 0;
}

std::string_view Sections::number(const SectionTexts &texts, std::string_view name) const
{
    size_t section = 0;
    for (size_t i = 0; i < count_; i++) {
        section += begins_section(i);
        std::string_view key = name;
        take_word(&key, parts_[i].category->title);
        if (parts_[i].category->section_at != nullptr)
            take_word(&key, parts_[i].item);
        if (key.empty())
            continue;
        // Without sections a line begins with the category's title, but not each.
        const std::string_view text = texts[section - 1];
        std::string_view value = find_number(text, key);
        if (value.empty() && parts_[i].category->section_at == nullptr)
            value = find_number(text, name);
        if (!value.empty())
            return value;
    }
    return {};
}
