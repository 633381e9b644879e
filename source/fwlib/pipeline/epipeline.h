// SPDX-License-Identifier: MIT
// EPipeline: an element that contains other elements, connects them and runs them.
//
// It owns its elements. Its sink pads are those of the inner element named by its property "SinkElement", its source
// pads those of the element named by "SourceElement". Its Run is the sink element's Run. So a pipeline can be an element
// of another pipeline: objects are delivered directly to the inner elements' pads. It is filled by the operations below
// or from a pipe file; then Initialize is called once, and Run any number of times. An element's index is the order in
// which it was added; elements are never removed. One thread at a
// time; threads may each have frameworks and pipelines of their own.
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

    ~EPipeline() override; // deletes the elements in their order

    // Initializes every element in order, wires the connections, finds the sink element. Returns 0 at the first element
    // that returns 0, and when a connection names a pad that does not exist, which is reported on standard error.
    int Initialize() override;

    int DataArrived(QObject* pObject, Byte2Type b2Index) override; // 0: nothing is delivered here
    int Run() override; // the result of the sink element's Run; 0 with a report if there is none

    // Forwarded to the element that the property names at the time of the call; 0 or null when there is none.
    Byte2Type GetSinkPadCount() override;
    SINKPAD* GetSinkPad(Byte2Type b2Position) override;
    Byte2Type GetSourcePadCount() override;
    SOURCEPAD* GetSourcePad(Byte2Type b2Position) override;

    // Set or get a property of the named element in section "Standard". Return what the operations of PROPERTIES return;
    // 0, with the value unchanged, when no element has the name. When the key is missing, the buffer is set to "" and the
    // number to 0.
    virtual int SetElementProperty(char* pchElement, char* pchKey, char* pchValue);
    virtual int GetElementProperty(char* pchElement, char* pchKey, char* pchBuffer, Byte2Type b2Size);
    virtual int GetElementProperty(char* pchElement, char* pchKey, Byte2Type* pb2Value);

    // Appends the element, which the pipeline then owns. Returns 0 for null, when memory is out, and at
    // 65,535 elements; then the caller still owns the element.
    virtual int AddElement(EObject* pElement);

    // Records a connection from a source pad to a sink pad; the pads are looked up by Initialize. Returns 0
    // when a name is unknown, when memory is out, and at 65,520 connections.
    virtual int Connect(char* pchSource, Byte2Type b2SourcePad, char* pchSink, Byte2Type b2SinkPad);

    // Stores the index of the first element of that name; only the first 255 characters of a name are compared.
    int FindElement(char* pchName, Byte2Type* pb2Index);

    // Builds from a pipe file (docs/pipe-language.md). Needs m_pFramework. Returns 1 when every line succeeded.
    // The first line that fails ends the build; the effects of the lines before it remain. The second form, when
    // b2ReadConfig is not 0, reads the properties of every element it creates from pchConfigFile, from the section named like
    // the element's type. `property` and `config` lines act on the element that the same form created last, in any
    // pipeline of the process. Threads may build pipelines of their own at the same time: then their lines act on the
    // element that the thread created last in this build. Only lines before the first `element` or `pipe` line, and calls
    // of ProcessTokens outside BuildPipe, act on the last element of the process: no other thread may build with the same
    // form at that time.
    int BuildPipe(char* pchPath);
    int BuildPipe(char* pchPath, Byte2Type b2ReadConfig, char* pchConfigFile);

    // Executes one line, given as tokens: the keyword first, at most 14, then null.
    int ProcessTokens(char** ppchTokens);
    int ProcessTokens(char** ppchTokens, Byte2Type b2ReadConfig, char* pchConfigFile);

    // The pipeline's property names, then null.
    static char* const m_pachProperties[6];

    // The order of the fields is part of the binary interface.
    EObject** m_ppElements; // owned, as are the elements
    int m_iElementCapacity;
    int m_iElementCount;
    CONNECTION** m_ppConnections; // owned, as are the records
    Byte2Type m_b2ConnectionCapacity;
    Byte2Type m_b2ConnectionCount;
    EObject* m_pSinkElement; // found by Initialize; lent
};

} // namespace VESK

#endif
