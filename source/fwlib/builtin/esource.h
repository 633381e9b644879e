// SPDX-License-Identifier: MIT
// ESource: Run sends 1,000 objects through the first source pad: the same QObject with "Count" from 0 to 999.
//   sink pads     none: DataArrived returns 0
//   source pads   "TotalSourcePads", 1 if absent, at most 65,520; only the first is used
//   returns       Run: 1 whatever the deliveries return; 0, after a report, without a source pad or enough memory
//   example       element ESource  /  property Name counter
#ifndef FWLIB_BUILTIN_ESOURCE_H
#define FWLIB_BUILTIN_ESOURCE_H

#include "fwlib/elements/eobject.h"
#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT ESource : public EObject {
public:
    ESource();
    ~ESource() override;
    int Initialize() override;
    int DataArrived(QObject* pObject, Byte2Type b2Index) override;
    int Run() override;
};

} // namespace VESK

#endif
