// The emulated cameras, which the tests of the box share: each is switched on by its first line of
// shell and off at the end of the tests.
#pragma once

#include <ostream>
#include <string>

// What a line of shell left behind.
struct Answer {
    std::string out;
    std::string err;
    std::string log;    // what the system log got: "local7.err vorda: message" and so on
    std::string driver; // what the driver was asked: "vorda: open = 0" and so on
    int status = -1;
};

// Shown by the assertions that fail on an answer.
std::ostream &operator<<(std::ostream &stream, const Answer &answer);

// Runs a line of shell in the emulated camera. When the machine dies, its console has been shown on
// standard error, and the process ends.
Answer box(const std::string &line);

// The same in a camera with one processor, whose clock counts instructions: the load of the
// workstation changes nothing in it.
Answer one_core_box(const std::string &line);
