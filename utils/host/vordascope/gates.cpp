// Files of rules and of results.
#include "gates.h"

#include "select.h"
#include "shown.h"

#include <algorithm>
#include <ctime>
#include <unistd.h>

namespace vordascope
{

bool read_rules_file(const std::string &file, std::vector<Rule> &rules)
{
    std::string text;
    std::string error;
    if (!read_file(file, text))
        return false;
    if (read_rules(text, shown(file), rules, error))
        return true;
    complain(error);
    return false;
}

bool any_ranged(const std::vector<Rule> &rules)
{
    if (std::any_of(rules.begin(), rules.end(), [](const Rule &rule) { return rule.ranged(); }))
        return true;
    complain("no rule has a range, which is all that a capture alone can be held against");
    return false;
}

bool all_used(const Rules &rules, const Snapshot &near, bool warn)
{
    const std::vector<Rules::Unused> unused = rules.unused();
    for (const auto &[origin, glob] : unused) {
        std::string message = warn ? "warning: " : "";
        message.append(origin).append(": ").append(glob).append(" selects nothing. ");
        complain(message + suggest(near, glob));
    }
    return unused.empty() || warn;
}

bool write_junit(const Gate &gate, const std::vector<Label> &labels, const std::string &file)
{
    const time_t now = time(nullptr);
    struct tm utc = {};
    gmtime_r(&now, &utc);
    char timestamp[32];
    strftime(timestamp, sizeof(timestamp), "%Y-%m-%dT%H:%M:%S", &utc);
    char host[256] = "";
    if (gethostname(host, sizeof(host) - 1) != 0 || host[0] == '\0')
        snprintf(host, sizeof(host), "localhost");

    std::string text;
    gate.put_junit(timestamp, host, labels, text);
    Output output(file);
    output.write(text);
    return output.close();
}

} // namespace vordascope
