// SPDX-License-Identifier: MIT
#include "shown.h"

#include "escape.h"
#include "objectscan.h"

#include <unordered_map>

namespace FwPipe {

namespace {

void AppendShown(std::string_view cBytes, bool bRaw, std::string& cText) {
    if (bRaw) {
        cText += cBytes;
    } else {
        AppendEscaped(cBytes, cText);
    }
}

// Appends any text as one word.
void AppendWord(std::string_view cBytes, bool bRaw, std::string& cText) {
    if (!cBytes.empty() && cBytes.find_first_of(" \"") == std::string_view::npos) {
        AppendShown(cBytes, bRaw, cText);
        return;
    }
    cText += '"';
    for (std::size_t u; (u = cBytes.find('"')) != std::string_view::npos; cBytes.remove_prefix(u + 1)) {
        AppendShown(cBytes.substr(0, u), bRaw, cText);
        cText += "\\\"";
    }
    AppendShown(cBytes, bRaw, cText);
    cText += '"';
}

// The texts of one object as JSON.
class Json {
public:
    Json(const ObjectScan& cScan, bool bRaw, std::string& cText)
        : m_bRaw(bRaw), m_bBytes(!bRaw && !IsUtf8(cScan.Text())), m_cText(cText) {
        m_cText += "{\"type\":";
        Append(cScan.Type());
        m_cText += ",\"offset\":" + std::to_string(cScan.Offset());
        m_cText += m_bBytes ? ",\"escaped\":true" : "";
    }

    void Append(std::string_view cBytes) { AppendJson(cBytes, m_bBytes, m_bRaw, m_cText); }

private:
    const bool m_bRaw;
    const bool m_bBytes; // bytes that are not UTF-8 must be escaped
    std::string& m_cText;
};

// For each property, the index of the next one with the same key, or 0. cLater marks later ones.
void LinkEqualKeys(const ObjectScan& cScan, std::vector<std::size_t>& cNext, std::vector<bool>& cLater) {
    std::unordered_map<std::string_view, std::size_t> cLast;
    for (std::size_t u = 0; u < cScan.Properties(); ++u) {
        const auto [At, bNew] = cLast.try_emplace(cScan.Property(u).first, u);
        if (!bNew) {
            cNext[At->second] = u;
            cLater[u] = true;
            At->second = u;
        }
    }
}

} // namespace

void ShowBlock(const ObjectScan& cScan, bool bRaw, std::string& cText) {
    cText +=
        "object " + std::to_string(cScan.Whole() - 1) + " at byte " + std::to_string(cScan.Offset()) + ": ";
    AppendWord(cScan.Type(), bRaw, cText);
    cText += '\n';
    for (std::size_t u = 0; u < cScan.Properties(); ++u) {
        const auto [cKey, cValue] = cScan.Property(u);
        AppendShown(cKey, bRaw, cText += "  ");
        AppendShown(cValue, bRaw, cText += " = ");
        cText += '\n';
    }
    cText += '\n';
}

void ShowLine(const ObjectScan& cScan, bool bRaw, std::string& cText) {
    cText += std::to_string(cScan.Whole() - 1) + " @" + std::to_string(cScan.Offset()) + ' ';
    AppendWord(cScan.Type(), bRaw, cText);
    for (std::size_t u = 0; u < cScan.Properties(); ++u) {
        const auto [cKey, cValue] = cScan.Property(u);
        AppendWord(cKey, bRaw, cText += ' ');
        AppendWord(cValue, bRaw, cText += '=');
    }
    cText += '\n';
}

void ShowJson(const ObjectScan& cScan, bool bRaw, std::string& cText) {
    Json cJson(cScan, bRaw, cText);
    std::vector<std::size_t> cNext(cScan.Properties());
    std::vector<bool> cLater(cScan.Properties());
    LinkEqualKeys(cScan, cNext, cLater);
    cText += ",\"properties\":{";
    for (std::size_t u = 0; u < cScan.Properties(); ++u) {
        if (cLater[u]) {
            continue;
        }
        const auto [cKey, cValue] = cScan.Property(u);
        cText += u > 0 ? "," : "";
        cJson.Append(cKey);
        cText += cNext[u] ? ":[" : ":";
        cJson.Append(cValue);
        for (std::size_t uOther = cNext[u]; uOther; uOther = cNext[uOther]) {
            cText += ',';
            cJson.Append(cScan.Property(uOther).second);
        }
        cText += cNext[u] ? "]" : "";
    }
    cText += "}}\n";
}

void ShowJsonPairs(const ObjectScan& cScan, bool bRaw, std::string& cText) {
    Json cJson(cScan, bRaw, cText);
    cText += ",\"properties\":[";
    for (std::size_t u = 0; u < cScan.Properties(); ++u) {
        const auto [cKey, cValue] = cScan.Property(u);
        cText += u > 0 ? ",[" : "[";
        cJson.Append(cKey);
        cText += ',';
        cJson.Append(cValue);
        cText += ']';
    }
    cText += "]}\n";
}

} // namespace FwPipe
