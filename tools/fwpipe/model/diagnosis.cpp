// SPDX-License-Identifier: MIT
#include "diagnosis.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace FwPipe {

const std::string* Diagnoses::File(const std::string& cName) {
    const auto Found = std::find(m_cFiles.begin(), m_cFiles.end(), cName);
    return Found != m_cFiles.end() ? &*Found : &m_cFiles.emplace_back(cName);
}

void Diagnoses::Add(Diagnosis cDiagnosis) {
    const Spot& cSpot = cDiagnosis.cSpot;
    if (m_cKnown.emplace(cSpot.pFile, cSpot.uLine, cSpot.uColumn, cDiagnosis.pchId).second) {
        m_uErrors += cDiagnosis.Weight == Severity::Error ? 1 : 0;
        m_cAll.push_back(std::move(cDiagnosis));
    }
}

void Diagnoses::Error(const Spot& cSpot, const char* pchId, std::string cText, std::string cHint) {
    Add({cSpot, Severity::Error, pchId, std::move(cText), std::move(cHint)});
}

void Diagnoses::Warning(const Spot& cSpot, const char* pchId, std::string cText, std::string cHint) {
    Add({cSpot, Severity::Warning, pchId, std::move(cText), std::move(cHint)});
}

std::size_t Diagnoses::ErrorsIn(const std::string* pFile) const {
    return static_cast<std::size_t>(
        std::count_if(m_cAll.begin(), m_cAll.end(), [pFile](const Diagnosis& cDiagnosis) {
            return cDiagnosis.cSpot.pFile == pFile && cDiagnosis.Weight == Severity::Error;
        }));
}

std::vector<Diagnosis> Diagnoses::Sorted() const {
    const auto Position = [this](const Diagnosis& cDiagnosis) {
        const auto uFile = std::find_if(m_cFiles.begin(), m_cFiles.end(),
                                        [&](const std::string& c) { return &c == cDiagnosis.cSpot.pFile; }) -
                           m_cFiles.begin();
        return std::make_tuple(uFile, cDiagnosis.cSpot.uLine, cDiagnosis.cSpot.uColumn);
    };
    std::vector<Diagnosis> cSorted = m_cAll;
    std::stable_sort(cSorted.begin(), cSorted.end(), [&](const Diagnosis& cOne, const Diagnosis& cOther) {
        return Position(cOne) < Position(cOther);
    });
    return cSorted;
}

} // namespace FwPipe
