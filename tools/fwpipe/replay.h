// SPDX-License-Identifier: MIT
// A pipeline whose data comes from a recording, a run an object: how far it is, and whether it came to the end.
#ifndef FWPIPE_REPLAY_H
#define FWPIPE_REPLAY_H

#include "progress.h"

namespace VESK {
class EPipeline;
}

namespace FwPipe {

class Origin;

// The progress line of a pipeline that is run until it has nothing more to give. When the element that runs replays a
// file, each run is an object, and the file's size is what there is. The line stays away once a run has printed on the
// terminal, which shows the progress by itself.
class ReplayProgress {
public:
    ReplayProgress(bool bWanted, const VESK::EPipeline& cPipeline, const Origin& cOrigin); // lends both
    void Ran(unsigned long long ullRuns);
    void Stop() { m_cProgress.Stop(); }

private:
    const VESK::EPipeline& m_cPipeline;
    const Origin& m_cOrigin;
    Progress m_cProgress;
};

// What is left of the data once no more of it is read.
enum class Rest {
    None,     // nothing, or the pipeline replays no recording
    Possible, // the end was not seen, and whether more comes is not known: a pipe that holds nothing at present
    InFile,   // stays where it is
    InPipe    // what was read ahead or waits there is lost
};

Rest RestOfReplay(const VESK::EPipeline& cPipeline, const Origin& cOrigin);

} // namespace FwPipe

#endif
