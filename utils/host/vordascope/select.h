// Choosing fields by name.
#pragma once

#include "snapshot.h"

namespace vordascope
{

// Whether a text matches a pattern, in which `*` stands for any characters and `?` for one.
// Everything else stands for itself, brackets too: keys hold them.
bool matches(std::string_view text, std::string_view pattern);

// Whether a pattern selects a field: by its path, or by that of its category, item or block, which
// selects everything in there.
bool selects(std::string_view pattern, const Snapshot &snapshot, const Field &field);

// The path of a name that the page or a comparison shows, where blocks stand apart:
// "stat.awb.Rtx ROI / Channel information.g0" has a dot between them. A path stays as it is.
std::string as_path(std::string_view name);

// What somebody who asked in vain for `wanted` may have meant, for the end of a message: the paths
// that hold it or that a few slips lead to, the nearest first, or else the items that there are.
std::string suggest(const Snapshot &snapshot, std::string_view wanted);

} // namespace vordascope
