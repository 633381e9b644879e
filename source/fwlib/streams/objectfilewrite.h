// SPDX-License-Identifier: MIT
// The writer of ESerialize: knows whether an object was stored completely.
#ifndef FWLIB_STREAMS_OBJECTFILEWRITE_H
#define FWLIB_STREAMS_OBJECTFILEWRITE_H

#include "fwlib/internal/hidden.h"
#include "fwlib/internal/hostuse.h"
#include "fwlib/streams/fileinuse.h"
#include "fwlib/streams/filesettings.h"
#include "fwlib/streams/ownclass.h"
#include "fwlib/streams/sfilewrite.h"

namespace FWLIB_HIDDEN VESK {

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
    unsigned long long m_ullLost; // objects, not reported yet

    long long
        m_llNext; // where the next object begins if no one else uses the named file; or -1: ask the system
    long long m_llStart;          // where the object at hand begins, or -1: its length tells
    unsigned long long m_ullDone; // bytes of it that the file took
    bool m_bUsed;                 // the host used the stream since it began
    bool m_bAtEnd;                // if so: it began at the end of the file

    char* m_pchObject; // owned: the object being gathered
    std::size_t m_uLength;
    std::size_t m_uCapacity;
    FileInUse m_cOpen;
};

} // namespace VESK

#endif
