// How a text changed, line by line.
#pragma once

#include "text.h"

#include <string_view>

// Writes what became of the text of a section: the line that names it, then each run of lines that
// changed, below "@ FIRST-LAST HEADINGS". Lines count from the one below that which names the
// section; the headings are those above the run, "[Rtx RGL] g0 channel:". A text of another number
// of lines is written whole. Neither text is empty.
void put_changes(Text &text, std::string_view before, std::string_view now);
