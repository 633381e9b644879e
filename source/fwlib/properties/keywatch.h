// SPDX-License-Identifier: MIT
// KeyWatch: learns which keys are asked for, for tools that examine elements without a description.
#ifndef FWLIB_PROPERTIES_KEYWATCH_H
#define FWLIB_PROPERTIES_KEYWATCH_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

struct KeyWatch {
    // Called by the thread that asks, with texts that are lent for the call. It must not read a list.
    void (*pMissing)(void* pContext, const PROPERTIES& cList, const char* pchKey, const char* pchSection);
    void* pContext;
};

// From now on, the watch is told each key that a getter of any list, FindProperty or FindValue does not find, in all
// threads. There is one watch; the caller keeps it until it is replaced and no other thread reads a list. Null ends it.
// A lookup that finds its key does not ask for the watch.
FWLIB_EXPORT void WatchMissingKeys(const KeyWatch* pWatch);

} // namespace VESK

#endif
