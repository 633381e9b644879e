// SPDX-License-Identifier: MIT
#include "shown.h"

#include "objectscan.h"

#include <nlohmann/json.hpp>

namespace FwPipe {

namespace {

// The control characters of ASCII, and those behind it, which UTF-8 writes as 0xC2 and this byte.
bool ActsOnTerminals(unsigned char uchBefore, unsigned char uchByte) {
    return uchByte < 0x20 || uchByte == 0x7f || (uchBefore == 0xc2 && uchByte >= 0x80 && uchByte < 0xa0);
}

void AppendShown(std::string_view cBytes, std::string& cText) {
    static const char achDigits[] = "0123456789abcdef";
    unsigned char uchBefore = 0;
    for (const char chByte : cBytes) {
        const auto uchByte = static_cast<unsigned char>(chByte);
        if (ActsOnTerminals(uchBefore, uchByte)) {
            cText += {'\\', 'x', achDigits[uchByte >> 4], achDigits[uchByte & 15]};
        } else {
            cText.append(chByte == '\\' ? 2 : 1, chByte);
        }
        uchBefore = uchByte;
    }
}

// One word, whatever it holds.
void AppendWord(std::string_view cBytes, std::string& cText) {
    if (!cBytes.empty() && cBytes.find_first_of(" \"") == std::string_view::npos) {
        AppendShown(cBytes, cText);
        return;
    }
    cText += '"';
    for (std::size_t u; (u = cBytes.find('"')) != std::string_view::npos; cBytes.remove_prefix(u + 1)) {
        AppendShown(cBytes.substr(0, u), cText);
        cText += "\\\"";
    }
    AppendShown(cBytes, cText);
    cText += '"';
}

// What stands before, between and behind the keys and values, each shown as one text.
void AppendPairs(const ObjectScan& cScan, const char* pchBefore, const char* pchBetween,
                 const char* pchBehind, void (*pAppend)(std::string_view, std::string&), std::string& cText) {
    for (std::size_t u = 0; u < cScan.Properties(); ++u) {
        const auto [cKey, cValue] = cScan.Property(u);
        cText += pchBefore;
        pAppend(cKey, cText);
        cText += pchBetween;
        pAppend(cValue, cText);
        cText += pchBehind;
    }
}

} // namespace

void ShowBlock(const ObjectScan& cScan, std::string& cText) {
    cText +=
        "object " + std::to_string(cScan.Whole() - 1) + " at byte " + std::to_string(cScan.Offset()) + ": ";
    AppendWord(cScan.Type(), cText);
    cText += '\n';
    AppendPairs(cScan, "  ", " = ", "\n", AppendShown, cText);
    cText += '\n';
}

void ShowLine(const ObjectScan& cScan, std::string& cText) {
    cText += std::to_string(cScan.Whole() - 1) + " @" + std::to_string(cScan.Offset()) + ' ';
    AppendWord(cScan.Type(), cText);
    AppendPairs(cScan, " ", "=", "", AppendWord, cText);
    cText += '\n';
}

void ShowJson(const ObjectScan& cScan, std::string& cText) {
    nlohmann::ordered_json cObject = {{"type", cScan.Type()}, {"offset", cScan.Offset()}};
    auto& cPairs = cObject["properties"] = nlohmann::ordered_json::array();
    for (std::size_t u = 0; u < cScan.Properties(); ++u) {
        const auto [cKey, cValue] = cScan.Property(u);
        auto cPair = nlohmann::ordered_json::array();
        cPair.push_back(cKey);
        cPair.push_back(cValue);
        cPairs.push_back(std::move(cPair));
    }
    cText += cObject.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    cText += '\n';
}

} // namespace FwPipe
