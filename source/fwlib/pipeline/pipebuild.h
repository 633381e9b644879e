// SPDX-License-Identifier: MIT
// Building a pipeline from lines: the files and the keywords. Both building forms run the same code. They differ in two
// members of Build: the configuration file that elements are filled from, and the current element.
#ifndef FWLIB_PIPELINE_PIPEBUILD_H
#define FWLIB_PIPELINE_PIPEBUILD_H

#include "fwlib/internal/currentelement.h"
#include "fwlib/internal/hidden.h"
#include "fwlib/pipeline/epipeline.h"
#include "fwlib/types.h"

namespace FWLIB_HIDDEN VESK {

struct Build {
    EPipeline& cPipeline;
    BuildForm Form;
    Byte2Type b2ReadConfig;
    char* pchConfigFile;
};

int BuildFile(const Build& cBuild, char* pchPath);
int ExecuteTokens(const Build& cBuild, char** ppchTokens); // of one line, closed by null

} // namespace VESK

#endif
