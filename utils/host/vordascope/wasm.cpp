// The reader and the model for WebAssembly. The page fills room() with bytes and hands them over:
// first a name to begin_file(), then its content in pieces to feed(), file after file; finish()
// makes of them what `vordascope report` bakes into a page. One instance reads once.
#include "compare.h"
#include "decode.h"
#include "filter.h"
#include "model.h"
#include "reader.h"
#include "response.h"

#include <array>
#include <cstring>
#include <optional>
#include <utility>

namespace
{

vordascope::Model model;
std::optional<vordascope::Reader> reader;
std::vector<std::string> unpacking; // what is to be said of how the page unpacked the file
std::string text;

vordascope::Filter looked_for("");

std::vector<double> values;
std::array<double, 23> measured;

double place(size_t at)
{
    return at == vordascope::NOWHERE ? -1 : static_cast<double>(at);
}

vordascope::Shape shape_of(int32_t columns)
{
    return columns < 0    ? vordascope::Shape::scalar
           : columns == 0 ? vordascope::Shape::list
                          : vordascope::Shape::rows;
}

// A field's values as the page hands them over: how many columns its rows have (0 for a list, -1
// for a scalar), how many values there are, then of each its length, its text and a line end.
struct Handed {
    explicit Handed(const char *&p)
    {
        const auto columns = static_cast<int32_t>(take_word(p));
        values.resize(take_word(p));
        for (vordascope::Value &value : values) {
            const uint32_t size = take_word(p);
            const char *const end = vordascope::read_number(p, value);
            if (end != p + size) {
                const std::string_view printed(p, size);
                const bool boolean = printed == "true" || printed == "false";
                value = {p, size,
                         size == 0 ? vordascope::Kind::empty
                         : boolean ? vordascope::Kind::boolean
                                   : vordascope::Kind::text,
                         0};
            }
            p += size + 1;
        }
        field.count = static_cast<uint32_t>(values.size());
        field.columns = columns > 0 ? static_cast<uint32_t>(columns) : field.count;
        field.shape = shape_of(columns);
    }

    static uint32_t take_word(const char *&p)
    {
        uint32_t word;
        std::memcpy(&word, p, sizeof word);
        p += sizeof word;
        return word;
    }

    vordascope::Field field = {};
    std::vector<vordascope::Value> values;
};

void add_ready()
{
    while (const vordascope::Snapshot *snapshot = reader->next())
        model.add(*snapshot);
}

// What `put` says of the two Handed that stand in room().
template <typename Put>
const char *hold_together(Put put)
{
    const char *p = text.data();
    const Handed a(p);
    const Handed b(p);
    std::string said;
    put(a.values.data(), a.field, b.values.data(), b.field, looked_for.tolerance(), said);
    text = std::move(said);
    return text.data();
}

void end_file()
{
    if (!reader)
        return;
    reader->end();
    add_ready();
    model.note_undone(std::exchange(unpacking, {}));
    model.note_undone(reader->notices());
}

} // namespace

extern "C" {

// The library's streams, on which nothing here writes, would import these from the host.
int __stdio_close(void *)
{
    return 0;
}

size_t __stdio_write(void *, const unsigned char *, size_t size)
{
    return size;
}

int64_t __stdio_seek(void *, int64_t, int)
{
    return -1;
}

// What the linker exports, by these names.

// Room for so many bytes, until the next call.
char *room(size_t size)
{
    text.resize(size);
    return text.data();
}

void begin_file(size_t size)
{
    end_file();
    model.begin_file({text.data(), size});
    reader.emplace();
}

// The page unpacks the file that has begun; `whole` is 0 when it could not to the end.
void unpacked(int whole)
{
    unpacking.emplace_back(whole != 0 ? vordascope::UNPACKED : vordascope::NOT_UNPACKED);
}

void feed(size_t size)
{
    text.copy(reader->room(size), size);
    reader->fill(size);
    add_ready();
}

// The model as JSON, of size() bytes.
const char *finish()
{
    end_file();
    text = model.json();
    return text.data();
}

size_t size()
{
    return text.size();
}

// How two fields differ, in the words of `vordascope diff`, "" where they do not; size() says how long
// that is. Two Handed stand in room().
const char *differ()
{
    return hold_together(vordascope::put_difference);
}

// Each value of two lists or grids that differs, as put_every() has it, handed over as to differ().
const char *every()
{
    return hold_together(vordascope::put_every);
}

// Takes what is looked for, of `size` bytes in room(), which differ() and find() go by from now on.
// Returns why a tolerance in it cannot be read, of size() bytes.
const char *filter(size_t size)
{
    looked_for = vordascope::Filter({text.data(), size});
    text = looked_for.error();
    return text.data();
}

// Which fields are looked for, a line each as Filter::put_found() has it, of size() bytes. Of the
// fields there stand in room(), of `size` bytes, the shape as a Handed has it, how many values there
// are, how many names, and then each of these and what is said of the field with a line end behind.
const char *find(size_t size)
{
    const char *p = text.data();
    const char *const end = p + size;
    const auto take_line = [&p, end] {
        const char *const begin = p;
        p = static_cast<const char *>(std::memchr(p, '\n', static_cast<size_t>(end - p)));
        return std::string_view(begin, static_cast<size_t>(p++ - begin));
    };
    std::vector<vordascope::Findable> fields;
    while (p < end) {
        const auto columns = static_cast<int32_t>(Handed::take_word(p));
        const uint32_t count = Handed::take_word(p);
        vordascope::Findable &field = fields.emplace_back();
        field.shape = shape_of(columns);
        field.count = count;
        field.columns = columns > 0 ? static_cast<uint32_t>(columns) : count;
        field.names.resize(Handed::take_word(p));
        for (std::string_view &name : field.names)
            name = take_line();
        field.about = take_line();
    }
    std::string found;
    looked_for.put_found(fields, found);
    text = std::move(found);
    return text.data();
}

// Room for so many values, one a snapshot, for measure(); NaN where there is none.
double *numbers(size_t count)
{
    values.resize(count);
    return values.data();
}

// Measures them; `before` and `unit` are NaN where none is given. Returns the members of Response
// as response.js names them; a place that is nowhere is -1.
const double *measure(double band, double before, double unit)
{
    const vordascope::Response r = vordascope::measure(values, {band, before, unit});
    measured = {static_cast<double>(r.kind),
                static_cast<double>(r.count),
                r.low,
                r.high,
                r.before,
                static_cast<double>(r.before_count),
                r.after,
                r.scale,
                r.band,
                r.noise,
                r.spread,
                place(r.end),
                place(r.departure),
                place(r.rise_begin),
                place(r.rise_end),
                place(r.settled),
                static_cast<double>(r.strays),
                place(r.peak.at),
                r.peak.part,
                place(r.overshoot.at),
                r.overshoot.part,
                place(r.undershoot.at),
                r.undershoot.part};
    return measured.data();
}
}
