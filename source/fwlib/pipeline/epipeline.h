// SPDX-License-Identifier: MIT
// EPipeline: an element that contains other elements, connects them and runs them.
//
// It owns its elements. Its sink pads are those of the inner element named by its property "SinkElement", its
// source pads those of the one named by "SourceElement", and its Run is the sink element's Run. So a pipeline
// is an element of another pipeline: objects go straight to the inner elements' pads. It is filled by the
// operations below or from a pipe file; then Initialize is called once, and Run as often as wanted. Elements
// are addressed by their index, the order in which they were added; they are never removed. One thread at a
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

    // Initializes every element in order, wires the connections, finds the sink element. 0 at the first
    // element that returns 0, or when a connection names a pad that is not there, which is reported on standard error.
    int Initialize() override;

    int DataArrived(QObject* pObject, Byte2Type b2Index) override; // 0: nothing is delivered here
    int Run() override; // the result of the sink element's Run; 0 with a report when there is none

    // Forwarded to the element that the property names at the time of the call; 0 or null when there is none.
    Byte2Type GetSinkPadCount() override;
    SINKPAD* GetSinkPad(Byte2Type b2Position) override;
    Byte2Type GetSourcePadCount() override;
    SOURCEPAD* GetSourcePad(Byte2Type b2Position) override;

    // The named element's property of section "Standard", as the operations of PROPERTIES return it; 0, with the
    // out-value untouched, when no element has the name. A buffer is emptied and a number 0 when the key is
    // missing.
    virtual int SetElementProperty(char* pchElement, char* pchKey, char* pchValue);
    virtual int GetElementProperty(char* pchElement, char* pchKey, char* pchBuffer, Byte2Type b2Size);
    virtual int GetElementProperty(char* pchElement, char* pchKey, Byte2Type* pb2Value);

    // Appends the element, which the pipeline then owns. 0 for null, when memory is out, and at 65,535
    // elements: the element stays the caller's.
    virtual int AddElement(EObject* pElement);

    // Records a connection from a source pad to a sink pad; the pads are looked for by Initialize. 0 when a
    // name is unknown, when memory is out, and at 65,520 connections.
    virtual int Connect(char* pchSource, Byte2Type b2SourcePad, char* pchSink, Byte2Type b2SinkPad);

    // Stores the index of the first element of that name; only the first 255 characters of a name are compared.
    int FindElement(char* pchName, Byte2Type* pb2Index);

    // Builds from a pipe file (docs/pipe-language.md). Needs m_pFramework. 1 when every line succeeded; the
    // first line that fails ends the build, and what the lines before it did stays. The second form, when
    // b2ReadConfig is not 0, fills every element it creates from the section of pchConfigFile named like the
    // element's type. `property` and `config` lines act on the element that the same form created last, in whatever
    // pipeline of the process. Threads may build pipelines of their own at the same time: their lines then act on what
    // the thread created last in this build. Only lines before the first `element` or `pipe` line, and those of
    // ProcessTokens outside BuildPipe, act on the process's last, so no other thread may build with their form then.
    int BuildPipe(char* pchPath);
    int BuildPipe(char* pchPath, Byte2Type b2ReadConfig, char* pchConfigFile);

    // Executes one line: its tokens, keyword first, closed by null, at most 14.
    int ProcessTokens(char** ppchTokens);
    int ProcessTokens(char** ppchTokens, Byte2Type b2ReadConfig, char* pchConfigFile);

    // The pipeline's property names, closed by null.
    static char* const m_pachProperties[6];

    // The fields in their order are part of the binary interface.
    EObject** m_ppElements; // owned, as are the elements
    int m_iElementCapacity;
    int m_iElementCount;
    CONNECTION** m_ppConnections; // owned, as are the records
    Byte2Type m_b2ConnectionCapacity;
    Byte2Type m_b2ConnectionCount;
    EObject* m_pSinkElement; // the one that Initialize found; lent
};

} // namespace VESK

#endif
