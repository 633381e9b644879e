// SPDX-License-Identifier: MIT
// Every allocation of every stream, recording and colour table fails once.
#include "support/capture.h"
#include "support/failing.h"

#include <memory>

using namespace VESK;

namespace {

TEST(Alloc, WritersNeedNoMemoryToBeWhole) {
    const Scratch scratch;
    const std::string path = scratch.Path("saved"), key(400, 'k'),
                      longLine = "long=" + std::string(5000, 'x') + "\n";
    FailEach(2, [&] {
        PROPERTIES list;
        Set(list, "a", "1");
        Set(list, "long", std::string(5000, 'x'));
        MemoryWrite writer;
        EXPECT_EQ(Armed([&] {
                      return list.SaveConfig(Text(path.c_str())) + list.Serialize(&writer) +
                             writer.Serialize(Text(key.c_str()), 7);
                  }),
                  3);
        EXPECT_EQ(writer.all, "m_b2PropertyCount=2\na=1\n" + longLine + key + "=7\n");
        EXPECT_EQ(FileText(path), "\n[Standard]\na=1\n" + longLine);
    });
    FailEach(2, [&] {
        char* const file = fwfopen(Text(path.c_str()), Text("w"));
        const int written = Armed([&] { return fwfprintf(file, "%600d", 1); });
        fwfclose(file);
        EXPECT_EQ(written, bFailed ? -1 : 600);
        EXPECT_EQ(FileText(path).size(), bFailed ? 0u : 600u);
    });
}

// A strict recorder that has no memory for an object stores the next one and tells so; another needs none.
TEST(Alloc, RecordingStoresWholeObjectsOrTells) {
    const Scratch scratch;
    const std::string path = scratch.Path("objects");
    for (const char* strict : {"0", "1"}) {
        FailEach(1, [&] {
            FRAMEWORK framework;
            ESerialize element;
            element.m_pFramework = &framework;
            Set(element.m_cProperties, "Filename", path);
            Set(element.m_cProperties, "Strict", strict);
            element.Initialize();
            QObject object;
            Set(object.m_cProperties, "long", std::string(5000, 'x'));
            const std::string told = Told([&] {
                const int answer = Armed([&] { return element.DataArrived(&object, 0); });
                return answer + 2 * element.DataArrived(&object, 0);
            });
            const std::string whole =
                "QObject\nm_b2PropertyCount=2\nQObjectType=QObject\nlong=" + std::string(5000, 'x') + "\n";
            EXPECT_TRUE(told == "3 " || (bFailed && *strict == '1' && told[0] == '2')) << told;
            EXPECT_EQ(FileText(path), told[0] == '3' ? whole + whole : whole);
            EXPECT_EQ(framework.m_bError, told[0] == '3' ? 0 : 1);
        });
    }
}

// What was written with memory is read with little of it, strictly: an object arrives whole or not at all.
TEST(Alloc, ReplayingSendsWhatItCould) {
    const Scratch scratch;
    const std::string path =
        scratch.Write("objects", "QObject\nm_b2PropertyCount=2\nQObjectType=QObject\nCount=7\n");
    FailEach(2, [&] {
        OwnFramework framework;
        EDeserialize element;
        element.m_pFramework = &framework;
        Set(element.m_cProperties, "Filename", path);
        Set(element.m_cProperties, "Strict", "1");
        EXPECT_EQ(element.Initialize(), 1);
        Probe probe;
        probe.AddSinkPad(new SINKPAD(&probe, 0));
        element.GetSourcePad(0)->m_pSinkPad = probe.GetSinkPad(0);
        Told([&] { return Armed([&] { return element.Run(); }); });
        const std::string whole = "Standard.QObjectType=QObject Standard.Count=7\n";
        EXPECT_TRUE(probe.contents == whole || bFailed);
        EXPECT_TRUE(probe.contents == whole || probe.contents.empty()) << probe.contents;
    });
}

TEST(Alloc, BlocksAndColoursAreThereOrNot) {
    const Scratch scratch;
    scratch.Write("c.lut", "0123456789");
    FailEach(1, [&] {
        MFColorTable table;
        table.SetFilename(Text(scratch.Path("c").c_str()));
        unsigned char untouched, *data = &untouched;
        const int answer = Armed([&] { return table.GetData(4, 6, 8, &data); });
        EXPECT_EQ(answer, !bFailed);
        EXPECT_EQ(data == nullptr, bFailed);
        table.DeleteData(data);
    });
    FailEach(1, [] {
        unsigned char data[] = "ABC";
        MemoryWrite writer;
        EXPECT_EQ(Armed([&] { return writer.SerializeBlock(Text("k"), data, 3); }), 1);
        EXPECT_EQ(writer.all, bFailed ? "k=\n" : "k=!230\n");
    });
    FailEach(1, [&] {
        const std::unique_ptr<SFileRead> reader(
            Armed([&] { return new SFileRead(Text(scratch.Path("c.lut").c_str())); }));
        const char* const line = reader->ReadLine();
        EXPECT_STREQ(line ? line : "none", bFailed ? "none" : "0123456789");
    });
}

} // namespace
