// SPDX-License-Identifier: MIT
#include "launch/words.h"

#include <fwlib/fwlib.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <set>

namespace FwPipe {

namespace {

struct Part { // an element
    Token cType;
    std::vector<std::pair<Token, Token>> cSettings; // without its name
    Token cName;                                    // empty if none is given
};

struct PadOf {
    std::size_t uPart = 0;
    Token cPad;
};

struct Link {
    PadOf cFrom;
    PadOf cTo;
    Token cWord; // the "!"
};

bool IsNumber(const std::string& cText) {
    return !cText.empty() &&
           std::all_of(cText.begin(), cText.end(), [](unsigned char uch) { return std::isdigit(uch); });
}

class Words {
public:
    explicit Words(const std::string* pFile) : m_pFile(pFile) {}

    void Read(const std::vector<std::string>& cWords) {
        for (const std::string& cWord : cWords) {
            ReadWord(Make(cWord, static_cast<unsigned int>(++m_uWord)));
        }
        if (m_bLink) {
            throw WordError(m_cLinkWord.cSpot.uLine, "nothing follows");
        }
        NameParts();
    }

    void Append(std::vector<Tokens>& cLines) const {
        for (const Part& cPart : m_cParts) {
            const Spot& cSpot = cPart.cType.cSpot;
            cLines.push_back({{"element", cSpot}, cPart.cType});
            cLines.push_back({{"property", cSpot}, {VESK::Key::Name, cSpot}, cPart.cName});
            for (const auto& [cKey, cValue] : cPart.cSettings) {
                cLines.push_back({{"property", cSpot}, cKey, cValue});
            }
        }
        for (const Link& cLink : m_cLinks) {
            cLines.push_back({{"connect", cLink.cWord.cSpot},
                              m_cParts[cLink.cFrom.uPart].cName,
                              cLink.cFrom.cPad,
                              m_cParts[cLink.cTo.uPart].cName,
                              cLink.cTo.cPad});
        }
    }

private:
    enum class State {
        Start,
        Element,
        Pad,
        End
    }; // what stands before: nothing, an element, NAME:PAD, "! NAME:PAD"

    Token Make(const std::string& cText, unsigned int uWord) const {
        return {cText, {m_pFile, uWord, 1, static_cast<unsigned int>(cText.size())}};
    }

    void ReadWord(const Token& cWord) {
        const std::size_t uEqual = cWord.cText.find('=');
        const std::size_t uColon = cWord.cText.rfind(':');
        if (cWord.cText == "!") {
            BeginLink(cWord);
        } else if (uEqual != std::string::npos) {
            ReadSetting(cWord, uEqual);
        } else if (uColon != std::string::npos && IsNumber(cWord.cText.substr(uColon + 1))) {
            ReadPad(cWord, uColon);
        } else if (cWord.cText.empty()) {
            throw WordError(cWord.cSpot.uLine, "expected a type");
        } else {
            m_cParts.push_back({cWord, {}, {}});
            Reach({m_cParts.size() - 1, {"0", cWord.cSpot}}, State::Element);
        }
    }

    void BeginLink(const Token& cWord) {
        if (m_State == State::Start || m_State == State::End || m_bLink) {
            throw WordError(cWord.cSpot.uLine, m_State == State::End && !m_bLink
                                                   ? "the chain ended at the pad before it"
                                                   : "no element or pad stands before it");
        }
        m_bLink = true;
        m_cFrom = m_cLast;
        m_cLinkWord = cWord;
    }

    // An element or pad, which ends a connection behind "!".
    void Reach(const PadOf& cPad, State Reached) {
        m_State = m_bLink && Reached == State::Pad ? State::End : Reached;
        m_cLast = cPad;
        if (m_bLink) {
            m_bLink = false;
            m_cLinks.push_back({m_cFrom, cPad, m_cLinkWord});
        }
    }

