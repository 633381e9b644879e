// SPDX-License-Identifier: MIT
// Checks and settings of a pipeline's recorders before they open, and thus empty, their files.
#ifndef FWPIPE_RECORDERS_H
#define FWPIPE_RECORDERS_H

namespace VESK {
class EPipeline;
}

namespace FwPipe {

struct RecorderOptions {
    bool bKeep = false;   // do not replace a recording, unless the recorder has a property "Existing"
    bool bShared = false; // recorders may write files that other elements of the pipeline write or read
};

// Call this between building and initializing. Returns false, after a line on standard error, if a recorder would write
// a file that another element uses.
bool PrepareRecorders(const RecorderOptions& cOptions, VESK::EPipeline& cPipeline);

} // namespace FwPipe

#endif
