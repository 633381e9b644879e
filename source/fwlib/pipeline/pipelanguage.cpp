// SPDX-License-Identifier: MIT
#include "fwlib/pipeline/pipelanguage.h"

#include "fwlib/internal/handle.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"

#include <cstdio>
#include <cstring>

namespace VESK {

namespace {

constexpr PipeKeyword Keywords[PipeKeywordCount] = {
    {"plugin", PipeWord::Plugin, 1},     {"fwprop", PipeWord::FrameworkProperty, 2},
    {"pipe", PipeWord::Pipe, 1},         {"element", PipeWord::Element, 1},
    {"property", PipeWord::Property, 2}, {"sink", PipeWord::Sink, 1},
    {"source", PipeWord::Source, 1},     {"connect", PipeWord::Connect, 4},
    {"config", PipeWord::Config, 2},
};

// Reads at most 255 bytes, up to the end of the line. Returns their number, 0 at the end of the file. The bytes behind
// them in the buffer show where they end, as they may contain zero bytes.
unsigned int ReadFromFile(char* pFile, char (&achText)[PipeLineSize]) {
    std::memset(achText, '\n', sizeof achText);
    if (!fwfgets(achText, sizeof achText, pFile)) {
        return 0;
    }
    const char* const pch = static_cast<const char*>(std::memchr(achText, '\n', sizeof achText));
    if (!pch) {
        return sizeof achText - 1; // the terminator is the last byte
    }
    const unsigned int u = static_cast<unsigned int>(pch - achText);
    const bool bOfLine =
        u + 1 < sizeof achText && pch[1] == '\0'; // otherwise it stands behind the terminator
    return bOfLine ? u + 1 : u - 1;
}

unsigned int ReadFromText(const char*& pchText, char (&achText)[PipeLineSize]) {
    std::size_t uLength = std::strcspn(pchText, "\n");
    uLength += pchText[uLength] == '\n' ? 1 : 0;
    uLength = uLength < sizeof achText ? uLength : sizeof achText - 1;
    std::memcpy(achText, pchText, uLength);
    achText[uLength] = '\0';
    pchText += uLength;
    return static_cast<unsigned int>(uLength);
}

void RemoveLineEnd(char* pchText) {
    std::size_t uLength = std::strlen(pchText);
    while (uLength > 0 && (pchText[uLength - 1] == '\r' || pchText[uLength - 1] == '\n')) {
        pchText[--uLength] = '\0';
    }
}

// Splits the text in place. Stops after one token more than a line may have.
unsigned int Split(char* pchText, char* (&apchTokens)[MostPipeTokens + 2]) {
    unsigned int u = 0;
    while (u <= MostPipeTokens) {
        pchText += std::strspn(pchText, " \t");
        if (*pchText == '\0' || (u == 0 && *pchText == '#')) {
            break;
        }
        apchTokens[u++] = pchText;
        pchText += std::strcspn(pchText, " \t");
        if (*pchText != '\0') {
            *pchText++ = '\0';
        }
    }
    apchTokens[u] = nullptr;
    return u;
}

} // namespace

const PipeKeyword* GetPipeKeywords() {
    return Keywords;
}

const PipeKeyword* FindPipeKeyword(const char* pchWord) {
    for (const PipeKeyword& cKeyword : Keywords) {
        if (pchWord && std::strcmp(cKeyword.pchWord, pchWord) == 0) {
            return &cKeyword;
        }
    }
    return nullptr;
}

bool PipeReader::Next(PipeLine& cLine) {
    if (m_bEnded) {
        ++m_b4Line;
        m_uRead = 0;
    }
    const unsigned int uLength =
        m_pFile ? ReadFromFile(m_pFile, cLine.achText) : ReadFromText(m_pchText, cLine.achText);
    if (uLength == 0) {
        return false;
    }
    cLine.b4Line = m_b4Line;
    cLine.uColumn = m_uRead + 1;
    m_uRead += uLength;
    m_bEnded = cLine.achText[uLength - 1] == '\n';
    RemoveLineEnd(cLine.achText);
    cLine.uTokens = Split(cLine.achText, cLine.apchTokens);
    return true;
}

bool PipeReader::Failed() const {
    return m_pFile && std::ferror(StreamOf(m_pFile));
}

} // namespace VESK
