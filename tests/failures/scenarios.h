// SPDX-License-Identifier: MIT
// What the library is used for, from end to end. Each use tells what it was promised.
#ifndef FWLIB_TESTS_FAILURES_SCENARIOS_H
#define FWLIB_TESTS_FAILURES_SCENARIOS_H

#include "failures/calls.h"
#include "support/support.h"

#include <memory>

using namespace VESK;

// What the calls of a scenario answered and brought about.
struct Told {
    std::string answers; // 1 and 0
    std::string result;
    std::string stored;            // the text of the objects, handed to a recorder, that were answered 1
    std::string printed, reported; // on standard output and standard error
    std::string broken;            // what holds whatever fails, and did not

    int Answer(int answer) {
        answers += answer ? '1' : '0';
        return answer;
    }
    void Must(bool holds, const char* what) { broken += holds ? "" : what; }
};

inline std::size_t Occurrences(const std::string& text, const std::string& sought) {
    std::size_t u = 0, at = 0;
    for (; (at = text.find(sought, at)) != std::string::npos; at += sought.size()) {
        ++u;
    }
    return u;
}

// A folder with the files that the scenarios read and write, and the objects, made before anything fails.
struct Place : Scratch {
    static constexpr std::size_t Few = 4, Most = 200; // the objects that are recorded

    struct QBlock : QObject { // a class of its own, which memory is needed to write
        int Serialize(SWrite* pWriter) override {
            unsigned char data[] = "a picture";
            return QObject::Serialize(pWriter) && pWriter->SerializeBlock(Text("Data"), data, sizeof data);
        }
    };

    std::string recording = Path("recording"), saved = Path("saved"), all;
    std::vector<std::string> texts;
    QObject objects[Most];
    QEOF end;
    QBlock block;
    PROPERTIES settings;
    const std::string settingsText =
        "\n[Standard]\na=1\nlong=" + std::string(300, 'l') + "\n\n[Camera]\nb=2\n";

    Place() {
        for (std::size_t n = 0; n < Most; ++n) { // one has a line that is composed on the heap
            const std::string count = std::to_string(n), data(n == 1 ? 1100 : n * 7 % 23, 'd');
            Set(objects[n].m_cProperties, "Count", count);
            Set(objects[n].m_cProperties, "Data", data);
            texts.push_back("QObject\nm_b2PropertyCount=3\nQObjectType=QObject\nCount=" + count +
                            "\nData=" + data + "\n");
            all += texts[n];
            if (n + 1 == Few) {
                Write("objects", all);
            }
        }
        Set(settings, "a", "1"), Set(settings, "b", "2", "Camera"),
            Set(settings, "long", std::string(300, 'l'));
        Write("c.lut", "0123456789");
        for (const std::string strict : {"0", "1"}) {
            Pipe("record" + strict, "ESerialize", recording, strict);
            Pipe("replay" + strict, "EDeserialize", Path("objects"), strict);
            Pipe("again" + strict, "EDeserialize", recording, strict);
        }
    }
    void Pipe(const std::string& name, const char* type, const std::string& file,
              const std::string& strict) const {
        Write(name, std::string("plugin libfwlib.so\nelement ") + type +
                        "\nproperty Name it\nproperty Filename " + file + "\nproperty Strict " + strict +
                        "\nproperty Passthrough 1\nsink it\n");
    }
};

// A pipeline from a file, whose first element feeds a probe when it is the only one.
struct Built {
    FRAMEWORK framework;
    EPipeline pipe;
    Probe probe;
    SINKPAD pad{&probe, 0};
    int started;

    Built(Told& told, const std::string& file) {
        pipe.m_pFramework = &framework;
        started = told.Answer(pipe.BuildPipe(Text(file.c_str()))) && told.Answer(pipe.Initialize());
        SOURCEPAD* const pPad = started ? pipe.m_ppElements[0]->GetSourcePad(0) : nullptr;
        if (pPad && pipe.m_iElementCount == 1) {
            pPad->m_pSinkPad = &pad;
        }
    }
};

