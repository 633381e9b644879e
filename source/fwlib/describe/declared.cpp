// SPDX-License-Identifier: MIT
#include "fwlib/describe/declared.h"

#include "fwlib/elements/eobject.h"

#include <cstring>
#include <new>

namespace VESK {

namespace {

// Reports that a property is declared wrongly, if there is an element, and returns 0.
int Refuse(Declared& cDeclared, const char* pchKey, const char* pchFault) {
    cDeclared.bWrong = true;
    if (!cDeclared.pElement) {
        return 0;
    }
    if (!pchKey || *pchKey == '\0') {
        cDeclared.pElement->ErrorMessage("Initialize(): a property is declared without a key\n");
    } else {
        cDeclared.pElement->ErrorMessage("Initialize(): %s is declared wrongly: %s\n", pchKey, pchFault);
    }
    return 0;
}

} // namespace

DeclaredProperty* NewProperty(Declared* pDeclared, PropertyKind Kind, const char* pchKey, const char* pchUnit,
                              const char* pchMeaning) {
    if (!pDeclared) {
        return nullptr;
    }
    auto* const pNew = new (std::nothrow) DeclaredProperty();
    if (!pNew) {
        pDeclared->bNoMemory = true;
        return nullptr;
    }
    pNew->pchKey = pchKey;
    pNew->b4Kind = Kind;
    pNew->pchUnit = pchUnit;
    pNew->pchMeaning = pchMeaning ? pchMeaning : "";
    return pNew;
}

int Declare(Declared& cDeclared, DeclaredProperty* pNew, const char* pchFault, const char** ppchText) {
    const char* const pchKey = pNew->pchKey;
    if (pchKey && FindProperty(cDeclared.cProperties.Begin(), pchKey)) {
        pchFault = "its key is declared twice";
    }
    if (!pchKey || *pchKey == '\0' || pchFault) {
        delete pNew;
        return Refuse(cDeclared, pchKey, pchFault);
    }
    if (!cDeclared.cProperties.Adopt(pNew)) {
        cDeclared.bNoMemory = true;
        return 0;
    }
    *ppchText = cDeclared.pElement ? FindValue(cDeclared.pElement->m_cProperties, pchKey) : nullptr;
    return cDeclared.pElement != nullptr;
}

const PropertyDescription* FindProperty(const PropertyDescription* const* ppProperties, const char* pchKey) {
    while (*ppProperties && std::strcmp((*ppProperties)->pchKey, pchKey) != 0) {
        ++ppProperties;
    }
    return *ppProperties;
}

int DeclarePads(Declared* pDeclared, DeclaredPads Declared::*pPads, const char* pchKind, Byte4Type b4Count,
                const char* pchKey) {
    if (!pDeclared) {
        return 0;
    }
    DeclaredPads& cPads = pDeclared->*pPads;
    if (cPads.bDeclared) {
        pDeclared->bWrong = true;
        if (pDeclared->pElement) {
            pDeclared->pElement->ErrorMessage("Initialize(): %s pads are declared twice\n", pchKind);
        }
        return 0;
    }
    cPads.bDeclared = true;
    cPads.b4Count = b4Count;
    cPads.pchProperty = pchKey;
    return 1;
}

} // namespace VESK
