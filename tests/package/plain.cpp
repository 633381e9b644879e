// SPDX-License-Identifier: MIT
// A program in C++11 without run-time type information and exceptions, which passes streams and elements of its own
// wherever the library looks for those it made itself.
#include <fwlib/fwlib.h>
#include <fwlib/testing/harness.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace VESK;

namespace {

char* const File = Text("plain.txt");

void Claim(bool bHolds, const char* pchWhat) {
    if (!bHolds) {
        std::fprintf(stderr, "plain: %s\n", pchWhat);
        std::_Exit(1);
    }
}

struct Writer : SFileWrite {
    Byte4Type WriteData(char* pchData, Byte4Type b4Length) override {
        m_b4Written += b4Length;
        return SFileWrite::WriteData(pchData, b4Length);
    }

    Byte4Type m_b4Written = 0;
};

struct Reader : SFileRead {
    Reader() { SetFile(fwfopen(File, Text("r"))); }
};

// The lines of an object with more properties than a list takes.
struct LongObject : SRead {
    char* ReadLine() override {
        std::snprintf(m_achLine, sizeof m_achLine, m_iLine ? "%d=" : "m_b2PropertyCount=65530", m_iLine);
        ++m_iLine;
        return m_achLine;
    }

    char m_achLine[64];
    int m_iLine = 0;
};

struct Recorder : ESerialize {};
struct Replay : EDeserialize {};

struct Receiver : EObject {
    int DataArrived(QObject* pObject, Byte2Type) override {
        return pObject->m_cProperties.GetProperty(Key::Count, &m_iCount, 0, Section::Standard);
    }

    int m_iCount = 0;
};

struct Group : EPipeline {
    int Run() override { return 2; }
};

struct Kept : Receiver {
    Kept() { AtRunsEnd(*this, Ended); }
    static int Ended(EObject& cElement) { return ++static_cast<Kept&>(cElement).m_iCount; }
};

// Also in a program that is not position-independent.
void EndTheRuns() {
    EPipeline cPipeline;
    auto* const pGroup = new Group;
    auto* const pKept = new Kept;
    pGroup->AddElement(pKept);
    cPipeline.AddElement(pGroup);
    Claim(EPipeline::From(pGroup) == pGroup && !EPipeline::From(pKept), "a pipeline of the program is one");
    Claim(cPipeline.EndRuns() == 1 && pKept->m_iCount == 1, "an element within it is told of the end");
}

void SendBlock() {
    unsigned char abSent[] = {1, 2, 250};
    unsigned char abReceived[sizeof abSent] = {};
    {
        Writer cWriter;
        cWriter.SetFile(fwfopen(File, Text("w")));
        cWriter.SerializeBlock(Text("key"), abSent, sizeof abSent);
        Claim(cWriter.m_b4Written == 9, "a block passes through the stream");
    }
    Reader cReader;
    Claim(cReader.DeserializeBlock(abReceived, sizeof abReceived) &&
              std::equal(abSent, abSent + sizeof abSent, abReceived),
          "a block comes back");
}

void Record(int iStrict) {
    Recorder cRecorder;
    cRecorder.m_cProperties.SetProperty(Key::Filename, Text("/dev/null"), Section::Standard);
    cRecorder.m_cProperties.SetProperty(Key::Strict, iStrict, Section::Standard);
    Claim(cRecorder.Initialize() == 1, "a recorder begins");
    delete cRecorder.m_pWriter;
    cRecorder.m_pWriter = new Writer;
    cRecorder.m_pWriter->SetFile(fwfopen(File, Text("w")));
    QObject cObject;
    cObject.m_cProperties.SetProperty(Key::Count, 7, Section::Standard);
    Claim(cRecorder.DataArrived(&cObject, 0) == 1, "an object passes into the program's stream");
}

void ReplayWhatWasRecorded(FRAMEWORK& cFramework, int iStrict) {
    Replay cReplay;
    Receiver cReceiver;
    SINKPAD cPad(&cReceiver, 0);
    cReplay.m_pFramework = &cFramework;
    cReplay.m_cProperties.SetProperty(Key::Filename, File, Section::Standard);
    cReplay.m_cProperties.SetProperty(Key::Strict, iStrict, Section::Standard);
    Claim(cReplay.Initialize() == 1, "a replay begins");
    delete cReplay.m_pReader;
    cReplay.m_pReader = new Reader;
    cReplay.GetSourcePad(0)->m_pSinkPad = &cPad;
    Claim(cReplay.Run() == 1 && cReceiver.m_iCount == 7, "an object comes from the program's stream");
    Claim(cReplay.Run() == 0, "the stream ends");
}

void HoldAnElement() {
    Harness cTest(new EPassthrough);
    Claim(cTest.Initialize() == 1 && cTest.Push({{"Count", 7}}) == 1 && cTest.Values("Count") == "7",
          "an element between pads");
}

struct QReading : DataObject<QReading> {
    static constexpr const char* TypeName = "QReading";
    static constexpr const char* Meaning = "a reading";
};
constexpr const char* QReading::TypeName;

// Of the program: sends readings and the end of the stream, and asks for the end of the runs.
struct EReadings : Element<EReadings> {
    static constexpr const char* TypeName = "EReadings";
    static constexpr const char* Meaning = "sends readings";
    static void Declare(Declaration<EReadings>& cDeclare) {
        cDeclare.SourcePadsFrom("Outputs", 1, "source pads");
        cDeclare.Real("Celsius", &EReadings::m_dCelsius, 20, -50, 50, "degrees", "the value");
        cDeclare.Choice("Mode", &EReadings::m_cMode, "warm", "cold|warm", "kind");
    }
    int Run() override {
        QReading cReading;
        SetValue(cReading, "Celsius", m_dCelsius);
        SetValue(cReading, "Mode", m_cMode);
        WarningMessage("%s\n", Wait(1) ? "waited" : "ended");
        const int iSent = Push(&cReading) && SendEOF();
        RequestEnd();
        return iSent;
    }
    int RunsEnded() { return 1; }

