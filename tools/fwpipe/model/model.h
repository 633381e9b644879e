// SPDX-License-Identifier: MIT
// A pipe file as its author wrote it: elements, properties and connections with their places. Nothing is created.
#ifndef FWPIPE_MODEL_MODEL_H
#define FWPIPE_MODEL_MODEL_H

#include "text.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace VESK {
struct ElementDescription;
struct PropertyDescription;
} // namespace VESK

namespace FwPipe {

struct Pipeline;

struct Setting {
    std::string cValue;
    Spot cKeySpot;
    Spot cValueSpot;
};

enum : int { PadsUnknown = -1 };

struct Element {
    Token cType; // of a pipe line the file
    Spot cLine;  // the keyword
    std::string cName;
    bool bNamed = false;
    const VESK::ElementDescription* pDescription = nullptr; // null: nothing is known
    bool bPipe = false;                                     // of a pipe line, readable or not
    bool bOfLibrary = false;           // its type is one of the library's, which reads texts leniently
    std::unique_ptr<Pipeline> pNested; // of a pipe line that could be read
    std::map<std::string, Setting> cProperties;
    int iSinkPads = PadsUnknown;
    int iSourcePads = PadsUnknown;
    bool bMayOriginate = true;

    // In messages: its name in quotation marks, or its type.
    std::string Shown() const;
};

struct Pad {
    Token cElement;
    Token cNumber;
    int iElement = -1; // index; -1 for an unknown name
    unsigned int uNumber = 0;
};

struct Connection {
    Spot cLine;
    Pad cFrom;
    Pad cTo;
    bool bReplaced = false; // a later one replaces it
};

struct Pipeline {
    const std::string* pFile = nullptr;
    Spot cLast; // for what is wrong with the whole file
    std::vector<std::unique_ptr<Element>> cElements;
    std::vector<Connection> cConnections;
    Token cSink, cSource; // empty texts without such a line
    bool bSinkLine = false;
    bool bSourceLine = false;

    int Find(const std::string& cName) const; // the first element of the name; -1 for none
    void Rename(int iElement, const std::string& cName);
    std::vector<std::string> Names() const;

private:
    std::unordered_map<std::string, std::vector<int>> m_cByName; // indexes in order
};

} // namespace FwPipe

#endif
