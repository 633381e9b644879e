// SPDX-License-Identifier: MIT
#include "fwlib/describe/declaration.h"
#include "fwlib/describe/declared.h"
#include "fwlib/internal/growth.h"

#include <cstring>
#include <new>

namespace VESK {

namespace {

// What is described is lent from the declaration, which is owned.
struct DescribedElement : ElementDescription {
    ~DescribedElement() { delete pDeclared; }

    Declared* pDeclared;
};

struct DescribedTypes {
    OwnedTable<ElementDescription, DescribedElement> cElements;
    OwnedTable<ObjectDescription, ObjectDescription> cObjects;
    PluginDescription Description;
    bool bNoMemory;
};

DescribedTypes* TypesOf(void* pState) {
    return static_cast<DescribedTypes*>(pState);
}

template <class Description>
bool IsKnown(const Description* const* ppTypes, const char* pchType) {
    while (*ppTypes && std::strcmp((*ppTypes)->pchType, pchType) != 0) {
        ++ppTypes;
    }
    return *ppTypes != nullptr;
}

bool IsName(const char* pchType) {
    return pchType && *pchType != '\0';
}

// A property that sets a number of pads, but whose declaration was refused, is left out; so is a number that Initialize
// refuses.
PadsDescription Described(const DeclaredPads& cPads, const PropertyDescription* const* ppProperties) {
    const PropertyDescription* const pProperty =
        cPads.pchProperty ? FindProperty(ppProperties, cPads.pchProperty) : nullptr;
    const bool bNumber = pProperty && pProperty->b4Kind == NumberProperty;
    return {cPads.b4Count <= LargestCapacity ? cPads.b4Count : 0, bNumber ? pProperty->pchKey : nullptr};
}

} // namespace

DescriptionTable::DescriptionTable() : m_pState(new (std::nothrow) DescribedTypes()) {}

DescriptionTable::~DescriptionTable() {
    delete TypesOf(m_pState);
}

int DescriptionTable::AddElement(const char* pchType, const char* pchMeaning, bool bOriginates,
                                 DeclarationBase& cDeclaration) {
    DescribedTypes* const pTypes = TypesOf(m_pState);
    auto* const pDeclared = Of(cDeclaration.m_pState);
    if (!pTypes || !IsName(pchType) || IsKnown(pTypes->cElements.Begin(), pchType)) {
        return pTypes != nullptr;
    }
    auto* const pNew = pDeclared && !pDeclared->bNoMemory ? new (std::nothrow) DescribedElement() : nullptr;
    if (pNew) {
        cDeclaration.m_pState = nullptr;
        const PropertyDescription* const* const ppProperties = pDeclared->cProperties.Begin();
        pNew->pDeclared = pDeclared;
        pNew->pchType = pchType;
        pNew->pchMeaning = pchMeaning ? pchMeaning : "";
        pNew->b4Originates = bOriginates;
        pNew->SinkPads = Described(pDeclared->SinkPads, ppProperties);
        pNew->SourcePads = Described(pDeclared->SourcePads, ppProperties);
        pNew->ppProperties = ppProperties;
    }
    const int iAdopted = pTypes->cElements.Adopt(pNew);
    pTypes->bNoMemory |= !iAdopted;
    return iAdopted;
}

int DescriptionTable::AddObject(const char* pchType, const char* pchMeaning) {
    DescribedTypes* const pTypes = TypesOf(m_pState);
    if (!pTypes || !IsName(pchType) || IsKnown(pTypes->cObjects.Begin(), pchType)) {
        return pTypes != nullptr;
    }
    const int iAdopted =
        pTypes->cObjects.Adopt(new (std::nothrow) ObjectDescription{pchType, pchMeaning ? pchMeaning : ""});
    pTypes->bNoMemory |= !iAdopted;
    return iAdopted;
}

const PluginDescription* DescriptionTable::Get(Byte4Type b4LibraryVersion) {
    DescribedTypes* const pTypes = TypesOf(m_pState);
    if (!pTypes || pTypes->bNoMemory) {
        return nullptr;
    }
    pTypes->Description = {PluginDescription::CurrentVersion, b4LibraryVersion, pTypes->cElements.Begin(),
                           pTypes->cObjects.Begin()};
    return &pTypes->Description;
}

} // namespace VESK
