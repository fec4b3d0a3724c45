// Reading what somebody looks for, and finding it.
#include "filter.h"

#include "select.h"

#include <algorithm>

namespace vordascope
{

namespace
{

constexpr size_t INDEXES_MAX = 2;

std::string small_letters(std::string_view text)
{
    std::string small(text);
    for (char &c : small)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return small;
}

// Takes the first word off a line; in quotes it may hold blanks.
std::string_view take_word(std::string_view &rest)
{
    const char quote = rest.front() == '"' || rest.front() == '\'' ? rest.front() : '\0';
    if (quote != '\0')
        rest.remove_prefix(1);
    const size_t end = quote != '\0' ? rest.find(quote) : rest.find_first_of(BLANKS);
    const std::string_view word = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return word;
}

// The last "[12]" of a text, taken off it; no value where it does not end so.
std::optional<uint32_t> take_index(std::string &text)
{
    const size_t open = text.rfind('[');
    if (open == std::string::npos || !text.ends_with(']') || text.size() - open > 8 ||
        text.size() - open < 3)
        return {};
    uint32_t index = 0;
    for (size_t i = open + 1; i + 1 < text.size(); i++) {
        if (text[i] < '0' || text[i] > '9')
            return {};
        index = 10 * index + static_cast<uint32_t>(text[i] - '0');
    }
    text.resize(open);
    return index;
}

std::string joined(std::span<const std::string_view> names)
{
    std::string path;
    for (const std::string_view name : names) {
        path += path.empty() ? "" : ".";
        path += name;
    }
    return path;
}

// Whether a pattern selects a field, by its path or that of something it is part of.
bool selects(std::string_view pattern, const Findable &field)
{
    for (size_t count = 1; count <= field.names.size(); count++)
        if (matches(joined(std::span(field.names).first(count)), pattern))
            return true;
    return false;
}

bool has_part(const Findable &field, std::span<const uint32_t> part)
{
    if (part.size() == 1)
        return field.shape == Shape::list   ? part[0] < field.count
               : field.shape == Shape::rows ? part[0] <= (field.count - 1) / field.columns
                                            : false;
    return field.shape == Shape::rows && part[1] < field.columns &&
           size_t{part[0]} * field.columns + part[1] < field.count;
}

} // namespace

// The texts of a field in which words are found, in small letters.
class Filter::Texts
{
public:
    explicit Texts(const Findable &field) : path_(small_letters(joined(field.names)))
    {
        // As the page shows it too, where blocks stand apart.
        std::string apart;
        for (size_t i = 2; i < field.names.size(); i++)
            apart.append(i == 2 ? "" : " / ").append(field.names[i]);
        all_ = path_ + '\n' + small_letters(apart) + '\n' + small_letters(field.about);
    }

    // Whether that is its path, or the end of it.
    bool named(std::string_view name) const
    {
        return path_ == name || (path_.size() > name.size() && path_.ends_with(name) &&
                                 path_[path_.size() - name.size() - 1] == '.');
    }

    bool hold(std::string_view text, bool whole) const
    {
        return whole ? named(text) : all_.find(text) != std::string::npos;
    }

    bool path_holds(std::string_view text) const { return path_.find(text) != std::string::npos; }

private:
    std::string path_;
    std::string all_;
};

Filter::Filter(std::string_view line)
{
    std::string name; // of the words so far, should this be a line of a value
    while (true) {
        line.remove_prefix(std::min(line.find_first_not_of(BLANKS), line.size()));
        if (line.empty())
            break;
        const bool quoted = line.front() == '"' || line.front() == '\'';
        const std::string_view word = take_word(line);
        if (word.empty())
            continue;
        const size_t equals = quoted ? std::string_view::npos : word.find('=');
        const std::string_view front = word.substr(0, equals);
        if (equals != std::string_view::npos && (front == "abs" || front == "rel")) {
            take_tolerance(front, word.substr(equals + 1));
            continue;
        }
        if (equals == 0 && word.size() > 1)
            continue; // a value
        const bool colon = !quoted && word.ends_with(':');
        const bool ends = equals != std::string_view::npos || colon;
        const std::string_view part = colon ? word.substr(0, word.size() - 1) : front;
        if (!part.empty()) {
            name.append(name.empty() ? "" : " ").append(part);
            take(part);
        }
        if (ends && !name.empty())
            name_.push_back(word_of(as_path(name), true));
        if (ends)
            break;
    }
}

void Filter::take(std::string_view word)
{
    if (word.size() > 1 && word.front() == '-')
        without_.push_back({std::string(word.substr(1)), small_letters(word.substr(1))});
    else if (word.find_first_of("*?") != std::string_view::npos)
        words_.push_back({as_path(word), true, false, {}, {}});
    else
        words_.push_back(word_of(word, false));
}

void Filter::take_tolerance(std::string_view name, std::string_view value)
{
    const bool absolute = name == "abs";
    std::optional<Limit> &limit = absolute ? tolerance_.absolute : tolerance_.relative;
    limit = absolute ? read_tolerance(value) : read_part(value);
    if (!limit)
        error_ = absolute ? "abs is a number of 0 or more"
                          : "rel is a percentage, 5%, or a number of 0 or more and less than 1";
}

Filter::Word Filter::word_of(std::string_view text, bool whole)
{
    Word word = {small_letters(text), false, whole, {}, {}};
    word.stem = word.text;
    while (word.part.size() < INDEXES_MAX) {
        const std::optional<uint32_t> index = take_index(word.stem);
        if (!index)
            break;
        word.part.insert(word.part.begin(), *index);
    }
    return word;
}

// Whether a word finds a field; `part` becomes that of it which the word asks for, if any.
bool Filter::finds(const Word &word, const Findable &field, const Texts &texts,
                   std::span<const uint32_t> &part)
{
    if (word.pattern)
        return selects(word.text, field);
    if (texts.hold(word.text, word.whole))
        return true;
    if (word.part.empty() || !has_part(field, word.part) ||
        !(word.stem.empty() || texts.hold(word.stem, word.whole)))
        return false;
    part = word.part;
    return true;
}

void Filter::put_found(std::span<const Findable> fields, std::string &out) const
{
    std::vector<bool> as_pattern; // of those to be left out, by whether they select anything
    for (const Without &one : without_)
        as_pattern.push_back(
            std::any_of(fields.begin(), fields.end(),
                        [&one](const Findable &field) { return selects(one.pattern, field); }));

    const bool named = std::any_of(fields.begin(), fields.end(), [this](const Findable &field) {
        std::span<const uint32_t> part;
        return !name_.empty() && finds(name_.front(), field, Texts(field), part);
    });
    const std::vector<Word> &words = named ? name_ : words_;

    for (const Findable &field : fields) {
        const Texts texts(field);
        std::span<const uint32_t> part;
        bool found = std::all_of(words.begin(), words.end(),
                                 [&](const Word &word) { return finds(word, field, texts, part); });
        for (size_t i = 0; found && i < without_.size(); i++)
            found = as_pattern[i] ? !selects(without_[i].pattern, field)
                                  : !texts.path_holds(without_[i].text);
        if (found && part.empty())
            out += '*';
        else if (found)
            for (const uint32_t index : part)
                out.append("[").append(std::to_string(index)).append("]");
        out += '\n';
    }
}

} // namespace vordascope
