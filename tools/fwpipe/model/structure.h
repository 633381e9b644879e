// SPDX-License-Identifier: MIT
// What is wrong with a pipeline as a whole: pads, connections, and what objects reach.
#ifndef FWPIPE_MODEL_STRUCTURE_H
#define FWPIPE_MODEL_STRUCTURE_H

#include "model.h"

namespace FwPipe {

// Checks the outermost pipeline (or a part of one) and those in it. Completes its elements.
void CheckStructure(Pipeline& cPipeline, bool bPart, Diagnoses& cDiagnoses);

// Files that an element writes and another one writes or reads; if bLoad, also files to read that do not exist.
void CheckFiles(const Pipeline& cPipeline, bool bLoad, Diagnoses& cDiagnoses);

} // namespace FwPipe

#endif
