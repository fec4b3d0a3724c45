#include "reading.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <set>

using namespace vordascope;

namespace
{

std::string in_words(const Value &value)
{
    if (value.kind == Kind::empty)
        return "-";
    const std::string text(value.text());
    if (value.kind == Kind::decimal && text.find('.') == std::string::npos)
        return text + " (inexact)";
    return value.kind == Kind::text ? '"' + text + '"' : text;
}

// Expects what holds of any snapshot, and appends its description.
void check_snapshot(const Snapshot &snapshot, std::string &result)
{
    std::string written;
    write(snapshot, written);
    EXPECT_TRUE(written == snapshot.text) << snapshot.number;

    std::set<std::string> paths;
    size_t next = 0;
    for (const Field &field : snapshot.fields) {
        const std::string path = snapshot.path(field);
        EXPECT_TRUE(paths.insert(path).second) << path;
        EXPECT_EQ(field.first, next) << path;
        next += field.count;
        // Another field can only be in the way when a key looks like an element of another.
        if (path.find('[') == std::string::npos) {
            const Place place = find(snapshot, path);
            EXPECT_TRUE(place.field == &field && place.count == field.count) << path;
        }
    }
    EXPECT_EQ(next, snapshot.values.size());

    if (snapshot.number > 1)
        result += "-- " + std::to_string(snapshot.dev_idx) + " " +
                  std::to_string(snapshot.path_idx) + "\n";
    result += describe(snapshot);
}

} // namespace

std::string describe(const Snapshot &snapshot, const Field &field)
{
    const Value *const values = snapshot.begin(field);
    if (snapshot.damaged(field)) {
        EXPECT_TRUE(std::all_of(values, values + field.count,
                                [](const Value &value) { return value.kind == Kind::damaged; }));
        return "damaged";
    }
    if (field.shape == Shape::scalar)
        return in_words(values[0]);
    std::string result = "[";
    for (uint32_t i = 0; i < field.count; i++) {
        const bool row = field.shape == Shape::rows && i % field.columns == 0;
        if (i > 0)
            result += row ? "],[" : ",";
        else if (row)
            result += "[";
        result += in_words(values[i]);
    }
    return result + (field.shape == Shape::rows ? "]]" : "]");
}

std::string describe(const Snapshot &snapshot)
{
    std::string result;
    if (snapshot.timed)
        result += "time " + std::string(snapshot.time.text()) + "\n";
    if (snapshot.frame)
        result += "frame " + std::to_string(*snapshot.frame) + "\n";
    if (snapshot.missed != 0)
        result += "missed " + std::to_string(snapshot.missed) + "\n";
    for (const Label &label : snapshot.labels)
        result += "label " + label.key + ": " + label.value + "\n";
    for (const std::string_view mark : snapshot.marks)
        result.append("mark ").append(mark) += '\n';
    for (const Field &field : snapshot.fields)
        result += snapshot.path(field) + " = " + describe(snapshot, field) + "\n";
    for (const Unread &line : snapshot.unread)
        result += "? " + std::to_string(line.line) + ": " + line.why + "\n";
    return result;
}

std::string read_all(const std::string &text)
{
    std::string whole;
    std::string again;
    Reader reader{std::string_view(text)};
    bool added = false;
    while (const Snapshot *snapshot = reader.next()) {
        again += snapshot->text;
        added = added || snapshot->added_to;
        check_snapshot(*snapshot, whole);
    }
    EXPECT_TRUE(added || !reader.notices().empty() || again == text);

    for (const size_t piece : {size_t{1}, size_t{7}, size_t{4096}}) {
        if (text.size() / piece > 10000)
            continue;
        std::string pieces;
        std::string of_copy;
        Snapshot copy; // outlives the text that it was read from
        Reader piecewise;
        for (size_t at = 0;;) {
            while (const Snapshot *snapshot = piecewise.next()) {
                check_snapshot(*snapshot, pieces);
                copy = *snapshot;
                of_copy = describe(copy);
            }
            if (piecewise.ended())
                break;
            const size_t size = std::min(piece, text.size() - at);
            memcpy(piecewise.room(size + 1), text.data() + at, size);
            piecewise.fill(size);
            at += size;
            if (at == text.size())
                piecewise.end();
        }
        EXPECT_TRUE(pieces == whole) << piece;
        EXPECT_EQ(describe(copy), of_copy);
    }
    return whole;
}
