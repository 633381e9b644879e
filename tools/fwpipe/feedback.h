// SPDX-License-Identifier: MIT
// Connections that lead back to an element they came from.
#ifndef FWPIPE_FEEDBACK_H
#define FWPIPE_FEEDBACK_H

namespace VESK {
class EPipeline;
}

namespace FwPipe {

// Warns on standard error of each loop of connections, with the names in the order in which an object would pass. An
// element that ends every object's way there makes it harmless, so it is no failure. Wants the pipeline initialized.
void WarnOfFeedback(VESK::EPipeline& cPipeline);

} // namespace FwPipe

#endif
