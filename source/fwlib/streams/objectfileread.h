// SPDX-License-Identifier: MIT
// The reader of EDeserialize, which detects incomplete objects.
#ifndef FWLIB_STREAMS_OBJECTFILEREAD_H
#define FWLIB_STREAMS_OBJECTFILEREAD_H

#include "fwlib/internal/hidden.h"
#include "fwlib/streams/fileinuse.h"
#include "fwlib/streams/objectlines.h"
#include "fwlib/streams/ownclass.h"
#include "fwlib/streams/sfileread.h"

#include <sys/types.h>

namespace FWLIB_HIDDEN VESK {

// If strict, returns lines only as long as they can form a complete object, and none after an invalid one. If a stream
// has only a part of an object yet, its lines so far are kept, and returned again after the next BeginObject.
class ObjectFileRead final : public SFileRead {
public:
    explicit ObjectFileRead(bool bStrict);
    ~ObjectFileRead() override;
    char* ReadLine() override;
    int OpenFile(char* pchFileName) override;
    int SetFile(char* pFile) override;

    void BeginObject();
    void LoseProperty(); // there was not enough memory for a property of the object
    void SkipObject();   // if strict: reads up to the object's end
    int EndObject();     // 1 if the object is complete or, if not strict, if it does not wait
    bool Waits() const { return m_bWaits; } // the rest of the object, or all of it, has not arrived yet

    // Returns once why no object was read; null after that, and at a normal end of the file. The result is lent.
    const char* ReasonOnce();
    const char* ShownName() const;
    // The offset of the object's first byte in the stream; not counted in a regular file unless strict.
    unsigned long long Offset() const { return m_ullObject; }

private:
    void Restart(bool bNamed);
    void EndLines();
    ssize_t ReadWhole();
    ssize_t ReadHeld();
    ssize_t HandOut(std::size_t uLength);

    const bool m_bStrict;
    const char* m_pFileSeen; // lent
    bool m_bNamed;           // it was opened as m_achFileName
    bool m_bMayWait;         // not a regular file: more data may arrive
    bool m_bWaits;
    bool m_bReported;
    int m_iReadError; // an error number, or 0
    ObjectLines m_cLines;
    unsigned long long m_ullRead; // bytes of the lines that were returned
    unsigned long long m_ullObject;
    char* m_pchLine; // owned: a line of any length
    std::size_t m_uLineSize;
    char* m_pchHeld; // owned: the lines of the current object, if more data may arrive
    std::size_t m_uHeld;
    std::size_t m_uHeldSize;
    std::size_t m_uTaken; // bytes of it that were returned
    FileInUse m_cOpen;
};

} // namespace VESK

#endif