    double m_dCelsius = 0;
    std::string m_cMode;
};
constexpr const char* EReadings::TypeName;

struct EKeep : Element<EKeep> {
    static constexpr const char* TypeName = "EKeep";
    static constexpr const char* Meaning = "keeps what it receives";
    static void Declare(Declaration<EKeep>& cDeclare) { cDeclare.SinkPads(1); }
    int DataArrived(QObject* pObject, Byte2Type) override {
        double dCelsius = 0;
        Claim(pObject->GetEOF() || (GetValue(*pObject, "Celsius", dCelsius) && dCelsius == 21.5), "a value");
        for (const Entry& cEntry : Entries(pObject->m_cProperties)) {
            m_cKept += std::string(cEntry.pchKey) + "=" + cEntry.pchValue + " ";
        }
        return 1;
    }

    std::string m_cKept;
};
constexpr const char* EKeep::TypeName;

void Hear(void* pText, const MessageLine& cLine) {
    if (cLine.b4Kind >= WarningMessageKind) {
        *static_cast<std::string*>(pText) += cLine.pchText;
    }
}

// A host with types of its own, which hears, and asks why something failed.
void Host() {
    std::string cHeard;
    ElementFactory<EReadings, EKeep, QReading> cFactory;
    FRAMEWORK cFramework;
    EPipeline cPipeline;
    cPipeline.m_pFramework = &cFramework;
    Claim(GetVersion() == FWLIB_VERSION && cFramework.SetMessageHandler(Hear, &cHeard) &&
              cFramework.AddFactory(&cFactory),
          "a handler and a factory");
    delete cFramework.CreateQObject(Text("QReading"));
    Claim(cPipeline.BuildPipeText("text",
                                  "element EReadings\nproperty Name from\nproperty Celsius 21.5\n"
                                  "element EKeep\nproperty Name to\nconnect from 0 to 0\nsink from") &&
              cPipeline.Initialize() && cPipeline.Run() && cFramework.EndRequested() && cPipeline.EndRuns(),
          "a pipeline of types of the program");
    Claim(static_cast<EKeep*>(cPipeline.m_ppElements[1])->m_cKept ==
              "QObjectType=QReading Celsius=21.5 Mode=warm QObjectType=QObject ",
          "what arrived");
    Claim(cHeard == "WARNING: EReadings - from: waited", "a warning");
    Claim(!cPipeline.BuildPipeText("text", "\nsink") && LastFailure()->b4Line == 2 &&
              LastFailure()->pchFile == std::string("text"),
          "a failure");
    const PluginDescription* const pDescription = DescribeTypes<EReadings, EKeep, QReading>();
    Claim(FindElementDescription(pDescription, "EReadings")->b4Originates && pDescription->ppObjects[0],
          "a description");
}

} // namespace

int main() {
    FRAMEWORK cFramework;
    Claim(cFramework.AddPlugin(Text("libfwlib.so")) == 1, "the library is found");
    SendBlock();
    EndTheRuns();
    Host();
    HoldAnElement();
    for (int iStrict = 0; iStrict < 2; ++iStrict) {
        Record(iStrict);
        ReplayWhatWasRecorded(cFramework, iStrict);
    }
    LongObject cLines;
    QObject cObject;
    cObject.Deserialize(&cLines);
    Claim(cObject.m_cProperties.m_b2PropertyCount == 65520, "a list takes what it can hold");
    // By reference, for which a C++ before inline variables needs the definition.
    Claim(std::max(SFileRead::FileNameSize, std::max(SFileWrite::FileNameSize, MFColorTable::FileNameSize)) <
              std::max(Byte4Type{1}, SFileRead::LineBufferSize),
          "a line is longer than a name");
}
