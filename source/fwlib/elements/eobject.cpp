// SPDX-License-Identifier: MIT
#include "fwlib/elements/eobject.h"

#include "fwlib/elements/pad.h"
#include "fwlib/elements/watch.h"
#include "fwlib/framework/framework.h"
#include "fwlib/framework/say.h"
#include "fwlib/internal/currentelement.h"
#include "fwlib/internal/growth.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"

#include <cstdarg>

namespace VESK {

std::atomic<EObject*> apcCurrentElements[BuildForms];
__thread ThreadBuild cThreadBuild __attribute__((tls_model("initial-exec")));

namespace {

constexpr Byte2Type MisuseTextSize = 64; // for the type name that EObject::Run reports

template <class Pad>
void DeletePads(Pad** ppPads, Byte2Type b2Count) {
    for (Byte4Type b4 = 0; b4 < b2Count; ++b4) {
        delete ppPads[b4];
    }
    fwfree(ppPads);
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

} // namespace VESK
