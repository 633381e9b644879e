// SPDX-License-Identifier: MIT
// The writer of ESerialize, which detects objects that were not stored completely.
#ifndef FWLIB_STREAMS_OBJECTFILEWRITE_H
#define FWLIB_STREAMS_OBJECTFILEWRITE_H

#include "fwlib/internal/hidden.h"
#include "fwlib/internal/hostuse.h"
#include "fwlib/streams/fileinuse.h"
#include "fwlib/streams/filesettings.h"
#include "fwlib/streams/ownclass.h"
#include "fwlib/streams/sfilewrite.h"

namespace FWLIB_HIDDEN VESK {

// An object is stored completely or not at all, if the file allows that: after a failed write, the stored part of the
// object is removed at once, and the next object is stored as usual. If the part cannot be removed, as in a pipe,
// nothing more is stored until the host sets another file: later data would be read as a continuation of the part. If
// strict, an object is collected in memory and written in one write.
class ObjectFileWrite final : public SFileWrite {
public:
    explicit ObjectFileWrite(bool bStrict); // without a file
    ~ObjectFileWrite() override;
    Byte4Type WriteData(char* pchData, Byte4Type b4Length) override;

    // Opens the file in the settings, or standard output. Returns 1, even if it cannot be opened, which is reported.
    // Returns 0, after a report, with the file unchanged, if the settings are invalid or forbid the file.
    int Open(EObject& cElement, FileSettings& cSettings);

    static void BeforeHostUse(ObjectFileWrite& cWriter, char* pFile); // a callback of ObjectAtHand
    void BeginObject();

    // Ends the object and returns whether it is stored. If bKeep is false, it is discarded if that is still possible.
    int EndObject(bool bKeep);
    bool IsStrict() const { return m_bStrict; }
    const char* ShownName() const;           // the stream's name in reports
    int Reason() const { return m_iReason; } // the error number of the last loss
    bool ClaimReport();            // true at the first call for a file, and at the first after TakeLost
    unsigned long long TakeLost(); // the number of objects lost since the last call

    void BeginFile(); // resets the state for another file
    bool Close();     // closes all but standard output; false if data was lost
    void LoseBlock(); // there was not enough memory for a block of the object

private:
    void NoticeFile(); // detects a file that a host has set
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
    bool m_bNamed;           // it was opened as m_achFileName
    bool m_bRegular;
    bool m_bAppends; // every write goes to the end (O_APPEND)
    bool m_bLost;    // the current object is not stored
    bool m_bEnded;   // nothing more is stored
    bool m_bReported;
    int m_iReason;
    unsigned long long m_ullLost; // lost objects that are not reported yet

    long long m_llNext;           // offset of the next object if nobody else uses the file; -1: unknown
    long long m_llStart;          // offset of the current object; -1: unknown
    unsigned long long m_ullDone; // bytes of it that were written
    bool m_bUsed;                 // the host used the stream within the object
    bool m_bAtEnd;                // if so: the object began at the end of the file

    char* m_pchObject; // owned: the object being collected
    std::size_t m_uLength;
    std::size_t m_uCapacity;
    FileInUse m_cOpen;
};

} // namespace VESK

#endif
