// SPDX-License-Identifier: MIT
#include "fwlib/elements/pad.h"

namespace VESK {

PAD::PAD(EObject* pElement) : m_pElement(pElement) {}

PAD::~PAD() = default;

SINKPAD::SINKPAD(EObject* pElement, Byte2Type b2Index) : PAD(pElement), m_b2Index(b2Index) {}

SINKPAD::~SINKPAD() = default;

SOURCEPAD::SOURCEPAD(EObject* pElement) : PAD(pElement), m_pSinkPad(nullptr) {}

SOURCEPAD::~SOURCEPAD() = default;

int SOURCEPAD::BrokenPipe() {
    if (m_pElement) {
        m_pElement->ErrorMessage("SourcePad: No sink pad (broken pipe)\n");
    }
    return 0;
}

} // namespace VESK
