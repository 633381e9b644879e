// SPDX-License-Identifier: MIT
// A plugin that hands out no factory.
#include "fwlib/framework/entry.h"

VESK::Factory* GetFactory() {
    return nullptr;
}
