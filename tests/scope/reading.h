// What the tests of vordascope share: snapshots as words that a row of a table can hold.
#pragma once

#include "reader.h"

#include <string>

// The index line of the texts that the tests are made of.
const std::string INDEX = "dev_idx = 0, path_idx = 1\n";

// A value as JSON would have it: 5, [1,2], [[1,2],[3,4]], true; a text in quotes; - for nothing;
// an integer of more than 64 bits with "(inexact)" behind it.
std::string describe(const vordascope::Snapshot &snapshot, const vordascope::Field &field);

// The fields of a snapshot, a line each: "path = value", and then what was not read: "? line: why".
std::string describe(const vordascope::Snapshot &snapshot);

// Reads a text as a whole and describes its snapshots, each from the second on after a line
// "-- dev_idx path_idx". Expects that each is written again as it was, and that reading the text in
// pieces gives the same.
std::string read_all(const std::string &text);
