// SPDX-License-Identifier: MIT
// The reader of EDeserialize: knows whether an object was read completely.
#ifndef FWLIB_STREAMS_OBJECTFILEREAD_H
#define FWLIB_STREAMS_OBJECTFILEREAD_H

#include "fwlib/internal/hidden.h"
#include "fwlib/streams/fileinuse.h"
#include "fwlib/streams/objectlines.h"
#include "fwlib/streams/ownclass.h"
#include "fwlib/streams/sfileread.h"

#include <sys/types.h>

namespace FWLIB_HIDDEN VESK {

// Strict: returns lines only while they form a complete object, and no more after a broken one. Lines that a
// stream has only in part yet are waited for: the object's lines so far are kept, and come again with its next beginning.
class ObjectFileRead final : public SFileRead {
public:
    explicit ObjectFileRead(bool bStrict);
    ~ObjectFileRead() override;
    char* ReadLine() override;
    int OpenFile(char* pchFileName) override;
    int SetFile(char* pFile) override;

    void BeginObject();
    void LoseProperty(); // the object at hand has lost a property to missing memory
    void SkipObject();   // strict: reads on to its end
    int EndObject();     // whether the object came whole; when not strict, unless it is waited for
    bool Waits() const { return m_bWaits; } // the rest of the object, or all of it, has not arrived yet

    // Why no object was read, for a report, or null at a normal end of the file. Each reason is returned once.
    const char* ReasonOnce();
    const char* ShownName() const;
    unsigned long long Offset() const {
        return m_ullObject;
    } // of the object's first byte; counted when strict

private:
    void Restart(bool bNamed);
    void EndLines();
    ssize_t ReadWhole();
    ssize_t ReadHeld();
    ssize_t HandOut(std::size_t uLength);

    const bool m_bStrict;
    const char* m_pFileSeen; // lent
    bool m_bNamed;           // it is the file of m_achFileName
    bool m_bMayWait;         // its data may be yet to arrive
    bool m_bWaits;
    bool m_bReported;
    int m_iReadError; // an error number, or 0
    ObjectLines m_cLines;
    unsigned long long m_ullRead; // bytes of the lines handed out
    unsigned long long m_ullObject;
    char* m_pchLine; // owned: a line of any length
    std::size_t m_uLineSize;
    char* m_pchHeld; // owned: the object at hand as it was read, of a stream that may wait
    std::size_t m_uHeld;
    std::size_t m_uHeldSize;
    std::size_t m_uTaken; // bytes of it that were handed out
    FileInUse m_cOpen;
};

} // namespace VESK

#endif
