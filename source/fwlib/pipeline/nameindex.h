// SPDX-License-Identifier: MIT
// Finds the elements of a large pipeline by name. A linear search for each name makes the time of building grow
// with the square of the elements.
//
// The process has one index, of the pipeline that was searched last, because a pipeline's fields are fixed. It knows
// the elements from the first on; those without a name are looked at again each time. A name that is replaced makes it
// forget all, as do elements that were taken away, and what it finds is compared with the name at that moment: so its
// result is that of a linear search as long as elements are added by AddElement, and lists changed by their own
// operations.
#ifndef FWLIB_PIPELINE_NAMEINDEX_H
#define FWLIB_PIPELINE_NAMEINDEX_H

#include "fwlib/internal/hidden.h"
#include "fwlib/internal/textmatch.h"
#include "fwlib/pipeline/epipeline.h"

namespace FWLIB_HIDDEN VESK {

// The index of the pipeline's first element whose name, cut to 255 characters, is this one; -1 when there is none.
int FindNamed(const EPipeline& cPipeline, const SoughtText& cName);

void TellIndexOfAdding(const EPipeline& cPipeline); // one more element, which is not counted yet

void ForgetIndex(const EPipeline& cPipeline); // destroyed: another may get the same address

} // namespace VESK

#endif
