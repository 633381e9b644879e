// SPDX-License-Identifier: MIT
#include "fwlib/builtin/edeserialize.h"

#include "fwlib/builtin/elementhelpers.h"
#include "fwlib/elements/pad.h"
#include "fwlib/elements/pads.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/framework/framework.h"
#include "fwlib/internal/handle.h"
#include "fwlib/streams/filesettings.h"
#include "fwlib/streams/objectfileread.h"
#include "fwlib/text.h"

#include <cerrno>
#include <new>

namespace VESK {

namespace {

// The reader that Initialize created; null if a host has replaced it.
ObjectFileRead* OwnReader(EDeserialize& cElement) {
    return OwnClass<ObjectFileRead>::Of(cElement.m_pReader);
}

// Reports why no object was read, each reason once. Returns 0, the result of Run.
int ReportNone(EDeserialize& cElement, ObjectFileRead* pReader) {
    const char* const pchReason = pReader ? pReader->ReasonOnce() : nullptr;
    if (pchReason) {
        cElement.ErrorMessage("Run(): no complete object at byte %llu of %s: %s\n", pReader->Offset(),
                              pReader->ShownName(), pchReason);
    }
    return 0;
}

// Creates an object of the type in the line. Returns null after a report.
QObject* CreateNamed(EDeserialize& cElement, char* pchType) {
    QObject* const pObject = cElement.m_pFramework ? cElement.m_pFramework->CreateQObject(pchType) : nullptr;
    if (!pObject) {
        cElement.ErrorMessage("Unable to instantiate QObject: %s\n", pchType);
    }
    return pObject;
}

int Deliver(EDeserialize& cElement, QObject& cObject) {
    if (cElement.m_iDebug != 0) {
        cElement.Message(1, "Run(): QObjectType = %s\n", ObjectTypeText(cObject).achText);
    }
    SOURCEPAD* const pPad = cElement.GetSourcePad(0);
    return pPad ? pPad->Push(&cObject) : 0;
}

} // namespace

EDeserialize::EDeserialize() : m_pReader(nullptr) {
    m_cProperties.SetProperty(Key::EObjectType, Type::EDeserialize, Section::Standard);
}

EDeserialize::~EDeserialize() {
    delete m_pReader;
}

int EDeserialize::Initialize() {
    delete m_pReader; // of an earlier Initialize
    m_pReader = nullptr;
    const int iInitialized = EObject::Initialize();
    if (!iInitialized) {
        return iInitialized;
    }
    if (!CreateSourcePads(*this, 1, this)) {
        return 0;
    }
    FileSettings cSettings(m_cProperties);
    if (!cSettings.NameFits(*this)) {
        return 0;
    }
    m_pReader = new (std::nothrow) ObjectFileRead(cSettings.Strict());
    if (!m_pReader || !m_pReader->m_pchLineBuffer) {
        delete m_pReader;
        m_pReader = nullptr;
        return 0;
    }
    if (!cSettings.Name()) {
        m_pReader->SetFile(HandleOf(stdin));
    } else if (!m_pReader->OpenFile(cSettings.Name())) {
        ErrorMessage("Unable to open %s: %s\n", cSettings.Name(), std::strerror(errno));
        delete m_pReader;
        m_pReader = nullptr;
        return 0;
    }
    return iInitialized;
}

int EDeserialize::DataArrived(QObject*, Byte2Type) {
    return 0;
}

int EDeserialize::Run() {
    if (!m_pReader) {
        ErrorMessage("Run(): not initialized\n");
        return 0;
    }
    ObjectFileRead* const pOwn = OwnReader(*this);
    if (pOwn) {
        pOwn->BeginObject();
    }
    char* const pchType = m_pReader->ReadLine();
    if (!pchType) {
        return ReportNone(*this, pOwn);
    }
    QObject* const pObject = CreateNamed(*this, pchType);
    if (!pObject) {
        if (pOwn && pOwn == OwnReader(*this)) {
            pOwn->SkipObject();
        }
        return 0;
    }
    pObject->Deserialize(m_pReader);
    // The object's class may replace the reader.
    const bool bCame = !pOwn || pOwn != OwnReader(*this) || pOwn->EndObject();
    const int iResult = bCame ? Deliver(*this, *pObject) : ReportNone(*this, pOwn);
    delete pObject;
    return iResult;
}

} // namespace VESK
