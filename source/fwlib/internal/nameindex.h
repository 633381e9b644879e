// SPDX-License-Identifier: MIT
// Where the elements of a large pipeline stand by their names. A walk for each name makes the time of building grow
// with the square of the elements.
//
// The process has one index, of the pipeline that was searched last, because a pipeline's fields are fixed. It knows
// the elements from the first on, up to one without a name. A name that is replaced makes it forget all, and what it
// finds is compared with the name at that moment, so that its answer is that of the walk as long as elements are only
// added, and lists changed by their own operations.
#ifndef FWLIB_INTERNAL_NAMEINDEX_H
#define FWLIB_INTERNAL_NAMEINDEX_H

#include "fwlib/internal/texts.h"
#include "fwlib/pipeline/epipeline.h"

#pragma GCC visibility push(hidden) // so that calls need no procedure table, whose register costs 32-bit code

namespace VESK {

// The index of the pipeline's first element whose name, cut to 255 characters, is this one; -1 when there is none.
int FindNamed(const EPipeline& cPipeline, const SoughtText& cName);

void ForgetIndex(const EPipeline& cPipeline); // which is gone: another may come to stand where it stood

} // namespace VESK

#pragma GCC visibility pop

#endif
