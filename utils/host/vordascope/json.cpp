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

// Whether JavaScript prints a number as it stands: no digit that it would leave out, none that a
// double does not hold.
bool survives_javascript(const Value &value)
{
    constexpr size_t DIGITS_MAX = 15;
    constexpr size_t DECIMALS_MAX = 6;
    std::string_view text = value.text();
    if (text == "-0")
        return false;
    take(text, "-");
    const size_t point = text.find('.');
    if (point == std::string_view::npos)
        return text.size() <= DIGITS_MAX;
    return text.back() != '0' && text.size() - point - 1 <= DECIMALS_MAX &&
           text.size() - 1 <= DIGITS_MAX;
}

constexpr size_t WORD = 8;

// Writes a value that is no text, which takes at most its own length and two quotes, or that of
// "null". Returns the end. Beyond it a word of `out` may change; `text_end` is where the text of
// the value ends.
char *put_short(char *out, const Value &value, NumberForm form, const char *text_end)
{
    const bool missing = value.kind == Kind::not_finite || value.kind == Kind::empty;
    if (form == NumberForm::javascript) {
        if (missing || (value.number() && !survives_javascript(value))) {
            *out++ = '"';
            out = std::copy_n(value.begin, value.size, out);
            *out++ = '"';
            return out;
        }
    } else if (missing) {
        return std::copy_n("null", 4, out);
    }
    // Most numbers are short, and to copy a word costs less than to look how short.
    if (value.size <= WORD && text_end - value.begin >= ptrdiff_t{WORD}) {
        memcpy(out, value.begin, WORD);
        return out + value.size;
    }
    return std::copy_n(value.begin, value.size, out);
}

// Appends `{"key":"value",...}`.
void put_labels(const std::vector<Label> &labels, std::string &out)
{
    for (const Label &label : labels) {
        out += &label == labels.data() ? '{' : ',';
        put_json_string(label.key, out);
        out += ':';
        put_json_string(label.value, out);
    }
    out += '}';
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

void put_json(uint64_t number, std::string &out)
{
    char digits[20];
    out.append(digits, std::to_chars(digits, std::end(digits), number).ptr);
}

void put_json(const Snapshot &snapshot, const Field &field, NumberForm form, std::string &out)
{
    const Value *value = snapshot.begin(field);
    const Value *const end = value + field.count;
    if (value->kind == Kind::damaged) {
        out += "null";
        return;
    }
    if (value->kind == Kind::text) {
        put_json_string(value->text(), out);
        return;
    }

    // The values stand one after another in the text, so that none takes more than its part of it.
    const auto span = static_cast<size_t>(end[-1].begin + end[-1].size - value->begin);
    const size_t before = out.size();
    out.resize(before + span + field.count * sizeof("\"null\"],[") + sizeof("[[]]") + WORD);
    char *p = out.data() + before;
    const char *const text_end = snapshot.text.data() + snapshot.text.size();
    if (field.shape == Shape::scalar) {
        p = put_short(p, *value, form, text_end);
    } else {
        const bool rows = field.shape == Shape::rows;
        *p++ = '[';
        while (value != end) {
            const Value *const row_end = value + std::min<ptrdiff_t>(field.columns, end - value);
            if (rows)
                *p++ = '[';
            for (; value != row_end; value++) {
                p = put_short(p, *value, form, text_end);
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

namespace
{

// Appends what a recording says of a snapshot, each where it is there.
void put_recording(const Head &head, std::string &out)
{
    if (head.frame) {
        out += R"(,"frame":)";
        put_json(*head.frame, out);
    }
    if (head.missed != 0) {
        out += R"(,"missed":)";
        put_json(head.missed, out);
    }
    if (!head.labels.empty()) {
        out += R"(,"labels":)";
        put_labels(head.labels, out);
    }
    for (size_t i = 0; i < head.marks.size(); i++) {
        out += i == 0 ? R"(,"marks":[)" : ",";
        put_json_string(head.marks[i], out);
    }
    if (!head.marks.empty())
        out += ']';
}

} // namespace

void put_json(const Snapshot &snapshot, std::string_view file, std::string &out)
{
    out += R"({"vorda_json":1,"file":)";
    put_json_string(file, out);
    out += R"(,"dev_idx":)";
    snapshot.named ? put_json(snapshot.dev_idx, out) : void(out += "null");
    out += R"(,"path_idx":)";
    snapshot.named ? put_json(snapshot.path_idx, out) : void(out += "null");
    out += R"(,"time":)";
    out += snapshot.timed ? snapshot.time.text() : "null";
    put_recording(snapshot, out);
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
            put_json_string(snapshot.node(member.index).name, out);
            out += ":{";
            enter(member.index);
        } else {
            const Field &field = snapshot.fields[member.index];
            put_json_string(field.key, out);
            out += ':';
            put_json(snapshot, field, NumberForm::as_printed, out);
            out += ',';
        }
    }

    out += R"("unread":[)";
    for (const Unread &line : snapshot.unread) {
        put_json(line.line, out);
        out += ',';
    }
    if (!snapshot.unread.empty())
        out.pop_back();
    out += ']';
    if (snapshot.unread_count > snapshot.unread.size()) {
        out += R"(,"unread_count":)";
        put_json(snapshot.unread_count, out);
    }
    out += '}';
}

} // namespace vordascope
