// SPDX-License-Identifier: MIT
// The stream form of property lists and data objects.
#include "fwlib/elements/qobject.h"
#include "fwlib/internal/list.h"
#include "fwlib/internal/objectfiles.h"
#include "fwlib/internal/record.h"
#include "fwlib/properties/properties.h"
#include "fwlib/streams/sread.h"
#include "fwlib/streams/swrite.h"

namespace VESK {

namespace {

// A strict reader must not pass the object for a whole one; the answers are the same.
void TellLoss(SRead& cReader) {
    if (auto* const pReader = OwnClass<ObjectFileRead>::Of(&cReader)) {
        pReader->LoseProperty();
    }
}

} // namespace

int PROPERTIES::Serialize(SWrite* pWriter) {
    const DecimalText cCount(Byte4Type{m_b2PropertyCount});
    WriteRecord<PropertyLineSize>(*pWriter, CountKey, std::strlen(CountKey), cCount.Begin(), cCount.Length());
    for (Byte4Type b4 = 0; b4 < m_b2PropertyCount; ++b4) {
        const char* const pchKey = m_pachKeys[b4];
        const char* const pchValue = m_pachValues[b4];
        WriteRecord<PropertyLineSize>(*pWriter, pchKey, StoredLength(pchKey), pchValue,
                                      StoredLength(pchValue));
    }
    return 1;
}

int PROPERTIES::Deserialize(SRead* pReader) {
    char* pchLine = pReader->ReadLine();
    char* const pchCount = pchLine ? SplitRecord(pchLine) : nullptr;
    if (!pchCount) {
        return 0;
    }
    const auto b2Count = static_cast<Byte2Type>(fwatoi(pchCount));
    const SoughtText cSection(Section::Standard);
    KeyFilter cHeld(*this);
    for (Byte4Type b4 = 0; b4 < b2Count; ++b4) {
        pchLine = pReader->ReadLine();
        char* const pchValue = pchLine ? SplitRecord(pchLine) : nullptr;
        if (!pchValue) {
            return 0;
        }
        const SoughtText cKey(pchLine, static_cast<std::size_t>(pchValue - 1 - pchLine));
        const Byte4Type b4Searched = cHeld.MayHold(cKey) ? m_b2PropertyCount : 0;
        if (!SetEntry(*this, cKey, pchValue, std::strlen(pchValue), cSection, b4Searched)) {
            TellLoss(*pReader);
        }
        cHeld.Mark(cKey);
    }
    return 1;
}

int QObject::Serialize(SWrite* pWriter) {
    char achType[TypeTextSize];
    m_cProperties.GetProperty(Key::QObjectType, achType, sizeof achType, nullptr, Section::Standard);
    pWriter->WriteData(achType, static_cast<Byte4Type>(fwstrlen(achType)));
    pWriter->WriteData(Text("\n"), 1);
    return m_cProperties.Serialize(pWriter);
}

int QObject::Deserialize(SRead* pReader) {
    m_cProperties.Deserialize(pReader);
    return 1;
}

} // namespace VESK
