// SPDX-License-Identifier: MIT
// Who may use a file, and what else is attached to it, taken over from another file.
#ifndef FWPIPE_RIGHTS_H
#define FWPIPE_RIGHTS_H

#include <string>

namespace FwPipe {

// Owner, group, mode and access control list of the model, or less: where the owner or the list cannot be taken over,
// nobody but the owner gets what then would reach others. At no moment may more people use the file than the model,
// or, until it is done, than who runs this process. False, with the reason in errno, when not all could be taken over.
bool TakeRights(int iFile, int iModel);

// The other extended attributes of the model: the names of those that could not be taken over, or why none could, as a
// text; empty when all were. Some need the mode of a new file, and a change of the owner takes others away, so it is
// called both before and after TakeRights; what the second call answers counts.
std::string TakeAttributes(int iFile, int iModel);

} // namespace FwPipe

#endif
