// SPDX-License-Identifier: MIT
#include "fwlib/builtin/factories.h"

#include "fwlib/builtin/edeserialize.h"
#include "fwlib/builtin/edevnull.h"
#include "fwlib/builtin/epassthrough.h"
#include "fwlib/builtin/eserialize.h"
#include "fwlib/builtin/esink.h"
#include "fwlib/builtin/esource.h"
#include "fwlib/builtin/etee.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"

#include <new>

namespace FACTORY {

namespace {

using VESK::EObject;
using VESK::QObject;
namespace Type = VESK::Type;

// Returns null when there is not enough memory for the object or for its type's name.
template <class Base, class Object>
Base* Create() {
    auto* const pObject = new (std::nothrow) Object;
    if (pObject && pObject->m_cProperties.GetNumberOfProperties() == 0) {
        delete pObject;
        return nullptr;
    }
    return pObject;
}

// Calls the creator at the position of the name; null if the table does not contain the name.
template <class Base, std::size_t Count>
Base* CreateByName(char* const (&pchNames)[Count + 1], Base* (*const (&apCreators)[Count])(), char* pchType) {
    for (std::size_t u = 0; pchType && u < Count; ++u) {
        if (VESK::fwstrcmp(pchNames[u], pchType) == 0) {
            return apCreators[u]();
        }
    }
    return nullptr;
}

QObject* (*const apObjectCreators[])() = {Create<QObject, QObject>};

EObject* (*const apElementCreators[])() = {
    Create<EObject, VESK::EDevNull>,    Create<EObject, VESK::EPassthrough>,
    Create<EObject, VESK::ETee>,        Create<EObject, VESK::ESource>,
    Create<EObject, VESK::ESink>,       Create<EObject, VESK::ESerialize>,
    Create<EObject, VESK::EDeserialize>};

} // namespace

char* const FWLibFactory::pchNames[2] = {Type::QObject, nullptr};

char* const FWElementsFactory::pchNames[8] = {
    Type::EDevNull, Type::EPassthrough, Type::ETee,         Type::ESource,
    Type::ESink,    Type::ESerialize,   Type::EDeserialize, nullptr};

QObject* FWLibFactory::CreateQObject(char* pchType) {
    return CreateByName(pchNames, apObjectCreators, pchType);
}

EObject* FWElementsFactory::CreateElement(char* pchType) {
    return CreateByName(pchNames, apElementCreators, pchType);
}

} // namespace FACTORY
