// SPDX-License-Identifier: MIT
// Values of properties by their types, in section "Standard", without casts; and a loop over a list.
//
//   SetValue(cObject, "Celsius", 21.5);
//   double dCelsius = 0;
//   if (!GetValue(cObject, "Celsius", dCelsius)) { ... }      // missing, or not a number
//   for (const Entry& cEntry : Entries(cObject.m_cProperties)) { ... cEntry.pchKey ... }
//
// The first argument is a PROPERTIES, or an element or data object, whose list is meant.
#ifndef FWLIB_PROPERTIES_VALUES_H
#define FWLIB_PROPERTIES_VALUES_H

#include "fwlib/export.h"
#include "fwlib/properties/properties.h"
#include "fwlib/text.h"
#include "fwlib/types.h"

#include <limits>
#include <string>
#include <type_traits>

namespace VESK {

// Convert a text that is a decimal number and nothing else. Return 0, with the value unchanged, for any other text, a null
// one included, and for a number that does not fit. Reals have a '.', whatever the locale, and are finite.
FWLIB_EXPORT int ParseNumber(const char* pchText, long long* pllValue);
FWLIB_EXPORT int ParseNumber(const char* pchText, unsigned long long* pullValue);
FWLIB_EXPORT int ParseReal(const char* pchText, double* pdValue);
FWLIB_EXPORT int ParseFlag(const char* pchText, bool* pbValue); // 0 1 false true no yes off on

enum : unsigned int { NumberTextSize = 32 };

// The shortest text that reads back as the same value; "nan", "inf" and "-inf" for what is no finite number. The buffer
// has NumberTextSize bytes.
FWLIB_EXPORT void FormatReal(double dValue, char* pchBuffer);

// The value of a key in section "Standard", lent until the list changes; null when the key is missing.
FWLIB_EXPORT const char* FindValue(const PROPERTIES& cList, const char* pchKey);
