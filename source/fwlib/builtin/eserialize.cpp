// SPDX-License-Identifier: MIT
#include "fwlib/builtin/eserialize.h"

#include "fwlib/elements/pad.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/internal/elementwork.h"
#include "fwlib/internal/objectfiles.h"
#include "fwlib/internal/texts.h"

#include <cerrno>
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

// Ends the object in the file: 1, or 0 when it was lost and the element is strict. The first loss is reported.
int EndObject(ESerialize& cElement, QObject& cObject) {
    ObjectFileWrite* const pWriter = OwnWriter(cElement);
    if (!pWriter || pWriter->EndObject()) {
        return 1;
    }
    if (!pWriter->m_bReported) {
        pWriter->m_bReported = true;
        cElement.ErrorMessage("Unable to store an object in %s: QObjectType = %s\n", pWriter->ShownName(),
                              TypeText(cObject).achType);
    }
    return !pWriter->IsStrict();
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
    delete m_pWriter;
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
    char achFileName[NameTextSize];
    const int iNamed =
        m_cProperties.GetProperty(Key::Filename, achFileName, sizeof achFileName, nullptr, Section::Standard);
    Byte4Type b4Strict;
    m_cProperties.GetProperty(Key::Strict, &b4Strict, 0, Section::Standard);
    delete m_pWriter;
    errno = 0;
    auto* const pWriter = new (std::nothrow) ObjectFileWrite(iNamed ? achFileName : nullptr, b4Strict != 0);
    m_pWriter = pWriter;
    if (!pWriter) {
        return 0;
    }
    if (!pWriter->m_pFile) {
        ErrorMessage("Unable to open %s: %s\n", pWriter->ShownName(), std::strerror(errno));
        pWriter->m_bReported = true;
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
    const int iSerialized = pObject->Serialize(m_pWriter);
    const int iStored = EndObject(*this, *pObject);
    if (!iSerialized) {
        ErrorMessage("DataArrived(%d): QObject failed to serialize: QObjectType = %s\n", b2Index,
                     TypeText(*pObject).achType);
        return 0;
    }
    if (!iStored) {
        return 0;
    }
    return m_b2Passthrough == 0 ? iSerialized : PassOn(*this, *pObject, b2Index);
}

} // namespace VESK
