// SPDX-License-Identifier: MIT
// EDevNull: accepts every object and ignores it.
//   sink pads     1
//   source pads   none
//   "Debug"       own, otherwise the framework's; from 1 on, traces each object: "DataArrived(%d): QObjectType = %s\n"
//   returns       1; 0 for a null object, which is reported
//   example       element EDevNull  /  property Name nowhere
#ifndef FWLIB_BUILTIN_EDEVNULL_H
#define FWLIB_BUILTIN_EDEVNULL_H

#include "fwlib/elements/eobject.h"
#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT EDevNull : public EObject {
public:
    EDevNull();
    ~EDevNull() override;
    int Initialize() override;
    int DataArrived(QObject* pObject, Byte2Type b2Index) override;
};

} // namespace VESK

#endif
