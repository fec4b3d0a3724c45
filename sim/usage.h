// How the programs of this folder say that they were called wrongly.
#pragma once

#include <cstdio>

inline constexpr int BAD_USAGE = 2;

// Says what is wrong and where help is; returns the status to end with.
inline int bad_usage(const char *program, const char *message, const char *what = "")
{
    fprintf(stderr, "%s: %s%s\nTry '%s --help'.\n", program, message, what, program);
    return BAD_USAGE;
}

// Says what is wrong with a file; returns the status to end with.
inline int bad_file(const char *program, const char *file, const char *why)
{
    fprintf(stderr, "%s: %s: %s\n", program, file, why);
    return BAD_USAGE;
}
