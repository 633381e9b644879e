// SPDX-License-Identifier: MIT
// ESerialize: writes every object to a file and hands it on.
//   sink pads       1
//   source pads     "Passthrough", none when absent; each gets the object once it is written
//   "Filename"      the file; standard output when absent. Initialize refuses a name of more than 255 characters
//   "Existing"      "replace" or absent: Initialize empties the file. "append": it continues a recording behind its last
//                   complete object, and reports a part of another that it removes there. "refuse": it refuses a file that
//                   exists. What it refuses stays as it is, is reported, and Initialize returns 0
//   "Shared"        unless it is not 0, Initialize refuses a file that an EDeserialize or another ESerialize of the
//                   process has open
//   "Strict"        when not 0, an object goes out in one write, and a failed write returns 0
//   returns         1, or that of the last delivery; the first delivery that fails ends the round. 0 for a null object,
//                   for one that returns 0 to Serialize, and before Initialize; these are reported
//   losses          a file that cannot be opened, and the first object that could not be stored whole, are reported with
//                   the file's name; what it left in the file is taken out again. Once an object is stored again, and
//                   when the recorder ends, "Objects lost: N" is reported. Where a part stays, as in a pipe, nothing
//                   more is stored. What is lost when the file is closed is reported too. Unless "Strict" the results
//                   are as if nothing were lost
//   lifetime        it reports when it is destroyed, so it should go before its framework; else these reports go to
//                   standard error, and the framework's error flag is not set
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

    // The order of the fields is part of the binary interface.
    SFileWrite* m_pWriter; // owned; null until Initialize
    Byte2Type m_b2Passthrough;
};

} // namespace VESK

#endif
