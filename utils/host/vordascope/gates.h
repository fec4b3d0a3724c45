// What the verbs that hold captures against rules share.
#pragma once

#include "captures.h"
#include "gate.h"

namespace vordascope
{

// Appends the rules of a file. Returns whether they could be read; if not, a message has been
// printed.
bool read_rules_file(const std::string &file, std::vector<Rule> &rules);

// Whether one of the rules has a range; if not, a message has been printed.
bool any_ranged(const std::vector<Rule> &rules);

// Says which rules have matched no field, and what is near to them in a snapshot: they are slips,
// most likely, that would let everything pass. Returns whether there is none, or `warn` makes that
// no trouble.
bool all_used(const Rules &rules, const Snapshot &near, bool warn);

// Writes the file for CI servers. Returns whether that could be done; if not, a message has been
// printed.
bool write_junit(const Gate &gate, const std::vector<Label> &labels, const std::string &file);

} // namespace vordascope
