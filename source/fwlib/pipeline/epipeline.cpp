// SPDX-License-Identifier: MIT
#include "fwlib/pipeline/epipeline.h"

#include "fwlib/elements/endtable.h"
#include "fwlib/elements/pad.h"
#include "fwlib/framework/failurewatch.h"
#include "fwlib/framework/say.h"
#include "fwlib/internal/currentelement.h"
#include "fwlib/internal/growth.h"
#include "fwlib/internal/textmatch.h"
#include "fwlib/internal/textsizes.h"
#include "fwlib/pipeline/nameindex.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"

#include <cstdio>
#include <new>

namespace VESK {

namespace {

constexpr int MostElements = 65535; // an index and the number of elements fit in a Byte2Type

// Positions in m_pachProperties.
enum PropertyPosition { TypeProperty = 0, SinkProperty = 2, SourceProperty = 3 };

// The inner element that the pipeline's property names now, or null.
EObject* NamedElement(EPipeline& cPipeline, PropertyPosition Position) {
    char achName[ElementNameSize];
    Byte2Type b2Index;
    const int iFound = cPipeline.m_cProperties.GetProperty(EPipeline::m_pachProperties[Position], achName,
                                                           sizeof achName, nullptr, Section::Standard) &&
                       cPipeline.FindElement(achName, &b2Index);
    return iFound ? cPipeline.m_ppElements[b2Index] : nullptr;
}

// Connects a source pad to its sink pad. Returns 1, or 0 after a report. Both pads are requested before either is
// checked.
int Wire(const EPipeline& cPipeline, const CONNECTION& cConnection) {
    const int iCount = cPipeline.m_iElementCount;
    EObject* const pSource =
        cConnection.b2SourceElement < iCount ? cPipeline.m_ppElements[cConnection.b2SourceElement] : nullptr;
    EObject* const pSink =
        cConnection.b2SinkElement < iCount ? cPipeline.m_ppElements[cConnection.b2SinkElement] : nullptr;
    if (!pSource || !pSink) {
        SayError(cPipeline.m_pFramework, "EPipeline::Initialize(): No sink or source element\n");
        return 0;
    }
    SOURCEPAD* const pSourcePad = pSource->GetSourcePad(cConnection.b2SourcePad);
    SINKPAD* const pSinkPad = pSink->GetSinkPad(cConnection.b2SinkPad);
    if (!pSourcePad || !pSinkPad) {
        SayError(cPipeline.m_pFramework, "EPipeline::Initialize(): No sink or source pad\n");
        return 0;
    }
    pSourcePad->m_pSinkPad = pSinkPad;
    return 1;
}

// Returns 0 for an element whose Initialize did, which is named if it reported nothing.
int JudgeElement(FailureWatch& cWatch, EObject& cElement) {
    char achType[TypeTextSize];
    char achName[TypeTextSize];
    char achText[2 * TypeTextSize + 32];
    PROPERTIES& cProperties = cElement.m_cProperties;
    cProperties.GetProperty(Key::EObjectType, achType, sizeof achType, Text("[No Element Type]"),
                            Section::Standard);
    cProperties.GetProperty(Key::Name, achName, sizeof achName, Text("[No Element Name]"), Section::Standard);
    std::snprintf(achText, sizeof achText, "%s - %s: Initialize failed", achType, achName);
    return cWatch.Judge(0, achText);
}

} // namespace

char* const EPipeline::m_pachProperties[6] = {Key::EObjectType,   Key::Name,           Key::SinkElement,
                                              Key::SourceElement, Key::SingleThreaded, nullptr};

EPipeline::EPipeline()
    : m_ppElements(nullptr),
      m_iElementCapacity(0),
      m_iElementCount(0),
      m_ppConnections(nullptr),
      m_b2ConnectionCapacity(0),
      m_b2ConnectionCount(0),
      m_pSinkElement(nullptr) {
    m_cProperties.SetProperty(m_pachProperties[TypeProperty], Type::EPipeline, Section::Standard);
}

EPipeline::~EPipeline() {
    for (int i = 0; i < m_iElementCount; ++i) {
        // The element's destructor does this too, but may belong to a plugin with its own copy of the library.
        ForgetElement(m_ppElements[i]);
        ForgetEnd(m_ppElements[i]);
        delete m_ppElements[i];
    }
    fwfree(m_ppElements);
    for (Byte4Type b4 = 0; b4 < m_b2ConnectionCount; ++b4) {
        delete m_ppConnections[b4];
    }
    fwfree(m_ppConnections);
    ForgetIndex(*this); // last, since an element's destructor may search
}

int EPipeline::Initialize() {
    FailureWatch cWatch;
    for (int i = 0; i < m_iElementCount; ++i) {
        if (!m_ppElements[i]->Initialize()) {
            return JudgeElement(cWatch, *m_ppElements[i]);
        }
    }
    for (Byte4Type b4 = 0; b4 < m_b2ConnectionCount; ++b4) {
        if (!Wire(*this, *m_ppConnections[b4])) {
            return cWatch.Judge(0, "");
        }
    }
    m_pSinkElement = NamedElement(*this, SinkProperty);
    return cWatch.Judge(1, "");
}

int EPipeline::DataArrived(QObject*, Byte2Type) {
    return 0;
}

int EPipeline::Run() {
    if (!m_pSinkElement) {
        SayError(m_pFramework, "EPipeline::Run(): Error: No sink element.\n");
        return 0;
    }
    return m_pSinkElement->Run();
}

Byte2Type EPipeline::GetSinkPadCount() {
    EObject* const pElement = NamedElement(*this, SinkProperty);
    return pElement ? pElement->GetSinkPadCount() : Byte2Type{0};
}

SINKPAD* EPipeline::GetSinkPad(Byte2Type b2Position) {
    EObject* const pElement = NamedElement(*this, SinkProperty);
    return pElement ? pElement->GetSinkPad(b2Position) : nullptr;
}

Byte2Type EPipeline::GetSourcePadCount() {
    EObject* const pElement = NamedElement(*this, SourceProperty);
    return pElement ? pElement->GetSourcePadCount() : Byte2Type{0};
}

SOURCEPAD* EPipeline::GetSourcePad(Byte2Type b2Position) {
    EObject* const pElement = NamedElement(*this, SourceProperty);
    return pElement ? pElement->GetSourcePad(b2Position) : nullptr;
}

int EPipeline::SetElementProperty(char* pchElement, char* pchKey, char* pchValue) {
    Byte2Type b2Index;
    return FindElement(pchElement, &b2Index) &&
           m_ppElements[b2Index]->m_cProperties.SetProperty(pchKey, pchValue, Section::Standard);
}

int EPipeline::GetElementProperty(char* pchElement, char* pchKey, char* pchBuffer, Byte2Type b2Size) {
    Byte2Type b2Index;
    return FindElement(pchElement, &b2Index) && m_ppElements[b2Index]->m_cProperties.GetProperty(
                                                    pchKey, pchBuffer, b2Size, nullptr, Section::Standard);
}

int EPipeline::GetElementProperty(char* pchElement, char* pchKey, Byte2Type* pb2Value) {
    Byte2Type b2Index;
    return FindElement(pchElement, &b2Index) &&
           m_ppElements[b2Index]->m_cProperties.GetProperty(pchKey, pb2Value, 0, Section::Standard);
}

int EPipeline::AddElement(EObject* pElement) {
    if (!pElement || m_iElementCount >= MostElements ||
        !MakeRoom(m_iElementCapacity, m_iElementCount, LargestCapacity + GrowthStep, m_ppElements)) {
        return 0;
    }
    TellIndexOfAdding(*this);
    m_ppElements[m_iElementCount] = pElement;
    ++m_iElementCount;
    return 1;
}

int EPipeline::Connect(char* pchSource, Byte2Type b2SourcePad, char* pchSink, Byte2Type b2SinkPad) {
    CONNECTION cConnection = {0, b2SourcePad, 0, b2SinkPad};
    if (!FindElement(pchSource, &cConnection.b2SourceElement) ||
        !FindElement(pchSink, &cConnection.b2SinkElement)) {
        return 0;
    }
    auto* const pConnection = new (std::nothrow) CONNECTION(cConnection);
    if (pConnection && !Append(m_ppConnections, m_b2ConnectionCapacity, m_b2ConnectionCount, pConnection)) {
        delete pConnection;
        return 0;
    }
    return pConnection != nullptr;
}

int EPipeline::FindElement(char* pchName, Byte2Type* pb2Index) {
    if (!pb2Index || !pchName) {
        return 0;
    }
    const int iFound = FindNamed(*this, SoughtText(pchName));
    if (iFound < 0) {
        return 0;
    }
    *pb2Index = static_cast<Byte2Type>(iFound);
    return 1;
}

} // namespace VESK
