// SPDX-License-Identifier: MIT
// The library's own factories: FWLibFactory creates "QObject", FWElementsFactory the built-in elements. Names are
// compared byte for byte. The caller owns what they create; an element has no framework yet.
#ifndef FWLIB_BUILTIN_FACTORIES_H
#define FWLIB_BUILTIN_FACTORIES_H

#include "fwlib/export.h"
#include "fwlib/framework/factory.h"
#include "fwlib/types.h"

namespace FACTORY {

class FWLIB_EXPORT FWLibFactory : public VESK::LibraryFactory {
public:
    VESK::QObject* CreateQObject(char* pchType) override;

    static char* const pchNames[2]; // the names it creates, then null
};

class FWLIB_EXPORT FWElementsFactory : public VESK::LibraryFactory {
public:
    VESK::EObject* CreateElement(char* pchType) override;

    static char* const pchNames[8];
};

} // namespace FACTORY

#endif
