// SPDX-License-Identifier: MIT
#include "fwlib/properties/keywatch.h"

#include "fwlib/properties/list.h"

#include <atomic>

namespace VESK {

namespace {

std::atomic<const KeyWatch*> pPresent{nullptr};

} // namespace

void WatchMissingKeys(const KeyWatch* pWatch) {
    pPresent.store(pWatch, std::memory_order_release);
}

char* ReportMissing(const PROPERTIES& cList, const char* pchKey, const char* pchSection) {
    const KeyWatch* const pWatch = pPresent.load(std::memory_order_acquire);
    if (pWatch) {
        pWatch->pMissing(pWatch->pContext, cList, pchKey, pchSection);
    }
    return nullptr;
}

} // namespace VESK
