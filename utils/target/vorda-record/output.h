// Writing a recording to standard output, snapshot by snapshot.
#pragma once

#include <initializer_list>
#include <string_view>

// Writes pieces that belong together, for as long as the reader takes. Returns 0 or an error
// number. What a file received of them before an error is taken off it, so that it ends with what
// was written whole; what a pipe received stays. EINTR: the recording was to end, and the reader
// took nothing for too long.
int write_whole(std::initializer_list<std::string_view> pieces);
