// SPDX-License-Identifier: MIT
#include "update.h"

#include "file.h"
#include "newfile.h"
#include "rights.h"
#include "test/written.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>

namespace FwPipe {

namespace {

// A section as it stands in the file; nothing for one that may be missing.
std::vector<std::string> SectionLines(const Difference& cDifference) {
    std::string cHeading = "--- " + cDifference.cKind;
    if (cDifference.IsInHeading()) {
        return {cHeading + ' ' + cDifference.cFound};
    }
    const bool bNamed = !cDifference.cArgument.empty() || cDifference.cKind == "built";
    if (cDifference.cFound.empty() && !bNamed) {
        return {};
    }
    cHeading += cDifference.cArgument.empty() ? "" : " " + cDifference.cArgument;
    std::vector<std::string> cLines = Written(cDifference.cFound);
    cLines.insert(cLines.begin(), cHeading);
    return cLines;
}

} // namespace

void UpdateCase(const Case& cCase, const CaseResult& cResult, std::vector<std::string>& cNewLines) {
    struct Edit {
        std::size_t uBegin, uEnd; // from 0
        std::vector<std::string> cLines;
    };
    std::vector<Edit> cEdits;
    // Empty lines at the end of a section separate it from the next one.
    const auto TextEnd = [&](std::size_t uBegin, std::size_t uEnd) {
        while (uEnd > uBegin && cNewLines[uEnd - 1].empty()) {
            --uEnd;
        }
        return uEnd;
    };
    for (const Difference& cDifference : cResult.cDifferences) {
        const Section* const pOwn = cDifference.pSection && cDifference.pSection->uLine > cCase.uLine
                                        ? cDifference.pSection
                                        : nullptr;
        const std::size_t uBegin = pOwn ? pOwn->uLine - 1 : TextEnd(cCase.uLine, cCase.uEnd - 1);
        Edit cEdit{uBegin, pOwn ? TextEnd(pOwn->uLine, pOwn->uEnd - 1) : uBegin, SectionLines(cDifference)};
        if (!pOwn && cEdit.cLines.empty()) {
            cEdit.cLines = {"--- " + cDifference.cKind}; // hides the section of the earlier case
        }
        cEdits.push_back(std::move(cEdit));
    }
    std::stable_sort(cEdits.begin(), cEdits.end(),
                     [](const Edit& One, const Edit& Other) { return One.uBegin > Other.uBegin; });
    const auto At = [&](std::size_t u) { return cNewLines.begin() + static_cast<std::ptrdiff_t>(u); };
    for (const Edit& cEdit : cEdits) {
        cNewLines.erase(At(cEdit.uBegin), At(cEdit.uEnd));
        cNewLines.insert(At(cEdit.uBegin), cEdit.cLines.begin(), cEdit.cLines.end());
    }
}

void WriteTestFile(const TestFile& cFile, const std::vector<std::string>& cLines) {
    const std::string& cPath = cFile.cPath;
    if (ReadLines(cPath) != cFile.cLines) {
        throw std::runtime_error(cPath + " was changed meanwhile; it is not updated");
    }
    std::string cText;
    for (const std::string& cLine : cLines) {
        cText += cLine + '\n';
    }
    const Place cPlace(cPath);
    NewFile cNew(cPlace);
    const File cOld(cPlace.OpenToRead());
    if (cNew.Get() < 0 || !cNew.Write(cText.data(), cText.size()) || cOld.Get() < 0 ||
        !TakeRights(cNew.Get(), cOld.Get()) || !cNew.Sync() || !cNew.PutInPlace(true)) {
        throw std::runtime_error("cannot write " + cPath + ": " + std::strerror(errno));
    }
}

} // namespace FwPipe
