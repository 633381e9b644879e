// SPDX-License-Identifier: MIT
#include "tap.h"

namespace FwPipe {

namespace {

class TextWriter : public VESK::SWrite {
public:
    VESK::Byte4Type WriteData(char* pchData, VESK::Byte4Type b4Length) override {
        m_cText.append(pchData, b4Length);
        return b4Length;
    }

    std::string m_cText;
};

// Removes the line with that number, from 0.
void RemoveLine(std::size_t uLine, std::string& cText) {
    std::size_t uBegin = 0;
    for (; uLine > 0; --uLine) {
        uBegin = cText.find('\n', uBegin) + 1;
    }
    cText.erase(uBegin, cText.find('\n', uBegin) + 1 - uBegin);
}

// An object of an object stream for people: without the number of properties, and without the property QObjectType if
// it is the first one and equals the type. The end of a stream, which has the type QObject in an object stream, is QEOF.
std::string Readable(std::string cText, bool bEnd) {
    static const std::string Count = "m_b2PropertyCount=";
    const std::string cType = cText.substr(0, cText.find('\n') + 1);
    if (cText.compare(cType.size(), Count.size(), Count) != 0) {
        return cText; // a class with a form of its own
    }
    RemoveLine(1, cText);
    if (cText.compare(cType.size(), 12 + cType.size(), "QObjectType=" + cType) == 0) {
        RemoveLine(1, cText);
    }
    return bEnd && cType == "QObject\n" ? cText.replace(0, cType.size(), "QEOF\n") : cText;
}

} // namespace

bool Tap::Insert(VESK::EObject& cElement, VESK::Byte2Type b2Pad) {
    if (cElement.GetSourcePadCount() == 0) {
        m_pTapped = cElement.GetSinkPad(b2Pad);
        m_pReceiver = m_pTapped ? m_pTapped->m_pElement : nullptr;
        if (m_pTapped) {
            m_pTapped->m_pElement = this;
        }
        return m_pTapped;
    }
    VESK::SOURCEPAD* const pSource = cElement.GetSourcePad(b2Pad);
    if (!pSource) {
        return false;
    }
    m_pTapped = pSource->m_pSinkPad;
    m_pReceiver = m_pTapped ? m_pTapped->m_pElement : nullptr;
    pSource->m_pSinkPad = &m_cPad;
    return true;
}

int Tap::DataArrived(VESK::QObject* pObject, VESK::Byte2Type) {
    m_cText += m_cText.empty() ? "" : "\n";
    if (pObject) {
        TextWriter cWriter;
        pObject->Serialize(&cWriter);
        m_cText += Readable(std::move(cWriter.m_cText), pObject->GetEOF() != 0);
    } else {
        m_cText += "no object\n";
    }
    return !m_pTapped ? 1 : m_pReceiver ? m_pReceiver->DataArrived(pObject, m_pTapped->m_b2Index) : 0;
}

} // namespace FwPipe
