// vorda-record: records what vorda prints, frame by frame.
#include "asked.h"
#include "record.h"
#include "vorda.h"

#include <cstdio>

namespace
{

// Found by "strings vorda-record | grep version".
[[gnu::used, gnu::retain]] const char version[] = "vorda-record version " VORDA_VERSION;

} // namespace

int main(int argc, char **argv)
{
    open_standard_descriptors();
    regCmd_all();

    RecordCmd cmd;
    if (parse_record_args(argc, argv, &cmd) != 0)
        return RECORD_FAILED;
    if (cmd.help) {
        record_help();
        return 0;
    }
    for (char *entry : cmd.entries)
        lower_case(entry);

    heed_signals();
    const int status = record(cmd);
    if (status < 0)
        end_by(-status);
    return status;
}
