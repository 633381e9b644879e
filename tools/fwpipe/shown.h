// SPDX-License-Identifier: MIT
// Objects as text for people and for programs.
#ifndef FWPIPE_SHOWN_H
#define FWPIPE_SHOWN_H

#include <string>

namespace FwPipe {

class ObjectScan;

// Appends the object at hand to a text. Raw, its bytes are passed as they are, else escaped (escape.h).
using ShowObject = void (*)(const ObjectScan& cScan, bool bRaw, std::string& cText);

void ShowBlock(const ObjectScan& cScan, bool bRaw,
               std::string& cText); // a line each for object and properties
void ShowLine(const ObjectScan& cScan, bool bRaw, std::string& cText); // words with spaces in quotation marks

// {"type":TYPE,"offset":BYTE,"properties":{KEY:VALUE,...}}. A key that occurs more than once in the object has an array
// of its values in their order. An object that holds bytes that are not UTF-8 has "escaped":true behind its offset,
// and in its texts "\xNN" for each such byte and "\\" for a backslash.
void ShowJson(const ObjectScan& cScan, bool bRaw, std::string& cText);

// The same with "properties":[[KEY,VALUE],...].
void ShowJsonPairs(const ObjectScan& cScan, bool bRaw, std::string& cText);

} // namespace FwPipe

#endif
