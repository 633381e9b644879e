// SPDX-License-Identifier: MIT
// The files behind the serializing elements: a writer that knows whether an object was stored whole, and a reader
// that knows whether one came whole.
#ifndef FWLIB_INTERNAL_OBJECTFILES_H
#define FWLIB_INTERNAL_OBJECTFILES_H

#include "fwlib/internal/objectlines.h"
#include "fwlib/streams/sfileread.h"
#include "fwlib/streams/sfilewrite.h"

#pragma GCC visibility push(hidden)

namespace VESK {

// Strict: an object is gathered and goes out in one write; one that could not be stored is taken out of the file
// again where the file allows it. Not strict: every line is written at once, and after the first that fails nothing
// more is, because lines behind a gap would make wrong objects.
class ObjectFileWrite final : public SFileWrite {
public:
    ObjectFileWrite(char* pchFileName, bool bStrict); // a null name means standard output
    ~ObjectFileWrite() override;
    Byte4Type WriteData(char* pchData, Byte4Type b4Length) override;

    int EndObject(); // whether all that was written since the last call is stored
    const char* ShownName() const;
    bool IsStrict() const { return m_bStrict; }

    bool m_bReported; // the loss of an object

private:
    Byte4Type Gather(const char* pchData, Byte4Type b4Length);
    int Store(); // writes what was gathered

    const bool m_bStrict;
    bool m_bLost;      // of the object at hand; when not strict, of every one from here on
    bool m_bBroken;    // a part of an object stands at the end of the file and cannot be taken out
    char* m_pchObject; // owned: the object being gathered
    std::size_t m_uLength;
    std::size_t m_uCapacity;
};

// Strict: hands out lines only while they make a whole object, and stays at its end once one is broken.
class ObjectFileRead final : public SFileRead {
public:
    explicit ObjectFileRead(bool bStrict);
    ~ObjectFileRead() override;
    char* ReadLine() override;

    void BeginObject();
    int EndObject();     // whether the object came whole; always when not strict
    void LoseProperty(); // a line that came could not be kept
    const char* ShownName() const;
    bool Broken() const { return m_cLines.Now() == ObjectLines::Broken; }
    const char* Reason() const { return m_cLines.Reason(); }
    unsigned long long Offset() const { return m_ullObject; } // of the object's first byte

    bool m_bReported; // that an object was broken

private:
    const bool m_bStrict;
    ObjectLines m_cLines;
    unsigned long long m_ullRead; // bytes of the lines handed out
    unsigned long long m_ullObject;
    char* m_pchLine; // owned: a line of any length
    std::size_t m_uLineSize;
};

} // namespace VESK

#pragma GCC visibility pop

#endif
