// SPDX-License-Identifier: MIT
#include "show.h"

#include "../escape.h"
#include "../message.h"
#include "../model/text.h"
#include "../nearest.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <unistd.h>
#include <vector>

namespace FwPipe {

namespace {

constexpr const char* Names[] = {"warning", "error"};

const char* NameOf(Severity Weight) {
    return Names[static_cast<int>(Weight)];
}

// The lines of the files that are shown, read again.
class SourceLines {
public:
    std::string Line(const Spot& cSpot) {
        const auto [Found, bNew] = m_cFiles.try_emplace(*cSpot.pFile);
        std::vector<std::string>& cLines = Found->second;
        std::string cContent;
        if (bNew && ReadAll(*cSpot.pFile, cContent)) {
            for (std::size_t u = 0; u < cContent.size();) {
                const std::size_t uEnd = std::min(cContent.find('\n', u), cContent.size());
                cLines.push_back(cContent.substr(u, uEnd - u));
                u = uEnd + 1;
            }
        }
        return cSpot.uLine <= cLines.size() ? cLines[cSpot.uLine - 1] : "";
    }

private:
    std::map<std::string, std::vector<std::string>> m_cFiles;
};

// The line, and below it a caret at the column and a mark below the rest of the token. Tabs stay, so that both agree; what a
// terminal would interpret becomes a question mark.
std::string Excerpt(std::string_view cLine, const Spot& cSpot, const char* pchColour, const char* pchPlain) {
    std::string cShown, cMark;
    const std::size_t uBegin = cSpot.uColumn - 1, uEnd = uBegin + std::max(cSpot.uLength, 1U);
    for (std::size_t u = 0, uLength; u < std::min(cLine.size(), std::size_t{255} + uEnd); u += uLength) {
        bool bActs;
        uLength = FirstCharacter(cLine.substr(u), bActs);
        const bool bTab = cLine[u] == '\t';
        cShown += bActs && !bTab ? "?" : cLine.substr(u, uLength);
        if (u < uEnd) {
            cMark += u < uBegin ? (bTab ? '\t' : ' ') : u == uBegin ? '^' : '~';
        }
    }
    return "  " + cShown + "\n  " + pchColour + cMark + pchPlain + '\n';
}

} // namespace

void ShowDiagnoses(const Diagnoses& cDiagnoses) {
    const bool bTerminal = isatty(STDOUT_FILENO) != 0;
    const char* const pchNoColour = std::getenv("NO_COLOR");
    const bool bColour = bTerminal && (!pchNoColour || *pchNoColour == '\0');
    const char* const pchPlain = bColour ? "\033[0m" : "";
    SourceLines cLines;
    for (const Diagnosis& cDiagnosis : cDiagnoses.Sorted()) {
        const Spot& cSpot = cDiagnosis.cSpot;
        const char* const pchColour = !bColour                               ? ""
                                      : cDiagnosis.Weight == Severity::Error ? "\033[1;31m"
                                                                             : "\033[1;35m";
        std::string cText = ShownOn(stdout, *cSpot.pFile);
        cText += ':' + std::to_string(cSpot.uLine) + ':' + std::to_string(cSpot.uColumn) + ": " + pchColour +
                 NameOf(cDiagnosis.Weight) + ':' + pchPlain + ' ';
        cText += ShownOn(stdout, cDiagnosis.cText) + DidYouMean(ShownOn(stdout, cDiagnosis.cHint));
        cText += std::string(" [") + cDiagnosis.pchId + "]\n";
        const std::string cLine = bTerminal ? cLines.Line(cSpot) : "";
        if (!cLine.empty()) {
            cText += Excerpt(cLine, cSpot, pchColour, pchPlain);
        }
        std::fputs(cText.c_str(), stdout);
    }
}

void AppendJsonDiagnoses(const Diagnoses& cDiagnoses, std::string& cText) {
    for (const Diagnosis& cDiagnosis : cDiagnoses.Sorted()) {
        const Spot& cSpot = cDiagnosis.cSpot;
        cText += cText.empty() ? "{\"file\":" : ",\n{\"file\":";
        AppendJson(*cSpot.pFile, true, false, cText);
        cText += ",\"line\":" + std::to_string(cSpot.uLine) + ",\"column\":" + std::to_string(cSpot.uColumn) +
                 ",\"length\":" + std::to_string(cSpot.uLength) + ",\"severity\":\"" +
                 NameOf(cDiagnosis.Weight) + "\",\"id\":\"" + cDiagnosis.pchId + "\",\"text\":";
        AppendJson(cDiagnosis.cText, true, false, cText);
        cText += ",\"hint\":";
        cDiagnosis.cHint.empty() ? static_cast<void>(cText += "null")
                                 : AppendJson(cDiagnosis.cHint, true, false, cText);
        cText += '}';
    }
}

} // namespace FwPipe
