// SPDX-License-Identifier: MIT
// Prints diagnoses.
#ifndef FWPIPE_CHECK_SHOW_H
#define FWPIPE_CHECK_SHOW_H

#include "../model/diagnosis.h"

#include <string>

namespace FwPipe {

// FILE:LINE:COLUMN: error: TEXT [ID], on standard output; on a terminal with the line and a caret below.
void ShowDiagnoses(const Diagnoses& cDiagnoses);

// Appends the diagnoses as JSON objects, separated by commas.
void AppendJsonDiagnoses(const Diagnoses& cDiagnoses, std::string& cText);

} // namespace FwPipe

#endif
