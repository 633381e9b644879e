// SPDX-License-Identifier: MIT
// The files behind the serializing elements: a writer that knows whether an object was stored whole, and a reader
// that knows whether one came whole.
#ifndef FWLIB_STREAMS_OBJECTFILES_H
#define FWLIB_STREAMS_OBJECTFILES_H

#include "fwlib/internal/hidden.h"
#include "fwlib/internal/hostuse.h"
#include "fwlib/internal/textsizes.h"
#include "fwlib/properties/properties.h"
#include "fwlib/streams/fileinuse.h"
#include "fwlib/streams/objectlines.h"
#include "fwlib/streams/ownclass.h"
#include "fwlib/streams/sfileread.h"
#include "fwlib/streams/sfilewrite.h"

#include <sys/types.h>

namespace FWLIB_HIDDEN VESK {

// What the properties of a serializing element say of its file.
struct FileSettings {
    enum class Existing { Replace, Append, Refuse };

    explicit FileSettings(PROPERTIES& cProperties);

    // Whether they can be followed; else the element reports it.
    bool NameFits(EObject& cElement) const;
    bool ExistingKnown(EObject& cElement) const;
    char* Name() { return m_bNamed ? m_achName : nullptr; } // null for a standard stream
    bool Strict() const { return m_uStrict != 0; }
    bool Shared() const { return m_uShared != 0; }
    Existing WhatExists() const { return m_Existing; } // what becomes of a file that exists

private:
    char m_achName[FileNameSize];
    char m_achExisting[TypeTextSize];
    bool m_bNamed;
    bool m_bCut; // the name
    bool m_bKnown;
    Existing m_Existing;
    unsigned int m_uStrict;
    unsigned int m_uShared;
};

// An object is stored whole or not at all, where the file allows it: what a failed write left of one is taken out of
// the file again at once, and the next object is tried anew. Where a part stays, as in a pipe, nothing more is stored
// until the host gives the recorder another file: what came behind the part would be read as more of it. Strict, an
// object is gathered and goes out in one write.
class ObjectFileWrite final : public SFileWrite {
public:
    explicit ObjectFileWrite(bool bStrict); // without a file
    ~ObjectFileWrite() override;
    Byte4Type WriteData(char* pchData, Byte4Type b4Length) override;

    // Opens the file that the settings name, or standard output: 1, also when it cannot be opened, which is reported.
    // 0 with a report for a file that the settings refuse, which stays as it is.
    int Open(EObject& cElement, FileSettings& cSettings);

    static void BeforeHostUse(ObjectFileWrite& cWriter,
                              char* pFile); // for the ObjectAtHand around each object
    void BeginObject();

    // Ends the object: whether it is stored. One that is not to be kept is dropped where that is still possible.
    int EndObject(bool bKeep);
    bool IsStrict() const { return m_bStrict; }
    const char* ShownName() const;           // of the stream in use
    int Reason() const { return m_iReason; } // the error number of the last loss
    bool ClaimReport();                      // true the first time it is asked for a file or after TakeLost
    unsigned long long TakeLost();           // how many objects were lost since it was last asked

    void BeginFile(); // another file, which has lost nothing yet
    bool Close();     // unless it is standard output: whether all that was written is kept
    void LoseBlock(); // the object at hand has a block that there was no memory to write

private:
    void NoticeFile(); // one that a host put in the field
    int OpenNamed(EObject& cElement, const FileSettings& cSettings);
    int GoBehindObjects(EObject& cElement);
    void NotePlace();
    void EndHostUse();
    std::size_t WriteThrough(const char* pchData, std::size_t uLength);
    Byte4Type Put(const char* pchData, std::size_t uLength);
    Byte4Type Gather(const char* pchData, Byte4Type b4Length);
    void Lose(int iReason);
    void TakeBack();

    const bool m_bStrict;
    const char* m_pFileSeen; // lent
    bool m_bNamed;           // it is the file of m_achFileName
    bool m_bRegular;
    bool m_bAppends; // the system puts every write at the end
    bool m_bLost;    // the object at hand
    bool m_bEnded;   // the recording
    bool m_bReported;
    int m_iReason;
    unsigned long long m_ullLost; // objects, not told yet

    long long
        m_llNext; // where the next object begins if nobody else uses the named file; or -1: ask the system
    long long m_llStart;          // where the object at hand begins, or -1: its length tells
    unsigned long long m_ullDone; // bytes of it that the file took
    bool m_bUsed;                 // the host used the stream since it began
    bool m_bAtEnd;                // if so: it began at the end of the file

    char* m_pchObject; // owned: the object being gathered
    std::size_t m_uLength;
    std::size_t m_uCapacity;
    FileInUse m_cOpen;
};

// Strict: hands out lines only while they make a complete object, and stays at its end once one is broken. Lines that a
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

    // Why no object came, for a report, or null at a plain end of the file. Each reason is told once.
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
