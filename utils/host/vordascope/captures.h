// What the verbs share: reading captures to their end, and what is said of them.
#pragma once

#include "stream.h"

#include <optional>

namespace vordascope
{

// Exit statuses. Verbs that answer a question use the first two.
constexpr int YES = 0;
constexpr int NO = 1;
constexpr int TROUBLE = 2;

// "1 line", "2 lines"
std::string plural(uint64_t count, const char *what);

// A label as it is given, "KEY=VALUE". No value where KEY is none.
std::optional<Label> read_label(std::string_view text);

// Those that have been checked.
std::vector<Label> read_labels(const std::vector<std::string> &texts);

// Whether a capture, standard input perhaps, is the regular file of that path. Devices may well be
// named twice.
bool same_file(const std::string &capture, const std::string &path);

// Says that a capture was not read in full, for verbs whose output has no place for it.
void warn_of_unread(const Input &input, uint64_t unread);

// Says that a capture holds no snapshot. Returns TROUBLE.
int no_snapshot(const Input &input);

// Reads a capture to its end: use(snapshot) takes each snapshot, the text outside of any included,
// and returns whether to go on. Returns TROUBLE when the capture could not be read or holds no
// snapshot, which has been told.
template <typename Use>
int read_all(Input &input, Use use)
{
    uint64_t snapshots = 0;
    while (const Snapshot *snapshot = input.next()) {
        snapshots += snapshot->indexed;
        if (!use(*snapshot))
            return YES;
    }
    if (input.failed())
        return TROUBLE;
    return snapshots > 0 ? YES : no_snapshot(input);
}

} // namespace vordascope
