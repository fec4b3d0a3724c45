// vorda: prints the DIP context of one input path as text.
#include "vorda.h"

namespace
{

// Found by "strings vorda | grep version"; the command line has no option for it.
[[gnu::used, gnu::retain]] const char version[] = "vorda version " VORDA_VERSION;

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

    DipPathCtx ctx; // large, so only here: the printers read this one copy
    if (get_dip_ctx(input_path(cmd.dev_idx, cmd.path_idx), &ctx) != 0)
        return 1;
    return parse_entry(&ctx, cmd.item);
}
