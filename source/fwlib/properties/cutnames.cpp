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

// Values are copied from list to list and have no place for a mark, so the text tells. It is as long as the line's
// limit leaves it, and nobody files a name of exactly that text by accident.
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
