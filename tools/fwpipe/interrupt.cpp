// SPDX-License-Identifier: MIT
#include "interrupt.h"

#include <csignal>

namespace FwPipe {

namespace {

constexpr int Signals[] = {SIGINT, SIGTERM};

volatile std::sig_atomic_t iInterrupt = 0;

void Remember(int iSignal) {
    iInterrupt = iSignal;
    for (const int iOther : Signals) {
        std::signal(iOther, SIG_DFL);
    }
}

} // namespace

void CatchInterrupts() {
    struct sigaction Action = {};
    Action.sa_handler = Remember;
    Action.sa_flags = 0; // no SA_RESTART: a read that waits must end
    for (const int iSignal : Signals) {
        sigaddset(&Action.sa_mask, iSignal);
    }
    for (const int iSignal : Signals) {
        sigaction(iSignal, &Action, nullptr);
    }
}

int Interrupt() {
    return iInterrupt;
}

} // namespace FwPipe
