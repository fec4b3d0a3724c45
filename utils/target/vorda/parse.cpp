// The registry of categories: registration, dispatch of an entry, listings.
#include "vorda.h"

#include "stdout_text.h"

#include <cstdio>
#include <cstring>

namespace
{

VordaCallback cb_table[64];
int cb_regd;

// The category of that title, or nullptr after a message.
const VordaCallback *find_category(const char *title)
{
    for (const VordaCallback &cb : parse_categories())
        if (strcmp(cb.title, title) == 0)
            return &cb;
    fprintf(stderr, "Unknown category `%s'.\n", title);
    return nullptr;
}

} // namespace

int parse_rgtr(const VordaCallback *callback)
{
    if (cb_regd >= static_cast<int>(std::size(cb_table)) || callback == nullptr ||
        callback->title == nullptr || callback->print_entry == nullptr ||
        callback->print_help == nullptr)
        return 1;
    cb_table[cb_regd++] = *callback;
    return 0;
}

std::span<const VordaCallback> parse_categories()
{
    return std::span(cb_table, static_cast<size_t>(cb_regd));
}

int parse_entry(const DipPathCtx *data, const char *str)
{
    if (data == nullptr || str == nullptr) {
        fputs("Invalid attributes.\n", stderr);
        return 1;
    }

    StdoutText text;
    if (strcmp(str, "all") == 0) {
        for (const VordaCallback &cb : parse_categories())
            cb.print_entry(text, data, "");
        return 0;
    }

    char category[256];
    snprintf(category, sizeof(category), "%s", str);
    const char *entry = "";
    if (char *dot = strchr(category, '.')) {
        *dot = '\0';
        entry = dot + 1;
    }
    const VordaCallback *cb = find_category(category);
    return cb != nullptr ? cb->print_entry(text, data, entry) : 1;
}

int parse_help(const char *pname, const char *title)
{
    if (pname == nullptr) {
        fputs("Invalid attributes.\n", stderr);
        return 1;
    }

    if (title != nullptr && *title != '\0') {
        const VordaCallback *cb = find_category(title);
        if (cb == nullptr)
            return 1;
        cb->print_help();
        return 0;
    }

    StdoutText text;
    text.put("Available categories:\n");
    for (const VordaCallback &cb : parse_categories())
        text.put("- ", cb.title, ": ", cb.comments != nullptr ? cb.comments : "", ".\n");
    text.put("Use `", pname,
             " list <category>' to list available entries in the specific category.\n");
    return 0;
}
