// SPDX-License-Identifier: MIT
// KeyWatch: receives the keys that are looked up and missing, for tools that examine elements without a description.
#ifndef FWLIB_PROPERTIES_KEYWATCH_H
#define FWLIB_PROPERTIES_KEYWATCH_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

struct KeyWatch {
    // Called by the thread that looks up the key. The texts are lent for the call. The function must not read a list.
    void (*pMissing)(void* pContext, const PROPERTIES& cList, const char* pchKey, const char* pchSection);
    void* pContext;
};

// From now on, calls pMissing for each key that a getter of any list, FindProperty or FindValue does not find, in all
// threads. The process has one watch. It is lent until it is replaced and no other thread reads a list. Null removes it.
// A lookup that finds its key does not become slower.
FWLIB_EXPORT void WatchMissingKeys(const KeyWatch* pWatch);

} // namespace VESK

#endif
