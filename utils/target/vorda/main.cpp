// vorda: prints the DIP context of one input path as text.
#include "vorda.h"

#include <fcntl.h>

namespace
{

constexpr uint8_t PATH_UPPER_BYTE = 0x80;

// Found by "strings vorda | grep version"; the command line has no option for it.
[[gnu::used, gnu::retain]] const char version[] = "vorda version " VORDA_VERSION;

// A standard descriptor that is closed would become the device's or the system log's, and what is
// printed would go there.
void open_standard_descriptors()
{
    for (int fd = 0; fd <= 2; fd++)
        if (fcntl(fd, F_GETFD) < 0)
            open("/dev/null", O_RDWR);
}

// In the "C" locale, whatever the environment says.
void lower_case(char *text)
{
    for (; *text != '\0'; text++)
        if (*text >= 'A' && *text <= 'Z')
            *text += 'a' - 'A';
}

} // namespace

int main(int argc, char **argv)
{
    open_standard_descriptors();
    regCmd_all();

    VordaCmd cmd = {};
    if (parse_args(argc, argv, &cmd) != 0)
        return 1;

    if (cmd.cmd_type == CMD_HELP) {
        help(argv[0]);
        return 1;
    }

    lower_case(cmd.item);
    if (cmd.cmd_type == CMD_LIST)
        return parse_help(argv[0], cmd.item);

    const MPI_PATH idx = {
        .dev = static_cast<uint8_t>(cmd.dev_idx),
        .path = static_cast<uint8_t>(cmd.path_idx),
        .dummy1 = PATH_UPPER_BYTE,
        .dummy0 = PATH_UPPER_BYTE,
    };
    DipPathCtx ctx; // large, so only here: the printers read this one copy
    if (get_dip_ctx(idx, &ctx) != 0)
        return 1;
    return parse_entry(&ctx, cmd.item);
}