    void ReadSetting(const Token& cWord, std::size_t uEqual) {
        if (m_State != State::Element || m_bLink) {
            throw WordError(cWord.cSpot.uLine, "a property follows the type of its element");
        }
        Part& cPart = m_cParts.back();
        const Token cKey = {cWord.cText.substr(0, uEqual), cWord.cSpot};
        const Token cValue = {cWord.cText.substr(uEqual + 1), cWord.cSpot};
        if (cKey.cText.empty() || (cKey.cText == VESK::Key::Name && cValue.cText.empty())) {
            throw WordError(cWord.cSpot.uLine, "expected KEY=VALUE");
        }
        if (cKey.cText != VESK::Key::Name) {
            cPart.cSettings.emplace_back(cKey, cValue);
        } else if (m_cNames.insert(cValue.cText).second) {
            cPart.cName = cValue;
        } else {
            throw WordError(cWord.cSpot.uLine, "another element has this name");
        }
    }

    void ReadPad(const Token& cWord, std::size_t uColon) {
        const std::string cName = cWord.cText.substr(0, uColon);
        const auto Found = std::find_if(m_cParts.begin(), m_cParts.end(),
                                        [&cName](const Part& cPart) { return cPart.cName.cText == cName; });
        if (Found == m_cParts.end()) {
            throw WordError(cWord.cSpot.uLine, "no element before it has the property Name=" + cName);
        }
        Reach({static_cast<std::size_t>(Found - m_cParts.begin()),
               {cWord.cText.substr(uColon + 1), cWord.cSpot}},
              State::Pad);
    }

    // ESource becomes "source", a second one "source2".
    void NameParts() {
        for (Part& cPart : m_cParts) {
            std::string cName = cPart.cType.cText;
            if (cName.size() > 1 && cName[0] == 'E' && std::isupper(static_cast<unsigned char>(cName[1]))) {
                cName.erase(0, 1);
            }
            std::transform(cName.begin(), cName.end(), cName.begin(),
                           [](unsigned char uch) { return static_cast<char>(std::tolower(uch)); });
            std::string cFree = cName;
            for (int i = 2; cPart.cName.cText.empty() && !m_cNames.insert(cFree).second; ++i) {
                cFree = cName + std::to_string(i);
            }
            if (cPart.cName.cText.empty()) {
                cPart.cName = {cFree, cPart.cType.cSpot};
            }
        }
    }

    const std::string* m_pFile;
    std::size_t m_uWord = 0;
    State m_State = State::Start;
    bool m_bLink = false; // a "!" waits for what follows
    PadOf m_cFrom;        // what stands before it
    Token m_cLinkWord;
    PadOf m_cLast;
    std::vector<Part> m_cParts;
    std::vector<Link> m_cLinks;
    std::set<std::string> m_cNames;
};

} // namespace

std::vector<Tokens> LinesOf(const std::vector<std::string>& cPlugins, const std::vector<std::string>& cWords,
                            const std::string* pFile) {
    const Spot cNone = {pFile, 0, 1, 0};
    std::vector<Tokens> cLines = {{{"plugin", cNone}, {"libfwlib.so", cNone}}};
    for (const std::string& cPlugin : cPlugins) {
        cLines.push_back({{"plugin", cNone}, {cPlugin, cNone}});
    }
    Words cRead(pFile);
    cRead.Read(cWords);
    cRead.Append(cLines);
    return cLines;
}

std::string TextOf(const std::vector<Tokens>& cLines) {
    std::string cText;
    for (const Tokens& cTokens : cLines) {
        std::string cLine;
        for (const Token& cToken : cTokens) {
            if (cToken.cText.empty() || cToken.cText.find_first_of(" \t\r\n") != std::string::npos) {
                throw WordError(cToken.cSpot.uLine,
                                (cTokens.size() == 3 ? "the value of " + cTokens[1].cText
                                                     : "the text \"" + cToken.cText + '"') +
                                    " is empty or contains a blank, which a pipe file cannot hold");
            }
            cLine += (cLine.empty() ? "" : " ") + cToken.cText;
        }
        if (cLine.size() >= VESK::PipeLineSize) {
            throw WordError(cTokens.back().cSpot.uLine, "a line of a pipe file holds 255 characters");
        }
        cText += cLine + '\n';
    }
    return cText;
}

} // namespace FwPipe
