// SPDX-License-Identifier: MIT
#include "inspect/nearest.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace FwPipe {

namespace {

char Lower(char ch) {
    return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch - 'A' + 'a') : ch;
}

// The number of characters to insert, remove or replace to get from one name to the other.
std::size_t Distance(const std::string& cOne, const std::string& cOther) {
    std::vector<std::size_t> cRow(cOther.size() + 1);
    std::iota(cRow.begin(), cRow.end(), std::size_t{0});
    for (const char chOne : cOne) {
        std::size_t uDiagonal = cRow[0]++;
        for (std::size_t u = 0; u < cOther.size(); ++u) {
            const std::size_t uReplaced = uDiagonal + (Lower(chOne) != Lower(cOther[u]));
            uDiagonal = cRow[u + 1];
            cRow[u + 1] = std::min({uReplaced, uDiagonal + 1, cRow[u] + 1});
        }
    }
    return cRow.back();
}

} // namespace

std::string Nearest(const std::string& cName, const std::vector<std::string>& cNames) {
    constexpr std::size_t MostNames = 3;
    constexpr std::size_t LongestCompared = 256; // the time grows with the product of the lengths
    std::vector<std::pair<std::size_t, std::string>> cNear;
    for (const std::string& cKnown : cNames) {
        const std::size_t uMost = std::max<std::size_t>(2, std::min(cName.size(), cKnown.size()) / 2);
        const bool bShort = std::max(cName.size(), cKnown.size()) <= LongestCompared;
        const std::size_t uDistance = bShort ? Distance(cName, cKnown) : uMost + 1;
        if (uDistance <= uMost) {
            cNear.emplace_back(uDistance, cKnown);
        }
    }
    std::stable_sort(cNear.begin(), cNear.end(),
                     [](const auto& cOne, const auto& cOther) { return cOne.first < cOther.first; });
    cNear.resize(std::min(cNear.size(), MostNames));
    std::string cText;
    for (const auto& cFound : cNear) {
        cText += (cText.empty() ? "" : ", ") + cFound.second;
    }
    return cText;
}

} // namespace FwPipe
