// SPDX-License-Identifier: MIT
// What the reader does with the line of each keyword.
#include "configfile.h"
#include "nearest.h"
#include "reader.h"
#include "settings.h"

#include <fwlib/fwlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace FwPipe {

void Reader::LoadPlugin(const Token& cPath) {
    const Plugin cPlugin = m_cPlugins.Find(cPath.cText);
    if (cPlugin.pchId) {
        m_cDiagnoses.Error(cPath.cSpot, cPlugin.pchId, cPlugin.cReason);
    }
    m_cTypes.Add(cPlugin.pDescription, cPlugin.bLibrary); // what it would serve is not an error again
}

void Reader::PluginLine(const Tokens& cTokens) {
    if (!cTokens[1].cText.empty()) {
        LoadPlugin(cTokens[1]);
    }
}

void Reader::FrameworkPropertyLine(const Tokens& cTokens) {
    const std::string& cKey = cTokens[1].cText;
    const std::vector<std::string> cKnown = {VESK::Key::Debug, VESK::Key::EndErrorLines};
    const std::string cHint = Nearest(cKey, cKnown);
    if (!cHint.empty() && std::find(cKnown.begin(), cKnown.end(), cKey) == cKnown.end()) {
        m_cDiagnoses.Warning(cTokens[1].cSpot, "unknown-property",
                             "the library does not read \"" + cKey + '"', cHint);
    }
    if (cKey == VESK::Key::Debug && !cTokens[2].cText.empty() && !IsWholeNumber(cTokens[2].cText)) {
        m_cDiagnoses.Warning(cTokens[2].cSpot, "not-a-number",
                             "Debug = " + cTokens[2].cText + ": not a number, is read as " +
                                 std::to_string(NumberIn(cTokens[2].cText)));
    }
}

Element& Reader::AddElement(const Tokens& cTokens) {
    auto& pElement = m_pPipeline->cElements.emplace_back(std::make_unique<Element>());
    pElement->cLine = cTokens[0].cSpot;
    pElement->cType = cTokens[1];
    m_iCurrent = static_cast<int>(m_pPipeline->cElements.size()) - 1;
    m_pCurrent = pElement.get();
    return *pElement;
}

void Reader::PipeLine(const Tokens& cTokens) {
    auto pNested = ReadNested(cTokens[1]);
    Element& cElement = AddElement(cTokens);
    cElement.bPipe = true;
    cElement.pNested = std::move(pNested);
    cElement.pDescription = &PipelineType();
    cElement.bOfLibrary = true;
}

void Reader::ElementLine(const Tokens& cTokens) {
    Element& cElement = AddElement(cTokens);
    const std::string& cType = cTokens[1].cText;
    cElement.pDescription = m_cTypes.Find(cType);
    cElement.bOfLibrary = m_cTypes.IsOfLibrary(cElement.pDescription);
    cElement.bMayOriginate = !cElement.pDescription || cElement.pDescription->b4Originates;
    CheckTypeSection(cElement);
    if (!cType.empty() && !cElement.pDescription &&
        !(m_cTypes.MayServe(cType) && m_cPlugins.Creates(cType))) {
        const std::vector<std::string> cNames = m_cTypes.Names();
        const bool bOfLibrary = std::find(cNames.begin(), cNames.end(), cType) != cNames.end();
        m_cDiagnoses.Error(cTokens[1].cSpot, "unknown-type",
                           bOfLibrary
                               ? "no plugin line above serves " + cType + ": plugin libfwlib.so is missing"
                               : "no plugin has a type " + cType,
                           bOfLibrary ? "" : Nearest(cType, cNames));
    }
}

// The entries of --config are stored in a section of the element that has the name of its type.
void Reader::CheckTypeSection(const Element& cElement) {
    std::vector<ConfigSection> cSections;
    if (m_cOptions.cConfig.empty() || !cElement.pDescription ||
        !ReadConfig(m_cOptions.cConfig, m_cDiagnoses, cSections)) {
        return;
    }
    for (const ConfigSection& cSection : cSections) {
        if (cSection.cName.cText == cElement.cType.cText) {
            m_cDiagnoses.Warning(cSection.cName.cSpot, "misplaced-section",
                                 "no " + cElement.cType.cText +
                                     " reads this section, only [Standard], with a config line");
        }
    }
}

