// SPDX-License-Identifier: MIT
// What scenarios use, and what they tell.
#ifndef FWLIB_TESTS_FAILURES_ACCOUNT_H
#define FWLIB_TESTS_FAILURES_ACCOUNT_H

#include "failures/calls.h"
#include "support/capture.h"
#include "support/support.h"

#include <string>
#include <vector>

using namespace VESK;

inline const char Written[] = "written"; // the file that scenarios write

// What the calls of a scenario returned and brought about.
struct Account {
    std::string answers; // 1 and 0
    std::string result;
    std::string written; // the file
    Output output;
    std::string broken; // what holds whatever fails, and did not

    int Answer(int answer) {
        answers += answer ? '1' : '0';
        return answer;
    }
    void Must(bool holds, const char* what) { broken += holds ? "" : what; }
};

// What the scenarios use, made before anything fails.
struct Place : Scratch {
    struct QPicture : QObject { // a class of its own, which memory is needed to write
        int Serialize(SWrite* pWriter) override {
            unsigned char data[] = "a picture";
            return QObject::Serialize(pWriter) && pWriter->SerializeBlock(Text("Data"), data, sizeof data);
        }
    };

    QPicture objects[200];
    PROPERTIES& settings = objects[1].m_cProperties;
    PROPERTIES saved;                  // to a configuration file
    std::vector<std::string> texts;    // of the objects, as they are recorded
    std::size_t first = 0, behind = 4; // of those that a recorder gets
    std::string front;                 // what its file holds before that
    std::size_t back = SIZE_MAX;       // the object before which the disk has space again
    QEOF end;
    Probe probes[300];

    Place() {
        for (Probe& probe : probes) {
            Set(probe.m_cProperties, "Name", "e" + std::to_string(&probe - probes));
        }
        Set(settings, "b", "2", "Camera");
        for (QPicture& object : objects) { // one has a line that is composed on the heap
            const std::size_t n = texts.size();
            Set(object.m_cProperties, "Count", std::to_string(n));
            Set(object.m_cProperties, "Data", std::string(n == 1 ? 1100 : n * 7 % 23, 'd'));
            MemoryWrite writer;
            object.Serialize(&writer);
            texts.push_back(writer.all);
        }
        saved.Copy(&settings);
        Set(saved, "Data", std::string(1000, 'd'));
    }
};

#endif
