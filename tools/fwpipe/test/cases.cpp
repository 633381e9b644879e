// SPDX-License-Identifier: MIT
#include "cases.h"

#include "nearest.h"
#include "test/written.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

namespace FwPipe {

namespace {

constexpr char Count[] = "m_b2PropertyCount=";

enum class Argument { None, Needed, Distinguishes }; // Distinguishes: a case may have several such sections

const struct Kind {
    const char* pchName;
    Argument Kept;
    bool bText; // lines may follow the heading
} Kinds[] = {
    {"case", Argument::Needed, true},          {"also", Argument::Needed, true},
    {"link", Argument::Needed, true},          {"pipe", Argument::None, true},
    {"file", Argument::Distinguishes, true},   {"config", Argument::Needed, false},
    {"noconfig", Argument::Needed, false},     {"stdin", Argument::None, true},
    {"stdout", Argument::None, true},          {"stderr", Argument::None, true},
    {"printed", Argument::None, true},         {"built", Argument::None, true},
    {"left", Argument::Distinguishes, true},   {"input", Argument::Distinguishes, true},
    {"output", Argument::Distinguishes, true}, {"answers", Argument::Needed, false},
    {"exit", Argument::Needed, false},         {"fwpipe", Argument::Needed, false},
};

const Kind* FindKind(const std::string& cName) {
    const auto* const pKind =
        std::find_if(std::begin(Kinds), std::end(Kinds), [&](const Kind& k) { return k.pchName == cName; });
    return pKind == std::end(Kinds) ? nullptr : pKind;
}

std::string Unknown(const std::string& cName) {
    std::vector<std::string> cNames;
    for (const Kind& cKind : Kinds) {
        cNames.emplace_back(cKind.pchName);
    }
    return "unknown section \"" + cName + '"' + DidYouMean(Nearest(cName, cNames));
}

bool IsHeading(const std::string& cLine) {
    return cLine.compare(0, 4, "--- ") == 0;
}

// Whether the second section takes the place of the first.
bool Replaces(const Section& cOld, const Section& cNew) {
    const bool bConfig = cOld.cKind == "config" || cOld.cKind == "noconfig";
    return bConfig ? cNew.cKind == "config" || cNew.cKind == "noconfig"
                   : cOld.cKind == cNew.cKind && (FindKind(cOld.cKind)->Kept != Argument::Distinguishes ||
                                                  cOld.cArgument == cNew.cArgument);
}

Section ReadHeading(const std::string& cLine, unsigned int uLine) {
    const std::size_t uBlank = std::min(cLine.find(' ', 4), cLine.size());
    Section cSection{cLine.substr(4, uBlank - 4), "", uLine, uLine + 1, ""};
    if (uBlank < cLine.size()) {
        cSection.cArgument = cLine.substr(uBlank + 1);
    }
    const Kind* const pKind = FindKind(cSection.cKind);
    if (!pKind) {
        throw TestFileError(uLine, Unknown(cSection.cKind));
    }
    if ((pKind->Kept == Argument::None) != cSection.cArgument.empty()) {
        throw TestFileError(uLine,
                            "\"--- " + cSection.cKind +
                                (cSection.cArgument.empty() ? "\" needs an argument" : "\" has no argument"));
    }
    return cSection;
}

// Reads the lines up to the next heading.
void ReadText(const std::vector<std::string>& cLines, Section& cSection) {
    while (cSection.uEnd <= cLines.size() && !IsHeading(cLines[cSection.uEnd - 1])) {
        ++cSection.uEnd;
    }
    unsigned int uLast = cSection.uEnd;
    while (uLast > cSection.uLine + 1 && cLines[uLast - 2].empty()) {
        --uLast;
    }
    std::vector<std::string> cTexts;
    for (unsigned int u = cSection.uLine + 1; u < uLast; ++u) {
        const std::string cWrong = AppendMeant(cLines[u - 1], cTexts);
        if (!cWrong.empty()) {
            throw TestFileError(u, cWrong);
        }
    }
    if (!cTexts.empty() && !FindKind(cSection.cKind)->bText) {
        throw TestFileError(cSection.uLine + 1, "the section \"" + cSection.cKind + "\" has no lines");
    }
    for (const std::string& cText : cTexts) {
        cSection.cText += cText;
    }
}

void Check(const Case& cCase) {
    const Section* const pCommand = cCase.Find("fwpipe");
    for (const Section& cSection : cCase.cSections) {
        const std::string& cKind = cSection.cKind;
        if (pCommand && (cKind == "answers" || cKind == "input" || cKind == "output" || cKind == "printed" ||
                         cKind == "built" || cKind == "config" || cKind == "noconfig")) {
            throw TestFileError(cSection.uLine, "a case with \"--- fwpipe\" has no section \"" + cKind + '"');
        }
        std::vector<std::vector<std::string>> cBlocks;
        const std::string cWrong = cKind == "input" ? AppendInput(cSection.cText, cBlocks) : "";
        if (!cWrong.empty()) {
            throw TestFileError(cSection.uLine, cWrong);
        }
        const std::string& cStatus = cSection.cArgument;
        if (cKind == "exit" && (cStatus.find_first_not_of("0123456789") != std::string::npos ||
                                cStatus.size() > 3 || std::stoul(cStatus) > 255)) {
            throw TestFileError(cSection.uLine, "an exit status is a number from 0 to 255");
        }
    }
    if (!pCommand && !cCase.Find("pipe")) {
        throw TestFileError(cCase.uLine, "the case has no section \"pipe\"");
    }
    if (cCase.Find("stdout") && cCase.Find("printed")) {
        throw TestFileError(cCase.uLine, "the case has both \"stdout\" and \"printed\"");
    }
}

// Adds a section to the case. Those that it has from an earlier case end before line uOwn of the file.
void Add(Section cSection, unsigned int uOwn, Case& cCase) {
    for (Section& cOld : cCase.cSections) {
        if (Replaces(cOld, cSection)) {
            if (cOld.uLine >= uOwn) {
                throw TestFileError(cSection.uLine, "the case has this section already, in line " +
                                                        std::to_string(cOld.uLine));
            }
            cOld = std::move(cSection);
            return;
        }
    }
    cCase.cSections.push_back(std::move(cSection));
}

// Adds a section to the file.
void Take(Section cSection, Case& cShared, TestFile& cFile) {
    const bool bAlso = cSection.cKind == "also";
    if (cFile.cCases.empty() && cSection.cKind != "case" && cSection.cKind != "link") {
        throw TestFileError(cSection.uLine, '"' + cSection.cKind + "\" needs a case before it");
    }
    if (cSection.cKind == "link") {
        if (!cFile.cCases.empty()) {
            throw TestFileError(cSection.uLine, "\"link\" stands before the first case");
        }
        cFile.cLinks.push_back(cSection.cArgument);
    } else if (bAlso || cSection.cKind == "case") {
        cFile.cCases.push_back({cSection.cArgument, cSection.uLine, cSection.uEnd, {}, bAlso});
        if (bAlso) {
            cFile.cCases.back().cSections = cShared.cSections;
        }
    } else {
        Case& cCase = cFile.cCases.back();
        cCase.uEnd = cSection.uEnd;
        Add(std::move(cSection), cCase.uLine, cCase);
    }
    if (!cFile.cCases.empty() && !cFile.cCases.back().bAlso) {
        cShared = cFile.cCases.back();
    }
}

std::vector<std::string> Lines(const std::string& cText) {
    std::vector<std::string> cLines;
    std::istringstream cStream(cText);
    for (std::string cLine; std::getline(cStream, cLine);) {
        cLines.push_back(cLine);
    }
    return cLines;
}

bool IsCount(const std::string& cLine) {
    return cLine.compare(0, sizeof Count - 1, Count) == 0;
}

// Adds the number of properties, or checks it. Returns what is wrong.
std::string CompleteBlock(std::vector<std::string>& cBlock) {
    std::size_t uCount = cBlock.size() - 1;
    if (cBlock.size() < 2 || !IsCount(cBlock[1])) {
        cBlock.insert(cBlock.begin() + 1, Count + std::to_string(uCount));
    } else {
        const std::string cCount = cBlock[1].substr(sizeof Count - 1);
        const bool bNumber = !cCount.empty() && cCount.size() <= 5 &&
                             cCount.find_first_not_of("0123456789") == std::string::npos;
        if (!bNumber || std::stoul(cCount) > cBlock.size() - 2) {
            return "after " + cBlock[1] + " there are " + std::to_string(cBlock.size() - 2) + " lines";
        }
        uCount = std::stoul(cCount);
    }
    for (std::size_t u = 2; u < uCount + 2; ++u) {
        if (cBlock[u].find('=') == std::string::npos) {
            return "expected KEY=VALUE, not \"" + cBlock[u] + '"';
        }
    }
    return "";
}

} // namespace

const Section* Case::Find(const std::string& cKind, const std::string& cArgument) const {
    const auto pFound = std::find_if(cSections.begin(), cSections.end(), [&](const Section& cSection) {
        return cSection.cKind == cKind && (cArgument.empty() || cSection.cArgument == cArgument);
    });
    return pFound == cSections.end() ? nullptr : &*pFound;
}

std::vector<std::string> ReadLines(const std::string& cPath) {
    std::ifstream cStream(cPath, std::ios::binary);
    std::ostringstream cText;
    if (!cStream || !(cText << cStream.rdbuf())) {
        throw TestFileError(0, cStream.is_open() ? "it is empty or cannot be read" : std::strerror(errno));
    }
    return Lines(cText.str());
}

TestFile ReadTestFile(const std::string& cPath) {
    TestFile cFile{cPath, ReadLines(cPath), {}, {}};
    Case cShared; // the last one that is not "also"
    for (unsigned int uLine = 1; uLine <= cFile.cLines.size();) {
        if (!IsHeading(cFile.cLines[uLine - 1])) {
            ++uLine; // before the first heading
            continue;
        }
        Section cSection = ReadHeading(cFile.cLines[uLine - 1], uLine);
        ReadText(cFile.cLines, cSection);
        uLine = cSection.uEnd;
        Take(std::move(cSection), cShared, cFile);
    }
    if (cFile.cCases.empty()) {
        throw TestFileError(0, "it has no line \"--- case NAME\"");
    }
    for (const Case& cCase : cFile.cCases) {
        Check(cCase);
    }
    return cFile;
}

std::string AppendInput(const std::string& cText, std::vector<std::vector<std::string>>& cBlocks) {
    const std::vector<std::string> cLines = Lines(cText);
    std::string cWrong;
    for (std::size_t u = 0; u < cLines.size() && cWrong.empty();) {
        if (cLines[u].empty()) {
            ++u;
            continue;
        }
        // In a copy of an object stream, the next object begins at the line before its number of properties.
        std::size_t uEnd = u + 1;
        while (uEnd < cLines.size() && !cLines[uEnd].empty() &&
               (uEnd == u + 1 || uEnd + 1 == cLines.size() || !IsCount(cLines[uEnd + 1]))) {
            ++uEnd;
        }
        std::vector<std::string> cBlock(cLines.begin() + static_cast<std::ptrdiff_t>(u),
                                        cLines.begin() + static_cast<std::ptrdiff_t>(uEnd));
        cWrong = CompleteBlock(cBlock);
        cBlocks.push_back(std::move(cBlock));
        u = uEnd;
    }
    return cWrong;
}

} // namespace FwPipe
