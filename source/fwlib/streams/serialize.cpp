// SPDX-License-Identifier: MIT
// Writing property lists and data objects to streams, and reading them.
#include "fwlib/elements/qobject.h"
#include "fwlib/internal/decimal.h"
#include "fwlib/internal/growth.h"
#include "fwlib/internal/textmatch.h"
#include "fwlib/internal/textsizes.h"
#include "fwlib/properties/list.h"
#include "fwlib/properties/properties.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/streams/objectfileread.h"
#include "fwlib/streams/objectlines.h"
#include "fwlib/streams/record.h"
#include "fwlib/streams/sread.h"
#include "fwlib/streams/swrite.h"
#include "fwlib/text.h"

#include <cstdlib>

namespace VESK {

static_assert(ObjectLines::MostProperties == LargestCapacity, "a stream holds what a list holds");
static_assert(ObjectLines::LongestType == TypeTextSize - 1, "a stream holds what a message shows");

namespace {

// Tells a strict reader not to accept the object as a complete one. Results do not change.
void TellLoss(SRead& cReader) {
    if (auto* const pReader = OwnClass<ObjectFileRead>::Of(&cReader)) {
        pReader->LoseProperty();
    }
}

// The state of a list, to detect that a reader changed it while it read a line.
struct ListState {
    explicit ListState(const PROPERTIES& cList)
        : b4Count(cList.m_b2PropertyCount),
          pKeys(cList.m_pachKeys),
          b4NameChanges(NameChanges.load(std::memory_order_relaxed)) {}
    bool IsNow(const PROPERTIES& cList) const {
        const ListState cNow(cList);
        return b4Count == cNow.b4Count && pKeys == cNow.pKeys && b4NameChanges == cNow.b4NameChanges;
    }

    Byte4Type b4Count;
    char* const* pKeys;
    Byte4Type b4NameChanges; // Reset counts as one
};

// The lines of all entries, each after its length; on the heap if there are many.
class ComposedLines {
public:
    explicit ComposedLines(const PROPERTIES& cList) : m_pchLines(m_achLines) {
        m_uSize = Compose(cList, sizeof m_achLines);
        if (m_uSize > sizeof m_achLines) {
            m_pchLines = m_uSize > UINT32_MAX ? nullptr : static_cast<char*>(std::malloc(m_uSize));
            m_uSize = m_pchLines ? Compose(cList, m_uSize) : 0;
        }
    }
    ~ComposedLines() {
        if (m_pchLines != m_achLines) {
            std::free(m_pchLines);
        }
    }
    ComposedLines(const ComposedLines&) = delete;
    ComposedLines& operator=(const ComposedLines&) = delete;

    // Returns false when there was not enough memory for the lines.
    bool WriteTo(SWrite& cWriter) {
        Byte4Type b4Line;
        for (char* pch = m_pchLines; pch && pch < m_pchLines + m_uSize; pch += b4Line) {
            std::memcpy(&b4Line, pch, sizeof b4Line);
            pch += sizeof b4Line;
            cWriter.WriteData(pch, b4Line);
        }
        return m_pchLines != nullptr;
    }

private:
    // Returns the size of all lines, even if they do not fit.
    std::size_t Compose(const PROPERTIES& cList, std::size_t uSize) {
        std::size_t uUsed = 0;
        for (Byte4Type b4 = 0; b4 < cList.m_b2PropertyCount; ++b4) {
            const SoughtText cKey(cList.m_pachKeys[b4]);
            const SoughtText cValue(cList.m_pachValues[b4]);
            const std::size_t uLine = cKey.Length() + 1 + cValue.Length() + 1;
            const auto b4Line = static_cast<Byte4Type>(uLine);
            const std::size_t uStart = uUsed;
            uUsed += sizeof b4Line + uLine;
            if (uUsed <= uSize) {
                char* const pch = m_pchLines + uStart;
                std::memcpy(pch, &b4Line, sizeof b4Line);
                ComposeRecord(pch + sizeof b4Line, cKey.Begin(), cKey.Length(), cValue.Begin(),
                              cValue.Length());
            }
        }
        return uUsed;
    }

    char* m_pchLines; // owned unless it is the array; null: not enough memory
    std::size_t m_uSize;
    char m_achLines[PropertyLineSize];
};

} // namespace

int PROPERTIES::Serialize(SWrite* pWriter) {
    const Byte4Type b4Count = m_b2PropertyCount;
    const DecimalText cCount(b4Count);
    ComposedLines cLines(*this); // composed now, since the writer may change the list
    WriteRecord<PropertyLineSize>(*pWriter, ObjectLines::CountKey(), std::strlen(ObjectLines::CountKey()),
                                  cCount.Begin(), cCount.Length());
    if (cLines.WriteTo(*pWriter)) {
        return 1;
    }
    for (Byte4Type b4 = 0; b4 < b4Count && b4 < m_b2PropertyCount; ++b4) {
        const SoughtText cKey(m_pachKeys[b4]);
        const SoughtText cValue(m_pachValues[b4]);
        WriteRecord<PropertyLineSize>(*pWriter, cKey.Begin(), cKey.Length(), cValue.Begin(), cValue.Length());
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
    KeyFilter cHeld(*this, b2Count);
    for (Byte4Type b4 = 0; b4 < b2Count; ++b4) {
        const ListState cBefore(*this);
        pchLine = pReader->ReadLine();
        char* const pchValue = pchLine ? SplitRecord(pchLine) : nullptr;
        if (!pchValue) {
            return 0;
        }
        if (!cBefore.IsNow(*this)) {
            cHeld.MarkAll(*this);
        }
        const SoughtText cKey(pchLine, static_cast<std::size_t>(pchValue - 1 - pchLine));
        const std::size_t uLength = std::strlen(pchValue);
        if (!(cHeld.Mark(cKey) ? SetEntry(*this, pchLine, pchValue, uLength, Section::Standard)
                               : AddEntry(*this, cKey, pchValue, uLength, cSection))) {
            TellLoss(*pReader);
        }
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
