// SPDX-License-Identifier: MIT
#include "configfile.h"

#include <algorithm>
#include <cstddef>

namespace FwPipe {

namespace {

constexpr std::size_t PieceSize = 255; // the library reads the rest of a longer line as another one

// Reports once for each file.
class Blemishes {
public:
    explicit Blemishes(Diagnoses& cDiagnoses) : m_cDiagnoses(cDiagnoses) {}

    // The text of a header or key.
    void Look(const Token& cToken, const char* pchWhat) {
        const std::string& cText = cToken.cText;
        const bool bBlank = !cText.empty() && (cText.find_first_of(" \t") == 0 ||
                                               cText.find_last_of(" \t") + 1 == cText.size());
        if (bBlank) {
            m_cDiagnoses.Warning(cToken.cSpot, "config-blank",
                                 std::string("blanks at the ends of a ") + pchWhat + " belong to it: \"" +
                                     cText + '"');
        }
    }

    void LookAtEnd(const std::string& cLine, Spot cSpot) {
        if (!m_bReturn && !cLine.empty() && cLine.back() == '\r') {
            m_bReturn = true;
            cSpot.uColumn = static_cast<unsigned int>(cLine.size());
            cSpot.uLength = 1;
            m_cDiagnoses.Warning(cSpot, "config-return",
                                 "a carriage return at the end of a line belongs to its header or value");
        }
    }

private:
    Diagnoses& m_cDiagnoses;
    bool m_bReturn = false;
};

Token Part(const std::string& cLine, std::size_t uBegin, std::size_t uLength, Spot cSpot) {
    cSpot.uColumn += static_cast<unsigned int>(uBegin);
    cSpot.uLength = static_cast<unsigned int>(std::min(uLength, cLine.size() - uBegin));
    return {cLine.substr(uBegin, uLength), cSpot};
}

// A line that begins with "[" ends a section; it is found only as "[name]" to the letter.
void ReadPiece(const std::string& cPiece, const Spot& cSpot, std::vector<ConfigSection>& cSections,
               Blemishes& cBlemishes) {
    cBlemishes.LookAtEnd(cPiece, cSpot);
    const std::string cBare = cPiece.substr(0, cPiece.find_last_not_of('\r') + 1);
    if (cPiece.front() == '[') {
        const bool bWhole = cPiece.back() == ']' && cPiece.size() > 2;
        cSections.push_back({bWhole ? Part(cPiece, 1, cPiece.size() - 2, cSpot) : Token{"", cSpot}, {}});
        cBlemishes.Look(bWhole ? cSections.back().cName : Part(cBare, 0, cBare.size(), cSpot), "header");
        return;
    }
    const std::size_t uEqual = cPiece.find('=');
    if (uEqual != std::string::npos && !cSections.empty()) {
        const Token cKey = Part(cPiece, 0, uEqual, cSpot);
        cBlemishes.Look(cKey, "key");
        cSections.back().cEntries.emplace_back(cKey, Part(cPiece, uEqual + 1, std::string::npos, cSpot));
    } else if (const std::size_t uHeader = cBare.find('[');
               uHeader != std::string::npos && cBare.find_first_not_of(" \t") == uHeader) {
        cBlemishes.Look(Part(cBare, 0, cBare.size(), cSpot), "header");
    }
}

} // namespace

bool ReadConfig(const std::string& cPath, Diagnoses& cDiagnoses, std::vector<ConfigSection>& cSections) {
    std::string cContent;
    if (!ReadAll(cPath, cContent)) {
        return false;
    }
    Spot cSpot{cDiagnoses.File(cPath), 1, 1, 0};
    Blemishes cBlemishes(cDiagnoses);
    for (std::size_t uBegin = 0; uBegin < cContent.size(); ++cSpot.uLine) {
        const std::size_t uEnd = std::min(cContent.find('\n', uBegin), cContent.size());
        cSpot.uColumn = 1;
        for (std::size_t u = uBegin; u < uEnd; u += PieceSize) {
            ReadPiece(cContent.substr(u, std::min(PieceSize, uEnd - u)), cSpot, cSections, cBlemishes);
            cSpot.uColumn += static_cast<unsigned int>(PieceSize);
        }
        uBegin = uEnd + 1;
    }
    return true;
}

} // namespace FwPipe
