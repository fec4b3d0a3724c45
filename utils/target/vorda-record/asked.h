// What signals ask of the recorder.
#pragma once

#include <csignal>

// Set by the handlers.
struct Asked {
    volatile sig_atomic_t stop;  // the signal that ends the recording, or 0
    volatile sig_atomic_t now;   // SIGUSR1 came: a whole snapshot, or what the ring holds
    volatile sig_atomic_t abort; // the recording should have ended, but its reader takes nothing
};
extern Asked asked;

// From now on signals take effect between two snapshots, and a region that goes away ends the
// process with a message. One who blocks is interrupted, again and again once it shall end.
void heed_signals();

// Ends the process by that signal.
[[noreturn]] void end_by(int signal);
