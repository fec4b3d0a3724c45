// A text that goes to standard output.
#pragma once

#include "text.h"

// What is written gathers in the object and leaves it when there is no more room and when it goes
// out of scope. Writing goes on after a signal and after a short write. After the first write that
// fails nothing more is written as long as the process lives, so that what has arrived is always a
// beginning of the text.
class StdoutText : public Text
{
public:
    StdoutText();
    ~StdoutText();

private:
    static void flush(Text &text);

    char buffer_[4096]; // a pipe takes as much in one piece
};
