// SPDX-License-Identifier: MIT
#include "settings.h"

#include "described.h"
#include "nearest.h"
#include "types.h"

#include <fwlib/fwlib.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace FwPipe {

namespace {

using VESK::PropertyDescription;

constexpr int MostPads = 65520;
constexpr int MostReadPads = 65536; // ESource and ESerialize read 16 bits

bool IsCommon(const PropertyDescription& cProperty) {
    for (const PropertyDescription* const* pp = VESK::CommonProperties(); *pp; ++pp) {
        if (std::strcmp((*pp)->pchKey, cProperty.pchKey) == 0) {
            return true;
        }
    }
    return false;
}

// The number of pads that a property of the library's types means, as these read it.
int PadsOf(const Element& cElement, const std::string& cText) {
    const int iNumber = NumberIn(cText);
    return cElement.cType.cText == VESK::Type::ETee ? iNumber : iNumber & (MostReadPads - 1);
}

bool IsWithin(const std::string& cValue, const PropertyDescription& cProperty) {
    const long double Value = std::strtold(cValue.c_str(), nullptr);
    return (!cProperty.pchLeast || Value >= std::strtold(cProperty.pchLeast, nullptr)) &&
           (!cProperty.pchMost || Value <= std::strtold(cProperty.pchMost, nullptr));
}

std::string Range(const PropertyDescription& cProperty) {
    return (cProperty.pchLeast ? std::string("from ") + cProperty.pchLeast : "") +
           (cProperty.pchMost ? " to " : "") + (cProperty.pchMost ? cProperty.pchMost : "");
}

// Whether the text has the form of its kind, as an element that declares it requires.
bool HasForm(const std::string& cValue, VESK::Byte4Type b4Kind) {
    double d;
    bool b;
    return b4Kind == VESK::NumberProperty ? IsWholeNumber(cValue)
           : b4Kind == VESK::RealProperty ? VESK::ParseReal(cValue.c_str(), &d) != 0
           : b4Kind == VESK::FlagProperty ? VESK::ParseFlag(cValue.c_str(), &b) != 0
                                          : true;
}

class Judge {
public:
    Judge(Element& cElement, const PropertyDescription& cProperty, Token cValue, Diagnoses& cDiagnoses)
        : m_cElement(cElement),
          m_cProperty(cProperty),
          m_cValue(std::move(cValue)),
          m_cDiagnoses(cDiagnoses),
          m_bLenient(cElement.bOfLibrary || IsCommon(cProperty)) {}

    void Check() {
        if (m_cProperty.b4Kind == VESK::ChoiceProperty) {
            CheckChoice();
        } else if (m_cProperty.b4Kind == VESK::FileToWriteProperty) {
            CheckFolder();
        } else if (IsNumeric(m_cProperty.b4Kind) || m_cProperty.b4Kind == VESK::FlagProperty) {
            CheckNumber();
        }
    }

private:
    void CheckChoice() {
        std::string cAll;
        for (const std::string& cChoice : ChoicesOf(m_cProperty)) {
            if (cChoice == m_cValue.cText) {
                return;
            }
            cAll += (cAll.empty() ? "" : ", ") + cChoice;
        }
        Tell(true, "out-of-range", "not one of " + cAll);
    }

    void CheckNumber() {
        const bool bFlag = m_cProperty.b4Kind == VESK::FlagProperty;
        const bool bForm =
            m_bLenient ? IsWholeNumber(m_cValue.cText) : HasForm(m_cValue.cText, m_cProperty.b4Kind);
        if (!bForm) {
            const std::string cRead =
                m_bLenient ? ", is read as " + std::to_string(NumberIn(m_cValue.cText)) : "";
            Tell(!m_bLenient, "not-a-number", (bFlag && !m_bLenient ? "not 0 or 1" : "not a number") + cRead);
        } else if (!bFlag && !IsWithin(m_cValue.cText, m_cProperty)) {
            const char* const pchPads = m_cElement.pDescription->SourcePads.pchProperty;
            const bool bPads = pchPads && std::strcmp(pchPads, m_cProperty.pchKey) == 0;
            const int iPads = bPads && m_bLenient ? PadsOf(m_cElement, m_cValue.cText) : 0;
            Tell(!m_bLenient || iPads < 0 || iPads > MostPads, "out-of-range", "not " + Range(m_cProperty));
        }
    }

