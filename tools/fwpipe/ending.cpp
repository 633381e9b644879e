// SPDX-License-Identifier: MIT
#include "ending.h"

#include "elements.h"
#include "message.h"
#include "origin.h"
#include "replay.h"

#include <fwlib/fwlib.h>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace FwPipe {

Report::Report(bool bWanted)
    : m_bWanted(bWanted || isatty(STDERR_FILENO)), m_Start(std::chrono::steady_clock::now()) {}

void Report::Tell(unsigned long long ullRuns, const Origin& cOrigin) const {
    if (!m_bWanted) {
        return;
    }
    const std::chrono::duration<double> Passed = std::chrono::steady_clock::now() - m_Start;
    const Deliveries cCounted = cOrigin.Counted();
    std::fprintf(stderr, "fwpipe: %llu run%s, %llu object%s sent, %llu refused, %.3f s, %.0f objects/s\n",
                 ullRuns, ullRuns == 1 ? "" : "s", cCounted.ullSent, cCounted.ullSent == 1 ? "" : "s",
                 cCounted.ullRefused, Passed.count(),
                 static_cast<double>(cCounted.ullSent) / std::max(Passed.count(), 1e-9));
}

bool TellRest(Asked Runs, const VESK::EPipeline& cPipeline, const Origin& cOrigin) {
    const Rest Left = RestOfReplay(cPipeline, cOrigin);
    if (Left == Rest::None || (Left == Rest::Possible && Runs != Asked::All)) {
        return false;
    }
    const char* const pchFile = Setting(*cOrigin.Living(cPipeline), VESK::Key::Filename);
    Complain(cOrigin.Name() + " did not reach the end of " + (pchFile ? pchFile : "standard input") +
             ", objects sent: " + std::to_string(cOrigin.Counted().ullSent) +
             (Runs == Asked::All ? "" : " (--drain goes on to the end)"));
    return Runs == Asked::All || (Runs == Asked::One && Left == Rest::InPipe);
}

} // namespace FwPipe
