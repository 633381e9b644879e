// SPDX-License-Identifier: MIT
#include "fwlib/pipeline/pipetext.h"

#include "fwlib/stdc/stdc/fwstdcstring.h"

#include <cstring>

namespace VESK {

bool PipeText::NextPiece(char (&achLine)[PipeLineSize]) {
    if (m_pFile) {
        return fwfgets(achLine, sizeof achLine, m_pFile) != nullptr;
    }
    if (*m_pchText == '\0') {
        return false;
    }
    std::size_t uLength = std::strcspn(m_pchText, "\n");
    uLength += m_pchText[uLength] == '\n' ? 1 : 0;
    uLength = uLength < sizeof achLine ? uLength : sizeof achLine - 1;
    std::memcpy(achLine, m_pchText, uLength);
    achLine[uLength] = '\0';
    m_pchText += uLength;
    return true;
}

bool PipeText::Next(char (&achLine)[PipeLineSize]) {
    if (!NextPiece(achLine)) {
        return false;
    }
    m_b4Line += m_bEnded ? 1 : 0;
    std::size_t uLength = fwstrlen(achLine);
    m_bEnded = uLength > 0 && achLine[uLength - 1] == '\n';
    while (uLength > 0 && (achLine[uLength - 1] == '\r' || achLine[uLength - 1] == '\n')) {
        achLine[--uLength] = '\0';
    }
    return true;
}

} // namespace VESK
