// Printing what is selected of a category.
#include "category.h"

int print_items(Text &text, const char *title, item_form form, std::span<const item> items,
                std::span<const uint8_t> order, const DipPathCtx *ctx, const char *entry)
{
    return for_selected(title, items, order, ctx, entry, [&](const item &row) {
        if (form == item_form::section)
            text.put("=== ", title, ".", row.name, " ===\n");
        row.print(text, *ctx);
        return 0;
    });
}
