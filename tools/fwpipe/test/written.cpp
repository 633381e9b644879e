// SPDX-License-Identifier: MIT
#include "written.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace FwPipe {

namespace {

constexpr std::size_t MostBytes = 1 << 28; // that one line may stand for

const struct {
    char ch;
    const char* pchMark;
} Marks[] = {{'\r', "<cr>"}, {'\t', "<tab>"}, {'\0', "<zero>"}};

bool StartsWith(std::string_view cText, std::string_view cStart) {
    return cText.substr(0, cStart.size()) == cStart;
}

bool IsDigit(char ch) {
    return ch >= '0' && ch <= '9';
}

int HexDigit(char ch) {
    return IsDigit(ch) ? ch - '0' : ch >= 'a' && ch <= 'f' ? ch - 'a' + 10 : -1;
}

// The number at the start, which is removed; MostBytes for larger ones.
std::size_t TakeNumber(std::string_view& cText) {
    std::size_t u = 0;
    for (; !cText.empty() && IsDigit(cText.front()); cText.remove_prefix(1)) {
        u = std::min(MostBytes, u * 10 + static_cast<std::size_t>(cText.front() - '0'));
    }
    return u;
}

// If a mark <N*TEXT> is at the start, appends its meaning and returns the mark's length; otherwise returns 0.
std::size_t TakeRepeated(std::string_view cText, std::string& cMeant) {
    const std::size_t uStar = cText.find_first_not_of("0123456789", 1);
    if (uStar == std::string_view::npos || uStar < 2 || cText[uStar] != '*') {
        return 0;
    }
    const std::size_t uEnd = cText.find('>', uStar);
    if (uEnd == std::string_view::npos) {
        return 0;
    }
    std::string_view cNumber = cText.substr(1);
    const std::size_t uTimes = TakeNumber(cNumber);
    const std::string_view cPart = cText.substr(uStar + 1, uEnd - uStar - 1);
    if (!cPart.empty() && uTimes > MostBytes / cPart.size()) {
        cMeant.resize(MostBytes + 1); // reported by the caller
        return uEnd + 1;
    }
    for (std::size_t u = 0; u < uTimes && !cPart.empty(); ++u) {
        cMeant += cPart;
    }
    return uEnd + 1;
}

// The same for each kind of mark.
std::size_t TakeMark(std::string_view cText, std::string& cMeant) {
    for (const auto& cMark : Marks) {
        if (StartsWith(cText, cMark.pchMark)) {
            cMeant += cMark.ch;
            return std::strlen(cMark.pchMark);
        }
    }
    if (cText.size() > 4 && cText[1] == 'x' && cText[4] == '>' && HexDigit(cText[2]) >= 0 &&
        HexDigit(cText[3]) >= 0) {
        cMeant += static_cast<char>(HexDigit(cText[2]) * 16 + HexDigit(cText[3]));
        return 5;
    }
    return TakeRepeated(cText, cMeant);
}

std::string Meant(std::string_view cLine) {
    std::string cMeant;
    while (!cLine.empty() && cMeant.size() <= MostBytes) {
        const std::size_t uMark = cLine.front() == '<' ? TakeMark(cLine, cMeant) : 0;
        if (uMark == 0) {
            cMeant += cLine.front();
        }
        cLine.remove_prefix(std::max<std::size_t>(uMark, 1));
    }
    return cMeant;
}

// Appends the text that often, each time with its number in the place of <n>. Returns false if that is too much.
bool AppendNumbered(const std::string& cText, std::size_t uTimes, std::string& cMeant) {
    static const std::string Mark = "<n>";
    for (std::size_t u = 0; u < uTimes && !cText.empty(); ++u) {
        std::size_t uFrom = 0;
        for (std::size_t uAt; (uAt = cText.find(Mark, uFrom)) != std::string::npos;
             uFrom = uAt + Mark.size()) {
            cMeant += cText.substr(uFrom, uAt - uFrom) + std::to_string(u);
        }
        cMeant += cText.substr(uFrom);
        if (cMeant.size() > MostBytes) {
            return false;
        }
    }
    return true;
}

// The line without its repetition "(N times) ", and N; 1 if it has none.
std::size_t TakeTimes(std::string_view& cLine) {
    static constexpr std::string_view Behind = " times) ";
    std::string_view cRest = cLine;
    if (cRest.size() < 2 || cRest[0] != '(' || !IsDigit(cRest[1])) {
        return 1;
    }
    cRest.remove_prefix(1);
    const std::size_t uTimes = TakeNumber(cRest);
    if (!StartsWith(cRest, Behind)) {
        return 1;
    }
    cLine = cRest.substr(Behind.size());
    return uTimes;
}

// Whether the line is "(these N lines M times)", and the numbers in it.
bool IsThese(std::string_view cLine, std::size_t& uRows, std::size_t& uTimes) {
    const auto Take = [&cLine](std::string_view cBegin, std::size_t& uNumber) {
        const bool bTaken =
            StartsWith(cLine, cBegin) && cLine.size() > cBegin.size() && IsDigit(cLine[cBegin.size()]);
        cLine.remove_prefix(bTaken ? cBegin.size() : 0);
        uNumber = TakeNumber(cLine);
        return bTaken;
    };
    return Take("(these ", uRows) && Take(" lines ", uTimes) && cLine == " times)";
}

// Whether a text would be read as a mark, or as something like it.
bool BeginsMark(std::string_view cText) {
    const bool bNamed = std::any_of(std::begin(Marks), std::end(Marks),
                                    [&](const auto& cMark) { return StartsWith(cText, cMark.pchMark); });
    return bNamed || StartsWith(cText, "<x") || cText == "<end>" ||
           (cText.size() > 1 && cText.front() == '<' && IsDigit(cText[1]));
}

// A byte of a text in a line; bMark: it may not begin a mark.
void AppendByte(char ch, bool bMark, std::string& cLine) {
    for (const auto& cMark : Marks) {
        if (ch == cMark.ch) {
            cLine += cMark.pchMark;
            return;
        }
    }
    const unsigned int u = static_cast<unsigned char>(ch);
    if (u < 0x20 || u == 0x7f) {
        char achMark[8];
        std::snprintf(achMark, sizeof achMark, "<x%02x>", u);
        cLine += achMark;
    } else if (bMark) {
        cLine += "<1*<>";
    } else {
        cLine += ch;
    }
}

// One line of a text without its newline.
std::string WrittenLine(std::string_view cText, bool bNewline) {
    std::string cLine;
    std::string_view cAfterTimes = cText;
    TakeTimes(cAfterTimes);
    if (StartsWith(cText, "--- ") || StartsWith(cText, "(these ") || cAfterTimes.size() != cText.size()) {
        cLine = "<0*>"; // otherwise the line is a heading or a repetition
    }
    while (!cText.empty()) {
        AppendByte(cText.front(), BeginsMark(cText), cLine);
        cText.remove_prefix(1);
    }
    return bNewline ? cLine : cLine + "<end>";
}

} // namespace

