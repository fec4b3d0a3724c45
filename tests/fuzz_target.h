// One input of the fuzzer: command line and snapshot from bytes.
#pragma once

#include <string>

// The bytes hold, in this order: the number of words and each word up to a NUL; a byte that fills
// the snapshot; changes of it, a 24-bit offset and a 32-bit value each. Runs what the words ask for
// over the snapshot and returns the exit status.
int run_fuzz_input(const std::string &bytes);
