// Messages about captures.
#include "captures.h"

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

namespace vordascope
{

std::string plural(uint64_t count, const char *what)
{
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

std::optional<Label> read_label(std::string_view text)
{
    const size_t equals = text.find('=');
    const std::string_view key = text.substr(0, equals);
    const bool named = !key.empty() && (is(key[0], LETTER) || key[0] == '_') &&
                       std::all_of(key.begin(), key.end(), [](char c) {
                           return is(c, LETTER | DIGIT) || c == '_' || c == '.' || c == '-';
                       });
    if (equals == std::string_view::npos || !named)
        return {};
    return Label{std::string(key), std::string(text.substr(equals + 1))};
}

std::vector<Label> read_labels(const std::vector<std::string> &texts)
{
    std::vector<Label> labels;
    labels.reserve(texts.size());
    for (const std::string &text : texts)
        labels.push_back(*read_label(text));
    return labels;
}

bool same_file(const std::string &capture, const std::string &path)
{
    struct stat of_capture;
    struct stat of_path;
    const bool there = is_standard_input(capture) ? fstat(STDIN_FILENO, &of_capture) == 0
                                                  : stat(capture.c_str(), &of_capture) == 0;
    return there && stat(path.c_str(), &of_path) == 0 && S_ISREG(of_path.st_mode) &&
           of_capture.st_dev == of_path.st_dev && of_capture.st_ino == of_path.st_ino;
}

void warn_of_unread(const Input &input, uint64_t unread)
{
    if (unread > 0)
        complain(input.name() + ": " + plural(unread, "line") +
                 " not understood; see vordascope check");
}

int no_snapshot(const Input &input)
{
    complain(input.name() + ": no snapshot; it would begin with a line "
                            "\"dev_idx = ..., path_idx = ...\"");
    return TROUBLE;
}

} // namespace vordascope
