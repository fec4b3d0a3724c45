// The command line of the recorder.
#include "record.h"
#include "vorda.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <getopt.h>

namespace
{

constexpr char USAGE[] =
    "Usage: vorda-record [OPTION]... [ENTRY]...\n"
    "Records what vorda prints of each ENTRY (all, category or category.item; default all), frame by\n"
    "frame, on standard output: a whole snapshot, then of each frame the lines that changed.\n"
    "vordascope reads it.\n"
    "  -n COUNT             end after COUNT snapshots\n"
    "  -i SECONDS           a snapshot every SECONDS instead of every frame\n"
    "  -d DEV, -p PATH      device and path, as of vorda (default 0)\n"
    "  --whole SECONDS      a whole snapshot every SECONDS (default 10), and on SIGUSR1\n"
    "  --ring SECONDS       keep the last SECONDS in memory; write them on SIGUSR1\n"
    "  --trigger CONDITION  write them once when CONDITION comes true: 'share.fps<20', < or > or =\n"
    "  -h, --help           print this help\n"
    "Ctrl-C ends it between two snapshots.\n"
    "  vorda-record -n 250 all > ten-seconds.txt\n"
    "  vorda-record --ring 30 --trigger 'share.fps<20' share stat > before-the-fault.txt\n";

int complain(const char *option, const char *wants, const char *value)
{
    fprintf(stderr, "vorda-record: %s takes %s, not `%s'.\n", option, wants, value);
    return 1;
}

// A number of at most nine digits, and as many behind a point; 0 when it is anything else.
Nanoseconds to_nanoseconds(const char *text)
{
    Nanoseconds result = 0;
    Nanoseconds unit = SECOND;
    const char *at = text;
    for (; *at >= '0' && *at <= '9' && at < text + 9; at++)
        result = 10 * result + (*at - '0') * SECOND;
    if (*at == '.' && at != text)
        for (at++; *at >= '0' && *at <= '9' && unit > 1; at++)
            result += (*at - '0') * (unit /= 10);
    return *at == '\0' ? result : 0;
}

int take_seconds(const char *option, const char *text, Nanoseconds most, Nanoseconds *result)
{
    constexpr Nanoseconds LEAST = SECOND / 1000;
    *result = to_nanoseconds(text);
    if (*result >= LEAST && *result <= most)
        return 0;
    char wants[48];
    snprintf(wants, sizeof(wants), "seconds from 0.001 to %d", static_cast<int>(most / SECOND));
    return complain(option, wants, text);
}

int take_count(const char *text, uint32_t *count)
{
    uint64_t number = 0;
    const char *at = text;
    for (; *at >= '0' && *at <= '9' && number <= UINT32_MAX; at++)
        number = 10 * number + static_cast<uint64_t>(*at - '0');
    *count = static_cast<uint32_t>(number);
    if (*at == '\0' && number > 0 && number <= UINT32_MAX)
        return 0;
    return complain("-n", "a number from 1 to 4294967295", text);
}

int take_trigger(const char *text, Trigger *trigger)
{
    const size_t length = strcspn(text, "<>=");
    char *end = nullptr;
    trigger->key = {text, length};
    trigger->relation = text[length];
    if (length > 0 && text[length] != '\0') {
        const char *value = text + length + 1;
        trigger->value = strtod(value, &end);
        if (end != value && *end == '\0')
            return 0;
    }
    return complain("--trigger", "a condition like share.fps<20", text);
}

} // namespace

int parse_record_args(int argc, char **argv, RecordCmd *cmd)
{
    constexpr Nanoseconds DAY = 86400 * SECOND;
    constexpr Nanoseconds LONGEST_RING = 600 * SECOND;
    enum : int { WHOLE = 256, RING, TRIGGER };
    static const option options[] = {
        {"whole", required_argument, nullptr, WHOLE},
        {"ring", required_argument, nullptr, RING},
        {"trigger", required_argument, nullptr, TRIGGER},
        {"help", no_argument, nullptr, 'h'},
        {nullptr, 0, nullptr, 0},
    };

    int failed = 0;
    for (int option = 0; failed == 0 && option != -1;) {
        option = getopt_long(argc, argv, "n:i:d:p:h", options, nullptr);
        switch (option) {
        case 'n':
            failed = take_count(optarg, &cmd->count);
            break;
        case 'i':
            failed = take_seconds("-i", optarg, DAY, &cmd->interval);
            break;
        case 'd':
            cmd->dev_idx = parse_index(optarg);
            break;
        case 'p':
            cmd->path_idx = parse_index(optarg);
            break;
        case WHOLE:
            failed = take_seconds("--whole", optarg, DAY, &cmd->whole);
            break;
        case RING:
            failed = take_seconds("--ring", optarg, LONGEST_RING, &cmd->ring);
            break;
        case TRIGGER:
            failed = take_trigger(optarg, &cmd->trigger);
            break;
        case 'h':
            cmd->help = true;
            return 0;
        case '?':
            failed = 1;
            break;
        default:
            break;
        }
    }
    if (failed == 0 && !cmd->trigger.key.empty() && cmd->ring == 0) {
        fputs("vorda-record: --trigger writes what --ring SECONDS keeps; give that too.\n", stderr);
        failed = 1;
    }
    if (failed != 0) {
        fputs("Try `vorda-record --help'.\n", stderr);
        return 1;
    }
    cmd->entries = std::span(argv, static_cast<size_t>(argc)).subspan(static_cast<size_t>(optind));
    return 0;
}

void record_help()
{
    fputs(USAGE, stdout);
}
