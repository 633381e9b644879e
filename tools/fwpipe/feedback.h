// SPDX-License-Identifier: MIT
// Finds loops of connections.
#ifndef FWPIPE_FEEDBACK_H
#define FWPIPE_FEEDBACK_H

namespace VESK {
class EPipeline;
}

namespace FwPipe {

// Warns on standard error of each loop, with its elements in the order of the deliveries. A loop with an element that
// never forwards objects is harmless, so this is no failure. The pipeline must be initialized.
void WarnOfFeedback(VESK::EPipeline& cPipeline);

} // namespace FwPipe

#endif
