// SPDX-License-Identifier: MIT
// Whether a file that is open for reading has a writer.
#ifndef FWPIPE_WATCH_H
#define FWPIPE_WATCH_H

namespace FwPipe {

// From here on, until the file is closed, a program that opens it for writing or truncates it has to wait and is noticed; false
// when somebody has it open for writing. Only for files of one's own, on file systems that know leases; for others it
// does nothing.
bool WatchForWriters(int iFile);

bool HasWriter(int iFile); // whether one came since then

} // namespace FwPipe

#endif
