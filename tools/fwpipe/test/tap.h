// SPDX-License-Identifier: MIT
// Collects the objects that pass a pad of an element, as text.
#ifndef FWPIPE_TEST_TAP_H
#define FWPIPE_TEST_TAP_H

#include <fwlib/fwlib.h>

#include <string>

namespace FwPipe {

// Destroyed after the pipeline.
class Tap : public VESK::EObject {
public:
    Tap() : m_cPad(this, 0) {}

    // From now on, objects pass through this tap first: those that leave the element through that source pad or, if it
    // has no source pads, those that arrive at that sink pad. Returns false if there is no such pad. Call it once.
    bool Insert(VESK::EObject& cElement, VESK::Byte2Type b2Pad);

    int DataArrived(VESK::QObject* pObject, VESK::Byte2Type b2Index) override;

    // The objects, each with its type and its properties in lines, and an empty line between two.
    const std::string& Text() const { return m_cText; }

private:
    VESK::SINKPAD m_cPad;
    VESK::SINKPAD* m_pTapped =
        nullptr; // the pad that the objects would arrive at without the tap; null for none
    VESK::EObject* m_pReceiver = nullptr;
    std::string m_cText;
};

} // namespace FwPipe

#endif
