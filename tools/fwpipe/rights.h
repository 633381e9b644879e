// SPDX-License-Identifier: MIT
// Copies the owner, rights and extended attributes of one file to another.
#ifndef FWPIPE_RIGHTS_H
#define FWPIPE_RIGHTS_H

#include <string>

namespace FwPipe {

// Copies owner, group, mode and access control list of the model. If the owner or the list cannot be copied, the file
// gets fewer rights, so that nobody has access who has none to the model. This holds at any time, except that whoever
// runs this process has access until it is done. Returns false, with the reason in errno, if not everything was copied.
bool TakeRights(int iFile, int iModel);

// Copies the other extended attributes. Returns the names of those that could not be copied, or the reason why none
// could; empty if all were. Some need the mode of the new file, and a change of the owner removes others. So call this
// before and after TakeRights; the second result counts.
std::string TakeAttributes(int iFile, int iModel);

} // namespace FwPipe

#endif
