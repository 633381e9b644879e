// SPDX-License-Identifier: MIT
#include "reason.h"

#include "activeelement.h"
#include "message.h"
#include "model/loadedplugins.h"
#include "model/reader.h"
#include "model/structure.h"

#include <fwlib/fwlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <unistd.h>

namespace FwPipe {

namespace {

// What "fwpipe check" knows about the file; nothing about a pipe, which cannot be read again.
class Checked {
public:
    Checked(const std::string& cFile, const std::string& cConfig) : m_pPlugins(LoadDescriptions()) {
        CheckOptions cOptions;
        cOptions.cConfig = cConfig;
        std::error_code cError;
        if (std::filesystem::is_regular_file(cFile, cError)) {
            m_pPipeline = Reader(cOptions, *m_pPlugins, m_cDiagnoses).ReadFile(cFile);
        }
    }

    // The error in this line; null for none.
    const Diagnosis* ErrorAt(const std::string& cFile, unsigned int uLine) {
        m_cSorted = m_cDiagnoses.Sorted();
        return First([&](const Diagnosis& c) { return *c.cSpot.pFile == cFile && c.cSpot.uLine == uLine; });
    }

    // The error because of which initializing fails: a value that an element refuses, or else a pad that does not exist.
    const Diagnosis* ErrorOfInitialization() {
        if (!m_pPipeline) {
            return nullptr;
        }
        CheckStructure(*m_pPipeline, false, m_cDiagnoses);
        m_cSorted = m_cDiagnoses.Sorted();
        static const std::string Refused[] = {"not-a-number", "out-of-range", "missing-property"};
        const Diagnosis* const pValue = First([](const Diagnosis& c) {
            return std::find(std::begin(Refused), std::end(Refused), c.pchId) != std::end(Refused);
        });
        return pValue ? pValue
                      : First([](const Diagnosis& c) { return c.pchId == std::string("unknown-pad"); });
    }

    // Where the element was created; null unless exactly one has that label.
    const Spot* LineOf(const Label& cLabel) const {
        const Spot* pFound = nullptr;
        int iFound = 0;
        if (m_pPipeline) {
            Find(*m_pPipeline, cLabel, pFound, iFound);
        }
        return iFound == 1 ? pFound : nullptr;
    }

private:
    template <class Fits>
    const Diagnosis* First(Fits cFits) const {
        const auto Found =
            std::find_if(m_cSorted.begin(), m_cSorted.end(), [&cFits](const Diagnosis& cDiagnosis) {
                return cDiagnosis.Weight == Severity::Error && cFits(cDiagnosis);
            });
        return Found == m_cSorted.end() ? nullptr : &*Found;
    }

    static void Find(const Pipeline& cPipeline, const Label& cLabel, const Spot*& pFound, int& iFound) {
        for (const auto& pElement : cPipeline.cElements) {
            if (pElement->pNested) {
                Find(*pElement->pNested, cLabel, pFound, iFound);
            } else if (LabelOf(pElement->bNamed ? pElement->cName.c_str() : nullptr,
                               pElement->cType.cText.c_str())
                           .achText == std::string(cLabel.achText)) {
                pFound = &pElement->cLine;
                ++iFound;
            }
        }
    }

    std::unique_ptr<Plugins> m_pPlugins;
    Diagnoses m_cDiagnoses;
    std::vector<Diagnosis> m_cSorted;
    std::unique_ptr<Pipeline> m_pPipeline;
};

// Why a file that was not opened cannot be read, as the end of a message; nothing for another reason.
std::string WhyUnread(const std::string& cFile) {
    std::error_code cError;
    const bool bFolder = std::filesystem::is_directory(cFile, cError);
    return !bFolder && access(cFile.c_str(), R_OK) == 0
               ? ""
               : std::string(": ") + std::strerror(bFolder ? EISDIR : errno);
}

void Tell(const Spot& cSpot, const char* pchStep, const std::string& cText) {
    Complain(*cSpot.pFile + ':' + std::to_string(cSpot.uLine) + ": " + pchStep + " failed: " + cText);
}

} // namespace

void TellFailedBuild(const std::string& cFile, const std::string& cConfig) {
    const VESK::Failure* const pFailure = VESK::LastFailure();
    if (!pFailure || pFailure->b4Line == 0) {
        Complain("building " + cFile + " failed" + WhyUnread(cFile));
        return;
    }
    const std::string cFailed = pFailure->pchFile, cReported = pFailure->pchText;
    Checked cChecked(cFile, cConfig);
    const Diagnosis* const pError = cChecked.ErrorAt(cFailed, pFailure->b4Line);
    Tell({&cFailed, pFailure->b4Line, 1, 0}, "building", pError ? pError->cText : cReported);
}

void TellFailedInitialization(const std::string& cFile, const std::string& cConfig) {
    const VESK::Failure* const pFailure = VESK::LastFailure();
    const std::string cReported = pFailure ? pFailure->pchText : "";
    Checked cChecked(cFile, cConfig);
    if (const Diagnosis* const pError = cChecked.ErrorOfInitialization()) {
        Tell(pError->cSpot, "initializing", pError->cText);
    } else if (const Spot* const pSpot = cChecked.LineOf(FailedElement())) {
        Tell(*pSpot, "initializing", cReported);
    } else {
        Complain("initializing " + cFile + " failed");
    }
}

} // namespace FwPipe
