// Printing what is selected of a category.
#include "category.h"

#include "print.h"

int print_items(const char *title, std::span<const item> items, std::span<const uint8_t> order,
                const DipPathCtx *ctx, const char *entry)
{
    const int status = for_selected(title, items, order, ctx, entry, [ctx](const item &row) {
        row.print(*ctx);
        return 0;
    });
    print_flush();
    return status;
}

int print_sections(const char *title, std::span<const item> items, std::span<const uint8_t> order,
                   const DipPathCtx *ctx, const char *entry)
{
    const int status = for_selected(title, items, order, ctx, entry, [title, ctx](const item &row) {
        print("=== %s.%s ===\n", title, row.name);
        row.print(*ctx);
        return 0;
    });
    print_flush();
    return status;
}
