// SPDX-License-Identifier: MIT
#include "fwlib/builtin/eserialize.h"

#include "fwlib/builtin/elementhelpers.h"
#include "fwlib/elements/pad.h"
#include "fwlib/elements/pads.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/framework/framework.h"
#include "fwlib/framework/living.h"
#include "fwlib/properties/list.h"
#include "fwlib/streams/objectfilewrite.h"
#include "fwlib/text.h"

#include <new>

namespace VESK {

namespace {

ObjectTypeText TypeText(QObject& cObject) {
    return ObjectTypeText(cObject, "[No QObject Type]");
}

// The writer that Initialize created; null if a host has replaced it.
ObjectFileWrite* OwnWriter(ESerialize& cElement) {
    return OwnClass<ObjectFileWrite>::Of(cElement.m_pWriter);
}

void ReportLost(ESerialize& cElement, ObjectFileWrite& cWriter) {
    const unsigned long long ullLost = cWriter.TakeLost();
    if (ullLost > 0) {
        cElement.ErrorMessage("Objects lost: %llu\n", ullLost);
    }
}

// Reports the first object that is lost and, once one is stored again, how many were lost.
void ReportLoss(ESerialize& cElement, QObject& cObject, ObjectFileWrite& cWriter, int iStored) {
    if (iStored) {
        ReportLost(cElement, cWriter);
    } else if (cWriter.ClaimReport()) {
        cElement.ErrorMessage("Unable to store an object in %s: %s: QObjectType = %s\n", cWriter.ShownName(),
                              std::strerror(cWriter.Reason()), TypeText(cObject).achText);
    }
}

// Calls the object's Serialize and returns its result. iStored: whether the object was stored, as far as is known. If
// the object's class replaced the writer, pWriter is null afterwards.
int Serialize(ESerialize& cElement, QObject& cObject, ObjectFileWrite*& pWriter, int& iStored) {
    const ObjectAtHand cPlace(pWriter, ObjectFileWrite::BeforeHostUse);
    if (pWriter) {
        pWriter->BeginObject();
    }
    const int iSerialized = cObject.Serialize(cElement.m_pWriter);
    iStored = cPlace.pWriter ? pWriter->EndObject(iSerialized != 0) : !pWriter;
    pWriter = cPlace.pWriter == OwnWriter(cElement) ? cPlace.pWriter : nullptr;
    return iSerialized;
}

// The length of a name in a report, where it ends at its first newline.
int ShownLength(const char* pchName) {
    return static_cast<int>(std::strcspn(pchName, "\n"));
}

// Returns whether the object would be read back as a different one, after a report if so.
bool ReportStreamLoss(ESerialize& cElement, QObject& cObject, Byte2Type b2Index) {
    PROPERTIES& cList = cObject.m_cProperties;
    Byte2Type b2Length = 0;
    cList.GetPropertyLength(Key::QObjectType, &b2Length, Section::Standard);
    if (b2Length >= TypeTextSize) {
        cElement.ErrorMessage("DataArrived(%d): the type is longer than 31 characters: QObjectType = %s\n",
                              b2Index, TypeText(cObject).achText);
        return true;
    }
    Byte4Type b4Entry = 0;
    const StreamLoss Loss = LossInStream(cList, &b4Entry);
    if (Loss == StreamLoss::None) {
        return false;
    }
    const char* const pchKey = cList.m_pachKeys[b4Entry];
    const char* const pchSection = cList.m_pachSections[b4Entry];
    if (Loss == StreamLoss::KeyTwice) {
        cElement.ErrorMessage("DataArrived(%d): a key is in two sections: "
                              "QObjectType = %s: %s in %.*s\n",
                              b2Index, TypeText(cObject).achText, pchKey, ShownLength(pchSection),
                              pchSection);
        return true;
    }
    const char* const pchFault = Loss == StreamLoss::SignInKey      ? "a \"=\" in the key"
                                 : Loss == StreamLoss::NewlineInKey ? "a newline in the key"
                                                                    : "a newline in the value of";
    cElement.ErrorMessage(
        "DataArrived(%d): a key contains '=' or a newline, or a value contains a newline: QObjectType = %s: "
        "%s %.*s in %.*s\n",
        b2Index, TypeText(cObject).achText, pchFault, ShownLength(pchKey), pchKey, ShownLength(pchSection),
        pchSection);
    return true;
}

// Writes the object. Returns 1; or 0, after a report, when Serialize returned 0 or, if strict, when it was not stored.
int Store(ESerialize& cElement, QObject& cObject, Byte2Type b2Index) {
    ObjectFileWrite* pWriter = OwnWriter(cElement);
    const bool bOwn = pWriter != nullptr;
    const bool bStrict = bOwn && pWriter->IsStrict();
    if (bStrict && ReportStreamLoss(cElement, cObject, b2Index)) {
        return 0;
    }
    int iStored;
    const int iSerialized = Serialize(cElement, cObject, pWriter, iStored);
    if (!iSerialized) {
        cElement.ErrorMessage("DataArrived(%d): QObject failed to serialize: QObjectType = %s\n", b2Index,
                              TypeText(cObject).achText);
        return 0;
    }
    if (bOwn && !pWriter) {
        cElement.ErrorMessage("DataArrived(%d): m_pWriter was exchanged within an object: QObjectType = %s\n",
                              b2Index, TypeText(cObject).achText);
    } else if (pWriter) {
        ReportLoss(cElement, cObject, *pWriter, iStored);
    }
    return iStored || !bStrict ? iSerialized : 0;
}

// Closes the file, if any, and reports losses that appear only then, for example on a network file system.
void EndRecording(ESerialize& cElement) {
    ObjectFileWrite* const pWriter = OwnWriter(cElement);
    if (pWriter) {
        const char* const pchName = pWriter->ShownName();
        if (!pWriter->Close() && pWriter->ClaimReport()) {
            cElement.ErrorMessage("Unable to store all objects in %s: %s\n", pchName,
                                  std::strerror(pWriter->Reason()));
        }
        ReportLost(cElement, *pWriter);
    }
    delete cElement.m_pWriter;
    cElement.m_pWriter = nullptr;
}

// The element outlived its framework, so a temporary one prints its reports.
void EndOrphan(ESerialize& cElement) {
    FRAMEWORK cInstead;
    cElement.m_pFramework = &cInstead;
    EndRecording(cElement);
    cElement.m_pFramework = nullptr;
}

int PassOn(ESerialize& cElement, QObject& cObject, Byte2Type b2Index) {
    int iResult = 1;
    for (Byte2Type b2 = 0; iResult && b2 < cElement.m_b2Passthrough; ++b2) {
        SOURCEPAD* const pPad = cElement.GetSourcePad(b2);
        if (!pPad) {
            cElement.ErrorMessage("DataArrived(%d): GetSourcePad(%d) failed.\n", b2Index, b2);
            return 0;
        }
        iResult = pPad->Push(&cObject);
    }
    return iResult;
}

} // namespace

ESerialize::ESerialize() : m_pWriter(nullptr), m_b2Passthrough(0) {
    m_cProperties.SetProperty(Key::EObjectType, Type::ESerialize, Section::Standard);
}

ESerialize::~ESerialize() {
    m_pFramework && !Living(m_pFramework) ? EndOrphan(*this) : EndRecording(*this);
}

int ESerialize::Initialize() {
    const int iInitialized = EObject::Initialize();
    if (!iInitialized) {
        return iInitialized;
    }
    m_cProperties.GetProperty(Key::Passthrough, &m_b2Passthrough, 0, Section::Standard);
    if (!CreateSinkPads(*this, 1) || !CreateSourcePads(*this, m_b2Passthrough, this)) {
        return 0;
    }
    FileSettings cSettings(m_cProperties);
    EndRecording(*this);
    auto* const pWriter = new (std::nothrow) ObjectFileWrite(cSettings.Strict());
    if (!pWriter) {
        ErrorMessage("Initialize(): No memory\n");
        return 0;
    }
    if (!pWriter->Open(*this, cSettings)) {
        delete pWriter;
        return 0;
    }
    m_pWriter = pWriter;
    return iInitialized;
}

int ESerialize::DataArrived(QObject* pObject, Byte2Type b2Index) {
    if (!pObject) {
        return ReportNullObject(*this, b2Index);
    }
    if (!m_pWriter) {
        ErrorMessage("DataArrived(%d): not initialized\n", b2Index);
        return 0;
    }
    if (m_iDebug != 0) {
        Message(1, "DataArrived(%d): QObjectType = %s\n", b2Index, TypeText(*pObject).achText);
    }
    const int iStored = Store(*this, *pObject, b2Index);
    return iStored && m_b2Passthrough > 0 ? PassOn(*this, *pObject, b2Index) : iStored;
}

} // namespace VESK
