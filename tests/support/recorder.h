// SPDX-License-Identifier: MIT
// A recorder on a file or on a stream of the host, and files that cannot grow.
#ifndef FWLIB_TESTS_RECORDER_H
#define FWLIB_TESTS_RECORDER_H

#include "capture.h"
#include "stage.h"
#include "support.h"

#include <csignal>
#include <cstdio>
#include <string>
#include <sys/resource.h>

using namespace VESK;

struct Recorder : Deck<ESerialize> {
    explicit Recorder(const char* strict, const std::string& file = "") : Deck(file, strict) {}
    Recorder(const char* strict, std::FILE* file) : Deck("", strict) { Adopt(file); }
    std::string Arrive() {
        return Told([&] { return element.DataArrived(&object, 3); });
    }
    void Adopt(std::FILE* file) {
        char*& own = element.m_pWriter->m_pFile;
        own == reinterpret_cast<char*>(stdout) ? 0 : fwfclose(own);
        element.m_pWriter->SetFile(reinterpret_cast<char*>(file));
    }
    QObject object;
};

// While it lives, no file grows beyond the size.
struct SizeLimit {
    explicit SizeLimit(std::size_t most) : size(most) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit low = {most, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &low);
    }
    ~SizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, SIG_DFL);
    }
    std::size_t size;
    rlimit before;
};

inline std::string Lost(const std::string& name, const std::string& reason) {
    return "! ERROR: ESerialize - tap: Unable to store an object in " + name + ": " + reason +
           ": QObjectType = QObject\n";
}

#endif
