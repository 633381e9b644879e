// SPDX-License-Identifier: MIT
// EDeserialize: each Run reads one object from a file and sends it.
//   sink pads       none: DataArrived returns 0
//   source pads     1
//   "Filename"      the file; standard input if absent. Initialize returns 0, after a report, if the file cannot be
//                   opened or the name is longer than 255 characters
//   "Strict"        if not 0, only complete objects are sent. The first object that is incomplete or invalid is
//                   reported with its byte offset, and nothing after it is read
//   returns         Run: the result of the delivery; 0 at the end of the file, for a type that no plugin creates, for
//                   an incomplete or invalid object if strict, and before Initialize. Also 0, without a report, when
//                   a stream has no more data yet or a signal interrupted it: the next Run reads the object again
//   example         element EDeserialize  /  property Name replay  /  property Filename objects.txt
#ifndef FWLIB_BUILTIN_EDESERIALIZE_H
#define FWLIB_BUILTIN_EDESERIALIZE_H

#include "fwlib/elements/eobject.h"
#include "fwlib/export.h"
#include "fwlib/streams/sfileread.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT EDeserialize : public EObject {
public:
    EDeserialize();
    ~EDeserialize() override;
    int Initialize() override;
    int DataArrived(QObject* pObject, Byte2Type b2Index) override;
    int Run() override;

    // The order of the fields is part of the binary interface.
    SFileRead* m_pReader; // owned; null until Initialize, and after it failed
};

} // namespace VESK

#endif
