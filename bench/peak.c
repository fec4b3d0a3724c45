/* Runs a command with its output thrown away and prints its peak resident memory in KiB. */
#include <fcntl.h>
#include <stdio.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

int main(int argc, char **argv)
{
    const pid_t pid = argc > 1 ? vfork() : -1;
    if (pid == 0) {
        dup2(open("/dev/null", O_WRONLY), 1);
        execv(argv[1], argv + 1);
        _exit(127);
    }
    struct rusage usage;
    int status = 1;
    if (pid < 0 || wait4(pid, &status, 0, &usage) != pid || status != 0)
        return 1;
    printf("%ld\n", usage.ru_maxrss);
    return 0;
}
