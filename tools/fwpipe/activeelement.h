// SPDX-License-Identifier: MIT
// Initializing and destroying a pipeline with a note of the element at work, so that a failure can be reported by name.
//
// The pipeline goes through its elements by itself. A stand-in takes the place of the next element in its table and
// restores it before that element is called.
#ifndef FWPIPE_ACTIVEELEMENT_H
#define FWPIPE_ACTIVEELEMENT_H

#include "knownelements.h"

namespace FwPipe {

// The element whose Initialize or destructor runs; an empty text for none.
const Label& ActiveElement();

// What the pipeline's Initialize returns. An element that returned 0 without an error message is named on standard error.
int InitializeNoting(VESK::EPipeline& cPipeline);

// To be called right before the pipeline is destroyed.
void NoteDestruction(VESK::EPipeline& cPipeline);

} // namespace FwPipe

#endif
