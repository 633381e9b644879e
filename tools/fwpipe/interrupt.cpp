// SPDX-License-Identifier: MIT
#include "interrupt.h"

#include "heldoutput.h"

#include <fwlib/fwlib.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <new>

namespace FwPipe {

namespace {

constexpr int Signals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr long Repetition = 100'000'000; // nanoseconds
constexpr long Second = 1'000'000'000;

volatile std::sig_atomic_t iInterrupt = 0;
struct timespec First; // the time of the first signal

bool Repeated() {
    struct timespec Now = {};
    clock_gettime(CLOCK_MONOTONIC, &Now);
    const std::time_t iSeconds = Now.tv_sec - First.tv_sec;
    return iSeconds <= 1 && static_cast<long>(iSeconds) * Second + Now.tv_nsec - First.tv_nsec < Repetition;
}

void End(int iSignal) {
    ShowHeldAtEnd();
    std::signal(iSignal, SIG_DFL);
    std::raise(iSignal); // delivered when the handler returns
}

void Remember(int iSignal) {
    const int iErrno = errno;
    if (!iInterrupt) {
        clock_gettime(CLOCK_MONOTONIC, &First);
        iInterrupt = iSignal;
    } else if (!Repeated()) {
        End(iSignal);
    }
    errno = iErrno;
}

void Handle(int iSignal, void (*pHandler)(int)) {
    struct sigaction Action = {};
    Action.sa_handler = pHandler;
    Action.sa_flags = 0; // no SA_RESTART: a waiting read must end
    for (const int iOther : Signals) {
        sigaddset(&Action.sa_mask, iOther);
    }
    sigaction(iSignal, &Action, nullptr);
}

void (*Handler(int iSignal))(int) {
    struct sigaction Action = {};
    sigaction(iSignal, nullptr, &Action);
    return Action.sa_handler;
}

} // namespace

void CatchInterrupts() {
    for (const int iSignal : Signals) {
        if (iSignal != SIGHUP || Handler(iSignal) != SIG_IGN) {
            Handle(iSignal, Remember);
        }
    }
}

int Interrupt() {
    return iInterrupt;
}

EndRequests::EndRequests(VESK::FRAMEWORK& cFramework) : m_cFramework(cFramework) {
    if (!m_cFramework.SetEndQuery(Answer, this)) {
        throw std::bad_alloc();
    }
}

EndRequests::~EndRequests() {
    m_cFramework.SetEndQuery(nullptr, nullptr);
}

bool EndRequests::Any() {
    m_bOwnQuestion = true;
    const bool bAny = m_cFramework.EndRequested() != 0;
    m_bOwnQuestion = false;
    return bAny;
}

int EndRequests::Answer(void* pThis) {
    if (!static_cast<const EndRequests*>(pThis)->m_bOwnQuestion) {
        static const bool bCaught = (CatchInterrupts(), true);
        static_cast<void>(bCaught);
    }
    return Interrupt() != 0;
}

} // namespace FwPipe
