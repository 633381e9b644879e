// SPDX-License-Identifier: MIT
#include "found.h"

#include "progress.h"
#include "wholescan.h"

namespace FwPipe {

Found FindWhole(int iFile, unsigned long long ullSize, bool bResync) {
    WholeScan cScan(iFile);
    Progress cProgress(true, "objects");
    Found cFound;
    for (;;) {
        while (cScan.Next()) {
            if (cProgress.Due()) {
                cProgress.Show(cScan.Whole(), cScan.Offset(), ullSize);
            }
        }
        const char* const pchReason = cScan.Reason();
        if (!pchReason) {
            break;
        }
        const unsigned long long ullBegin = cScan.Offset();
        cFound.ullKept = cFound.cGaps.empty() ? cScan.Whole() : cFound.ullKept;
        cScan.SkipGap();
        if (bResync || cFound.cGaps.empty()) {
            cFound.cGaps.push_back({ullBegin, cScan.Offset(), pchReason});
        }
    }
    cFound.ullSize = cScan.Offset();
    cFound.iReadError = cScan.ReadError();
    if (bResync || cFound.cGaps.empty()) {
        cFound.ullKept = cScan.Whole();
    } else {
        cFound.ullBehind = cScan.Whole() - cFound.ullKept;
        cFound.cGaps.back().ullEnd = cFound.ullSize;
    }
    return cFound;
}

} // namespace FwPipe
