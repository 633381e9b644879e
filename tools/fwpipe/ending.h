// SPDX-License-Identifier: MIT
// Reports after the runs of a pipeline, and the exit status that they cause.
#ifndef FWPIPE_ENDING_H
#define FWPIPE_ENDING_H

#include <chrono>

namespace VESK {
class EPipeline;
}

namespace FwPipe {

class Origin;

// The line "3 runs, 3000 objects sent, 12 refused, 0.42 s, 7142 objects/s", printed on a terminal or on request.
class Report {
public:
    explicit Report(bool bWanted); // starts the time
    void Tell(unsigned long long ullRuns, const Origin& cOrigin) const;

private:
    const bool m_bWanted;
    const std::chrono::steady_clock::time_point m_Start;
};

// Which runs were requested.
enum class Asked { One, Number, All };

// Reports a replay that did not reach the end of its data. Returns true if that is a failure: all data was requested,
// or the remaining data is lost although no number of runs was requested.
bool TellRest(Asked Runs, const VESK::EPipeline& cPipeline, const Origin& cOrigin);

} // namespace FwPipe

#endif
