// SPDX-License-Identifier: MIT
// An element under a framework, and an object to send to it.
#ifndef FWLIB_TESTS_SUPPORT_BENCH_H
#define FWLIB_TESTS_SUPPORT_BENCH_H

#include "support/capture.h"
#include "support/support.h"

struct Bench {
    explicit Bench(VESK::EObject& tested) : element(tested) {
        element.m_pFramework = &framework;
        Set(element.m_cProperties, "Name", "tap");
    }
    void Connect(VESK::Byte2Type pad, Probe& probe) {
        probe.AddSinkPad(new VESK::SINKPAD(&probe, pad));
        element.GetSourcePad(pad)->m_pSinkPad = probe.GetSinkPad(0);
    }
    std::string Arrive(VESK::QObject* arriving) {
        return Told([&] { return element.DataArrived(arriving, 3); });
    }
    std::string Arrive() { return Arrive(&object); }

    VESK::FRAMEWORK framework;
    VESK::EObject& element;
    VESK::QObject object;
};

#endif
