// SPDX-License-Identifier: MIT
// Rewrites the expectations of a test file.
#ifndef FWPIPE_TEST_UPDATE_H
#define FWPIPE_TEST_UPDATE_H

#include "test/cases.h"
#include "test/runcase.h"

#include <vector>

namespace FwPipe {

// Puts what was found in the place of what the case expected. Applies to cNewLines, which begins as the file's lines.
// The line numbers of the file remain valid only for the cases before this one, so the last case comes first.
void UpdateCase(const Case& cCase, const CaseResult& cResult, std::vector<std::string>& cNewLines);

// Replaces the file by these lines. Throws std::runtime_error, also if the file is no longer as it was read.
void WriteTestFile(const TestFile& cFile, const std::vector<std::string>& cLines);

} // namespace FwPipe

#endif
