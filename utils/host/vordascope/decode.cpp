// Packed, wide, quoted and coloured texts.
#include "decode.h"

#include "number.h"

#include <algorithm>
#include <utility>

#ifndef __wasm__
#include <zlib.h>
#endif

namespace vordascope
{

#ifdef __wasm__
struct Gzip {
};
#else
struct Gzip {
    z_stream stream = {};
    bool open = inflateInit2(&stream, 16 + MAX_WBITS) == Z_OK;
    bool whole = false; // has come to its end
    ~Gzip() { inflateEnd(&stream); }
};
#endif

namespace
{

constexpr size_t SETTLED = size_t{64} << 10;
constexpr std::string_view NON_BREAKING = "\xC2\xA0";

struct Look {
    std::string_view begin;
    const char *name;
};
constexpr Look LOOKS[] = {
    {"\x89PNG", "a picture"},
    {"\xFF\xD8\xFF", "a picture"},
    {"GIF8", "a picture"},
    {"%PDF", "a PDF document"},
    {"PK\3\4", "a zip archive"},
    {"<!DOCTYPE", "an HTML page"},
    {"<!doctype", "an HTML page"},
    {"<html", "an HTML page"},
    {"\xFD"
     "7zXZ",
     "an xz archive"},
    {"BZh", "a bzip2 archive"},
    {"\x28\xB5\x2F\xFD", "a zstd archive"},
};

// Takes what steers a terminal off the beginning of a text: "ESC [ 1 ; 32 m", "ESC ] title BEL".
bool take_escape(std::string_view &text)
{
    const auto drop = [&text](size_t end) {
        if (end >= text.size())
            return false;
        text.remove_prefix(end + 1);
        return true;
    };
    if (text.starts_with("\33["))
        return drop(text.find_first_not_of("0123456789;?", 2));
    return text.starts_with("\33]") && drop(text.find('\a'));
}

// Appends a character in UTF-8.
void put_character(uint32_t c, std::string &out)
{
    const auto put = [&out](uint32_t byte) { out += static_cast<char>(byte); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | c >> 6);
        put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        put(0xE0 | c >> 12);
        put(0x80 | (c >> 6 & 0x3F));
        put(0x80 | (c & 0x3F));
    } else {
        put(0xF0 | c >> 18);
        put(0x80 | (c >> 12 & 0x3F));
        put(0x80 | (c >> 6 & 0x3F));
        put(0x80 | (c & 0x3F));
    }
}

} // namespace

Decode::Decode() = default;
Decode::~Decode() = default;

void Decode::put(std::string_view bytes, bool last, std::string &out)
{
    if (bytes_ == Bytes::unknown) {
        raw_ += bytes;
        settle_bytes(last);
        if (bytes_ == Bytes::unknown)
            return;
        put_bytes(std::exchange(raw_, {}), last);
    } else {
        put_bytes(bytes, last);
    }

    if (mode_ == Mode::settling) {
        const size_t index = text_.find("dev_idx");
        const size_t end = index != std::string::npos ? text_.find_first_of("\r\n", index) : index;
        const bool seen = end != std::string::npos && end + 1 < text_.size();
        if (!last && !seen && text_.size() < SETTLED)
            return;
        settle_lines();
    }
    if (mode_ == Mode::lines) {
        put_lines(last, out);
    } else {
        out += text_;
        text_.clear();
        // Other bytes than those of a text always pass here.
        if (bytes_ != Bytes::text)
            mode_ = Mode::lines;
    }
}

// Makes text of bytes whose kind is known.
void Decode::put_bytes(std::string_view bytes, bool last)
{
    if (bytes_ == Bytes::gzip)
        inflate(bytes, last);
    else if (bytes_ != Bytes::text)
        put_units(bytes, last);
    else
        text_ += bytes;
}

// Settles what kind of bytes the input has, by its first four.
void Decode::settle_bytes(bool last)
{
    if (raw_.size() < 4 && !last)
        return;
    const std::string_view first = std::string_view(raw_).substr(0, 4);
    const auto wide = [first](size_t zero) {
        return first.size() == 4 && first[zero] == 0 && first[zero + 2] == 0 &&
               first[1 - zero] != 0 && first[3 - zero] != 0;
    };
    bytes_ = Bytes::text;
    if (first.starts_with("\xFF\xFE") || wide(1)) {
        bytes_ = Bytes::utf16_le;
        notices_.emplace_back("it is UTF-16, which was read as such");
    } else if (first.starts_with("\xFE\xFF") || wide(0)) {
        bytes_ = Bytes::utf16_be;
        notices_.emplace_back("it is UTF-16 (big-endian), which was read as such");
    } else if (first.starts_with("\x1F\x8B")) {
#ifdef __wasm__
        notices_.emplace_back("it looks like a gzip archive");
#else
        bytes_ = Bytes::gzip;
        gzip_ = std::make_unique<Gzip>();
        notices_.emplace_back(UNPACKED);
#endif
    } else {
        for (const Look &look : LOOKS)
            if (std::string_view(raw_).starts_with(look.begin.substr(0, 4)))
                notices_.push_back(std::string("it looks like ") + look.name);
    }
}