    void CheckFolder() {
        const std::filesystem::path cFolder = std::filesystem::path(m_cValue.cText).parent_path();
        std::error_code cError;
        if (!cFolder.empty() && !std::filesystem::is_directory(cFolder, cError)) {
            Tell(false, "unreadable", "there is no folder " + cFolder.string());
        }
    }

    void Tell(bool bError, const char* pchId, const std::string& cText) {
        const std::string cWhole = std::string(m_cProperty.pchKey) + " = " + m_cValue.cText + ": " + cText;
        bError ? m_cDiagnoses.Error(m_cValue.cSpot, pchId, cWhole)
               : m_cDiagnoses.Warning(m_cValue.cSpot, pchId, cWhole);
    }

    Element& m_cElement;
    const PropertyDescription& m_cProperty;
    const Token m_cValue;
    Diagnoses& m_cDiagnoses;
    const bool m_bLenient; // wrong texts are read as some number, instead of refused
};

int CountOf(const Element& cElement, const VESK::PadsDescription& cPads) {
    const auto Found =
        cPads.pchProperty ? cElement.cProperties.find(cPads.pchProperty) : cElement.cProperties.end();
    if (Found == cElement.cProperties.end()) {
        return static_cast<int>(cPads.b4Count);
    }
    const int iPads =
        cElement.bOfLibrary ? PadsOf(cElement, Found->second.cValue) : NumberIn(Found->second.cValue);
    return iPads < 0 || iPads > MostPads ? PadsUnknown : iPads; // it was reported
}

} // namespace

int NumberIn(const std::string& cText) {
    return VESK::fwatoi(VESK::Text(cText.c_str()));
}

bool IsWholeNumber(const std::string& cText) {
    long long ll;
    unsigned long long ull;
    return VESK::ParseNumber(cText.c_str(), &ll) || VESK::ParseNumber(cText.c_str(), &ull);
}

void SetProperty(Element& cElement, const Token& cKey, const Token& cValue, Diagnoses& cDiagnoses) {
    cElement.cProperties[cKey.cText] = {cValue.cText, cKey.cSpot, cValue.cSpot};
    if (!cElement.pDescription) {
        return;
    }
    if (FindProperty(*cElement.pDescription, cKey.cText)) {
        return;
    }
    std::vector<std::string> cKeys;
    for (const PropertyDescription* pProperty : PropertiesOf(*cElement.pDescription)) {
        cKeys.emplace_back(pProperty->pchKey);
    }
    cDiagnoses.Warning(cKey.cSpot, "unknown-property",
                       std::string(cElement.pDescription->pchType) + " does not read \"" + cKey.cText + '"',
                       Nearest(cKey.cText, cKeys));
}

void Complete(Element& cElement, Diagnoses& cDiagnoses) {
    if (!cElement.pDescription) {
        return;
    }
    for (const auto& [cKey, cSetting] : cElement.cProperties) { // the last values, which the element reads
        if (const PropertyDescription* const pProperty = FindProperty(*cElement.pDescription, cKey)) {
            Judge(cElement, *pProperty, {cSetting.cValue, cSetting.cValueSpot}, cDiagnoses).Check();
        }
    }
    if (cElement.bPipe) { // the pads of a nested pipeline are those of its elements
        return;
    }
    cElement.iSinkPads = CountOf(cElement, cElement.pDescription->SinkPads);
    cElement.iSourcePads = CountOf(cElement, cElement.pDescription->SourcePads);
    for (const PropertyDescription* pProperty : PropertiesOf(*cElement.pDescription)) {
        if (pProperty->b4Required && cElement.cProperties.count(pProperty->pchKey) == 0) {
            cDiagnoses.Error(cElement.cType.cSpot, "missing-property",
                             cElement.cType.cText + " needs the property " + pProperty->pchKey);
        }
    }
}

} // namespace FwPipe
