// What mail, editors and terminals have done to a text, undone before it is read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vordascope
{

// What is said of archives.
inline constexpr char UNPACKED[] = "it is packed with gzip, and was unpacked";
inline constexpr char NOT_UNPACKED[] = "the rest of the archive cannot be unpacked";

// Turns the bytes of an input into those that vorda printed: unpacks gzip, reads UTF-16 of either
// order with or without a mark, takes off quotes ("> "), indentation, what steers a terminal, and
// blanks that were added to the ends of lines, reads carriage returns alone or behind a line feed as
// line ends, and makes blanks of non-breaking ones and of tabs.
//
// What is to be done is settled by the text up to the first index line, or the first 64 KiB; before
// that nothing is given out, since no snapshot is complete before its index line. A text as vorda
// prints it passes unchanged. WebAssembly has no gzip here: the page unpacks with what the browser
// has, before it hands bytes over.
class Decode
{
public:
    Decode();
    ~Decode();
    Decode(const Decode &) = delete;
    Decode &operator=(const Decode &) = delete;

    // Whether all that follows passes unchanged, so that it need not pass here.
    bool plain() const { return mode_ == Mode::plain; }

    // Takes bytes of the input, `last` when there are no more, and appends to `out` what they mean.
    void put(std::string_view bytes, bool last, std::string &out);

    // What has been undone, or what the input looks like when it cannot be read: a sentence each.
    const std::vector<std::string> &notices() const { return notices_; }

private:
    enum class Mode : uint8_t { settling, plain, lines };
    enum class Bytes : uint8_t { unknown, text, utf16_le, utf16_be, gzip };

    void settle_bytes(bool last);
    void put_units(std::string_view bytes, bool last);
    void put_bytes(std::string_view bytes, bool last);
    void inflate(std::string_view bytes, bool last);
    void settle_lines();
    void put_lines(bool last, std::string &out);
    void put_line(std::string_view line, std::string &out) const;

    Bytes bytes_ = Bytes::unknown;
    Mode mode_ = Mode::settling;
    std::string raw_;    // of an input whose kind is not known, or a half unit
    std::string text_;   // not given out
    std::string prefix_; // in front of each line
    char line_end_ = '\n';
    bool trims_ = false; // blanks at the end of each line
    bool tabs_ = false;  // are blanks
    uint32_t high_ = 0;  // the first of two units
    std::vector<std::string> notices_;
    std::unique_ptr<struct Gzip> gzip_;
};

} // namespace vordascope
