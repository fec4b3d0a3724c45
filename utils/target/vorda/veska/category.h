// What all categories share: the item table, the selection of items and the item listing.
#pragma once

#include "dip_ctx_types.h"
#include "text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>
#include <string_view>

// One row of a category's item table, in the order of the listing. A category whose items print in
// another way has rows of its own type, with the same `name` and `comments`.
struct item {
    const char *name;     // lower case, unique within the category
    const char *comments; // one line, without its full stop; output, misspelt words too
    void (*print)(Text &text, const DipPathCtx &ctx);
};

// The part of a record to which members lead, one after another.
template <typename Record>
const Record &part_of(const Record &record)
{
    return record;
}
template <typename Record, typename Member, typename... More>
const auto &part_of(const Record &record, Member Record::*member, More... more)
{
    return part_of(record.*member, more...);
}

// The `print` of an item that prints one part of the DIP's context: print(text, part). The members
// lead to the part, from DipCtx on.
template <auto print, auto... members>
void part(Text &text, const DipPathCtx &ctx)
{
    print(text, part_of(ctx.dip_ctx, members...));
}

// The order in which a category prints all of its items: their places in the item table. A name
// that the table does not hold does not compile.
template <typename Row, size_t n, typename... Name>
consteval std::array<uint8_t, sizeof...(Name)> print_order(const Row (&items)[n], Name... name)
{
    const auto place = [&items](std::string_view wanted) {
        uint8_t i = 0;
        while (items[i].name != wanted)
            i++;
        return i;
    };
    return {place(name)...};
}

// The table's own order.
template <typename Row, size_t n>
consteval std::array<uint8_t, n> table_order(const Row (&)[n])
{
    std::array<uint8_t, n> order = {};
    for (size_t i = 0; i < n; i++)
        order[i] = static_cast<uint8_t>(i);
    return order;
}

// Calls print(row) for the item that `entry` names exactly or, when it is nullptr or empty, for
// every item of `order`, up to the first that returns non-zero. Returns what the last call
// returned, or 1 after a message on standard error when there is no snapshot or no such item.
template <typename Row, typename Print>
int for_selected(const char *title, std::span<const Row> items, std::span<const uint8_t> order,
                 const DipPathCtx *ctx, const char *entry, Print print)
{
    if (ctx == nullptr) {
        fputs("Invalid attributes.\n", stderr);
        return 1;
    }

    if (entry == nullptr || *entry == '\0') {
        int status = 0;
        for (auto place = order.begin(); status == 0 && place != order.end(); ++place)
            status = print(items[*place]);
        return status;
    }

    for (const Row &row : items)
        if (strcmp(row.name, entry) == 0)
            return print(row);
    fprintf(stderr, "Unknown entry %s.%s.\n", title, entry);
    return 1;
}

// Whether the items of a category print as they are or as sections, each under a header line.
enum class item_form { plain, section };

// The name of the item at a place of `order`, nullptr behind the last: section_at of a
// VordaCallback.
template <typename Row>
const char *name_at(std::span<const Row> items, std::span<const uint8_t> order, size_t place)
{
    return place < order.size() ? items[order[place]].name : nullptr;
}

// Writes what `entry` selects of a category whose items cannot fail: print_entry of a
// VordaCallback.
int print_items(Text &text, const char *title, item_form form, std::span<const item> items,
                std::span<const uint8_t> order, const DipPathCtx *ctx, const char *entry);

// Lists the items of a category on standard error: print_help of a VordaCallback.
template <typename Row>
void list_items(const char *title, std::span<const Row> items)
{
    size_t width = 0;
    for (const Row &row : items)
        width = std::max(width, strlen(row.name));

    fputs("Available items:\n", stderr);
    fprintf(stderr, " - %-*s: Print every item.\n", static_cast<int>(width + strlen(title) + 1),
            title);
    for (const Row &row : items)
        fprintf(stderr, " - %s.%-*s: %s.\n", title, static_cast<int>(width), row.name,
                row.comments);
}
