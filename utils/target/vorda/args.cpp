// The command line: options, words and the usage text.
#include "vorda.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{

// Copies as much of a word as fits.
void store(char (&dest)[256], const char *word)
{
    snprintf(dest, sizeof(dest), "%s", word);
}

// Reads the value of the index option argv[*i], which follows it directly ("-d1") or as the next
// argument ("-d 1"); the latter advances *i. Returns whether there is one.
bool take_index(int argc, char **argv, int *i, int32_t *index)
{
    const char *option = argv[*i];
    const char *value = option + 2;
    if (*value == '\0') {
        if (*i + 1 == argc || argv[*i + 1][0] == '-') {
            fprintf(stderr, "Missing argument for option -%c.\n", option[1]);
            return false;
        }
        value = argv[++*i];
    }
    *index = parse_index(value);
    return true;
}

} // namespace

// As the target's 32-bit atoi does, whatever the width of long is.
int32_t parse_index(const char *word)
{
    char value[256];
    store(value, word);
    return static_cast<int32_t>(std::clamp<long>(strtol(value, nullptr, 10), INT32_MIN, INT32_MAX));
}

void lower_case(char *text)
{
    for (; *text != '\0'; text++)
        if (*text >= 'A' && *text <= 'Z')
            *text += 'a' - 'A';
}

int parse_args(int argc, char **argv, VordaCmd *cmd)
{
    if (cmd == nullptr) {
        fputs("Invalid argument.\n", stderr);
        return 1;
    }

    bool options = true; // until "--"
    bool taken = false;  // the entry or the category to list is known
    bool list = false;   // the next word is the category to list

    for (int i = 1; i < argc; i++) {
        const char *arg = argv[i];

        if (options && arg[0] == '-') {
            switch (arg[1]) {
            case 'd':
                if (!take_index(argc, argv, &i, &cmd->dev_idx))
                    return 1;
                break;
            case 'p':
                if (!take_index(argc, argv, &i, &cmd->path_idx))
                    return 1;
                break;
            case 'h':
                cmd->cmd_type = CMD_HELP;
                return 0;
            case '\0':
                fputs("Unknown option `-'.\n", stderr);
                return 1;
            case '-':
                if (arg[2] != '\0') {
                    fprintf(stderr, "Unknown option `%s'.\n", arg);
                    return 1;
                }
                options = false;
                break;
            default:
                fprintf(stderr, "Unknown option `-%c'.\n", arg[1]);
                return 1;
            }
        } else if (taken) {
            continue;
        } else if (list) {
            store(cmd->item, arg);
            taken = true;
        } else if (strcmp(arg, "help") == 0) {
            cmd->cmd_type = CMD_HELP;
            return 0;
        } else if (strcmp(arg, "list") == 0) {
            cmd->cmd_type = CMD_LIST;
            list = true;
        } else {
            cmd->cmd_type = CMD_QUERY;
            store(cmd->item, arg);
            taken = true;
        }
    }
    return 0;
}

void help(const char *pname)
{
    fprintf(stderr,
            "Usage:\n"
            "1. %s list [category]\n"
            "   List available entries under specified category\n"
            "   or leave it blank to show available categories.\n"
            "   Eg. %s list stat\n"
            "2. %s [Options] entry\n"
            "   Read the specified entry from the system.\n"
            "   Eg. %s stat\n"
            "\n"
            "Options:\n"
            " -d dev_idx:\n"
            "    Specify device index (default: 0).\n"
            " -p path_idx:\n"
            "    Specify path index (default: 0).\n"
            " -h :\n"
            "    Print this help.\n",
            pname, pname, pname, pname);
}