void Reader::Set(const Token& cKey, const Token& cValue) {
    if (!m_pCurrent) {
        return;
    }
    if (cKey.cText == VESK::Key::Name && m_iCurrent >= 0) {
        const int iFirst = m_pPipeline->Find(cValue.cText);
        if (iFirst >= 0 && iFirst != m_iCurrent) {
            const auto& cFirst = *m_pPipeline->cElements[static_cast<std::size_t>(iFirst)];
            m_cDiagnoses.Warning(cValue.cSpot, "duplicate-name",
                                 "the element in line " + std::to_string(cFirst.cLine.uLine) +
                                     " has this name too; only the first of both is found");
        }
        m_pPipeline->Rename(m_iCurrent, cValue.cText);
    }
    SetProperty(*m_pCurrent, cKey, cValue, m_cDiagnoses);
}

void Reader::TellOrphan(const Spot& cSpot, const char* pchIgnored, const char* pchSet) {
    m_cDiagnoses.Warning(cSpot, "orphan-property",
                         m_pCurrent ? std::string("no element above in this file: ") + pchSet +
                                          " on an element of another file"
                                    : std::string("no element above: ") + pchIgnored);
}

void Reader::PropertyLine(const Tokens& cTokens) {
    if (m_iCurrent < 0 && !cTokens[1].cText.empty()) {
        TellOrphan(cTokens[1].cSpot, "the property is ignored", "the property is set");
    }
    if (!cTokens[1].cText.empty() && !cTokens[2].cText.empty()) {
        Set(cTokens[1], cTokens[2]);
    }
}

void Reader::SinkLine(const Tokens& cTokens) {
    m_pPipeline->bSinkLine = true;
    m_pPipeline->cSink = cTokens[1];
}

void Reader::SourceLine(const Tokens& cTokens) {
    m_pPipeline->bSourceLine = true;
    m_pPipeline->cSource = cTokens[1];
}

void Reader::ReadEnd(const Token& cElement, const Token& cNumber, Pad& cPad) {
    cPad.cElement = cElement;
    cPad.cNumber = cNumber;
    if (cElement.cText.empty()) {
        return;
    }
    cPad.iElement = m_pPipeline->Find(cElement.cText);
    if (cPad.iElement < 0) {
        m_cDiagnoses.Error(cElement.cSpot, "unknown-element", "no element is named \"" + cElement.cText + '"',
                           Nearest(cElement.cText, m_pPipeline->Names()));
    }
    if (cNumber.cText.empty()) {
        return;
    }
    cPad.uNumber = static_cast<VESK::Byte2Type>(NumberIn(cNumber.cText));
    if (!IsWholeNumber(cNumber.cText)) {
        m_cDiagnoses.Warning(cNumber.cSpot, "not-a-number",
                             "pad " + cNumber.cText + ": not a number, is read as " +
                                 std::to_string(cPad.uNumber));
    } else if (static_cast<int>(cPad.uNumber) != NumberIn(cNumber.cText)) {
        m_cDiagnoses.Warning(cNumber.cSpot, "out-of-range",
                             "pad " + cNumber.cText + ": not from 0 to 65535, is read as " +
                                 std::to_string(cPad.uNumber));
    }
}

void Reader::ConnectLine(const Tokens& cTokens) {
    if (cTokens[4].cText.empty()) { // which of them is missing, is not known
        return;
    }
    Connection cConnection;
    cConnection.cLine = cTokens[0].cSpot;
    ReadEnd(cTokens[1], cTokens[2], cConnection.cFrom);
    ReadEnd(cTokens[3], cTokens[4], cConnection.cTo);
    m_pPipeline->cConnections.push_back(std::move(cConnection));
}

void Reader::ConfigLine(const Tokens& cTokens) {
    if (m_iCurrent < 0 && !cTokens[1].cText.empty()) {
        TellOrphan(cTokens[1].cSpot, "the section is ignored", "its entries are set");
    }
    if (!m_pCurrent || cTokens[1].cText.empty() || cTokens[2].cText.empty()) { // the file is not opened
        return;
    }
    std::vector<ConfigSection> cSections;
    if (!ReadConfig(cTokens[1].cText, m_cDiagnoses, cSections)) {
        m_cDiagnoses.Error(cTokens[1].cSpot, "missing-config",
                           "cannot read " + cTokens[1].cText + ": " + std::strerror(errno));
        return;
    }
    std::vector<std::string> cNames;
    for (const ConfigSection& cSection : cSections) {
        if (cSection.cName.cText == cTokens[2].cText) {
            for (const auto& [cKey, cValue] : cSection.cEntries) {
                if (cSection.cName.cText == VESK::Section::Standard) {
                    Set(cKey, cValue);
                }
            }
            return;
        }
        cNames.push_back(cSection.cName.cText);
    }
    m_cDiagnoses.Error(cTokens[2].cSpot, "missing-section",
                       cTokens[1].cText + " has no section [" + cTokens[2].cText + ']',
                       Nearest(cTokens[2].cText, cNames));
}

} // namespace FwPipe
