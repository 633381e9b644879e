// SPDX-License-Identifier: MIT
// ESerialize on streams that a host gives it, and with classes that use its stream.
#include "support/recorder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

// Writes its length into its first line when it knows it, as it may with a stream of its own.
struct QPatched : QObject {
    int Serialize(SWrite* pWriter) override {
        char* const file = static_cast<SFileWrite*>(pWriter)->m_pFile;
        const Recorder other("1"); // whose writer ends within this object
        const auto start = static_cast<int>(fwftell(file));
        pWriter->WriteData(Text("Length=00\n"), 10);
        QObject::Serialize(pWriter);
        const auto end = static_cast<int>(fwftell(file));
        fwfseek(file, start + 7, 0);
        pWriter->WriteData(Text(std::to_string(end - start).c_str()), 2);
        return fwfseek(file, end, 0);
    }
};

TEST(Recording, AClassMayPatchWhatItWrote) {
    const Scratch scratch;
    for (const char* const strict : BothWays) {
        QPatched patched;
        const std::string path = scratch.Path("objects"), text = "Length=58\n" + Object;
        Recorder recorder(strict, path);
        const auto arrive = [&] { return recorder.element.DataArrived(&patched, 0); };
        EXPECT_EQ(arrive(), 1);
        EXPECT_EQ(recorder.Arrive(), "1 ");
        {
            const SizeLimit limit(text.size() * 5 / 2); // the second patched one does not fit
            EXPECT_EQ(Told(arrive)[0], *strict == '1' ? '0' : '1');
        }
        EXPECT_EQ(FileText(path), text + Object);
        EXPECT_EQ(Told(arrive), "1 ! ERROR: ESerialize - tap: Objects lost: 1\n");
        fwfseek(recorder.element.m_pWriter->m_pFile, 7, 0); // and a host what is there
        fwfputs(Text("85"), recorder.element.m_pWriter->m_pFile);
        fwfseek(recorder.element.m_pWriter->m_pFile, 0, 2);
        EXPECT_EQ(recorder.Arrive(), "1 ");
        EXPECT_EQ(FileText(path), "Length=85\n" + Object + Object + text + Object);
    }
}

// Writes to the file by other ways than the recorder's too.
struct QPrinting : QObject {
    int grown = 0;
    off_t early = 0;
    int Serialize(SWrite* pWriter) override {
        SFileWrite own;
        own.SetFile(static_cast<SFileWrite*>(pWriter)->m_pFile);
        QObject::Serialize(pWriter);
        fwfputs(Text(""), reinterpret_cast<char*>(stderr)); // which is none of the recorder's
        early = lseek(fileno(reinterpret_cast<std::FILE*>(own.m_pFile)), 0, SEEK_CUR);
        if (const int file =
                fwflush(own.m_pFile) == 0 ? fileno(reinterpret_cast<std::FILE*>(own.m_pFile)) : -1;
            file >= 0) { // and then what was written is there
            grown += lseek(file, 0, SEEK_END) >= static_cast<off_t>(Object.size());
        }
        own.Serialize(Text("Own"), 1);
        pWriter->Serialize(Text("Last"), 2);
        fwfputs(Text("Printed=3\n"), own.m_pFile);
        own.SetFile(nullptr);
        return 1;
    }
};

TEST(Recording, WhatAClassPrintsIsStoredOrLostWithItsObject) {
    const Scratch scratch;
    const std::string path = scratch.Path("objects"), text = Object + "Own=1\nLast=2\nPrinted=3\n",
                      front = text + "host\n"; // who flushes it
    for (const char* const strict : BothWays) {
        for (std::size_t room = 0; room < text.size(); ++room) {
            QPrinting printing;
            Recorder recorder(strict, path);
            const auto arrive = [&] { return recorder.element.DataArrived(&printing, 0); };
            EXPECT_EQ(Told(arrive), "1 ");
            EXPECT_EQ(printing.grown, 1);
            EXPECT_EQ(printing.early, *strict == '1' ? 0 : static_cast<off_t>(Object.size()));
            fwfputs(Text("host\n"), recorder.element.m_pWriter->m_pFile);
            fwflush(recorder.element.m_pWriter->m_pFile);
            {
                const SizeLimit limit(front.size() + room);
                EXPECT_EQ(Told(arrive), (*strict == '1' ? "0 " : "1 ") + Lost(path, "File too large"));
            }
            EXPECT_EQ(FileText(path), front) << room;
            EXPECT_EQ(Told(arrive), "1 ! ERROR: ESerialize - tap: Objects lost: 1\n");
            EXPECT_EQ(FileText(path), front + text) << room;
        }
    }
}

// Begins the recording anew, or ends it, within an object.
struct QExchanging : QObject {
    ESerialize* element;
    bool anew;
    int Serialize(SWrite* pWriter) override {
        pWriter->WriteData(Text("part\n"), 5);
        delete element->m_pWriter;
        element->m_pWriter = nullptr;
        return !anew || element->Initialize();
    }
};

