// SPDX-License-Identifier: MIT
// Where and why building or initializing a pipe file failed. Found after the failure, so that a run that succeeds does
// nothing for it.
#ifndef FWPIPE_REASON_H
#define FWPIPE_REASON_H

#include <string>

namespace FwPipe {

// Print the last line of a run that failed: "FILE:LINE: building failed: TEXT". The file and line are those of the nested
// file if it failed there. Without a line, prints "building FILE failed".
void TellFailedBuild(const std::string& cFile, const std::string& cConfig);
void TellFailedInitialization(const std::string& cFile, const std::string& cConfig);

} // namespace FwPipe

#endif
