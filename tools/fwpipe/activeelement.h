// SPDX-License-Identifier: MIT
// Initializes and destroys a pipeline, recording which element is active, so that a failure is reported with its name.
//
// The pipeline calls its elements itself. In its table, a stand-in takes the place of the next element and restores it
// before it calls that element.
#ifndef FWPIPE_ACTIVEELEMENT_H
#define FWPIPE_ACTIVEELEMENT_H

#include "knownelements.h"

namespace FwPipe {

// The element whose Initialize or destructor is running; an empty text for none.
const Label& ActiveElement();

// The first element whose Initialize returned 0; an empty text for none.
const Label& FailedElement();

// Initializes the pipeline and returns the result. Reports an element that returned 0 without an error message.
int InitializeNoting(VESK::EPipeline& cPipeline);

// Call this directly before the pipeline is destroyed.
void NoteDestruction(VESK::EPipeline& cPipeline);

} // namespace FwPipe

#endif