std::string AppendMeant(const std::string& cLine, std::vector<std::string>& cTexts) {
    static const std::string End = "<end>";
    std::size_t uRows = 0, uTimes = 0;
    if (IsThese(cLine, uRows, uTimes)) {
        if (uRows == 0 || uRows > cTexts.size()) {
            return "there are no " + std::to_string(uRows) + " lines before it";
        }
        std::string cRepeated;
        for (std::size_t u = cTexts.size() - uRows; u < cTexts.size(); ++u) {
            cRepeated += cTexts[u];
        }
        cTexts.resize(cTexts.size() - uRows);
        cTexts.emplace_back();
        return AppendNumbered(cRepeated, uTimes, cTexts.back()) ? "" : "the text is too long";
    }
    std::string_view cRest = cLine;
    uTimes = TakeTimes(cRest);
    const bool bEnd =
        cRest.size() >= End.size() && cRest.substr(cRest.size() - End.size()) == std::string_view(End);
    const bool bRepeated = cRest.size() != cLine.size();
    const std::string cMeant =
        bEnd && !bRepeated ? Meant(cRest.substr(0, cRest.size() - End.size())) : Meant(cRest) + '\n';
    cTexts.emplace_back();
    if (!bRepeated) {
        cTexts.back() = cMeant;
        return cMeant.size() > MostBytes ? "the text is too long" : "";
    }
    return cMeant.size() <= MostBytes && AppendNumbered(cMeant, uTimes, cTexts.back())
               ? ""
               : "the text is too long";
}

std::vector<std::string> Written(const std::string& cText) {
    std::vector<std::string> cLines;
    for (std::size_t u = 0; u < cText.size();) {
        const std::size_t uEnd = std::min(cText.find('\n', u), cText.size());
        cLines.push_back(WrittenLine(std::string_view(cText).substr(u, uEnd - u), uEnd < cText.size()));
        u = uEnd + 1;
    }
    if (!cLines.empty() && cLines.back().empty()) {
        cLines.back() = "<0*>"; // empty lines at the end of a section do not count
    }
    return cLines;
}

} // namespace FwPipe
