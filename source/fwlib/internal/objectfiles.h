// SPDX-License-Identifier: MIT
// The files behind the serializing elements: a writer that knows whether an object was stored whole, and a reader
// that knows whether one came whole.
#ifndef FWLIB_INTERNAL_OBJECTFILES_H
#define FWLIB_INTERNAL_OBJECTFILES_H

#include "fwlib/internal/objectlines.h"
#include "fwlib/properties/properties.h"
#include "fwlib/streams/sfileread.h"
#include "fwlib/streams/sfilewrite.h"

#pragma GCC visibility push(hidden)

namespace VESK {

// What the properties of a serializing element say of its file.
struct FileSettings {
    explicit FileSettings(PROPERTIES& cProperties);

    char* Name() { return m_bNamed ? m_achName : nullptr; } // null for a standard stream
    bool Strict() const { return m_uStrict != 0; }

private:
    char m_achName[NameTextSize];
    bool m_bNamed;
    unsigned int m_uStrict;
};

// After the first object that the file did not take nothing more is stored, until the host gives it another
// file: a recording has no gaps, and what came behind a part of an object would be read as more of it. Strict,
// an object is gathered and goes out in one write, and what a failed write left of it is taken out of the file
// again where the file allows it; one that there is no memory to gather is lost alone.
class ObjectFileWrite final : public SFileWrite {
public:
    ObjectFileWrite(char* pchFileName, bool bStrict); // a null name means standard output
    ~ObjectFileWrite() override;
    Byte4Type WriteData(char* pchData, Byte4Type b4Length) override;

    // Ends the object: whether it is stored. One that is not to be kept is dropped where that is still possible.
    int EndObject(bool bKeep);
    bool IsStrict() const { return m_bStrict; }
    const char* ShownName() const;
    int Reason() const { return m_iReason; } // the error number of the first loss
    bool ReportOnce();                       // true the first time it is asked for a file

    void BeginFile(); // another file, which has lost nothing yet
    bool Close();     // unless it is standard output: whether all that was written is kept
    void LoseBlock(); // the object at hand has a block that there was no memory to write

private:
    void NoticeFile(); // one that a host put in the field
    Byte4Type Pass(char* pchData, Byte4Type b4Length);
    Byte4Type Gather(const char* pchData, Byte4Type b4Length);
    void Lose(int iReason);
    bool Store();

    const bool m_bStrict;
    const char* m_pFileSeen; // lent
    bool m_bOwnFile;         // opened here, by its name
    bool m_bLost;            // the object at hand
    bool m_bEnded;           // the recording
    bool m_bReported;
    int m_iReason;
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
    int OpenFile(char* pchFileName) override;
    int SetFile(char* pFile) override;

    void BeginObject();
    void LoseProperty(); // the object at hand has lost a property to missing memory
    void SkipObject();   // strict: reads on to its end
    int EndObject();     // whether the object came whole; always when not strict

    // Why no object came, for a report, or null at a plain end of the file. Each reason is told once.
    const char* ReasonOnce();
    const char* ShownName() const;
    unsigned long long Offset() const {
        return m_ullObject;
    } // of the object's first byte; counted when strict

private:
    void Restart();

    const bool m_bStrict;
    bool m_bReported;
    int m_iReadError; // an error number, or 0
    ObjectLines m_cLines;
    unsigned long long m_ullRead; // bytes of the lines handed out
    unsigned long long m_ullObject;
    char* m_pchLine; // owned: a line of any length
    std::size_t m_uLineSize;
};

} // namespace VESK

#pragma GCC visibility pop

#endif