TEST(Recording, AnObjectMayExchangeTheWriter) {
    const Scratch scratch;
    for (const char* const strict : BothWays) {
        Recorder recorder(strict, scratch.Path("objects"));
        QExchanging exchanging;
        exchanging.element = &recorder.element;
        for (const bool anew : {true, false}) {
            exchanging.anew = anew;
            EXPECT_EQ(
                Told([&] { return recorder.element.DataArrived(&exchanging, 3); }),
                std::string(*strict == '1' ? "0 " : "1 ") +
                    "! ERROR: ESerialize - tap: DataArrived(3): m_pWriter was exchanged within an object: "
                    "QObjectType = QObject\n");
        }
        EXPECT_EQ(recorder.element.m_pWriter, nullptr);
    }
}

// A stream that others use too is written at its position, wherever that is, and tells it afterwards.
TEST(Recording, AnAdoptedStreamKeepsItsPosition) {
    const Scratch scratch;
    for (const char* const strict : BothWays) {
        const std::string path = scratch.Write("objects", "first line\n" + std::string(5000, 'f'));
        std::FILE* const file = std::fopen(path.c_str(), "r+");
        char line[32]; // with which the stream reads more ahead
        ASSERT_NE(std::fgets(line, sizeof line, file), nullptr);
        std::fseek(file, 7, SEEK_SET);
        Recorder recorder(strict, file);
        EXPECT_EQ(recorder.Arrive(), "1 ");
        EXPECT_EQ(std::ftell(file), static_cast<long>(7 + Object.size()));
        std::fseek(file, 0, SEEK_CUR);
        std::fputs("trailer", file);
        std::fflush(file);
        const std::string whole = "first l" + Object + "trailer";
        EXPECT_EQ(FileText(path).substr(0, whole.size()), whole);
    }
}

struct QInterrupted : QObject {
    int Serialize(SWrite* pWriter) override {
        QObject::Serialize(pWriter);
        const int file = fileno(reinterpret_cast<std::FILE*>(static_cast<SFileWrite*>(pWriter)->m_pFile));
        return write(file, "host\n", 5) == 5 && QObject::Serialize(pWriter);
    }
};

TEST(Recording, WhatAHostWritesIntoTheRecordersFileKeepsItsPlace) {
    const Scratch scratch;
    for (const char* const strict : BothWays) {
        {
            Recorder recorder(strict, scratch.Path("objects"));
            auto* const file = reinterpret_cast<std::FILE*>(recorder.element.m_pWriter->m_pFile);
            std::fputs("what stdio drops when a flush fails", file);
            {
                const SizeLimit limit(0);
                EXPECT_EQ(recorder.Arrive(),
                          (*strict == '1' ? "0 " : "1 ") + Lost(scratch.Path("objects"), "File too large"));
            }
            std::fputs("before ", file);
            EXPECT_EQ(recorder.Arrive(), "1 ! ERROR: ESerialize - tap: Objects lost: 1\n");
        }
        EXPECT_EQ(FileText(scratch.Path("objects")), "before " + Object);
    }
    // Past stdio and within an object that does not fit: nothing of the host's is removed, and nothing more is stored.
    Recorder recorder("0", scratch.Path("objects"));
    EXPECT_EQ(recorder.Arrive(), "1 ");
    const SizeLimit limit(5 * Object.size() / 2);
    QInterrupted interrupted;
    EXPECT_NE(Told([&] { return recorder.element.DataArrived(&interrupted, 0); }).find("Unable to store"),
              std::string::npos);
    const std::string all = Object + Object + "host\n" + Object;
    EXPECT_EQ(FileText(scratch.Path("objects")), all.substr(0, limit.size));
    EXPECT_EQ(recorder.Arrive(), "1 ");
    EXPECT_EQ(FileText(scratch.Path("objects")), all.substr(0, limit.size));
}

TEST(Recording, AStreamThatIsNoFileOfTheSystemsTakesWhatFits) {
    std::string memory(Object.size() * 3 / 2, '-');
    Recorder recorder("1", fmemopen(memory.data(), memory.size(), "w"));
    std::setbuf(reinterpret_cast<std::FILE*>(recorder.element.m_pWriter->m_pFile), nullptr);
    EXPECT_EQ(recorder.Arrive(), "1 ");
    EXPECT_EQ(memory.substr(0, Object.size()), Object);
    EXPECT_EQ(recorder.Arrive(),
              "0 " + Lost("a stream of the host", "Input/output error")); // no other reason
}

TEST(Recording, RecordersHaveTheirStreamsFromInitializeOrFromTheHost) {
    ESerialize element;
    Recorder recorder("1");
    element.m_pFramework = &recorder.framework;
    EXPECT_EQ(Told([&] { return element.DataArrived(&recorder.object, 3); }),
              "0 ! ERROR: ESerialize - [No Element Name]: DataArrived(3): not initialized\n");
    delete recorder.element.m_pWriter;
    recorder.element.m_pWriter = new SFileWrite; // without a file
    EXPECT_EQ(recorder.Arrive(), "1 ");
    recorder.element.m_b2Passthrough = 1;
    EXPECT_EQ(recorder.Arrive(), "0 ! ERROR: ESerialize - tap: DataArrived(3): GetSourcePad(0) failed.\n");
}

} // namespace
