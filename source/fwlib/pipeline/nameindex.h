// SPDX-License-Identifier: MIT
// Finds the elements of a large pipeline by name. With a linear search for each name, the time for building would grow
// with the square of the number of elements.
//
// A pipeline has no field for an index, so the process has one index, of the pipeline that was searched last. It
// contains the first elements, up to a number; those without a name are checked again at each search. It is cleared
// when any name is replaced or an element of the pipeline was removed, and a result is compared with the element's
// present name. So the result is that of a linear search, as long as elements are added by AddElement and lists are
// changed by their operations.
#ifndef FWLIB_PIPELINE_NAMEINDEX_H
#define FWLIB_PIPELINE_NAMEINDEX_H

#include "fwlib/internal/hidden.h"
#include "fwlib/internal/textmatch.h"
#include "fwlib/pipeline/epipeline.h"

namespace FWLIB_HIDDEN VESK {

// The position of the pipeline's first element whose name, truncated to 255 characters, is this one; -1 if there is
// none.
int FindNamed(const EPipeline& cPipeline, const SoughtText& cName);

void TellIndexOfAdding(const EPipeline& cPipeline); // call this before an element is added

void ForgetIndex(const EPipeline& cPipeline); // before a pipeline is destroyed: another may get its address

} // namespace VESK

#endif
