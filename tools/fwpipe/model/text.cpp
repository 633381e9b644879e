// SPDX-License-Identifier: MIT
#include "text.h"

#include <fwlib/fwlib.h>

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>

namespace FwPipe {

namespace {

bool BeginsWith(const char* pchText, const char* pchMark) {
    return std::strncmp(pchText, pchMark, std::strlen(pchMark)) == 0;
}

Tokens TokensOf(const VESK::PipeLine& cLine, const std::string* pFile) {
    Tokens cTokens;
    for (unsigned int u = 0; u < cLine.uTokens; ++u) {
        const char* const pchToken = cLine.apchTokens[u];
        cTokens.push_back(
            {pchToken,
             {pFile, cLine.b4Line, cLine.Column(u), static_cast<unsigned int>(std::strlen(pchToken))}});
    }
    return cTokens;
}

// Reports a mark at the beginning of the file and takes it from the first token. Returns false if there is no text behind.
bool CheckMark(const char* pchBegin, Tokens& cFirst, const Spot& cSpot, Diagnoses& cDiagnoses) {
    if (BeginsWith(pchBegin, "\xFF\xFE") || BeginsWith(pchBegin, "\xFE\xFF")) {
        cDiagnoses.Error(cSpot, "byte-order-mark", "the file is in UTF-16; save it as UTF-8 or ASCII");
        return false;
    }
    const char* const pchMark = "\xEF\xBB\xBF";
    if (BeginsWith(pchBegin, pchMark)) {
        cDiagnoses.Error(cSpot, "byte-order-mark",
                         "the file begins with a byte order mark; save it without one");
        if (!cFirst.empty() && BeginsWith(cFirst.front().cText.c_str(), pchMark)) {
            Token& cToken = cFirst.front();
            cToken.cText.erase(0, std::strlen(pchMark));
            cToken.cSpot.uColumn += 3;
            cToken.cSpot.uLength -= 3;
            if (cToken.cText.empty()) {
                cFirst.erase(cFirst.begin());
            }
            if (!cFirst.empty() && cFirst.front().cText.front() == '#') { // a comment behind the mark
                cFirst.clear();
            }
        }
    }
    return true;
}

} // namespace

bool ReadAll(const std::string& cPath, std::string& cContent) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pFile(std::fopen(cPath.c_str(), "rbe"),
                                                                std::fclose);
    if (!pFile) {
        return false;
    }
    char achBuffer[1 << 16];
    std::size_t uRead;
    while ((uRead = std::fread(achBuffer, 1, sizeof achBuffer, pFile.get())) > 0) {
        cContent.append(achBuffer, uRead);
    }
    return !std::ferror(pFile.get());
}

bool ReadPipeText(const std::string& cPath, const std::string* pFile, Diagnoses& cDiagnoses,
                  PipeText& cText) {
    const std::unique_ptr<char, int (*)(char*)> pHandle(
        VESK::fwfopen(VESK::Text(cPath.c_str()), VESK::Text("r")), VESK::fwfclose);
    if (!pHandle) {
        return false;
    }
    cText.cLast = {pFile, 1, 1, 0};
    VESK::PipeReader cReader = VESK::PipeReader::OfFile(pHandle.get());
    VESK::PipeLine cLine;
    bool bFirst = true;
    bool bLong = false; // the rest of this line has been reported
    while (cReader.Next(cLine)) {
        Tokens cTokens = TokensOf(cLine, pFile);
        if (std::exchange(bFirst, false) && !CheckMark(cLine.achText, cTokens, cText.cLast, cDiagnoses)) {
            cText.bRead = false;
            return true;
        }
        cText.cLast.uLine = cLine.b4Line;
        bLong = bLong && cLine.uColumn > 1;
        if (cLine.uColumn > 1 && cLine.achText[0] != '\0' && !bLong) {
            bLong = true;
            cDiagnoses.Warning({pFile, cLine.b4Line, VESK::PipeLineSize, 0}, "long-line",
                               "the line has more than 255 characters; the rest is read as the next line");
        }
        if (!cTokens.empty()) {
            cText.cLines.push_back(std::move(cTokens));
        }
    }
    return !cReader.Failed();
}

} // namespace FwPipe
