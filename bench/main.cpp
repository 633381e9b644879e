// SPDX-License-Identifier: MIT
// fwlib_bench: measures the library against yardsticks and prints a table of the ratios.
//
//   fwlib_bench                          all rows, then the memory over 100 million objects
//   fwlib_bench --memory                 the memory alone
//   fwlib_bench --peers                  the rows beside peers alone
//   fwlib_bench --benchmark_filter=...   some rows; every option of Google Benchmark is taken
//
// Repetitions of all rows are mixed at random, so that a busy moment of the machine falls on both sides of a
// ratio, and the median of each counts. Exit 0 when every bar is kept, 1 when one is not, 2 for wrong usage.
#include "peers.h"

#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace {

// What the library prints while it is measured goes to the null device; the report to what was standard
// output.
std::FILE* SilenceOutput() {
    const int iOutput = dup(STDOUT_FILENO);
    const int iNull = open("/dev/null", O_WRONLY);
    std::FILE* const pReport = iOutput < 0 ? nullptr : fdopen(iOutput, "w");
    return pReport && iNull >= 0 && dup2(iNull, STDOUT_FILENO) >= 0 ? pReport : nullptr;
}

char* Option(const char* pchText) {
    return const_cast<char*>(pchText);
}

void AddOwnRows() {
    AddDeliveryRows();
    AddPropertyRows();
    AddBuildingRows();
    AddCoderRows();
    AddCompressorRows();
    AddRecordRows();
    AddRecordingRows();
}

void AddPeerRows() {
    AddMapRows();
#ifdef BENCH_PEERS
    AddGStreamerRows();
    AddTbbRows();
#endif
}

} // namespace

int main(int iCount, char** ppchArguments) {
    std::FILE* const pReport = SilenceOutput();
    if (!pReport) {
        std::fprintf(stderr, "fwlib_bench: no output\n");
        return 2;
    }
    if (iCount == 2 && std::strcmp(ppchArguments[1], "--memory") == 0) {
        return !SendManyObjects(pReport);
    }
    // In a process of their own: once peers have started threads, every allocation costs more.
    const bool bPeers = iCount > 1 && std::strcmp(ppchArguments[1], "--peers") == 0;
    std::vector<char*> cArguments = {ppchArguments[0], Option("--benchmark_repetitions=11"),
                                     Option("--benchmark_enable_random_interleaving=true"),
                                     Option("--benchmark_min_time=0.04")};
    cArguments.insert(cArguments.end(), ppchArguments + 1 + bPeers, ppchArguments + iCount);
    int iArguments = static_cast<int>(cArguments.size());
    benchmark::Initialize(&iArguments, cArguments.data());
    if (benchmark::ReportUnrecognizedArguments(iArguments, cArguments.data())) {
        return 2;
    }
    if (bPeers) {
        AddPeerRows();
    } else {
        AddOwnRows();
    }
    int iKept = RunRows(pReport);
    if (iCount == 1) {
        iKept &= SendManyObjects(pReport);
    }
    return !iKept;
}
