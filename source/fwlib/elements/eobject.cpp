// SPDX-License-Identifier: MIT
#include "fwlib/elements/eobject.h"

#include "fwlib/elements/endtable.h"
#include "fwlib/elements/pad.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/elements/watch.h"
#include "fwlib/framework/framework.h"
#include "fwlib/framework/say.h"
#include "fwlib/internal/currentelement.h"
#include "fwlib/internal/growth.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"

#include <cstdarg>
#include <ctime>

namespace VESK {

std::atomic<EObject*> apcCurrentElements[BuildForms];
__thread ThreadBuild cThreadBuild __attribute__((tls_model("initial-exec")));

namespace {

constexpr Byte4Type WaitSlice = 100;     // milliseconds between two tests of Wait
constexpr Byte2Type MisuseTextSize = 64; // for the type name that EObject::Run reports

template <class Pad>
void DeletePads(Pad** ppPads, Byte2Type b2Count) {
    for (Byte4Type b4 = 0; b4 < b2Count; ++b4) {
        delete ppPads[b4];
    }
    fwfree(ppPads);
}

timespec Later(timespec Time, Byte4Type b4Milliseconds) {
    constexpr long Second = 1'000'000'000; // in nanoseconds
    Time.tv_sec += static_cast<std::time_t>(b4Milliseconds / 1000);
    Time.tv_nsec += static_cast<long>(b4Milliseconds % 1000) * 1'000'000;
    if (Time.tv_nsec >= Second) {
        ++Time.tv_sec;
        Time.tv_nsec -= Second;
    }
    return Time;
}

bool Before(const timespec& Time, const timespec& Other) {
    return Time.tv_sec < Other.tv_sec || (Time.tv_sec == Other.tv_sec && Time.tv_nsec < Other.tv_nsec);
}

} // namespace

EObject::EObject()
    : m_pFramework(nullptr),
      m_iDebug(0),
      m_b2SinkPadCapacity(0),
      m_b2SinkPadCount(0),
      m_ppSinkPads(nullptr),
      m_b2SourcePadCapacity(0),
      m_b2SourcePadCount(0),
      m_ppSourcePads(nullptr) {
    Watch(this, __builtin_return_address(0));
}

EObject::~EObject() {
    Unwatch(this);
    ForgetElement(this);
    ForgetEnd(this);
    DeletePads(m_ppSinkPads, m_b2SinkPadCount);
    DeletePads(m_ppSourcePads, m_b2SourcePadCount);
}

int EObject::Initialize() {
    if (!m_cProperties.GetProperty(Key::Debug, &m_iDebug, 0, Section::Standard) && m_pFramework) {
        m_pFramework->GetProperty(Key::Debug, &m_iDebug, 0, Section::Standard);
    }
    return 1;
}

int EObject::Run() {
    char achType[MisuseTextSize];
    m_cProperties.GetProperty(Key::EObjectType, achType, sizeof achType, nullptr, Section::Standard);
    SayError(m_pFramework, "EObject::Run: Should not be called: %s.\n", achType);
    return 0;
}

Byte2Type EObject::GetSinkPadCount() {
    return m_b2SinkPadCount;
}

SINKPAD* EObject::GetSinkPad(Byte2Type b2Position) {
    return b2Position < m_b2SinkPadCount ? m_ppSinkPads[b2Position] : nullptr;
}

Byte2Type EObject::GetSourcePadCount() {
    return m_b2SourcePadCount;
}

SOURCEPAD* EObject::GetSourcePad(Byte2Type b2Position) {
    return b2Position < m_b2SourcePadCount ? m_ppSourcePads[b2Position] : nullptr;
}

int EObject::AddSinkPad(SINKPAD* pPad) {
    return Append(m_ppSinkPads, m_b2SinkPadCapacity, m_b2SinkPadCount, pPad);
}

int EObject::AddSourcePad(SOURCEPAD* pPad) {
    return Append(m_ppSourcePads, m_b2SourcePadCapacity, m_b2SourcePadCount, pPad);
}

void EObject::Message(int iLevel, const char* pchFormat, ...) {
    if (m_iDebug < iLevel || !m_pFramework) {
        return;
    }
    va_list Values;
    va_start(Values, pchFormat);
    m_pFramework->Message(this, iLevel, pchFormat, Values);
    va_end(Values);
}

void EObject::WarningMessage(const char* pchFormat, ...) {
    if (!m_pFramework) {
        return;
    }
    va_list Values;
    va_start(Values, pchFormat);
    m_pFramework->WarningMessage(this, pchFormat, Values);
    va_end(Values);
}

void EObject::ErrorMessage(const char* pchFormat, ...) {
    if (!m_pFramework) {
        return;
    }
    va_list Values;
    va_start(Values, pchFormat);
    m_pFramework->ErrorMessage(this, pchFormat, Values);
    va_end(Values);
}

void EObject::RequestEnd() {
    if (m_pFramework) {
        m_pFramework->RequestEnd();
    }
}

int EObject::EndRequested() {
    return m_pFramework ? m_pFramework->EndRequested() : 0;
}

int EObject::Wait(Byte4Type b4Milliseconds) {
    timespec Now;
    clock_gettime(CLOCK_MONOTONIC, &Now);
    const timespec End = Later(Now, b4Milliseconds);
    while (!EndRequested()) {
        clock_gettime(CLOCK_MONOTONIC, &Now);
        if (!Before(Now, End)) {
            return 1;
        }
        const timespec Next = Later(Now, WaitSlice);
        clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, Before(Next, End) ? &Next : &End, nullptr);
    }
    return 0;
}

int EObject::SendEOF() {
    QEOF cEnd;
    if (cEnd.m_cProperties.m_b2PropertyCount == 0) { // no memory for the type
        return 0;
    }
    int iAll = 1;
    for (Byte4Type b4 = 0; b4 < GetSourcePadCount(); ++b4) {
        SOURCEPAD* const pPad = GetSourcePad(static_cast<Byte2Type>(b4));
        if (pPad && pPad->m_pSinkPad) {
            iAll = pPad->Push(&cEnd) == 1 && iAll;
        }
    }
    return iAll;
}

} // namespace VESK
