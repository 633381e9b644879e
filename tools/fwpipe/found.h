// SPDX-License-Identifier: MIT
// What of a damaged recording is to be kept.
#ifndef FWPIPE_FOUND_H
#define FWPIPE_FOUND_H

#include <vector>

namespace FwPipe {

struct Gap {
    unsigned long long ullBegin;
    unsigned long long ullEnd;
    const char* pchReason;
};

// All but the gaps, which are in order.
struct Found {
    unsigned long long ullKept = 0;   // objects
    unsigned long long ullBehind = 0; // complete objects in the only gap, which reaches to the end
    unsigned long long ullSize = 0;   // bytes, the gaps included
    std::vector<Gap> cGaps;
    int iReadError = 0;
};

// Looks through the whole file, from its begin, and shows on a terminal how far it is of ullSize bytes. With bResync,
// what is whole behind damage is kept. Ends early when a signal asks for that.
Found FindWhole(int iFile, unsigned long long ullSize, bool bResync);

} // namespace FwPipe

#endif
