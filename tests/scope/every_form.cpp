// All that is made of a text, whatever it is.
#include "every_form.h"

#include "compare.h"
#include "gate.h"
#include "json.h"
#include "learn.h"
#include "reader.h"
#include "series.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

using namespace vordascope;

namespace
{

void require(bool condition)
{
    if (!condition)
        abort();
}

// What is made of a snapshot, and that it holds what it should.
void use(const Snapshot &snapshot, std::string &out)
{
    std::string again;
    write(snapshot, again);
    require(again == snapshot.text);
    put_json(snapshot, "file", out);

    Rules all({}, {}, {});
    const Comparison same = compare(snapshot, snapshot, all, "a", "b");
    put_report(same, "a", "b", out);
    require(same.same() && same.compared == snapshot.fields.size());
    Gate gate("a");
    gate.add("b", same);
    gate.put_junit("2026-01-02T03:04:05", "host", {{"site", "roof"}}, out);

    // What is learned of a snapshot can be read, and holds for it.
    Learner learner;
    learner.add(snapshot);
    learner.add(snapshot);
    std::string text;
    learner.put_rules({}, text);
    std::vector<Rule> learned;
    require(read_rules(text, "learned", learned, again));
    Rules rules({}, std::move(learned), {});
    require(compare(snapshot, snapshot, rules, "a", "b").same() && rules.unused().empty());
    Series series;
    if (series.begin(snapshot, {"*", "time"}, again)) {
        series.put_header(out);
        series.put_row(snapshot, "file", out);
    }
}

} // namespace

void make_every_form(const uint8_t *data, size_t size)
{
    // On the heap and without a terminating zero, where the sanitizer sees each byte beyond it.
    const std::vector<char> text(data, data + size);
    std::string whole;
    size_t used = 0;
    bool added = false;
    Reader reader(std::string_view(text.data(), text.size()));
    while (const Snapshot *snapshot = reader.next()) {
        used += snapshot->text.size();
        added = added || snapshot->added_to;
        use(*snapshot, whole);
    }
    require(added || !reader.notices().empty() || used == size);

    std::string pieces;
    Reader piecewise;
    const size_t piece = 1 + size % 61;
    for (size_t at = 0; !piecewise.ended(); at += std::min(piece, size - at)) {
        const size_t next = std::min(piece, size - at);
        if (next == 0) {
            piecewise.end();
        } else {
            memcpy(piecewise.room(next), text.data() + at, next);
            piecewise.fill(next);
        }
        while (const Snapshot *snapshot = piecewise.next())
            use(*snapshot, pieces);
    }
    require(pieces == whole);
}