template <const char* File>
void RunPipe(Told& told, Place&) {
    Built built(told, File);
    built.started&& told.Answer(built.pipe.Run());
}
inline constexpr char Counter[] = "examples/counter.pipe", Nested[] = "examples/nested.pipe",
                      Configured[] = "examples/config.pipe";

// An element without its type, its pads or its file refuses, and holds out when it is used all the same.
inline void Elements(Told& told, Place& place) {
    FACTORY::FWElementsFactory factory;
    for (char* const* type = FACTORY::FWElementsFactory::pchNames; *type; ++type) {
        const std::unique_ptr<EObject> element(factory.CreateElement(*type));
        if (told.Answer(element != nullptr)) {
            told.Answer(Set(element->m_cProperties, "Filename", place.Path("objects")));
            if (!told.Answer(element->Initialize())) {
                element->DataArrived(&place.objects[0], 0);
                element->Run();
            }
            told.result += std::to_string(element->GetSinkPadCount() + element->GetSourcePadCount());
        }
    }
}

// What cannot be added stays the caller's, and the table as it was.
inline void Tables(Told& told, Place&) {
    FRAMEWORK framework;
    EPipeline pipe;
    auto probe = std::make_unique<Probe>("a");
    auto sink = std::make_unique<SINKPAD>(probe.get(), Byte2Type{0});
    auto source = std::make_unique<SOURCEPAD>(probe.get());
    const int sinks = told.Answer(probe->AddSinkPad(sink.get()));
    told.Must(probe->GetSinkPad(0) == (sinks ? sink.release() : nullptr), "a sink pad");
    const int sources = told.Answer(probe->AddSourcePad(source.get()));
    told.Must(probe->GetSourcePad(0) == (sources ? source.release() : nullptr), "a source pad");
    told.Must(probe->m_b2SinkPadCapacity == sinks * 16 && probe->m_b2SourcePadCapacity == sources * 16,
              "pads");
    const int added = told.Answer(pipe.AddElement(probe.get()));
    told.Must(pipe.m_iElementCount == added && pipe.m_iElementCapacity == added * 16, "elements");
    const int connected = told.Answer(pipe.Connect(Text("a"), 1, Text("a"), 2));
    added ? probe.release() : nullptr;
    told.Must(pipe.m_b2ConnectionCount == connected, "connections");
    const int loaded = told.Answer(framework.AddPlugin(Text(FWLIB_TEST_PLUGINS "/good.so")));
    told.Must(framework.m_b2PluginCount == loaded && framework.m_b2PluginCapacity == loaded * 16, "plugins");
    told.Answer(framework.CreateObject(Text("Extra")) != nullptr);
}

inline void Properties(Told& told, Place&) {
    PROPERTIES list;
    for (int i = 0; i < 20; ++i) { // the arrays grow, and values are replaced by longer ones
        const std::string before = Entries(list), key = std::to_string(i % 18);
        const int set = told.Answer(Set(list, key.c_str(), std::string(static_cast<std::size_t>(i) * 2, 'v'),
                                        i % 2 ? "Standard" : "Camera"));
        told.Must(set || Entries(list) == before, "a list that refused an entry");
    }
    told.result = Entries(list);
}

// Copy goes on where an entry could not be set, and answers 1; a duplicate is whole or none.
inline void Copies(Told& told, Place& place) {
    PROPERTIES target;
    told.Must(target.Copy(&place.settings) == 1, "the answer of Copy");
    told.Must(now.lasting || target.m_b2PropertyCount >= 2, "more than one entry is missing");
    for (QObject* const object : {&place.objects[0], static_cast<QObject*>(&place.end)}) {
        const std::unique_ptr<QObject> copy(object->Duplicate());
        told.Must(copy || now.failed, "none");
        told.Must(!copy || (copy->GetEOF() == object->GetEOF() &&
                            Entries(copy->m_cProperties) == Entries(object->m_cProperties)),
                  "not whole");
    }
}

inline void ReadConfig(Told& told, Place&) {
    PROPERTIES list;
    told.Answer(list.ReadConfig(Text("examples/config.cfg"), Text("Standard")));
    told.result = Entries(list);
}

inline void SaveConfig(Told& told, Place& place) {
    told.Answer(place.settings.SaveConfig(Text(place.saved.c_str())));
    told.result = FileText(place.saved);
}

