// SPDX-License-Identifier: MIT
// EObject: the base class of every element.
//
// An element owns a property list and its pads, and reports through its framework. Its life: it is constructed (without
// pads), gets a framework and properties, is initialized (creates its pads), connected, run and destroyed (with its
// pads). A concrete element sets "EObjectType" in its constructor, creates its pads in Initialize, does its work in
// DataArrived, and overrides Run if it originates data.
//
// An object that arrives is lent for the call. The receiver may send the same object through its own source pads. It
// must not delete it or keep the pointer; to keep the object, it makes a Duplicate.
// Everything runs on the caller's thread.
#ifndef FWLIB_ELEMENTS_EOBJECT_H
#define FWLIB_ELEMENTS_EOBJECT_H

#include "fwlib/export.h"
#include "fwlib/properties/properties.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT EObject {
public:
    EObject();

    // The order of the virtual operations is part of the binary interface.

    virtual ~EObject(); // deletes the pads; no source pad may deliver to them after that

    // Reads the debug level: "Debug" of this element, otherwise of the framework, otherwise 0. Returns 1. Concrete
    // elements create their pads in their Initialize, and call this one first if they use the level.
    virtual int Initialize();

    // Receives an object through the sink pad of that index. Returns 1 when the object was handled, 0 on failure.
    virtual int DataArrived(QObject* pObject, Byte2Type b2Index) = 0;

    // Originates data. The base class reports "EObject::Run: Should not be called: %s.\n" on standard error and returns
    // 0.
    virtual int Run();

    virtual Byte2Type GetSinkPadCount();
    virtual SINKPAD* GetSinkPad(Byte2Type b2Position); // lent; null for a position beyond the last
    virtual Byte2Type GetSourcePadCount();
    virtual SOURCEPAD* GetSourcePad(Byte2Type b2Position);

    EObject(const EObject&) = delete;
    EObject& operator=(const EObject&) = delete;

    // Appends the pad, which the element then owns. Returns 0 when there is not enough memory or the element has 65,520
    // pads; the caller then still owns the pad.
    int AddSinkPad(SINKPAD* pPad);
    int AddSourcePad(SOURCEPAD* pPad);

    // Prints a trace line on standard output, "type - name: " and the text, if the debug level is at least iLevel and
    // there is a framework. The format contains the newline.
    void Message(int iLevel, const char* pchFormat, ...) FWLIB_PRINTF(3, 4);

    // Prints an error line on standard error, "ERROR: type - name: " and the text, and sets the framework's error flag.
    // Does nothing without a framework.
    void ErrorMessage(const char* pchFormat, ...) FWLIB_PRINTF(2, 3);

    // The same for a warning line, "WARNING: type - name: " and the text; the error flag is unchanged.
    void WarningMessage(const char* pchFormat, ...) FWLIB_PRINTF(2, 3);

    // Asks the host to end the runs, as if the data had ended. Does nothing without a framework.
    void RequestEnd();

    // Returns 1 after the host or an element requested the end of the runs, otherwise 0; 0 without a framework. An element
    // whose Run or DataArrived takes long calls it from time to time.
    int EndRequested();

    // Waits for that time and returns 1. If the end of the runs is requested, returns 0, at most 100 ms after the request.
    int Wait(Byte4Type b4Milliseconds);

    // Sends a QEOF through every connected source pad. All are tried; returns 1 when all deliveries
    // returned 1, and 0 otherwise or when there is not enough memory.
    int SendEOF();

    // The order of the fields is part of the binary interface.
    PROPERTIES m_cProperties;
    FRAMEWORK* m_pFramework; // lent; set by the creator of the element, null until then
    int m_iDebug;            // the debug level that Initialize found
    Byte2Type m_b2SinkPadCapacity;
    Byte2Type m_b2SinkPadCount;
    SINKPAD** m_ppSinkPads; // the element owns the array and the pads
    Byte2Type m_b2SourcePadCapacity;
    Byte2Type m_b2SourcePadCount;
    SOURCEPAD** m_ppSourcePads;
};

} // namespace VESK

#endif
