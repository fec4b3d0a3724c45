// The stand-in for the shared-region driver: what its users set in the environment.
#pragma once

#include <fcntl.h>
#include <string>

// The file that holds the region. Empty: the region does not exist yet. Any other size than the
// region's is refused with a message. Unset: the system's own /dev/sr is used.
inline constexpr char SR_REGION_ENV[] = "SR_REGION";

// Steps that fail, as "step:errno" separated by commas, "query:5,mmap:12" say. The steps are open,
// query, alloc, mmap and complete. A failing alloc with EEXIST creates the region all the same, as
// if another process had been faster.
inline constexpr char SR_FAIL_ENV[] = "SR_FAIL";

// The library's name for LD_PRELOAD, which is split at blanks and colons. Where the name has one,
// it becomes a descriptor, which the programs that are started inherit.
inline std::string preloadable(const std::string &library)
{
    if (library.find_first_of(" :\t\n") == std::string::npos)
        return library;
    return "/proc/self/fd/" + std::to_string(open(library.c_str(), O_RDONLY));
}

// Called at the beginning of each step, for tests that link the stand-in in; nobody looks as long
// as it is nullptr. The step is "open FLAGS", "query", "alloc SIZE", "map SIZE PROTECTION OFFSET",
// "complete", "close" or "unmap SIZE".
extern void (*sr_observer)(const char *step);
