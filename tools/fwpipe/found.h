// SPDX-License-Identifier: MIT
// The parts of a damaged recording that are to be kept.
#ifndef FWPIPE_FOUND_H
#define FWPIPE_FOUND_H

#include <vector>

namespace FwPipe {

struct Gap {
    unsigned long long ullBegin;
    unsigned long long ullEnd;
    const char* pchReason;
};

// Everything except the gaps, which are in order.
struct Found {
    unsigned long long ullKept = 0;   // objects
    unsigned long long ullBehind = 0; // complete objects in the only gap, if it ends with the file
    unsigned long long ullSize = 0;   // bytes, the gaps included
    std::vector<Gap> cGaps;
    int iReadError = 0;
};

// Reads the whole file, of ullSize bytes, and shows the progress on a terminal. If bResync, complete objects after
// damage are kept too. Ends early after a signal.
Found FindWhole(int iFile, unsigned long long ullSize, bool bResync);

} // namespace FwPipe

#endif
