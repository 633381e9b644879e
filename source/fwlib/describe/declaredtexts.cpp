// SPDX-License-Identifier: MIT
// Declared flags, choices and texts.
#include "fwlib/describe/declaration.h"
#include "fwlib/describe/declared.h"

#include <cstdlib>
#include <cstring>

namespace VESK {

namespace {

std::size_t ChoiceLength(const char* pchChoices) { // of the first one
    return std::strcspn(pchChoices, "|");
}

// Whether there are choices, and none is empty.
bool AreChoices(const char* pchChoices) {
    const std::size_t uLength = pchChoices ? ChoiceLength(pchChoices) : 0;
    return uLength > 0 && (pchChoices[uLength] == '\0' || AreChoices(pchChoices + uLength + 1));
}

// Stores the position of the text among the choices. Returns 0 when it is none of them.
int FindChoice(const char* pchText, const char* pchChoices, Byte4Type* pb4Index) {
    const std::size_t uSought = std::strlen(pchText);
    for (Byte4Type b4 = 0;; ++b4) {
        const std::size_t uLength = ChoiceLength(pchChoices);
        if (uLength == uSought && std::memcmp(pchChoices, pchText, uLength) == 0) {
            *pb4Index = b4;
            return 1;
        }
        if (pchChoices[uLength] == '\0') {
            return 0;
        }
        pchChoices += uLength + 1;
    }
}

// Stores the position of the default. Returns what is wrong with the declaration, or null.
const char* FaultOfChoices(const char* pchDefault, const char* pchChoices, Byte4Type* pb4Index) {
    if (!AreChoices(pchChoices)) {
        return "there are no choices, or an empty one";
    }
    return pchDefault && !FindChoice(pchDefault, pchChoices, pb4Index)
               ? "the default is not among the choices"
               : nullptr;
}

// Whether the text fits a field of that size; 0: any text does.
bool Fits(const char* pchText, Byte4Type b4Size) {
    return b4Size == 0 || std::strlen(pchText) < b4Size;
}

int ReportChoice(Declared& cDeclared, const char* pchKey, const char* pchText, const char* pchAllowed) {
    cDeclared.bWrong = true;
    cDeclared.pElement->ErrorMessage("Initialize(): %s = %s: not one of %s\n", pchKey, pchText, pchAllowed);
    return 0;
}

// The choices with ", " in place of each '|', in a block of the caller's; null when there is not enough memory.
char* ListChoices(const char* pchChoices) {
    auto* const pchList = static_cast<char*>(std::malloc(2 * std::strlen(pchChoices) + 1));
    char* pch = pchList;
    for (; pch && *pchChoices != '\0'; ++pchChoices) {
        *pch++ = *pchChoices == '|' ? ',' : *pchChoices;
        if (*pchChoices == '|') {
            *pch++ = ' ';
        }
    }
    if (pch) {
        *pch = '\0';
    }
    return pchList;
}

int ReportMissing(Declared& cDeclared, const char* pchKey) {
    cDeclared.bWrong = true;
    cDeclared.pElement->ErrorMessage("Initialize(): %s is not set\n", pchKey);
    return 0;
}

} // namespace

int DeclarationBase::ReadFlag(const char* pchKey, bool* pbValue, bool bDefault, const char* pchMeaning) {
    Declared* const pDeclared = Of(m_pState);
    DeclaredProperty* const pNew = NewProperty(pDeclared, FlagProperty, pchKey, nullptr, pchMeaning);
    if (!pNew) {
        return 0;
    }
    const char* pchText;
    pNew->pchDefault = bDefault ? "1" : "0";
    if (!Declare(*pDeclared, pNew, nullptr, &pchText)) {
        return 0;
    }
    *pbValue = bDefault;
    return !pchText || ParseFlag(pchText, pbValue) ||
           ReportChoice(*pDeclared, pchKey, pchText, "0, 1, false, true, no, yes, off, on");
}

int DeclarationBase::ReadChoice(const char* pchKey, Byte4Type* pb4Index, const char* pchDefault,
                                const char* pchChoices, const char* pchMeaning) {
    Declared* const pDeclared = Of(m_pState);
    DeclaredProperty* const pNew = NewProperty(pDeclared, ChoiceProperty, pchKey, nullptr, pchMeaning);
    if (!pNew) {
        return 0;
    }
    const char* pchText;
    pNew->pchDefault = pchDefault;
    pNew->b4Required = !pchDefault;
    pNew->pchChoices = pchChoices;
    if (!Declare(*pDeclared, pNew, FaultOfChoices(pchDefault, pchChoices, pb4Index), &pchText)) {
        return 0;
    }
    if (!pchText) {
        return pchDefault || ReportMissing(*pDeclared, pchKey);
    }
    if (FindChoice(pchText, pchChoices, pb4Index)) {
        return 1;
    }
    char* const pchList = ListChoices(pchChoices);
    ReportChoice(*pDeclared, pchKey, pchText, pchList ? pchList : pchChoices);
    std::free(pchList);
    return 0;
}

int DeclarationBase::ReadText(const char* pchKey, PropertyKind Kind, const char** ppchValue,
                              const char* pchDefault, Byte4Type b4Size, const char* pchMeaning) {
    Declared* const pDeclared = Of(m_pState);
    DeclaredProperty* const pNew = NewProperty(pDeclared, Kind, pchKey, nullptr, pchMeaning);
    if (!pNew) {
        return 0;
    }
    pNew->pchDefault = pchDefault;
    pNew->b4Required = !pchDefault;
    const bool bFits = !pchDefault || Fits(pchDefault, b4Size);
    if (!Declare(*pDeclared, pNew, bFits ? nullptr : "the default is too long", ppchValue)) {
        return 0;
    }
    if (!*ppchValue) {
        *ppchValue = pchDefault;
        return pchDefault || ReportMissing(*pDeclared, pchKey);
    }
    if (!Fits(*ppchValue, b4Size)) {
        pDeclared->bWrong = true;
        m_pElement->ErrorMessage("Initialize(): %s = %s: longer than %u characters\n", pchKey, *ppchValue,
                                 b4Size - 1);
        return 0;
    }
    return 1;
}

} // namespace VESK
