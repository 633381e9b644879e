// SPDX-License-Identifier: MIT
// Builds, initializes and runs the pipe file of a case, delivers its inputs and collects its outputs.
#ifndef FWPIPE_TEST_STEPS_H
#define FWPIPE_TEST_STEPS_H

#include "test/cases.h"

#include <string>

namespace FwPipe {

// Where a case runs and leaves what the process that runs it cannot return.
struct CaseFolder {
    std::string cWork; // the working directory, with the case's files
    std::string
        cResults; // files: in, out, err, answers, built, trouble, and output-N for output N of the case
};

// Executes the steps in the present process, whose standard output goes to the file out.
void MakeSteps(const Case& cCase, const CaseFolder& cFolder);

// The results that a case without a section "answers" expects.
std::string DefaultAnswers(const Case& cCase);

} // namespace FwPipe

#endif
