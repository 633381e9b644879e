// SPDX-License-Identifier: MIT
// Objects as text for people and for programs.
#ifndef FWPIPE_SHOWN_H
#define FWPIPE_SHOWN_H

#include <string>

namespace FwPipe {

class ObjectScan;

// The object at hand, appended to a text.
using ShowObject = void (*)(const ObjectScan& cScan, std::string& cText);

// For people what could act on a terminal is written as "\xNN", and a backslash as "\\".
void ShowBlock(const ObjectScan& cScan, std::string& cText); // a line each for the object and its properties
void ShowLine(const ObjectScan& cScan, std::string& cText);  // words with spaces stand in quotation marks

// {"type":TYPE,"offset":BYTE,"properties":[[KEY,VALUE],...]}: pairs, because a key may stand there more than once.
// What is not UTF-8 becomes U+FFFD.
void ShowJson(const ObjectScan& cScan, std::string& cText);

} // namespace FwPipe

#endif
