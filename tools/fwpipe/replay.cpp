// SPDX-License-Identifier: MIT
#include "replay.h"

#include "elements.h"
#include "origin.h"
#include "output.h"

#include <fwlib/fwlib.h>

#include <cstdio>
#include <poll.h>
#include <sys/stat.h>

namespace FwPipe {

namespace {

// The stream of the file that the pipeline replays, or null. A file handle has the address of its stream.
std::FILE* Replayed(const VESK::EPipeline& cPipeline, const Origin& cOrigin) {
    const VESK::EDeserialize* const pElement = AsReplay(cOrigin.Living(cPipeline));
    return pElement && pElement->m_pReader ? reinterpret_cast<std::FILE*>(pElement->m_pReader->m_pFile)
                                           : nullptr;
}

unsigned long long Positive(off_t iValue) {
    return iValue > 0 ? static_cast<unsigned long long>(iValue) : 0;
}

// Whether data can be read from the stream without waiting.
bool Waiting(std::FILE* pFile) {
    pollfd Poll = {fileno(pFile), POLLIN, 0};
    const bool bReadAhead = pFile->_IO_read_ptr < pFile->_IO_read_end; // no C function returns it
    return bReadAhead || (poll(&Poll, 1, 0) > 0 && (Poll.revents & POLLIN));
}

} // namespace

ReplayProgress::ReplayProgress(bool bWanted, const VESK::EPipeline& cPipeline, const Origin& cOrigin)
    : m_cPipeline(cPipeline),
      m_cOrigin(cOrigin),
      m_cProgress(bWanted, Replayed(cPipeline, cOrigin) ? "objects" : "runs") {
    PrintedOnTerminal(); // resets it: earlier lines are not those of a run
}

void ReplayProgress::Ran(unsigned long long ullRuns) {
    if (!m_cProgress.Due()) {
        return;
    }
    if (PrintedOnTerminal()) {
        m_cProgress.Stop();
        return;
    }
    std::FILE* const pFile = Replayed(m_cPipeline, m_cOrigin);
    struct stat Status = {};
    const bool bSized = pFile && fstat(fileno(pFile), &Status) == 0 && S_ISREG(Status.st_mode);
    m_cProgress.Show(ullRuns, bSized ? Positive(ftello(pFile)) : 0, bSized ? Positive(Status.st_size) : 0);
}

Rest RestOfReplay(const VESK::EPipeline& cPipeline, const Origin& cOrigin) {
    std::FILE* const pFile = Replayed(cPipeline, cOrigin);
    struct stat Status = {};
    if (!pFile || std::feof(pFile) || fstat(fileno(pFile), &Status) != 0) {
        return Rest::None;
    }
    if (S_ISREG(Status.st_mode)) {
        return ftello(pFile) < Status.st_size ? Rest::InFile : Rest::None;
    }
    return Waiting(pFile) ? Rest::InPipe : Rest::Possible;
}

} // namespace FwPipe
