// SPDX-License-Identifier: MIT
// The section, the keys and the type names that the library itself reads and writes. They are constants of type char*
// because the interfaces take char*.
#ifndef FWLIB_TEXT_H
#define FWLIB_TEXT_H

namespace VESK {

// Lends a constant text to an interface that takes char* but only reads it. Writing through the result is undefined:
// use it for section names, keys, values, type names, formats and paths, never for a buffer.
constexpr char* Text(const char* pchText) {
    return const_cast<char*>(pchText);
}

namespace Section {
constexpr char* Standard = Text("Standard"); // the only section that the library itself uses
}

namespace Key {
constexpr char* EObjectType = Text("EObjectType");     // an element's class name
constexpr char* QObjectType = Text("QObjectType");     // a data object's class name
constexpr char* Name = Text("Name");                   // an element's name in its pipeline
constexpr char* Debug = Text("Debug");                 // trace level of an element or the framework
constexpr char* EndErrorLines = Text("EndErrorLines"); // of the framework: ends error lines with a newline
constexpr char* TotalSourcePads = Text("TotalSourcePads"); // source pads an ETee or ESource creates
constexpr char* Count = Text("Count");             // running number, from 0, of an object sent by an ESource
constexpr char* Filename = Text("Filename");       // path of a recording
constexpr char* Passthrough = Text("Passthrough"); // source pads an ESerialize creates
constexpr char* Strict = Text("Strict");           // not 0: only complete objects
constexpr char* Shared = Text("Shared");           // not 0: an ESerialize may open a file in use
constexpr char* Existing = Text("Existing");       // what an ESerialize does with a file that exists
constexpr char* SinkElement = Text("SinkElement"); // inner element whose Run a pipeline calls
constexpr char* SourceElement = Text("SourceElement");   // inner element whose source pads are a pipeline's
constexpr char* SingleThreaded = Text("SingleThreaded"); // in a pipeline's list of names; never read
} // namespace Key

namespace Type {
constexpr char* QObject = Text("QObject");
constexpr char* EPipeline = Text("EPipeline");
constexpr char* EDevNull = Text("EDevNull");
constexpr char* EPassthrough = Text("EPassthrough");
constexpr char* ETee = Text("ETee");
constexpr char* ESource = Text("ESource");
constexpr char* ESink = Text("ESink");
constexpr char* ESerialize = Text("ESerialize");
constexpr char* EDeserialize = Text("EDeserialize");
} // namespace Type

} // namespace VESK

#endif
