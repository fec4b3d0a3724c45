// The handlers of signals.
#include "asked.h"

#include <cstdlib>
#include <initializer_list>
#include <unistd.h>

Asked asked;

namespace
{

constexpr unsigned PATIENCE = 2; // seconds in which the reader shall take the last snapshot

void on_stop(int signal)
{
    if (asked.stop == 0)
        alarm(PATIENCE);
    asked.stop = signal;
}

// Again and again: the first may come just before somebody blocks.
void on_alarm(int)
{
    asked.abort = 1;
    alarm(1);
}

void on_user(int)
{
    asked.now = 1;
}

void on_bus_error(int)
{
    constexpr char MESSAGE[] = "vorda-record: the shared region has gone away.\n";
    [[maybe_unused]] const ssize_t ignored = write(STDERR_FILENO, MESSAGE, sizeof(MESSAGE) - 1);
    _exit(EXIT_FAILURE);
}

void handle(int signal, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler; // without SA_RESTART: who blocks looks what was asked
    sigfillset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

} // namespace

void heed_signals()
{
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        struct sigaction before = {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) // by nohup, say
            handle(signal, on_stop);
    }
    handle(SIGALRM, on_alarm);
    handle(SIGUSR1, on_user);
    handle(SIGBUS, on_bus_error);
    // Writing reports them.
    signal(SIGPIPE, SIG_IGN);
    signal(SIGXFSZ, SIG_IGN);
}

void end_by(int signal)
{
    ::signal(signal, SIG_DFL);
    sigset_t one;
    sigemptyset(&one);
    sigaddset(&one, signal);
    sigprocmask(SIG_UNBLOCK, &one, nullptr);
    raise(signal);
    _exit(128 + signal);
}
