// SPDX-License-Identifier: MIT
#include "recorders.h"

#include "elements.h"
#include "filekey.h"
#include "message.h"

#include <fwlib/fwlib.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <unistd.h>
#include <vector>

namespace FwPipe {

namespace {

struct Use {
    VESK::EObject* pElement;
    bool bAlone;    // a recorder that does not share its file
    bool bStandard; // standard output, which recorders may share
};

using Uses = std::map<std::string, std::vector<Use>>; // by file

bool Set(VESK::EObject& cElement, const char* pchKey, const char* pchValue) {
    return cElement.m_cProperties.SetProperty(VESK::Text(pchKey), VESK::Text(pchValue),
                                              VESK::Section::Standard);
}

bool Apply(const RecorderOptions& cOptions, VESK::EObject& cRecorder) {
    return (!cOptions.bKeep || Setting(cRecorder, "Existing") || Set(cRecorder, "Existing", "refuse")) &&
           (!cOptions.bShared || Set(cRecorder, "Shared", "1"));
}

// Without a "Filename", only the library's own elements are known to use a standard stream.
void Add(Uses& cUses, VESK::EObject& cElement) {
    const bool bRecorder = IsRecorder(cElement);
    const char* const pchName = Setting(cElement, VESK::Key::Filename);
    if (!pchName && !bRecorder && !AsReplay(&cElement)) {
        return;
    }
    const std::string cKey =
        pchName ? KeyOfPath(pchName) : KeyOfStream(bRecorder ? STDOUT_FILENO : STDIN_FILENO);
    if (cKey.empty()) {
        return;
    }
    int iShared;
    cElement.m_cProperties.GetProperty(VESK::Text("Shared"), &iShared, 0, VESK::Section::Standard);
    cUses[cKey].push_back({&cElement, bRecorder && !iShared, bRecorder && !pchName});
}

// Reports the first pair of which one does not share the file. Returns true if there is none.
bool Compatible(const std::vector<Use>& cUses) {
    for (const Use& cAlone : cUses) {
        if (!cAlone.bAlone) {
            continue;
        }
        const auto It = std::find_if(cUses.begin(), cUses.end(), [&cAlone](const Use& cOther) {
            return cOther.pElement != cAlone.pElement && !(cOther.bStandard && cAlone.bStandard);
        });
        if (It != cUses.end()) {
            const char* const pchFile = Setting(*cAlone.pElement, VESK::Key::Filename);
            Complain(Shown(*cAlone.pElement) + " would write " + (pchFile ? pchFile : "standard output") +
                     ", which " + Shown(*It->pElement) + " uses too; --shared-files allows it");
            return false;
        }
    }
    return true;
}

} // namespace

bool PrepareRecorders(const RecorderOptions& cOptions, VESK::EPipeline& cPipeline) {
    Uses cUses;
    bool bApplied = true;
    ForEach(cPipeline, [&](VESK::EObject& cElement) {
        bApplied = bApplied && (!IsRecorder(cElement) || Apply(cOptions, cElement));
        Add(cUses, cElement);
    });
    if (!bApplied) {
        Complain("not enough memory for the properties of the recorders");
        return false;
    }
    return std::all_of(cUses.begin(), cUses.end(),
                       [](const auto& cEntry) { return Compatible(cEntry.second); });
}

} // namespace FwPipe
