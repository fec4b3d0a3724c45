// Snapshots as JSON.
//
//     {"vorda_json":1,"file":"a.txt","dev_idx":0,"path_idx":0,"time":12.34,"frame":7,"cut":false,
//      "cfg":{"nr":{"mode":0,"ma_y.lut_i":[0,12]}},"share":{"inttime":8000},"unread":[12]}
//
// Names are vorda's items and keys as printed. A category holds items, an item its fields and
// blocks. Numbers are as printed, so integers are exact whatever their size; nan, inf and a missing
// value are null, and so is a field that is damaged; a list is an array, rows are an array of
// arrays. `time` is null without a time
// line; `frame`, `missed`, `labels` (an object) and `marks` (an array of texts) are there where the
// capture has them; `unread` holds the numbers of the lines that were not understood. Within
// version 1 members are only added.
#pragma once

#include "snapshot.h"

namespace vordascope
{

// Appends a snapshot as one object, without a line end. `file` is the capture that it is of.
void put_json(const Snapshot &snapshot, std::string_view file, std::string &out);

// What becomes of a number.
enum class NumberForm : uint8_t {
    as_printed, // nan, inf and a missing value are null
    javascript, // a string where JavaScript would print it otherwise: "25.00", "nan", ""
};

// Appends the value of a field: a scalar, an array, or an array of arrays.
void put_json(const Snapshot &snapshot, const Field &field, NumberForm form, std::string &out);

void put_json(uint64_t number, std::string &out);

// Appends a text as a string. Bytes above 0x7F become the code points of the same value.
void put_json_string(std::string_view text, std::string &out);

} // namespace vordascope
