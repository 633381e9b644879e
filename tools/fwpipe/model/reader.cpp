// SPDX-License-Identifier: MIT
#include "reader.h"

#include "configfile.h"
#include "nearest.h"
#include "settings.h"

#include <fwlib/fwlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace FwPipe {

namespace {

// The file without links and other spellings; the path itself if there is no such file.
std::string Resolved(const std::string& cPath) {
    std::error_code cError;
    const std::filesystem::path cResolved = std::filesystem::canonical(cPath, cError);
    return cError ? cPath : cResolved.string();
}

} // namespace

const Reader::LineReader Reader::LineReaders[] = { // in the order of VESK::PipeWord
    &Reader::PluginLine,  &Reader::FrameworkPropertyLine, &Reader::PipeLine,
    &Reader::ElementLine, &Reader::PropertyLine,          &Reader::SinkLine,
    &Reader::SourceLine,  &Reader::ConnectLine,           &Reader::ConfigLine};

Reader::Reader(const CheckOptions& cOptions, Plugins& cPlugins, Diagnoses& cDiagnoses)
    : m_cOptions(cOptions), m_cPlugins(cPlugins), m_cDiagnoses(cDiagnoses) {}

std::unique_ptr<Pipeline> Reader::ReadFile(const std::string& cPath) {
    const Spot cBegin{m_cDiagnoses.File(cPath), 1, 1, 0};
    for (const std::string& cPlugin : m_cOptions.cPlugins) {
        LoadPlugin({cPlugin, cBegin});
    }
    if (m_cOptions.bPart) { // the enclosing file has loaded what this one needs
        m_cTypes.Add(nullptr, true);
        m_cTypes.Add(nullptr, false);
    }
    return ReadText(cPath, cPath, cBegin);
}

std::unique_ptr<Pipeline> Reader::ReadText(const std::string& cPath, const std::string& cShown,
                                           const Spot& cFrom) {
    auto pPipeline = std::make_unique<Pipeline>();
    pPipeline->pFile = m_cDiagnoses.File(cShown);
    PipeText cText;
    if (!ReadPipeText(cPath, pPipeline->pFile, m_cDiagnoses, cText)) {
        const bool bMissing = errno == ENOENT || errno == ENOTDIR;
        m_cDiagnoses.Error(cFrom, bMissing ? "missing-pipe" : "unreadable",
                           "cannot read " + cShown + ": " + std::strerror(errno));
        return nullptr;
    }
    pPipeline->cLast = cText.cLast;
    pPipeline->bSinkLine = pPipeline->bSourceLine = !cText.bRead; // it may have them
    m_cOpen.push_back(Resolved(cPath));
    ReadInto(*pPipeline, cText.cLines);
    m_cOpen.pop_back();
    return pPipeline;
}

std::unique_ptr<Pipeline> Reader::ReadLines(const std::string* pFile, const std::vector<Tokens>& cLines) {
    auto pPipeline = std::make_unique<Pipeline>();
    pPipeline->pFile = pFile;
    pPipeline->cLast = {pFile, 1, 1, 0};
    ReadInto(*pPipeline, cLines);
    return pPipeline;
}

void Reader::ReadInto(Pipeline& cPipeline, const std::vector<Tokens>& cLines) {
    Pipeline* const pOuter = std::exchange(m_pPipeline, &cPipeline);
    const int iOuter = std::exchange(m_iCurrent, -1);
    for (const Tokens& cTokens : cLines) {
        ReadLine(cTokens);
    }
    m_pPipeline = pOuter;
    m_iCurrent = iOuter;
}

const VESK::PipeKeyword* Reader::KeywordOf(const Token& cToken) {
    const VESK::PipeKeyword* const pFound = VESK::FindPipeKeyword(cToken.cText.c_str());
    if (pFound) {
        return pFound;
    }
    std::vector<std::string> cKnown;
    for (unsigned int u = 0; u < VESK::PipeKeywordCount; ++u) {
        cKnown.emplace_back(VESK::GetPipeKeywords()[u].pchWord);
    }
    const std::string cNear = Nearest(cToken.cText, cKnown);
    m_cDiagnoses.Error(cToken.cSpot, "unknown-keyword", "unknown keyword \"" + cToken.cText + '"', cNear);
    return VESK::FindPipeKeyword(cNear.c_str());
}

// A misspelt keyword is reported; then the line is read as if it were spelt well, so that later lines are understood.
void Reader::ReadLine(const Tokens& cTokens) {
    const VESK::PipeKeyword* const pKeyword = KeywordOf(cTokens.front());
    if (!pKeyword) {
        return;
    }
    const std::size_t uArguments = cTokens.size() - 1;
    const std::string cWord = pKeyword->pchWord;
    if (uArguments < pKeyword->uArguments) {
        m_cDiagnoses.Error(cTokens.front().cSpot, "missing-arguments",
                           cWord + " needs " + std::to_string(pKeyword->uArguments) + " arguments, " +
                               std::to_string(uArguments) + (uArguments == 1 ? " is" : " are") + " given");
    } else if (cTokens.size() > VESK::MostPipeTokens) {
        m_cDiagnoses.Error(cTokens[VESK::MostPipeTokens].cSpot, "too-many-tokens",
                           "a line has at most 14 tokens");
    } else if (uArguments > pKeyword->uArguments) {
        m_cDiagnoses.Warning(cTokens[pKeyword->uArguments + 1].cSpot, "ignored-token",
                             '"' + cTokens[pKeyword->uArguments + 1].cText + "\" is ignored: " + cWord +
                                 " uses " + std::to_string(pKeyword->uArguments) +
                                 (pKeyword->uArguments == 1 ? " argument" : " arguments"));
    }
    Tokens cPadded = cTokens; // what is missing is empty
    cPadded.resize(std::max<std::size_t>(cTokens.size(), pKeyword->uArguments + 1),
                   {"", cTokens.front().cSpot});
    (this->*LineReaders[static_cast<unsigned int>(pKeyword->Word)])(cPadded);
}

std::unique_ptr<Pipeline> Reader::ReadNested(const Token& cPath) {
    if (cPath.cText.empty()) {
        return nullptr;
    }
    const std::string cResolved = Resolved(cPath.cText);
    if (std::find(m_cOpen.begin(), m_cOpen.end(), cResolved) != m_cOpen.end()) {
        m_cDiagnoses.Error(cPath.cSpot, "self-nesting", "the file contains itself: " + cPath.cText);
        return nullptr;
    }
    if (m_cOpen.size() == VESK::DeepestPipeNesting) {
        m_cDiagnoses.Error(cPath.cSpot, "too-deep", "pipe files are nested more than 64 deep");
        return nullptr;
    }
    return ReadText(cPath.cText, cPath.cText, cPath.cSpot);
}

} // namespace FwPipe
