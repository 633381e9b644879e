// SPDX-License-Identifier: MIT
// EObject: the base of every element.
//
// An element owns a property list and its pads, and reports through its framework. Its life: constructed (without
// pads), given a framework and properties, initialized (it creates its pads), connected, running, destroyed (with
// its pads). A concrete element sets "EObjectType" in its constructor, creates its pads in
// Initialize, does its work in DataArrived, and overrides Run when it originates data.
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

    virtual ~EObject(); // deletes the pads; source pads of other elements that point at them are left dangling

    // Reads the debug level: "Debug" of this element, otherwise of the framework, otherwise 0. Returns 1. Concrete
    // elements create their pads in their Initialize, and call this one first if they use the level.
    virtual int Initialize();

    // Receives an object through the sink pad of that index. Returns 1 when it was handled, 0 on failure.
    virtual int DataArrived(QObject* pObject, Byte2Type b2Index) = 0;

    // Originates data. The base reports "EObject::Run: Should not be called: %s.\n" on standard error and returns 0.
    virtual int Run();

    virtual Byte2Type GetSinkPadCount();
    virtual SINKPAD* GetSinkPad(Byte2Type b2Position); // lent; null for a position beyond the last
    virtual Byte2Type GetSourcePadCount();
    virtual SOURCEPAD* GetSourcePad(Byte2Type b2Position);

    EObject(const EObject&) = delete;
    EObject& operator=(const EObject&) = delete;

    // Appends the pad, which the element then owns. Returns 0 when memory is out or there are 65,520 pads; then
    // the caller still owns the pad.
    int AddSinkPad(SINKPAD* pPad);
    int AddSourcePad(SOURCEPAD* pPad);

    // A trace line on standard output, "type - name: " and the text, when the debug level is at least iLevel
    // and there is a framework. The format contains its own newline.
    void Message(int iLevel, const char* pchFormat, ...) FWLIB_PRINTF(3, 4);

    // An error line on standard error, "ERROR: type - name: " and the text; sets the framework's error flag.
    // Does nothing without a framework.
    void ErrorMessage(const char* pchFormat, ...) FWLIB_PRINTF(2, 3);

    // The fields in their order are part of the binary interface.
    PROPERTIES m_cProperties;
    FRAMEWORK* m_pFramework; // lent; set by the creator of the element, null until then
    int m_iDebug;            // the debug level that Initialize found
    Byte2Type m_b2SinkPadCapacity;
    Byte2Type m_b2SinkPadCount;
    SINKPAD** m_ppSinkPads; // owned, as are the pads
    Byte2Type m_b2SourcePadCapacity;
    Byte2Type m_b2SourcePadCount;
    SOURCEPAD** m_ppSourcePads;
};

} // namespace VESK

#endif
