#include "fuzz_target.h"

#include "harness.h"
#include "vorda.h"

#include <algorithm>
#include <cstring>

namespace
{

class Input
{
public:
    explicit Input(const std::string &bytes)
        : at_(reinterpret_cast<const uint8_t *>(bytes.data())), end_(at_ + bytes.size())
    {
    }

    size_t left() const { return static_cast<size_t>(end_ - at_); }
    uint8_t byte() { return at_ < end_ ? *at_++ : 0; }

    std::string word()
    {
        std::string text;
        for (uint8_t next = byte(); next != 0; next = byte())
            text += static_cast<char>(next);
        return text;
    }

    uint32_t number(int bytes)
    {
        uint32_t value = 0;
        for (int i = 0; i < bytes; i++)
            value |= static_cast<uint32_t>(byte()) << (8 * i);
        return value;
    }

private:
    const uint8_t *at_;
    const uint8_t *end_;
};

} // namespace

int run_fuzz_input(const std::string &bytes)
{
    register_categories();
    Input input(bytes);

    std::vector<std::string> words = {"vorda"};
    for (int count = input.byte() % 8; count > 0; count--)
        words.push_back(input.word());
    std::vector<char *> argv;
    for (std::string &word : words)
        argv.push_back(word.data());
    VordaCmd cmd = {};
    if (parse_args(static_cast<int>(argv.size()), argv.data(), &cmd) != 0)
        return 1;
    if (cmd.cmd_type == CMD_HELP) {
        help(argv[0]);
        return 1;
    }
    if (cmd.cmd_type == CMD_LIST)
        return parse_help(argv[0], cmd.item);

    // On the heap, where the sanitizer sees each byte beyond it.
    const auto ctx = std::make_unique<DipPathCtx>();
    auto *at = reinterpret_cast<uint8_t *>(ctx.get());
    std::fill_n(at, sizeof(*ctx), input.byte());
    while (input.left() > 0) {
        const size_t offset = input.number(3) % (sizeof(*ctx) - 3);
        const uint32_t value = input.number(4);
        memcpy(at + offset, &value, sizeof(value));
    }
    return parse_entry(ctx.get(), cmd.item);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    run_fuzz_input({data, data + size});
    return 0;
}
