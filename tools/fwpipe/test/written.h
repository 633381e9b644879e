// SPDX-License-Identifier: MIT
// How bytes are written in the lines of a test file.
//
//   (3 times) TEXT             three lines
//   (these 2 lines 3 times)    repeats the two written lines before it; in both, <n> is the number from 0 on
//   <5*TEXT>                   TEXT five times; <0*> is nothing, and <1*<> a "<" that begins no mark
//   <cr> <tab> <zero> <xNN>    one byte
//   <end>                      at the end of a line: without a newline
#ifndef FWPIPE_TEST_WRITTEN_H
#define FWPIPE_TEST_WRITTEN_H

#include <string>
#include <vector>

namespace FwPipe {

// Appends what a line stands for. cTexts has one text for each line so far. Returns an empty text, or what is wrong.
std::string AppendMeant(const std::string& cLine, std::vector<std::string>& cTexts);

// The lines that stand for the bytes, without repetitions. "<loader>" remains as it is.
std::vector<std::string> Written(const std::string& cText);

} // namespace FwPipe

#endif
