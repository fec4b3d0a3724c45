// Reading rules, and holding values against them.
#include "rules.h"

#include "select.h"

#include <algorithm>
#include <cmath>

namespace vordascope
{

namespace
{

constexpr size_t KNOWN_MOST = 1000000;          // fields of which the rule is remembered
constexpr double EXACT_MOST = 9007199254740992; // integers up to here are doubles

// Reads one line.
class RuleLine
{
public:
    RuleLine(std::string_view line, Rule &rule) : line_(line), rule_(rule) {}

    // Returns whether it could be read; if not, there is error(), at column().
    bool read()
    {
        std::string_view rest = line_;
        const bool quoted = rest.starts_with('"');
        if (quoted) {
            const size_t end = rest.find('"', 1);
            if (end == std::string_view::npos)
                return fail(rest, "the quotation does not end");
            rule_.glob = rest.substr(1, end - 1);
            rest.remove_prefix(end + 1);
        }
        std::vector<std::string_view> words; // of the rule, the last one first
        while (!rest.empty()) {
            const size_t blank = rest.find_last_of(BLANKS);
            const std::string_view word = rest.substr(blank + 1);
            if (!quoted && !is_attribute(word))
                break;
            words.push_back(word);
            rest = rest.substr(0, blank == std::string_view::npos ? 0 : blank);
            rest = rest.substr(0, rest.find_last_not_of(BLANKS) + 1);
        }
        if (!quoted) {
            rule_.glob = rest;
            if (const size_t equals = rest.find('='); equals != std::string_view::npos)
                return fail(rest.substr(equals), "only words of the rule follow its first one");
        }
        rule_.glob = as_path(rule_.glob);
        if (rule_.glob.empty())
            return fail(line_, "a pattern of fields is missing");
        if (!std::all_of(words.rbegin(), words.rend(),
                         [this](std::string_view word) { return take(word); }))
            return false;
        return is_consistent();
    }

    size_t column() const { return column_; }
    const char *error() const { return error_; }

private:
    static bool is_attribute(std::string_view word)
    {
        return word == "exact" || word == "ignore" || word == "warn" ||
               word.find('=') != std::string_view::npos;
    }

    bool fail(std::string_view at, const char *error)
    {
        column_ = static_cast<size_t>(at.data() - line_.data()) + 1;
        error_ = error;
        return false;
    }

    bool take(std::string_view word)
    {
        const size_t equals = word.find('=');
        const std::string_view name = word.substr(0, equals);
        const std::string_view value =
            equals == std::string_view::npos ? std::string_view() : word.substr(equals + 1);
        const bool given = equals != std::string_view::npos;
        if (!given && (name == "exact" || name == "ignore" || name == "warn")) {
            bool &flag = name == "exact" ? rule_.exact : name == "warn" ? rule_.warn : rule_.ignore;
            flag = true;
            return true;
        }
        if (given && name == "abs") {
            rule_.absolute = read_tolerance(value);
            return rule_.absolute || fail(value, "abs is a number of 0 or more");
        }
        if (given && name == "rel") {
            rule_.relative = read_part(value);
            return rule_.relative ||
                   fail(value, "rel is a percentage, 5%, or a number of 0 or more and less than 1");
        }
        if (given && name == "range")
            return take_range(value);
        return fail(word, "a rule has abs=, rel=, range=, exact, ignore and warn");
    }

    bool take_range(std::string_view value)
    {
        static constexpr char FORM[] = "a range is A..B, A.. or ..B, with A not above B";
        const size_t dots = value.find("..");
        if (dots == std::string_view::npos || value.size() == 2)
            return fail(value, FORM);
        const std::string_view low = value.substr(0, dots);
        const std::string_view high = value.substr(dots + 2);
        rule_.low = read_limit(low);
        rule_.high = read_limit(high);
        if ((!low.empty() && !rule_.low) || (!high.empty() && !rule_.high))
            return fail(value, FORM);
        return !rule_.low || !rule_.high || compare(rule_.low->exact, rule_.high->exact) <= 0 ||
               fail(value, FORM);
    }

    bool is_consistent()
    {
        const bool tolerant = rule_.absolute || rule_.relative;
        const bool bare = !tolerant && !rule_.ranged() && !rule_.exact && !rule_.warn;
        if (rule_.ignore && !bare)
            return fail(line_, "what is ignored has no other rule");
        if (rule_.exact && tolerant)
            return fail(line_, "what is exact has no tolerance");
        rule_.ignore = bare; // a pattern alone
        return true;
    }

