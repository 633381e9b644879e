// SPDX-License-Identifier: MIT
// Detects writers of a file that is open for reading.
#ifndef FWPIPE_WATCH_H
#define FWPIPE_WATCH_H

namespace FwPipe {

// From now on until the file is closed, a program that opens it for writing or truncates it has to wait, and is
// detected. Returns false if the file is open for writing already. Works for the user's own files, on file systems with
// leases; for others it does nothing and returns true.
bool WatchForWriters(int iFile);

bool HasWriter(int iFile); // whether a writer was detected since then

} // namespace FwPipe

#endif
