// SPDX-License-Identifier: MIT
// What is looked at and set on the recorders of a pipeline before they open, and so empty, their files.
#ifndef FWPIPE_RECORDERS_H
#define FWPIPE_RECORDERS_H

namespace VESK {
class EPipeline;
}

namespace FwPipe {

struct RecorderOptions {
    bool bKeep =
        false; // refuse to replace a recording, unless the recorder's property "Existing" says otherwise
    bool bShared = false; // recorders may write what other elements of the pipeline write or read
};

// Between building and initializing. False, after a line on standard error, when a recorder would write a file that
// another element uses.
bool PrepareRecorders(const RecorderOptions& cOptions, VESK::EPipeline& cPipeline);

} // namespace FwPipe

#endif
