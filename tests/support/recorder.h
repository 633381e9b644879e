// SPDX-License-Identifier: MIT
// An element under a framework with an object to send to it, elements that record and replay, and objects as text.
#ifndef FWLIB_TESTS_SUPPORT_RECORDER_H
#define FWLIB_TESTS_SUPPORT_RECORDER_H

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

inline const std::string Object = "QObject\nm_b2PropertyCount=1\nQObjectType=QObject\n";

// An element with its properties set, under a framework that has the library's types.
template <class Element>
struct Tested {
    Element tested;
};
template <class Element>
struct Under : Tested<Element>, Bench {
    using Tested<Element>::tested;
    explicit Under(const std::string& file = "", const char* strict = nullptr) : Bench(tested) {
        framework.AddPlugin(VESK::Text("libfwlib.so"));
        if (!file.empty()) {
            Set(tested.m_cProperties, "Filename", file);
        }
        if (strict) {
            Set(tested.m_cProperties, "Strict", strict);
        }
    }
    std::string Starts() {
        return Told([&] { return tested.Initialize(); });
    }
    std::string Runs() {
        return Told([&] { return tested.Run(); });
    }
};
using Recorder = Under<VESK::ESerialize>;
using Player = Under<VESK::EDeserialize>;

// Gives a recorder another file than the one it opened.
inline void Adopt(Recorder& recorder, std::FILE* file) {
    char*& own = recorder.tested.m_pWriter->m_pFile;
    if (own != reinterpret_cast<char*>(stdout)) {
        VESK::fwfclose(own);
    }
    recorder.tested.m_pWriter->SetFile(reinterpret_cast<char*>(file));
}

// How the runs of a player that feeds a probe end, and what arrived.
inline std::string Played(Player& player, std::string& contents) {
    Probe probe;
    player.Connect(0, probe);
    const std::string told = Told([&] {
        int runs = 0;
        while (player.tested.Run()) {
            ++runs;
        }
        return runs;
    });
    contents = probe.contents;
    player.tested.GetSourcePad(0)->m_pSinkPad = nullptr;
    return told;
}

#endif
