// SPDX-License-Identifier: MIT
#include "rows.h"

#include <fwlib/fwlib.h>

#include <unistd.h>

namespace {

using namespace VESK;

constexpr int ObjectsOfARun = 1000; // that an ESource sends
constexpr int MeasuredRuns = 100000;
constexpr int FirstRuns = 100; // after which every table has its size

// The resident memory in bytes, or 0 when the system does not tell.
long ResidentMemory() {
    long lPages = 0;
    std::FILE* const pFile = std::fopen("/proc/self/statm", "r");
    if (pFile) {
        if (std::fscanf(pFile, "%*d %ld", &lPages) != 1) {
            lPages = 0;
        }
        std::fclose(pFile);
    }
    return lPages * sysconf(_SC_PAGESIZE);
}

} // namespace

int SendManyObjects(std::FILE* pReport) {
    EPipeline cPipe;
    EObject* const apElements[] = {new ESource, new EPassthrough, new EDevNull};
    const char* const apchNames[] = {"source", "tap", "end"};
    for (int i = 0; i < 3; ++i) {
        apElements[i]->m_cProperties.SetProperty(Key::Name, Text(apchNames[i]), Section::Standard);
        cPipe.AddElement(apElements[i]);
    }
    cPipe.m_cProperties.SetProperty(Key::SinkElement, Text("source"), Section::Standard);
    cPipe.Connect(Text("source"), 0, Text("tap"), 0);
    cPipe.Connect(Text("tap"), 0, Text("end"), 0);
    int iRun = cPipe.Initialize() && ResidentMemory() > 0; // what asking itself needs is there from now on
    for (int i = 0; i < FirstRuns && iRun; ++i) {
        iRun = cPipe.Run();
    }
    const long lBefore = ResidentMemory();
    for (int i = 0; i < MeasuredRuns && iRun; ++i) {
        iRun = cPipe.Run();
    }
    const long lAfter = ResidentMemory();
    const int iFlat = iRun && lBefore > 0 && lAfter <= lBefore;
    std::fprintf(pReport, "\nresident memory over %d objects: %ld KiB before, %ld KiB after, %s\n",
                 MeasuredRuns * ObjectsOfARun, lBefore / 1024, lAfter / 1024, iFlat ? "ok" : "OVER");
    return iFlat;
}