    std::string_view line_;
    Rule &rule_;
    size_t column_ = 1;
    const char *error_ = nullptr;
};

// A line without its comment and the blanks around it.
std::string_view without_comment(std::string_view line)
{
    bool quoted = false;
    for (size_t i = 0; i < line.size(); i++) {
        quoted = quoted != (line[i] == '"');
        if (line[i] == '#' && !quoted &&
            (i == 0 || BLANKS.find(line[i - 1]) != std::string_view::npos)) {
            line = line.substr(0, i);
            break;
        }
    }
    line.remove_prefix(std::min(line.find_first_not_of(BLANKS), line.size()));
    return line.substr(0, line.find_last_not_of(" \t\r") + 1);
}

// An integer that a double holds exactly.
bool small(const Value &value)
{
    return value.kind == Kind::integer && static_cast<double>(value.magnitude) < EXACT_MOST / 2;
}

double small_number(const Value &value)
{
    const auto magnitude = static_cast<double>(value.magnitude);
    return value.negative() ? -magnitude : magnitude;
}

// Whether a number is at most a limit. What is on different sides of the nearest double is so of
// the limit as well.
bool at_most(double number, const Limit &limit)
{
    if (number != limit.nearly)
        return number < limit.nearly;
    Decimal exact = *read_decimal(std::to_string(static_cast<int64_t>(std::fabs(number))));
    exact.negative = number < 0;
    return compare(exact, limit.exact) <= 0;
}

bool within(const Decimal &apart, const Decimal &a, const Decimal &b, const Rule &rule)
{
    if (rule.absolute && compare(apart, rule.absolute->exact) <= 0)
        return true;
    if (!rule.relative)
        return false;
    Decimal larger = a;
    Decimal other = b;
    larger.negative = other.negative = false;
    if (compare(larger, other) < 0)
        larger = other;
    return compare(apart, multiply(rule.relative->exact, larger)) <= 0;
}

} // namespace

std::optional<Limit> read_limit(std::string_view text)
{
    std::optional<Decimal> number = read_decimal(text);
    if (!number)
        return {};
    const double nearly = to_double(*number);
    return Limit{std::move(*number), nearly};
}

std::optional<Limit> read_tolerance(std::string_view text)
{
    std::optional<Limit> limit = read_limit(text);
    return limit && !limit->exact.negative ? limit : std::nullopt;
}

std::optional<Limit> read_percentage(std::string_view text)
{
    if (!text.ends_with('%'))
        return {};
    std::optional<Limit> part = read_tolerance(text.substr(0, text.size() - 1));
    if (part) {
        part->exact.decimals += 2;
        part->nearly = to_double(part->exact);
    }
    return part;
}

std::optional<Limit> read_part(std::string_view text)
{
    if (text.ends_with('%'))
        return read_percentage(text);
    std::optional<Limit> part = read_tolerance(text);
    return part && part->nearly < 1 ? part : std::nullopt;
}

bool read_rules(std::string_view text, const std::string &name, std::vector<Rule> &rules,
                std::string &error)
{
    size_t number = 1;
    for (size_t begin = 0; begin < text.size(); number++) {
        const size_t end = std::min(text.find('\n', begin), text.size());
        const std::string_view whole = text.substr(begin, end - begin);
        begin = end + 1;
        const std::string_view line = without_comment(whole);
        if (line.empty())
            continue;
        Rule rule;
        rule.origin = name + ':' + std::to_string(number);
        RuleLine reader(line, rule);
        if (!reader.read()) {
            const auto indent = static_cast<size_t>(line.data() - whole.data());
            error = rule.origin + ':' + std::to_string(indent + reader.column()) + ": " +
                    reader.error();
            return false;
        }
        rules.push_back(std::move(rule));
    }
    return true;
}

Rules::Rules(Rule standard, std::vector<Rule> rules, std::vector<std::string> only)
    : standard_(std::move(standard)), rules_(std::move(rules)), only_(std::move(only)),
      used_(rules_.size() + only_.size())
{
    outside_.ignore = true;
    for (std::string &pattern : only_)
        pattern = as_path(pattern);
}

const Rule &Rules::of(const Snapshot &snapshot, const Field &field)
{
    names_ = snapshot.path(field.node, '\n');
    names_ += '\n';
    names_ += field.key;
    const auto known = known_.find(names_);
    if (known != known_.end())
        return *known->second;
    const Rule &rule = match(snapshot, field);
    if (known_.size() == KNOWN_MOST)
        known_.clear();
    known_.emplace(names_, &rule);
    return rule;
}

const Rule &Rules::match(const Snapshot &snapshot, const Field &field)
{
    const Rule *last = &standard_;
    for (size_t i = 0; i < rules_.size(); i++) {
        if (!selects(rules_[i].glob, snapshot, field))
            continue;
        last = &rules_[i];
        used_[i] = true;
    }
    bool chosen = only_.empty();
    for (size_t i = 0; i < only_.size(); i++) {
        if (!selects(only_[i], snapshot, field))
            continue;
        chosen = true;
        used_[rules_.size() + i] = true;
    }
    return chosen ? *last : outside_;
}

std::vector<Rules::Unused> Rules::unused() const
{
    std::vector<Unused> unused;
    for (size_t i = 0; i < used_.size(); i++) {
        if (used_[i])
            continue;
        if (i < rules_.size())
            unused.push_back({rules_[i].origin, rules_[i].glob});
        else
            unused.push_back({"--only", only_[i - rules_.size()]});
    }
    return unused;
}

bool same(const Value &a, const Value &b, const Rule &rule)
{
    if (a.text() == b.text())
        return true;
    if (!a.number() || !b.number())
        return false;
    if (small(a) && small(b)) {
        const double apart = std::fabs(small_number(b) - small_number(a));
        if (rule.absolute && at_most(apart, *rule.absolute))
            return true;
        if (!rule.relative)
            return apart == 0;
    }
    const std::optional<Decimal> first = read_decimal(a.text());
    const std::optional<Decimal> second = read_decimal(b.text());
    if (!first || !second)
        return false;
    Decimal apart = subtract(*first, *second);
    apart.negative = false;
    return apart.zero() || within(apart, *first, *second, rule);
}

bool in_range(const Value &value, const Rule &rule)
{
    if (!value.number())
        return false;
    if (small(value)) {
        const double number = small_number(value);
        // Above the lower end is what is not at most it, or is it.
        const bool above = !rule.low || number > rule.low->nearly ||
                           (number == rule.low->nearly &&
                            compare(*read_decimal(value.text()), rule.low->exact) >= 0);
        return above && (!rule.high || at_most(number, *rule.high));
    }
    const std::optional<Decimal> number = read_decimal(value.text());
    return number && (!rule.low || compare(*number, rule.low->exact) >= 0) &&
           (!rule.high || compare(*number, rule.high->exact) <= 0);
}

} // namespace vordascope
