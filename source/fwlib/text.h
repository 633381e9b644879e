// SPDX-License-Identifier: MIT
// The section, the keys and the type names that the library itself reads and writes. They are constants of type char*
// because the interfaces take char*.
#ifndef FWLIB_TEXT_H
#define FWLIB_TEXT_H

namespace VESK {

// Lends a constant text to an interface that takes char* but only reads it. Writing through the result is an
// error: use it for section names, keys, values, type names, formats and paths, never for a buffer.
constexpr char* Text(const char* pchText) {
    return const_cast<char*>(pchText);
}

namespace Section {
constexpr char* Standard = Text("Standard"); // the library itself uses no other
}

namespace Key {
constexpr char* EObjectType = Text("EObjectType");         // an element's class name
constexpr char* QObjectType = Text("QObjectType");         // a data object's class name
constexpr char* Name = Text("Name");                       // a pipeline finds an element by it
constexpr char* Debug = Text("Debug");                     // trace level of an element or the framework
constexpr char* EndErrorLines = Text("EndErrorLines");     // of the framework: error lines are ended
constexpr char* TotalSourcePads = Text("TotalSourcePads"); // source pads an ETee or ESource creates
constexpr char* Count = Text("Count");                     // number of an object sent by an ESource
constexpr char* Filename = Text("Filename");               // of a recording
constexpr char* Passthrough = Text("Passthrough");         // source pads an ESerialize creates
constexpr char* Strict = Text("Strict");                   // complete objects only
constexpr char* Shared = Text("Shared");                   // a recording's file may be in use in the process
constexpr char* Existing = Text("Existing");               // what an ESerialize does with a file that exists
constexpr char* SinkElement = Text("SinkElement");         // a pipeline's element that runs
constexpr char* SourceElement = Text("SourceElement");     // a pipeline's element that delivers
constexpr char* SingleThreaded = Text("SingleThreaded");   // listed by the pipeline, never used
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