// Records the first objects; counts those that were answered 1 where another process sees it.
template <int Strict>
void Record(Told& told, Place& place, std::size_t objects = Place::Few,
            volatile std::size_t* count = nullptr) {
    {
        Built built(told, place.Path(Strict ? "record1" : "record0"));
        for (std::size_t n = 0; built.started && n < objects; ++n) {
            if (told.Answer(built.pipe.m_ppElements[0]->DataArrived(&place.objects[n], 0))) {
                told.stored += place.texts[n];
                count && (*count = *count + 1);
            }
        }
    }
    told.result = FileText(place.recording);
    told.Must(told.result == (Strict ? told.stored : place.all.substr(0, told.result.size())) ||
                  told.result.empty(),
              "a recording of what was not answered");
}

inline void RecordBlock(Told& told, Place& place) {
    Built built(told, place.Path("record1"));
    built.started&& told.Answer(built.pipe.m_ppElements[0]->DataArrived(&place.block, 0));
    told.result = FileText(place.recording);
}

template <int Strict>
void Replay(Told& told, Place& place, const char* pipe = Strict ? "replay1" : "replay0") {
    Built built(told, place.Path(pipe));
    while (built.started && told.Answer(built.pipe.Run())) {
    }
    told.result = built.probe.contents;
    told.Must(!Strict || Occurrences(told.result, "\n") == Occurrences(told.result, "Data="), "a part");
}

// Records and blocks, out and in again.
inline void Streams(Told& told, Place& place) {
    unsigned char data[240] = "zzzzzzzz", packed[240], text[240] = {};
    Byte2Type size;
    {
        SFileWrite writer(Text(place.saved.c_str()), 1);
        size = writer.Compress(packed, data, sizeof data, 0);
        writer.Serialize(Text(std::string(400, 'k').c_str()), 7);
        writer.SerializeBlock(Text("Data"), packed, size);
        told.Answer(writer.m_pFile && fwfprintf(writer.m_pFile, "%600d=8\n", 1) == 603);
    }
    SFileRead reader(Text(place.saved.c_str()));
    int before = 0, after = 0;
    told.Answer(reader.Deserialize(&before));
    told.Answer(reader.DeserializeBlock(packed, size));
    told.Answer(reader.Deserialize(&after));
    told.Answer(reader.Decompress(text, sizeof text, packed, size, 0) == sizeof text);
    told.result = std::to_string(before) + reinterpret_cast<char*>(text) + std::to_string(after);
}

inline void Colours(Told& told, Place& place) {
    MFColorTable table;
    unsigned int size = 0;
    unsigned char* pData = nullptr;
    told.Answer(table.SetFilename(Text(place.Path("c").c_str())));
    told.Answer(table.GetHeaderSize(&size));
    const int got = told.Answer(table.GetData(4, 6, 8, &pData));
    told.Must(got == (pData != nullptr), "a block that is none");
    told.result = std::to_string(size) + (got ? std::string(pData, pData + 8) : "");
    table.DeleteData(pData);
}

struct Scenario {
    const char* name;
    void (*act)(Told&, Place&);
    bool tells; // what is lost makes an answer 0 or is reported; else some losses are silent, as documented
};
inline const Scenario Scenarios[] = {
    {"Counter", RunPipe<Counter>, true},
    {"Nested", RunPipe<Nested>, true},
    {"Configured", RunPipe<Configured>, false},
    {"Elements", Elements, true},
    {"Tables", Tables, true},
    {"Properties", Properties, true},
    {"Copies", Copies, false},
    {"ReadConfig", ReadConfig, false},
    {"SaveConfig", SaveConfig, true},
    {"RecordDefault", [](Told& told, Place& place) { Record<0>(told, place); }, true},
    {"RecordStrict", [](Told& told, Place& place) { Record<1>(told, place); }, true},
    {"RecordBlock", RecordBlock, true},
    {"ReplayDefault", [](Told& told, Place& place) { Replay<0>(told, place); }, false},
    {"ReplayStrict", [](Told& told, Place& place) { Replay<1>(told, place); }, true},
    {"Streams", Streams, true},
    {"Colours", Colours, true},
};

#endif
