// The reader and the model for WebAssembly. The page fills room() with bytes and hands them over:
// first a name to begin_file(), then its content in pieces to feed(), file after file; finish()
// makes of them what `vordascope report` bakes into a page. One instance reads once.
#include "model.h"
#include "reader.h"

#include <optional>

namespace
{

vordascope::Model model;
std::optional<vordascope::Reader> reader;
std::string text;

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
    text = model.json(vordascope::SNAPSHOTS_SHOWN);
    return text.data();
}

size_t size()
{
    return text.size();
}
}
