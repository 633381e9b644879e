// SPDX-License-Identifier: MIT
// Rows that set the library beside frameworks and libraries that people use for the same work. Each file of them is
// compiled where its peer is installed.
#ifndef FWLIB_BENCH_PEERS_H
#define FWLIB_BENCH_PEERS_H

#include "rows.h"

// The library's sides of rows that several peers share.
Measured LibraryChainOf(int iLength); // elements as a user writes them
Measured LibraryTapsOf(int iLength);  // EPassthrough elements, the last of which is a user's that swallows
Measured LibraryGet();                // a text, last of 16 properties
Measured LibrarySetText();            // the same, set
Measured LibraryCopy();               // 16 properties into a fresh list
Measured LibraryBuilding();           // 1,000 elements from a pipe file

void AddGStreamerRows();
void AddTbbRows();
void AddMapRows();

#endif
