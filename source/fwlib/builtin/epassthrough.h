// SPDX-License-Identifier: MIT
// EPassthrough: delivers every object to its source pad.
//   sink pads     1
//   source pads   1
//   "Debug"       own only; if not 0, prints on standard output "EPassthrough::%s: %s\n" with name and object type
//                 before each delivery, and "EPassthrough::%s: %s, rv=%d\n" with the result after it
//   returns       the result of the delivery; 0 for a null object, which is reported
//   example       element EPassthrough  /  property Name tap  /  property Debug 1
#ifndef FWLIB_BUILTIN_EPASSTHROUGH_H
#define FWLIB_BUILTIN_EPASSTHROUGH_H

#include "fwlib/elements/eobject.h"
#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT EPassthrough : public EObject {
public:
    EPassthrough();
    ~EPassthrough() override;
    int Initialize() override;
    int DataArrived(QObject* pObject, Byte2Type b2Index) override;

    // The order of the fields is part of the binary interface.
    SOURCEPAD* m_pSourcePad; // lent by the list of source pads; null until Initialize
    Byte4Type m_b4Debug;     // not 0: trace
};

} // namespace VESK

#endif
