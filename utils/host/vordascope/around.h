// What stands around captures: what a shell says, and mails.
#pragma once

#include <string_view>

namespace vordascope
{

// Whether a line is of a form that vorda prints and few others write, or may be what has become of
// such a line: a section, a tag, a value, a row of numbers. Words with a colon may be a mail's.
bool may_be_of_vorda(std::string_view line);

// Whether a line that does not end is what a shell asks with, "user@host:~# ", and no part of a
// line of vorda.
bool is_prompt(std::string_view line);

// Returns where the prompt or the mail begins that stands behind the last line of vorda in a text
// without an end line, or the text's size when nothing says that there is one: it begins behind a
// blank line or looks like it.
size_t find_mail(std::string_view text);

} // namespace vordascope
