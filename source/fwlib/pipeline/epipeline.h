// SPDX-License-Identifier: MIT
// EPipeline: an element that contains other elements, connects them and runs them.
//
// It owns its elements. Its sink pads are those of the inner element named by its property "SinkElement", its source
// pads those of the element named by "SourceElement". Run calls the sink element's Run. So a pipeline can be an element
// of another pipeline: objects are delivered directly to the inner elements' pads. Add elements and connections with
// the operations below or with a pipe file, call Initialize once, then Run any number of times. An element's index is
// its position in the order of adding; elements are never removed. One thread at a time; each thread may have
// frameworks and pipelines of its own.
#ifndef FWLIB_PIPELINE_EPIPELINE_H
#define FWLIB_PIPELINE_EPIPELINE_H

#include "fwlib/elements/eobject.h"
#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

struct CONNECTION {
    Byte2Type b2SourceElement; // index of the element that sends
    Byte2Type b2SourcePad;     // position of its source pad
    Byte2Type b2SinkElement;   // index of the element that receives
    Byte2Type b2SinkPad;       // position of its sink pad
};

class FWLIB_EXPORT EPipeline : public EObject {
public:
    EPipeline();

    // The order of the virtual operations is part of the binary interface.

    ~EPipeline() override; // deletes the elements in the order of their indexes

    // Initializes the elements in order, connects their pads and looks up the sink element. Returns 0 at the first
    // element whose Initialize returns 0; and, after a report on standard error, when a pad of a connection does not
    // exist.
    int Initialize() override;

    int DataArrived(QObject* pObject, Byte2Type b2Index) override; // returns 0: nothing is delivered here
    int Run() override; // returns the result of the sink element's Run; 0 after a report if there is none

    // Call the operation of the element that the property names at the time of the call; return 0 or null without one.
    Byte2Type GetSinkPadCount() override;
    SINKPAD* GetSinkPad(Byte2Type b2Position) override;
    Byte2Type GetSourcePadCount() override;
    SOURCEPAD* GetSourcePad(Byte2Type b2Position) override;

    // Set or get a property of the named element in section "Standard". Return the result of the operation of
    // PROPERTIES, or 0, with the buffer or number unchanged, if no element has the name. If the key is missing, the
    // buffer is set to "" or the number to 0.
    virtual int SetElementProperty(char* pchElement, char* pchKey, char* pchValue);
    virtual int GetElementProperty(char* pchElement, char* pchKey, char* pchBuffer, Byte2Type b2Size);
    virtual int GetElementProperty(char* pchElement, char* pchKey, Byte2Type* pb2Value);

    // Appends the element, which the pipeline then owns. Returns 0 for null, when there is not enough memory, and when
    // there are 65,535 elements; the caller then still owns the element.
    virtual int AddElement(EObject* pElement);

    // Adds a connection from a source pad to a sink pad; Initialize looks up the pads. Returns 0 when an element does
    // not exist, when there is not enough memory, and when there are 65,520 connections.
    virtual int Connect(char* pchSource, Byte2Type b2SourcePad, char* pchSink, Byte2Type b2SinkPad);

    // Stores the index of the first element of that name. Only the first 255 characters of an element's name are
    // compared. Returns 0, with *pb2Index unchanged, if there is none.
    int FindElement(char* pchName, Byte2Type* pb2Index);

    // Build from a pipe file (docs/pipe-language.md); m_pFramework must be set. Return 1 if every line succeeded. The
    // first line that fails ends the build; the effects of earlier lines remain. If b2ReadConfig is not 0, the second
    // form sets the properties of each element that it creates from the section of pchConfigFile that has the name of
    // the element's type.
    //
    // Threads may build pipelines of their own at the same time. `property` and `config` lines act on the element that
    // this thread created last in this build. Before the first `element` or `pipe` line, and in ProcessTokens outside
    // BuildPipe, they act on the element that the same form created last in the process; at that time, no other thread
    // may build with this form.
    int BuildPipe(char* pchPath);
    int BuildPipe(char* pchPath, Byte2Type b2ReadConfig, char* pchConfigFile);

    // The same for a text in memory, which is treated like a file with that name and content. The name appears in
    // messages; null is "".
    // Returns 0 for a null text.
    int BuildPipeText(const char* pchName, const char* pchText);
    int BuildPipeText(const char* pchName, const char* pchText, Byte2Type b2ReadConfig, char* pchConfigFile);

    // Call this when the pipeline will not run again, also after a failed run. Calls the functions that elements registered
    // for the end of the runs (elements/runsend.h), also those of nested pipelines. An element's function is called after
    // those of all elements that can send to it through the present connections; within a loop, in the order of the file.
    // Each is called at most once, whatever the others return. Returns 1 if all of them returned 1. A second call calls
    // them again. Without enough memory to determine the order, uses the order of the file, reports this on standard
    // error, and returns 0. If such a function calls EndRuns, that call omits the elements of the outer call.
    int EndRuns();

    // The element as a pipeline, or null when it is none; null for null. Needs no run-time type information. A subclass
    // that overrides both Initialize and Run is not recognized.
    static EPipeline* From(EObject* pElement);

    // Execute one line, given as its keyword, its other tokens (14 in all at most) and null. Return 1, or 0 if the line fails.
    int ProcessTokens(char** ppchTokens);
    int ProcessTokens(char** ppchTokens, Byte2Type b2ReadConfig, char* pchConfigFile);

    // The names of the pipeline's properties, then null.
    static char* const m_pachProperties[6];

    // The order of the fields is part of the binary interface.
    EObject** m_ppElements; // owned, as are the elements
    int m_iElementCapacity;
    int m_iElementCount;
    CONNECTION** m_ppConnections; // owned, as are the connections
    Byte2Type m_b2ConnectionCapacity;
    Byte2Type m_b2ConnectionCount;
    EObject* m_pSinkElement; // lent; set by Initialize, null if there is none
};

} // namespace VESK

#endif
