// SPDX-License-Identifier: MIT
// ESerialize: writes every object to a file and hands it on.
//   sink pads       1
//   source pads     "Passthrough", none when absent; each gets the object once it is written
//   "Filename"      the file, emptied by Initialize; standard output when absent. The name is cut to 255 characters
//   "Strict"        when not 0, an object goes out in one write, a failed write answers 0, and what it left in the
//                   file is taken out again where the file allows it
//   answer          1, or that of the last delivery; the first delivery that fails ends the round. 0 for a null object,
//                   for one that answers 0 to Serialize, and before Initialize; these are reported
//   losses          a file that cannot be opened, and the first object that could not be stored whole, are reported
//                   once, with the file's name; so is what is lost when it is closed. Nothing more is stored from
//                   there on, and unless "Strict" the answers are as if it were. With "Strict", an object that there
//                   is no memory for is lost alone
//   example         element ESerialize  /  property Name recorder  /  property Filename objects.txt
#ifndef FWLIB_BUILTIN_ESERIALIZE_H
#define FWLIB_BUILTIN_ESERIALIZE_H

#include "fwlib/elements/eobject.h"
#include "fwlib/export.h"
#include "fwlib/streams/sfilewrite.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT ESerialize : public EObject {
public:
    ESerialize();
    ~ESerialize() override;
    int Initialize() override;
    int DataArrived(QObject* pObject, Byte2Type b2Index) override;

    // The fields in their order are part of the binary interface.
    SFileWrite* m_pWriter; // owned; null until Initialize
    Byte2Type m_b2Passthrough;
};

} // namespace VESK

#endif
