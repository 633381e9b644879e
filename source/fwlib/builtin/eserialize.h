// SPDX-License-Identifier: MIT
// ESerialize: writes every object to a file, then delivers it to its source pads.
//   sink pads       1
//   source pads     "Passthrough", none if absent
//   "Filename"      the file; standard output if absent. Initialize fails for a name of more than 255 characters
//   "Existing"      "replace" or absent: Initialize empties a file that exists. "append": the recording continues
//                   after the file's last complete object; an incomplete object there is removed and reported.
//                   "refuse": Initialize fails if the file exists
//   "Shared"        if 0 or absent, Initialize fails if an EDeserialize or another ESerialize of the process has the
//                   file open. Each of these failures is reported, and the file is unchanged
//   "Strict"        if not 0, each object is written in one write, and the result is 0 for an object that was not
//                   stored or that would not be read back unchanged
//   returns         the result of the last delivery, or 1 without source pads; after one that returns 0, the other
//                   pads get nothing. 0, after a report, for null, if Serialize returns 0, and before Initialize
//   losses          a file that cannot be opened, and the first object that was not stored completely, are reported
//                   with the file's name, and a stored part is removed. If it cannot be removed, as in a pipe,
//                   nothing more is stored. After the next stored object, and at the end, "Objects lost: N" is
//                   reported. Losses when the file is closed are reported too. Unless "Strict", results are as if
//                   nothing were lost
//   lifetime        destroy it before its framework, since its destructor reports losses; otherwise these reports go
//                   to standard error, and the framework's error flag is not set
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
