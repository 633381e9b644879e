// SPDX-License-Identifier: MIT
// Pads: the connection points of an element. A source pad delivers objects to the one sink pad it is connected to.
//
// A delivery is a nested call on the caller's thread: Push calls the receiving element's DataArrived with the object
// and the sink pad's index, and returns its result after all downstream work is done. There is no queue, no copy and no
// allocation. A pad owns neither its element nor the pad it is connected to.
#ifndef FWLIB_ELEMENTS_PAD_H
#define FWLIB_ELEMENTS_PAD_H

#include "fwlib/elements/eobject.h"
#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT PAD {
public:
    explicit PAD(EObject* pElement); // null for a pad without an owner
    virtual ~PAD();
    PAD(const PAD&) = delete;
    PAD& operator=(const PAD&) = delete;

    // The order of the fields is part of the binary interface.
    EObject* m_pElement; // lent
};

class FWLIB_EXPORT SINKPAD : public PAD {
public:
    SINKPAD(EObject* pElement, Byte2Type b2Index);
    ~SINKPAD() override;

    Byte2Type m_b2Index; // passed to DataArrived; chosen by the element, not always the position
};

class FWLIB_EXPORT SOURCEPAD : public PAD {
public:
    explicit SOURCEPAD(EObject* pElement);
    ~SOURCEPAD() override;

    // Lends the object to the connected element and returns the result of its DataArrived. If the pad is not connected,
    // reports "SourcePad: No sink pad (broken pipe)\n" as an error of its owner, if it has one, and returns 0. Returns
    // 0 without a report if the sink pad has no owner.
    int Push(QObject* pObject) {
        SINKPAD* const pSinkPad = m_pSinkPad;
        if (!pSinkPad) {
            return ReportUnconnected();
        }
        EObject* const pReceiver = pSinkPad->m_pElement;
        if (!pReceiver) {
            return 0;
        }
        return pReceiver->DataArrived(pObject, pSinkPad->m_b2Index);
    }

    SINKPAD* m_pSinkPad; // lent; set by the code that connects the pads; null while unconnected

private:
    FWLIB_COLD int ReportUnconnected() { return BrokenPipe(); }
    int BrokenPipe(); // reports for Push and returns 0
};

} // namespace VESK

#endif
