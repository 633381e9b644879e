// SPDX-License-Identifier: MIT
// QObject: a data object, whose content is a property list. QEOF: the object that ends a stream.
//
// Whoever creates an object owns it. A class of its own names itself in "QObjectType", by which a reader
// creates it again through the framework, and overrides Duplicate. A QEOF is told by GetEOF, never by its
// type name, which is "QObject" too.
#ifndef FWLIB_ELEMENTS_QOBJECT_H
#define FWLIB_ELEMENTS_QOBJECT_H

#include "fwlib/export.h"
#include "fwlib/properties/properties.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT QObject {
public:
    QObject(); // holds "QObjectType" = "QObject"
    QObject(const QObject&) = delete;
    QObject& operator=(const QObject&) = delete;

    // The order of the virtual operations is part of the binary interface.

    virtual ~QObject();

    // A new object with the same properties, owned by the caller; null when memory is out. The base makes a
    // plain QObject, whatever class this is.
    virtual QObject* Duplicate();

    // The object in a stream: a line with the type name (at most 31 characters), then the property list.
    // Both return 1. Deserialize reads the list only, because whoever creates the object has read the type
    // line; a stream that breaks off shows in the properties that arrived.
    virtual int Serialize(SWrite* pWriter);
    virtual int Deserialize(SRead* pReader);

    virtual int Write(SWrite* pWriter); // writes nothing and returns 1
    virtual int GetEOF();               // 0

    int Copy(QObject* pObject); // sets the other's properties here; always 1

    // The fields in their order are part of the binary interface.
    PROPERTIES m_cProperties;
    Byte2Type m_b2Reserved; // 0; neither copied nor written
};

class FWLIB_EXPORT QEOF : public QObject {
public:
    QEOF();
    ~QEOF() override;
    QObject* Duplicate() override; // a QEOF
    int GetEOF() override;         // 1
};

} // namespace VESK

#endif
