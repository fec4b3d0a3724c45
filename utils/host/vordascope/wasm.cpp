// The reader and the model for WebAssembly. The page fills room() with bytes and hands them over:
// first a name to begin_file(), then its content in pieces to feed(), file after file; finish()
// makes of them what `vordascope report` bakes into a page. One instance reads once.
#include "model.h"
#include "reader.h"
#include "response.h"

#include <array>
#include <optional>

namespace
{

vordascope::Model model;
std::optional<vordascope::Reader> reader;
std::string text;

std::vector<double> values;
std::array<double, 23> measured;

double place(size_t at)
{
    return at == vordascope::NOWHERE ? -1 : static_cast<double>(at);
}

void add_ready()
{
    while (const vordascope::Snapshot *snapshot = reader->next())
        model.add(*snapshot);
}

void end_file()
{
    if (!reader)
        return;
    reader->end();
    add_ready();
}

} // namespace

// What the linker exports, by these names.
extern "C" {

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
