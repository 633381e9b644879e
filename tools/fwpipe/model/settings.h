// SPDX-License-Identifier: MIT
// The values of an element's properties, against its description.
#ifndef FWPIPE_MODEL_SETTINGS_H
#define FWPIPE_MODEL_SETTINGS_H

#include "model.h"

namespace FwPipe {

// Sets a property of an element as a line says, and reports an unknown key and a value that is none.
void SetProperty(Element& cElement, const Token& cKey, const Token& cValue, Diagnoses& cDiagnoses);

// After all properties are set: stores the numbers of pads that are known, and reports required properties that are missing.
void Complete(Element& cElement, Diagnoses& cDiagnoses);

// The number at the beginning of a text, 0 without one, as the library reads it: clamped to 32 bits.
int NumberIn(const std::string& cText);

bool IsWholeNumber(const std::string& cText); // a decimal number and nothing else

} // namespace FwPipe

#endif
