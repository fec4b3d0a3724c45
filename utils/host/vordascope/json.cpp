// Writing JSON.
#include "json.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <iterator>

namespace vordascope
{

namespace
{

// Whether a character stands for itself in a string.
constexpr auto PLAIN = [] {
    std::array<bool, 256> plain = {};
    for (unsigned char c = ' '; c <= '~'; c++)
        plain[c] = c != '"' && c != '\\';
    return plain;
}();

bool plain(char c)
{
    return PLAIN[static_cast<unsigned char>(c)];
}

void put_json_number(uint64_t number, std::string &out)
{
    char digits[20];
    out.append(digits, std::to_chars(digits, std::end(digits), number).ptr);
}

constexpr size_t WORD = 8;

// Writes a value that is no text, which takes at most its own length or that of "null". Returns the
// end. Beyond it a word of `out` may change; `text_end` is where the text of the value ends.
char *put_short(char *out, const Value &value, const char *text_end)
{
    if (value.kind == Kind::not_finite || value.kind == Kind::empty)
        return std::copy_n("null", 4, out);
    // Most numbers are short, and to copy a word costs less than to look how short.
    if (value.size <= WORD && text_end - value.begin >= ptrdiff_t{WORD}) {
        memcpy(out, value.begin, WORD);
        return out + value.size;
    }
    return std::copy_n(value.begin, value.size, out);
}

} // namespace

void put_json_string(std::string_view text, std::string &out)
{
    constexpr char HEX[] = "0123456789abcdef";
    out += '"';
    for (auto at = text.begin(); at != text.end();) {
        const auto end = std::find_if_not(at, text.end(), plain);
        out.append(at, end);
        at = end;
        if (at == text.end())
            break;
        const auto byte = static_cast<unsigned char>(*at++);
        if (byte == '"' || byte == '\\') {
            out += '\\';
            out += static_cast<char>(byte);
        } else if (byte > 0x7F) {
            out += static_cast<char>(0xC0 | byte >> 6);
            out += static_cast<char>(0x80 | (byte & 0x3F));
        } else {
            out += "\\u00";
            out += HEX[byte >> 4];
            out += HEX[byte & 0xF];
        }
    }
    out += '"';
}

void put_json(const Snapshot &snapshot, const Field &field, std::string &out)
{
    const Value *value = snapshot.begin(field);
    const Value *const end = value + field.count;
    if (value->kind == Kind::text) {
        put_json_string(value->text(), out);
        return;
    }

    // The values stand one after another in the text, so that none takes more than its part of it.
    const auto span = static_cast<size_t>(end[-1].begin + end[-1].size - value->begin);
    const size_t before = out.size();
    out.resize(before + span + field.count * sizeof("null],[") + sizeof("[[]]") + WORD);
    char *p = out.data() + before;
    const char *const text_end = snapshot.text.data() + snapshot.text.size();
    if (field.shape == Shape::scalar) {
        p = put_short(p, *value, text_end);
    } else {
        const bool rows = field.shape == Shape::rows;
        *p++ = '[';
        while (value != end) {
            const Value *const row_end = value + std::min<ptrdiff_t>(field.columns, end - value);
            if (rows)
                *p++ = '[';
            for (; value != row_end; value++) {
                p = put_short(p, *value, text_end);
                *p++ = ',';
            }
            p[-1] = rows ? ']' : ',';
            if (rows)
                *p++ = ',';
        }
        p[-1] = ']';
    }
    out.resize(static_cast<size_t>(p - out.data()));
}

void put_json(const Snapshot &snapshot, std::string &out)
{
    out += R"({"vorda_json":1,"dev_idx":)";
    put_json_number(snapshot.dev_idx, out);
    out += R"(,"path_idx":)";
    put_json_number(snapshot.path_idx, out);
    out += R"(,"time":)";
    out += snapshot.timed ? snapshot.time.text() : "null";
    out += R"(,"cut":)";
    out += snapshot.cut ? "true" : "false";

    // The members of a node that are still to come.
    struct Rest {
        const Member *next;
        const Member *end;
    };
    std::vector<Rest> open;
    const auto enter = [&snapshot, &open](NodeIndex index) {
        const std::vector<Member> &members = snapshot.node(index).members;
        open.push_back({members.data(), members.data() + members.size()});
    };
    enter(0);
    out += ',';
    while (!open.empty()) {
        if (open.back().next == open.back().end) {
            open.pop_back();
            if (out.back() == ',')
                out.pop_back();
            out += open.empty() ? "," : "},";
            continue;
        }
        const Member member = *open.back().next++;
        if (member.is_node) {
            put_json_string(snapshot.node(member.index).name(), out);
            out += ":{";
            enter(member.index);
        } else {
            const Field &field = snapshot.fields[member.index];
            put_json_string(field.key, out);
            out += ':';
            put_json(snapshot, field, out);
            out += ',';
        }
    }

    out += R"("unread":[)";
    for (const Unread &line : snapshot.unread) {
        put_json_number(line.line, out);
        out += ',';
    }
    if (!snapshot.unread.empty())
        out.pop_back();
    out += "]}";
}

} // namespace vordascope
