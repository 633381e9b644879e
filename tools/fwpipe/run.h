// SPDX-License-Identifier: MIT
// What "run" and "launch" share: the options, and running a pipeline that one of them builds.
#ifndef FWPIPE_RUN_H
#define FWPIPE_RUN_H

#include "commandline.h"
#include "recorders.h"

#include <functional>
#include <string>
#include <vector>

namespace VESK {
class EPipeline;
}

namespace FwPipe {

struct RunOptions {
    std::string cFile;                  // in messages
    std::string cConfig;                // empty for none
    std::vector<std::string> cSettings; // NAME.KEY=VALUE
    unsigned long long ullRepeat = 1;
    bool bDrain = false;
    bool bQuiet = false;
    bool bLoop = false; // --repeat or --drain was given
    bool bIgnoreRefused = false;
    bool bReport = false;
    RecorderOptions cRecorders;
};

void AddRunOptions(const Command& cCommand, RunOptions& cOptions);

// Builds the pipeline by that function, which returns 0 after a report if it fails, initializes it and runs it. Returns
// the exit status.
int RunPipeline(RunOptions& cOptions, const std::function<int(VESK::EPipeline&)>& Build);

} // namespace FwPipe

#endif
