// SPDX-License-Identifier: MIT
#include "nearest.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace FwPipe {

namespace {

constexpr unsigned int OneMistake = 10; // the wrong case of a letter costs 1
constexpr std::size_t LongestWord = 64; // longer words are compared as equal or not

int Lower(char ch) {
    return std::tolower(static_cast<unsigned char>(ch));
}

unsigned int Replaced(char chOne, char chOther) {
    return chOne == chOther ? 0 : Lower(chOne) == Lower(chOther) ? 1 : OneMistake;
}

// The cost of the mistakes that make one word the other.
unsigned int Distance(const std::string& cOne, const std::string& cOther) {
    const std::size_t uWidth = cOther.size() + 1;
    std::vector<unsigned int> cBefore(uWidth), cLast(uWidth), cNow(uWidth);
    for (std::size_t u = 0; u < uWidth; ++u) {
        cLast[u] = static_cast<unsigned int>(u) * OneMistake;
    }
    for (std::size_t i = 1; i <= cOne.size(); ++i) {
        cNow[0] = static_cast<unsigned int>(i) * OneMistake;
        for (std::size_t j = 1; j < uWidth; ++j) {
            cNow[j] = std::min({cLast[j] + OneMistake, cNow[j - 1] + OneMistake,
                                cLast[j - 1] + Replaced(cOne[i - 1], cOther[j - 1])});
            if (i > 1 && j > 1 && cOne[i - 1] == cOther[j - 2] && cOne[i - 2] == cOther[j - 1]) {
                cNow[j] = std::min(cNow[j], cBefore[j - 2] + OneMistake);
            }
        }
        cBefore.swap(cLast);
        cLast.swap(cNow);
    }
    return cLast[uWidth - 1];
}

} // namespace

std::string Nearest(const std::string& cWord, const std::vector<std::string>& cCandidates) {
    if (cWord.size() > LongestWord) {
        return "";
    }
    unsigned int uBest =
        static_cast<unsigned int>(std::max<std::size_t>(cWord.size() / 3, 1)) * OneMistake + 9;
    std::string cBest;
    for (const std::string& cCandidate : cCandidates) {
        if (cCandidate.size() > LongestWord || cCandidate == cWord) {
            continue;
        }
        const unsigned int uDistance = Distance(cWord, cCandidate);
        if (uDistance < uBest || (uDistance == uBest && cBest.empty())) {
            uBest = uDistance;
            cBest = cCandidate;
        }
    }
    return cBest;
}

std::string DidYouMean(const std::string& cHint) {
    return cHint.empty() ? "" : "; did you mean \"" + cHint + "\"?";
}

} // namespace FwPipe
