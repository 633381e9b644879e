// SPDX-License-Identifier: MIT
// Creating the pads of an element in Initialize. Element<T> (describe/element.h) does this for pads that are declared.
#ifndef FWLIB_ELEMENTS_PADS_H
#define FWLIB_ELEMENTS_PADS_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

// Create pads of the element, which owns them. The sink pads of a call have the indexes 0, 1 and so on. An unconnected
// source pad reports its failure as an error of pOwner, or does not report it if pOwner is null. Return 1; or 0, after an
// error message of the element, when it would have more than 65,520 such pads or there is not enough memory. The pads
// created until then remain.
FWLIB_EXPORT int CreateSinkPads(EObject& cElement, Byte4Type b4Count);
FWLIB_EXPORT int CreateSourcePads(EObject& cElement, Byte4Type b4Count, EObject* pOwner);

} // namespace VESK

#endif
