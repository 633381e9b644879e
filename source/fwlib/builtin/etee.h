// SPDX-License-Identifier: MIT
// ETee: delivers every object to each of its source pads, in pad order.
//   sink pads     1
//   source pads   "TotalSourcePads", 2 if absent, at most 65,520; they have no owner, so one that is not connected
//                 fails without a report
//   returns       0 after the first delivery that returns 0: the later pads get nothing; otherwise the result of the
//                 last delivery, or 1 without source pads; 0 for a null object, which is reported
//   example       element ETee  /  property Name fork  /  property TotalSourcePads 3
#ifndef FWLIB_BUILTIN_ETEE_H
#define FWLIB_BUILTIN_ETEE_H

#include "fwlib/elements/eobject.h"
#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT ETee : public EObject {
public:
    ETee();
    ~ETee() override;
    int Initialize() override;
    int DataArrived(QObject* pObject, Byte2Type b2Index) override;
};

} // namespace VESK

#endif
