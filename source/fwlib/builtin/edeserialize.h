// SPDX-License-Identifier: MIT
// EDeserialize: each Run reads one object from a file and sends it.
//   sink pads       none: DataArrived returns 0
//   source pads     1
//   "Filename"      the file; standard input when absent. Initialize reports one that cannot be opened, and a name of
//                   more than 255 characters, and returns 0
//   "Strict"        when not 0, only an object whose every line arrived whole is sent. The first that did not is
//                   reported with its byte offset, and nothing behind it is read
//   returns         Run the result of the delivery; 0 at the end of the file, for a type that no plugin
//                   serves, for a broken object, and before Initialize; without a report when the stream has no more
//                   data yet or a signal interrupted it, and then the next Run reads the object from its beginning
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
