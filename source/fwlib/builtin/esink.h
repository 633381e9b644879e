// SPDX-License-Identifier: MIT
// ESink: prints "ESink::DataArrived: %s\n" with the type of every object on standard output.
//   sink pads     1
//   source pads   none
//   returns       1; 0 for a null object, which is reported
//   example       element ESink  /  property Name printer
#ifndef FWLIB_BUILTIN_ESINK_H
#define FWLIB_BUILTIN_ESINK_H

#include "fwlib/elements/eobject.h"
#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT ESink : public EObject {
public:
    ESink();
    ~ESink() override;
    int Initialize() override;
    int DataArrived(QObject* pObject, Byte2Type b2Index) override;
};

} // namespace VESK

#endif
