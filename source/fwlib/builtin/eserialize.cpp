// SPDX-License-Identifier: MIT
#include "fwlib/builtin/eserialize.h"

#include "fwlib/elements/pad.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/internal/elementwork.h"
#include "fwlib/internal/objectfiles.h"
#include "fwlib/internal/texts.h"

#include <new>

namespace VESK {

namespace {

struct TypeText {
    explicit TypeText(QObject& cObject) {
        cObject.m_cProperties.GetProperty(Key::QObjectType, achType, sizeof achType,
                                          Text("[No QObject Type]"), Section::Standard);
    }

    char achType[TypeTextSize];
};

// The writer that Initialize made; a host may have put one of its own in its place.
ObjectFileWrite* OwnWriter(ESerialize& cElement) {
    return dynamic_cast<ObjectFileWrite*>(cElement.m_pWriter);
}

// Whether the object's lines would be read back as they are written.
bool Storable(const PROPERTIES& cProperties) {
    for (Byte4Type b4 = 0; b4 < cProperties.m_b2PropertyCount; ++b4) {
        if (std::strpbrk(cProperties.m_pachKeys[b4], "=\n") ||
            std::strchr(cProperties.m_pachValues[b4], '\n')) {
            return false;
        }
    }
    return true;
}

// Reports the first loss of an object in this file.
void ReportLoss(ESerialize& cElement, QObject& cObject, ObjectFileWrite& cWriter) {
    if (cWriter.ReportOnce()) {
        cElement.ErrorMessage("Unable to store an object in %s: %s: QObjectType = %s\n", cWriter.ShownName(),
                              std::strerror(cWriter.Reason()), TypeText(cObject).achType);
    }
}

// Writes the object: 1, or 0 with a report when it answered 0 or, if the element is strict, when it was not stored.
int Store(ESerialize& cElement, QObject& cObject, Byte2Type b2Index) {
    ObjectFileWrite* const pWriter = OwnWriter(cElement);
    const bool bStrict = pWriter && pWriter->IsStrict();
    if (bStrict && !Storable(cObject.m_cProperties)) {
        cElement.ErrorMessage("DataArrived(%d): a line cannot hold a key or value: QObjectType = %s\n",
                              b2Index, TypeText(cObject).achType);
        return 0;
    }
    const int iSerialized = cObject.Serialize(cElement.m_pWriter);
    const int iStored = !pWriter || pWriter->EndObject(iSerialized != 0);
    if (!iSerialized) {
        cElement.ErrorMessage("DataArrived(%d): QObject failed to serialize: QObjectType = %s\n", b2Index,
                              TypeText(cObject).achType);
        return 0;
    }
    if (!iStored) {
        ReportLoss(cElement, cObject, *pWriter);
    }
    return iStored || !bStrict ? iSerialized : 0;
}

// Closes the file, if any, and reports what was lost only then, as on a disk that another machine keeps.
void EndRecording(ESerialize& cElement) {
    ObjectFileWrite* const pWriter = OwnWriter(cElement);
    if (pWriter && !pWriter->Close() && pWriter->ReportOnce()) {
        cElement.ErrorMessage("Unable to store all objects in %s: %s\n", pWriter->ShownName(),
                              std::strerror(pWriter->Reason()));
    }
    delete cElement.m_pWriter;
    cElement.m_pWriter = nullptr;
}

int PassOn(ESerialize& cElement, QObject& cObject, Byte2Type b2Index) {
    int iAnswer = 1;
    for (Byte2Type b2 = 0; iAnswer && b2 < cElement.m_b2Passthrough; ++b2) {
        SOURCEPAD* const pPad = cElement.GetSourcePad(b2);
        if (!pPad) {
            cElement.ErrorMessage("DataArrived(%d): GetSourcePad(%d) failed.\n", b2Index, b2);
            return 0;
        }
        iAnswer = pPad->Push(&cObject);
    }
    return iAnswer;
}

} // namespace

ESerialize::ESerialize() : m_pWriter(nullptr), m_b2Passthrough(0) {
    m_cProperties.SetProperty(Key::EObjectType, Type::ESerialize, Section::Standard);
}

ESerialize::~ESerialize() {
    EndRecording(*this);
}

int ESerialize::Initialize() {
    const int iInitialized = EObject::Initialize();
    if (!iInitialized) {
        return iInitialized;
    }
    m_cProperties.GetProperty(Key::Passthrough, &m_b2Passthrough, 0, Section::Standard);
    if (!CreateSinkPad(*this) || !CreateSourcePads(*this, m_b2Passthrough, this)) {
        return 0;
    }
    FileSettings cSettings(m_cProperties);
    EndRecording(*this);
    auto* const pWriter = new (std::nothrow) ObjectFileWrite(cSettings.Name(), cSettings.Strict());
    m_pWriter = pWriter;
    if (!pWriter) {
        ErrorMessage("Initialize(): No memory\n");
        return 0;
    }
    if (!pWriter->m_pFile) {
        pWriter->ReportOnce(); // which this is
        ErrorMessage("Unable to open %s: %s\n", pWriter->ShownName(), std::strerror(pWriter->Reason()));
    }
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
        Message(1, "DataArrived(%d): QObjectType = %s\n", b2Index, TypeText(*pObject).achType);
    }
    const int iStored = Store(*this, *pObject, b2Index);
    return iStored && m_b2Passthrough > 0 ? PassOn(*this, *pObject, b2Index) : iStored;
}

} // namespace VESK
