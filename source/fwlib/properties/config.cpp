// SPDX-License-Identifier: MIT
#include "fwlib/properties/properties.h"

#include "fwlib/internal/textcopy.h"
#include "fwlib/internal/textmatch.h"
#include "fwlib/properties/cutnames.h"
#include "fwlib/properties/list.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"

#include <cstdio>

namespace VESK {

namespace {

constexpr unsigned int LineSize = 256;                    // a line, or a piece of a longer one
constexpr unsigned int LongestSectionName = LineSize - 3; // without both brackets and the terminator

// PROPERTIES::ReadLine, but returns 0 when nothing was read: after a read error, the end of the file is never reached.
int NextLine(char* pFile, char* pchBuffer, unsigned int uSize) {
    if (!fwfgets(pchBuffer, uSize, pFile)) {
        if (uSize > 0) {
            pchBuffer[0] = '\0';
        }
        return 0;
    }
    const std::size_t uLength = fwstrlen(pchBuffer);
    if (uLength > 0 && pchBuffer[uLength - 1] == '\n') {
        pchBuffer[uLength - 1] = '\0';
    }
    return 1;
}

// Whether an earlier entry has the section of this one.
bool SectionSeen(const PROPERTIES& cList, Byte4Type b4Entry) {
    TextMatch cSection(cList.m_pachSections[b4Entry]);
    for (Byte4Type b4 = 0; b4 < b4Entry; ++b4) {
        if (cSection.Equals(cList.m_pachSections[b4])) {
            return true;
        }
    }
    return false;
}

// Writes the texts one after the other. Returns 1 when all were written.
template <class... Texts>
int PutTexts(char* pFile, Texts... pchTexts) {
    return ((fwfputs(Text(pchTexts), pFile) >= 0) && ...);
}

// Writes the block of the section whose first entry this is.
int WriteSection(const PROPERTIES& cList, Byte4Type b4First, char* pFile) {
    const char* const pchSection = cList.m_pachSections[b4First];
    TextMatch cSection(pchSection);
    int iWritten = PutTexts(pFile, "\n[", pchSection, "]\n");
    for (Byte4Type b4 = b4First; iWritten && b4 < cList.m_b2PropertyCount; ++b4) {
        if (cSection.Equals(cList.m_pachSections[b4])) {
            iWritten = PutTexts(pFile, cList.m_pachKeys[b4], "=", cList.m_pachValues[b4], "\n");
        }
    }
    return iWritten;
}

int WriteConfig(const PROPERTIES& cList, char* pchFileName) {
    if (cList.m_b2PropertyCount == 0 || !pchFileName) {
        return 0;
    }
    char* const pFile = fwfopen(pchFileName, Text("w"));
    if (!pFile) {
        return 0;
    }
    int iWritten = 1;
    for (Byte4Type b4 = 0; iWritten && b4 < cList.m_b2PropertyCount; ++b4) {
        if (cList.m_pachSections[b4][0] != '\0' && !SectionSeen(cList, b4)) {
            iWritten = WriteSection(cList, b4, pFile);
        }
    }
    iWritten &= fwflush(pFile) == 0;
    iWritten &= fwfclose(pFile) == 0;
    return iWritten;
}

} // namespace

int PROPERTIES::ReadLine(char* pFile, char* pchBuffer, unsigned int uSize) {
    NextLine(pFile, pchBuffer, uSize);
    return 1;
}

int PROPERTIES::FindSection(char* pFile, char* pchSection) {
    if (!pFile || !pchSection || fwstrlen(pchSection) > LongestSectionName) {
        return 0;
    }
    char achHeader[LineSize];
    std::snprintf(achHeader, sizeof achHeader, "[%s]", pchSection);
    char achLine[LineSize];
    while (NextLine(pFile, achLine, LineSize) && fwstrcmp(achLine, achHeader) != 0) {
    }
    return fwstrcmp(achLine, achHeader) == 0;
}

int PROPERTIES::ReadConfig(char* pchFileName, char* pchSection) {
    char* const pFile = pchFileName ? fwfopen(pchFileName, Text("r")) : nullptr;
    if (!pFile) {
        return 0;
    }
    const int iFound = FindSection(pFile, pchSection);
    char achLine[LineSize];
    int iRead = iFound && NextLine(pFile, achLine, LineSize);
    while (iRead && achLine[0] != '[') {
        char achNext[LineSize];
        const bool bFull = std::strlen(achLine) == LineSize - 1;
        iRead = NextLine(pFile, achNext, LineSize);
        const bool bCut = bFull && iRead && achNext[0] != '\0';
        if (!bCut || KeepCutName(achLine)) {
            AddKeyValuePair(pchSection, achLine);
        }
        CopyBounded(achLine, achNext);
    }
    fwfclose(pFile);
    return iFound;
}

int PROPERTIES::SaveConfig(char* pchFileName) {
    Byte4Type b4Lost;
    return LossInConfig(*this, &b4Lost) == ConfigLoss::Writing ? 0 : WriteConfig(*this, pchFileName);
}

int PROPERTIES::SaveConfig(char* pchFileName, Byte2Type* pb2Lost) {
    Byte4Type b4Lost = m_b2PropertyCount;
    const bool bLost = LossInConfig(*this, &b4Lost) != ConfigLoss::None;
    if (pb2Lost) {
        *pb2Lost = static_cast<Byte2Type>(b4Lost);
    }
    return bLost ? 0 : WriteConfig(*this, pchFileName);
}

} // namespace VESK
