// SPDX-License-Identifier: MIT
#include "fwlib/properties/cutnames.h"

#include "fwlib/internal/textcopy.h"
#include "fwlib/internal/textsizes.h"
#include "fwlib/text.h"

#include <atomic>

namespace VESK {

namespace {

struct CutName {
    CutName* pNext;
    char achName[FileNameSize];
};

// A value has no flag that could be copied from list to list, so a truncated name is recognized by its text. The text
// has the greatest possible length: a complete name with the same text is unlikely.
std::atomic<CutName*> pCutNames{nullptr};

} // namespace

int KeepCutName(const char* pchLine) {
    const std::size_t uKey = std::strlen(Key::Filename);
    if (std::strncmp(pchLine, Key::Filename, uKey) != 0 || pchLine[uKey] != '=' ||
        IsCutName(pchLine + uKey + 1)) {
        return 1;
    }
    auto* const pName = static_cast<CutName*>(std::malloc(sizeof(CutName)));
    if (!pName) {
        return 0;
    }
    CopyBounded(pName->achName, pchLine + uKey + 1);
    pName->pNext = pCutNames.load(std::memory_order_relaxed);
    while (!pCutNames.compare_exchange_weak(pName->pNext, pName, std::memory_order_release,
                                            std::memory_order_relaxed)) {
    }
    return 1;
}

bool IsCutName(const char* pchName) {
    const CutName* p = pCutNames.load(std::memory_order_acquire);
    while (p && std::strcmp(p->achName, pchName) != 0) {
        p = p->pNext;
    }
    return p != nullptr;
}

} // namespace VESK
