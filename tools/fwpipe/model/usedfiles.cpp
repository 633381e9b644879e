// SPDX-License-Identifier: MIT
// Files that several elements use.
#include "described.h"
#include "settings.h"
#include "structure.h"
#include "types.h"

#include <fwlib/fwlib.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace FwPipe {

namespace {

struct Use {
    const Element* pElement;
    const Setting* pSetting;
    bool bWrites;
};

// The same text for all spellings of a file, whether it exists or not.
std::string Identity(const std::string& cPath) {
    std::error_code cError;
    const std::filesystem::path cResolved =
        std::filesystem::weakly_canonical(std::filesystem::absolute(cPath), cError);
    return cError ? cPath : cResolved.string();
}

// Devices and pipes hold nothing that could be lost.
bool IsSpecial(const std::string& cPath) {
    std::error_code cError;
    const auto Status = std::filesystem::status(cPath, cError);
    return std::filesystem::exists(Status) && !std::filesystem::is_regular_file(Status);
}

class UsedFiles {
public:
    UsedFiles(bool bLoad, Diagnoses& cDiagnoses) : m_bLoad(bLoad), m_cDiagnoses(cDiagnoses) {}

    void Add(const Pipeline& cPipeline) {
        for (const auto& pElement : cPipeline.cElements) {
            if (pElement->pNested) {
                Add(*pElement->pNested);
            } else if (pElement->pDescription) {
                for (const VESK::PropertyDescription* pProperty : PropertiesOf(*pElement->pDescription)) {
                    const auto Found = pElement->cProperties.find(pProperty->pchKey);
                    if (Found != pElement->cProperties.end()) {
                        Take({pElement.get(), &Found->second, pProperty->b4Kind == VESK::FileToWriteProperty},
                             pProperty->b4Kind);
                    }
                }
            }
        }
    }

private:
    void Take(const Use& cUse, VESK::Byte4Type b4Kind) {
        const std::string& cPath = cUse.pSetting->cValue;
        if ((b4Kind != VESK::FileToWriteProperty && b4Kind != VESK::FileToReadProperty) || IsSpecial(cPath)) {
            return;
        }
        std::vector<Use>& cUses = m_cUses[Identity(cPath)];
        bool bMade = false;
        for (const Use& cOther : cUses) {
            bMade = bMade || cOther.bWrites;
            if ((cUse.bWrites || cOther.bWrites) && !IsShared(cUse) && !IsShared(cOther)) {
                m_cDiagnoses.Warning(cUse.pSetting->cValueSpot, "shared-file",
                                     cOther.pElement->Shown() + (cOther.bWrites ? " writes " : " reads ") +
                                         "this file too, set in line " +
                                         std::to_string(cOther.pSetting->cValueSpot.uLine));
                break;
            }
        }
        if (m_bLoad && !cUse.bWrites && !bMade && access(cPath.c_str(), R_OK) != 0) {
            m_cDiagnoses.Error(cUse.pSetting->cValueSpot, "unreadable",
                               "cannot read " + cPath + ": " + std::strerror(errno));
        }
        cUses.push_back(cUse);
    }

    // A recorder with Shared set may write a file that is in use.
    static bool IsShared(const Use& cUse) {
        const auto Found = cUse.pElement->cProperties.find(VESK::Key::Shared);
        return Found != cUse.pElement->cProperties.end() && NumberIn(Found->second.cValue) != 0;
    }

    const bool m_bLoad;
    Diagnoses& m_cDiagnoses;
    std::map<std::string, std::vector<Use>> m_cUses;
};

} // namespace

void CheckFiles(const Pipeline& cPipeline, bool bLoad, Diagnoses& cDiagnoses) {
    UsedFiles(bLoad, cDiagnoses).Add(cPipeline);
}

} // namespace FwPipe