void Decode::put_units(std::string_view bytes, bool last)
{
    raw_ += bytes;
    size_t at = 0;
    for (; at + 1 < raw_.size(); at += 2) {
        const uint32_t a = static_cast<unsigned char>(raw_[at]);
        const uint32_t b = static_cast<unsigned char>(raw_[at + 1]);
        const uint32_t unit = bytes_ == Bytes::utf16_le ? b << 8U | a : a << 8U | b;
        if (unit >= 0xD800 && unit < 0xDC00)
            high_ = unit;
        else if (unit >= 0xDC00 && unit < 0xE000 && high_ != 0)
            put_character(0x10000 + ((std::exchange(high_, 0) & 0x3FF) << 10) + (unit & 0x3FF),
                          text_);
        else
            put_character(unit, text_);
    }
    raw_.erase(0, at);
    if (last && !raw_.empty())
        text_ += '?'; // half a character, within a line that does not end
}

void Decode::inflate(std::string_view bytes, [[maybe_unused]] bool last)
{
#ifdef __wasm__
    text_ += bytes;
#else
    z_stream &stream = gzip_->stream;
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    char piece[size_t{16} << 10];
    while (gzip_->open) {
        stream.next_out = reinterpret_cast<Bytef *>(piece);
        stream.avail_out = sizeof(piece);
        const int status = ::inflate(&stream, Z_NO_FLUSH);
        if (status != Z_BUF_ERROR) // there was nothing to unpack
            gzip_->whole = status == Z_STREAM_END;
        text_.append(piece, sizeof(piece) - stream.avail_out);
        // Archives that were joined are one.
        if (status == Z_STREAM_END && stream.avail_in != 0 && inflateReset(&stream) == Z_OK)
            continue;
        if (status != Z_OK && status != Z_BUF_ERROR && status != Z_STREAM_END) {
            notices_.emplace_back(NOT_UNPACKED);
            gzip_->open = false;
        }
        if (status != Z_OK || (stream.avail_in == 0 && stream.avail_out != 0))
            break;
    }
    if (last && gzip_->open && !gzip_->whole)
        notices_.emplace_back(NOT_UNPACKED);
#endif
}

// Settles what has been done to the lines.
void Decode::settle_lines()
{
    mode_ = Mode::plain;
    const auto undo = [this](const char *what) {
        mode_ = Mode::lines;
        notices_.emplace_back(what);
    };
    // The same however the text arrives: up to the first index line.
    size_t end = std::min(text_.size(), SETTLED);
    const size_t index = text_.find("dev_idx");
    if (index < end)
        end = std::min(text_.find_first_of("\r\n", index), end);
    const std::string_view head = std::string_view(text_).substr(0, end);
    if (end + 1 < text_.size() && text_[end] == '\r' && text_[end + 1] != '\n' &&
        text_[end + 1] != '\r' && head.find('\n') == std::string_view::npos) {
        line_end_ = '\r';
        undo("its lines end in carriage returns alone, which were read as line ends");
    }
    if (end + 1 < text_.size() && text_[end] == '\n' && text_[end + 1] == '\r')
        undo("carriage returns in front of its lines were taken off");
    if (head.find('\33') != std::string_view::npos)
        undo("what steers a terminal (colours, titles) was taken out");
    if (head.find(NON_BREAKING) != std::string_view::npos)
        undo("non-breaking blanks were read as blanks");
    if (index >= head.size())
        return;
    if (end < text_.size() && (text_[end] == '\n' || text_[end] == '\r') &&
        is(head.back(), BLANK)) {
        trims_ = true;
        undo("blanks at the ends of its lines were taken off");
    }
    if (head.substr(index).find('\t') < head.substr(index).find('0')) {
        tabs_ = true;
        undo("tabs were read as blanks");
    }
    std::string line;
    const size_t begin = head.find_last_of("\r\n", index) + 1; // 0 where there is none
    put_line(head.substr(begin), line);
    const size_t key = line.find("dev_idx");
    if (key == 0 || line.find_first_not_of(">| \t") < key)
        return;
    prefix_ = line.substr(0, key);
    undo(prefix_.find_first_of(">|") != std::string::npos ? "the quotation marks were taken off"
                                                          : "the indentation was taken off");
}

void Decode::put_lines(bool last, std::string &out)
{
    size_t begin = 0;
    for (;;) {
        const size_t end = text_.find(line_end_, begin);
        if (end == std::string::npos)
            break;
        put_line(std::string_view(text_).substr(begin, end - begin), out);
        out += '\n';
        begin = end + 1;
    }
    text_.erase(0, begin);
    if (last) {
        put_line(text_, out);
        text_.clear();
    }
}

// Appends a line without its end as vorda printed it.
void Decode::put_line(std::string_view line, std::string &out) const
{
    const size_t before = out.size();
    if (line_end_ == '\n' && line.starts_with('\r'))
        line.remove_prefix(1);
    if (trims_)
        line = line.substr(0, line.find_last_not_of(" \t\r") + 1);
    while (!line.empty()) {
        if (line.front() == '\33' && take_escape(line))
            continue;
        if (tabs_ && line.front() == '\t') {
            out += ' ';
            line.remove_prefix(1);
            continue;
        }
        if (line.starts_with(NON_BREAKING)) {
            out += ' ';
            line.remove_prefix(NON_BREAKING.size());
            continue;
        }
        out += line.front();
        line.remove_prefix(1);
    }
    std::string_view mark(prefix_);
    while (!mark.empty() && !std::string_view(out).substr(before).starts_with(mark))
        mark.remove_suffix(mark.ends_with(' ') ? 1 : mark.size());
    out.erase(before, mark.size());
}

} // namespace vordascope
