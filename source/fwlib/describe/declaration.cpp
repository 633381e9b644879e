// SPDX-License-Identifier: MIT
#include "fwlib/describe/declaration.h"

#include "fwlib/describe/declared.h"
#include "fwlib/elements/pads.h"
#include "fwlib/internal/decimal.h"
#include "fwlib/internal/growth.h"
#include "fwlib/properties/values.h"

#include <climits>
#include <limits>
#include <new>

namespace VESK {

namespace {

int Parse(const char* pchText, long long* pll) {
    return ParseNumber(pchText, pll);
}
int Parse(const char* pchText, unsigned long long* pull) {
    return ParseNumber(pchText, pull);
}
template <class Real>
int Parse(const char* pchText, Real* pReal) {
    return ParseReal(pchText, pReal);
}

// Returns the number as a text in the buffer; null for a real number that excludes nothing as a bound.
template <class Number>
const char* BoundText(Number Bound, char (&achText)[NumberTextSize]) {
    if constexpr (std::is_integral<Number>::value) {
        CopyBounded(achText, DecimalText(Bound).Begin());
        return achText;
    } else {
        constexpr Number Most = std::numeric_limits<Number>::max();
        return FormatReal(Bound, achText) && Bound != Most && Bound != -Most ? achText : nullptr;
    }
}

// Completes the description of a number. Returns what is wrong with its declaration, or null.
template <class Number>
const char* DescribeNumber(DeclaredProperty& cNew, Number Default, Number Least, Number Most) {
    cNew.pchLeast = BoundText(Least, cNew.achLeast);
    cNew.pchMost = BoundText(Most, cNew.achMost);
    BoundText(Default, cNew.achDefault);
    cNew.pchDefault = cNew.achDefault;
    if (!(Least <= Most)) {
        return "the least value is above the greatest";
    }
    const bool bWithin = Default >= Least && Default <= Most && *cNew.achDefault != '\0'; // finite
    return bWithin ? nullptr : "the default is out of range";
}

int ReportNumber(Declared& cDeclared, const DeclaredProperty& cProperty, const char* pchText,
                 unsigned int uBits) {
    const char* const pchLeast = cProperty.pchLeast;
    const char* const pchMost = cProperty.pchMost;
    EObject& cElement = *cDeclared.pElement;
    cDeclared.bWrong = true;
    if (cProperty.b4Kind == NumberProperty) {
        cElement.ErrorMessage("Initialize(): %s = %s: not a number from %s to %s\n", cProperty.pchKey,
                              pchText, pchLeast, pchMost);
    } else if (pchLeast && pchMost) {
        cElement.ErrorMessage("Initialize(): %s = %s: not a real number from %s to %s\n", cProperty.pchKey,
                              pchText, pchLeast, pchMost);
    } else if (pchLeast) {
        cElement.ErrorMessage("Initialize(): %s = %s: not a real number from %s on\n", cProperty.pchKey,
                              pchText, pchLeast);
    } else if (pchMost) {
        cElement.ErrorMessage("Initialize(): %s = %s: not a real number up to %s\n", cProperty.pchKey,
                              pchText, pchMost);
    } else {
        cElement.ErrorMessage("Initialize(): %s = %s: not a real number of %u bits\n", cProperty.pchKey,
                              pchText, uBits);
    }
    return 0;
}

// Declares and reads a number of any type.
template <class Number>
int ReadWithin(Declared* pDeclared, DeclaredProperty* pNew, Number* pValue, Number Default, Number Least,
               Number Most) {
    const char* pchText;
    if (!pNew || !Declare(*pDeclared, pNew, DescribeNumber(*pNew, Default, Least, Most), &pchText)) {
        return 0;
    }
    *pValue = Default;
    if (pchText && (!Parse(pchText, pValue) || !(*pValue >= Least && *pValue <= Most))) {
        return ReportNumber(*pDeclared, *pNew, pchText, CHAR_BIT * sizeof(Number));
    }
    return 1;
}

// Declares pads, and the number property that says how many.
void DeclarePadsFrom(Declared* pDeclared, DeclaredPads Declared::*pPads, const char* pchKind,
                     const char* pchKey, Byte4Type b4Default, const char* pchMeaning) {
    if (!DeclarePads(pDeclared, pPads, pchKind, b4Default, pchKey)) {
        return;
    }
    unsigned long long ull;
    if (ReadWithin(pDeclared, NewProperty(pDeclared, NumberProperty, pchKey, "pads", pchMeaning), &ull,
                   static_cast<unsigned long long>(b4Default), 0ULL,
                   static_cast<unsigned long long>(LargestCapacity))) {
        (pDeclared->*pPads).b4Count = static_cast<Byte4Type>(ull);
    }
}

} // namespace

DeclarationBase::DeclarationBase(EObject* pElement)
    : m_pElement(pElement), m_pState(new (std::nothrow) Declared(pElement)) {}

DeclarationBase::~DeclarationBase() {
    delete Of(m_pState);
}

void DeclarationBase::SinkPads(Byte4Type b4Count) {
    DeclarePads(Of(m_pState), &Declared::SinkPads, "sink", b4Count, nullptr);
}

void DeclarationBase::SourcePads(Byte4Type b4Count) {
    DeclarePads(Of(m_pState), &Declared::SourcePads, "source", b4Count, nullptr);
}

void DeclarationBase::SinkPadsFrom(const char* pchKey, Byte4Type b4Default, const char* pchMeaning) {
    DeclarePadsFrom(Of(m_pState), &Declared::SinkPads, "sink", pchKey, b4Default, pchMeaning);
}

void DeclarationBase::SourcePadsFrom(const char* pchKey, Byte4Type b4Default, const char* pchMeaning) {
    DeclarePadsFrom(Of(m_pState), &Declared::SourcePads, "source", pchKey, b4Default, pchMeaning);
}

int DeclarationBase::Finish() {
    const Declared* const pDeclared = Of(m_pState);
    if (!m_pElement) {
        return 0;
    }
    if (!pDeclared || pDeclared->bNoMemory) {
        m_pElement->ErrorMessage("Initialize(): Not enough memory\n");
        return 0;
    }
    return !pDeclared->bWrong && CreateSinkPads(*m_pElement, pDeclared->SinkPads.b4Count) &&
           CreateSourcePads(*m_pElement, pDeclared->SourcePads.b4Count, m_pElement);
}

int DeclarationBase::ReadSigned(const char* pchKey, long long* pllValue, long long llDefault,
                                long long llLeast, long long llMost, const char* pchUnit,
                                const char* pchMeaning) {
    return ReadWithin(Of(m_pState), NewProperty(Of(m_pState), NumberProperty, pchKey, pchUnit, pchMeaning),
                      pllValue, llDefault, llLeast, llMost);
}

int DeclarationBase::ReadUnsigned(const char* pchKey, unsigned long long* pullValue,
                                  unsigned long long ullDefault, unsigned long long ullLeast,
                                  unsigned long long ullMost, const char* pchUnit, const char* pchMeaning) {
    return ReadWithin(Of(m_pState), NewProperty(Of(m_pState), NumberProperty, pchKey, pchUnit, pchMeaning),
                      pullValue, ullDefault, ullLeast, ullMost);
}

int DeclarationBase::ReadReal(const char* pchKey, double* pdValue, double dDefault, double dLeast,
                              double dMost, const char* pchUnit, const char* pchMeaning) {
    return ReadWithin(Of(m_pState), NewProperty(Of(m_pState), RealProperty, pchKey, pchUnit, pchMeaning),
                      pdValue, dDefault, dLeast, dMost);
}

int DeclarationBase::ReadReal(const char* pchKey, float* pfValue, float fDefault, float fLeast, float fMost,
                              const char* pchUnit, const char* pchMeaning) {
    return ReadWithin(Of(m_pState), NewProperty(Of(m_pState), RealProperty, pchKey, pchUnit, pchMeaning),
                      pfValue, fDefault, fLeast, fMost);
}

} // namespace VESK
