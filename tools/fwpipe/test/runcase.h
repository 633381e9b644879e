// SPDX-License-Identifier: MIT
// Runs a case in a process and a folder of its own, and compares what it did with what it was expected to do.
#ifndef FWPIPE_TEST_RUNCASE_H
#define FWPIPE_TEST_RUNCASE_H

#include "test/cases.h"

#include <string>
#include <vector>

namespace FwPipe {

// A section whose text or argument is not as expected.
struct Difference {
    std::string cKind;
    std::string cArgument;   // of the heading; the expected one for "answers" and "exit"
    const Section* pSection; // null if the case has none, so that nothing, or success, was expected
    std::string cExpected;
    std::string cFound;

    // Whether the heading has what was expected, not the lines.
    bool IsInHeading() const { return cKind == "answers" || cKind == "exit"; }
};

struct CaseResult {
    std::vector<Difference> cDifferences;
    std::string
        cTrouble; // LINE: why not all steps could be made, or how the process was ended; otherwise empty
};

struct CaseOptions {
    std::string cScratch;            // a folder of its own, which exists
    std::vector<std::string> cLinks; // absolute paths
    unsigned int uTimeout;           // seconds, 0 for none
};

CaseResult RunCase(const Case& cCase, const CaseOptions& cOptions);

} // namespace FwPipe

#endif
