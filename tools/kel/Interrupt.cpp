#include "Interrupt.h"

#include <csignal>
#include <initializer_list>

namespace meridyn::tool {

static volatile std::sig_atomic_t signalSeen = 0;

extern "C" {
static void noteSignal(int signal)
{
    signalSeen = signal;
}
}

void watchForInterrupts()
{
    struct sigaction action = {};
    action.sa_handler = noteSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        // What the caller had ignored (nohup, a shell's background job) stays ignored.
        if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}

bool wasInterrupted()
{
    return signalSeen != 0;
}

void dieOfInterrupt()
{
    if (signalSeen == 0)
        return;
    std::signal(signalSeen, SIG_DFL);
    std::raise(signalSeen);
}

} // namespace meridyn::tool
