// SPDX-License-Identifier: MIT
// The progress line of a pipeline that is run until it has nothing more to give.
#ifndef FWPIPE_REPLAY_H
#define FWPIPE_REPLAY_H

#include "progress.h"

namespace VESK {
class EPipeline;
}

namespace FwPipe {

// When the element that runs replays a file, each run is an object, and the file's size is what there is. The line
// stays away once a run has printed on the terminal, which shows the progress by itself.
class ReplayProgress {
public:
    ReplayProgress(bool bWanted, const VESK::EPipeline& cPipeline); // lends the pipeline
    void Ran(unsigned long long ullRuns);
    void Stop() { m_cProgress.Stop(); }

private:
    const VESK::EPipeline& m_cPipeline;
    Progress m_cProgress;
};

} // namespace FwPipe

#endif
