// SPDX-License-Identifier: MIT
// What is reported after the runs of a pipeline, and the exit status it causes.
#ifndef FWPIPE_ENDING_H
#define FWPIPE_ENDING_H

#include <chrono>

namespace VESK {
class EPipeline;
}

namespace FwPipe {

class Origin;

// The line "3 runs, 3000 objects sent, 12 refused, 0.42 s, 7142 objects/s", on a terminal or when it is wanted.
class Report {
public:
    explicit Report(bool bWanted); // the time counts from here
    void Tell(unsigned long long ullRuns, const Origin& cOrigin) const;

private:
    const bool m_bWanted;
    const std::chrono::steady_clock::time_point m_Start;
};

// Which runs were asked for.
enum class Asked { One, Number, All };

// Says when a replay did not come to the end of its data. True when that is a failure: all of it was asked for, or the
// rest is lost although no number of runs was requested.
bool TellRest(Asked Runs, const VESK::EPipeline& cPipeline, const Origin& cOrigin);

} // namespace FwPipe

#endif
