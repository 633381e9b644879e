// SPDX-License-Identifier: MIT
#include "replay.h"

#include "output.h"

#include <fwlib/fwlib.h>

#include <cstdio>
#include <sys/stat.h>

namespace FwPipe {

namespace {

// The file that the pipeline replays, or null. A handle is the address of its stream.
std::FILE* Replayed(const VESK::EPipeline& cPipeline) {
    const auto* const pElement = dynamic_cast<const VESK::EDeserialize*>(cPipeline.m_pSinkElement);
    return pElement && pElement->m_pReader ? reinterpret_cast<std::FILE*>(pElement->m_pReader->m_pFile)
                                           : nullptr;
}

unsigned long long Positive(off_t iValue) {
    return iValue > 0 ? static_cast<unsigned long long>(iValue) : 0;
}

} // namespace

ReplayProgress::ReplayProgress(bool bWanted, const VESK::EPipeline& cPipeline)
    : m_cPipeline(cPipeline), m_cProgress(bWanted, Replayed(cPipeline) ? "objects" : "runs") {
    PrintedOnTerminal(); // what was printed before is no run's
}

void ReplayProgress::Ran(unsigned long long ullRuns) {
    if (!m_cProgress.Due()) {
        return;
    }
    if (PrintedOnTerminal()) {
        m_cProgress.Stop();
        return;
    }
    std::FILE* const pFile = Replayed(m_cPipeline);
    struct stat Status = {};
    const bool bSized = pFile && fstat(fileno(pFile), &Status) == 0 && S_ISREG(Status.st_mode);
    m_cProgress.Show(ullRuns, bSized ? Positive(ftello(pFile)) : 0, bSized ? Positive(Status.st_size) : 0);
}

} // namespace FwPipe
