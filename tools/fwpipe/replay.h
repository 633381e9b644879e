// SPDX-License-Identifier: MIT
// A pipeline that replays a recording, one object in each run: its progress, and whether it reached the end.
#ifndef FWPIPE_REPLAY_H
#define FWPIPE_REPLAY_H

#include "progress.h"

namespace VESK {
class EPipeline;
}

namespace FwPipe {

class Origin;

// The progress line of a pipeline that runs until a run returns 0. If the element that runs replays a file, each run is
// an object, and the percentage is that of the file's size. The line is not shown after a run has printed on the
// terminal.
class ReplayProgress {
public:
    ReplayProgress(bool bWanted, const VESK::EPipeline& cPipeline, const Origin& cOrigin); // both are lent
    void Ran(unsigned long long ullRuns);
    void Stop() { m_cProgress.Stop(); }

private:
    const VESK::EPipeline& m_cPipeline;
    const Origin& m_cOrigin;
    Progress m_cProgress;
};

// The data that was not read.
enum class Rest {
    None,     // none, or the pipeline replays no recording
    Possible, // unknown: a pipe without data at present, whose end was not seen
    InFile,   // in a file, where it remains
    InPipe    // in a pipe or a buffer: it is lost
};

Rest RestOfReplay(const VESK::EPipeline& cPipeline, const Origin& cOrigin);

} // namespace FwPipe

#endif
