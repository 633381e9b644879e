// SPDX-License-Identifier: MIT
// What the library is used for, from end to end. Each use tells what it was promised.
#ifndef FWLIB_TESTS_FAILURES_SCENARIOS_H
#define FWLIB_TESTS_FAILURES_SCENARIOS_H

#include "failures/account.h"
#include "failures/hosts.h"

#include <algorithm>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <unistd.h>

struct Built { // from a pipe file
    FRAMEWORK framework;
    EPipeline pipe;
    bool started;

    Built(Account& told, const char* file) {
        pipe.m_pFramework = &framework;
        started = told.Answer(pipe.BuildPipe(Text(file))) && told.Answer(pipe.Initialize());
    }
};

inline void RunPipe(Account& told, const char* file, int runs = 1) {
    Built built(told, file);
    while (built.started && runs-- > 0 && told.Answer(built.pipe.Run())) {
    }
}

// A replay that another recorder takes. Strict, it sends no object without all of its four lines.
template <int Strict>
void Replay(Account& told, Place&) {
    RunPipe(told, Strict ? "given/replay1.pipe" : "given/replay0.pipe", 9);
    const std::string sent = FileText(Written);
    told.Must(!Strict || std::count(sent.begin(), sent.end(), '=') % 4 == 0, "an object lost a line");
}

// A strict replay of a stream, as long as there is more.
inline void Play(Account& told, std::FILE* file, const std::function<bool()>& more) {
    FRAMEWORK framework;
    EDeserialize element;
    Probe sink;
    element.m_pFramework = &framework;
    Set(element.m_cProperties, "Strict", "1");
    auto pad = std::make_unique<SINKPAD>(&sink, Byte2Type{0});
    if (!told.Answer(framework.AddPlugin(Text("libfwlib.so"))) || !told.Answer(element.Initialize()) ||
        !told.Answer(sink.AddSinkPad(pad.get()))) {
        std::fclose(file);
        return;
    }
    pad.release();
    element.GetSourcePad(0)->m_pSinkPad = sink.GetSinkPad(0);
    element.m_pReader->SetFile(reinterpret_cast<char*>(file));
    do {
        while (told.Answer(element.Run())) {
        }
    } while (more());
    told.result += sink.contents;
}

// From memory and from a pipe, whose lines are held until their object has come.
inline void ReplayHeld(Account& told, Place&) {
    std::string text = "QObject\nm_b2PropertyCount=1\na=b\nQObject\nm_b2PropertyCount=0\n";
    Play(told, fmemopen(text.data(), text.size(), "r"), [] { return false; });
    int ends[2];
    told.Must(pipe2(ends, O_NONBLOCK) == 0, "no pipe");
    const std::string part(300, 'v');
    std::vector<std::string> parts = {part + "\n", part, "QObject\nm_b2PropertyCount=1\na=" + part};
    Play(told, fdopen(ends[0], "r"), [&] {
        const bool any = !parts.empty();
        if (any) {
            told.Must(dprintf(ends[1], "%s", parts.back().c_str()) > 0,
                      "the pipe is full"); // a write may fail
            parts.pop_back();
        }
        return any;
    });
    close(ends[1]);
}

// An element without its type, its pads or its file refuses, and holds out when it is used all the same.
inline void Elements(Account& told, Place& place) {
    FACTORY::FWElementsFactory factory;
    for (char* const* type = FACTORY::FWElementsFactory::pchNames; *type; ++type) {
        const std::unique_ptr<EObject> element(factory.CreateElement(*type));
        if (told.Answer(element != nullptr)) {
            told.Answer(Set(element->m_cProperties, "Filename", "given/objects"));
            if (!told.Answer(element->Initialize())) {
                element->DataArrived(&place.objects[0], 0);
                element->Run();
            }
            told.result += std::to_string(element->GetSinkPadCount() + element->GetSourcePadCount());
        }
    }
}

// What cannot be added stays the caller's, and the table as it was.
inline void Tables(Account& told, Place&) {
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

// Enough elements for an index of their names, which a walk replaces where there is no memory for it.
inline void Names(Account& told, Place& place) {
    EPipeline pipe;
    for (Probe& probe : place.probes) {
        told.Answer(pipe.AddElement(&probe));
    }
    for (int i = 0; i < 3 && pipe.m_iElementCount == 300; ++i) {
        Byte2Type index = 0;
        told.Answer(pipe.FindElement(Text("e299"), &index) && index == 299);
    }
    pipe.m_iElementCount = 0; // they are lent
}

// Each that wants to know is told once, also where there is no memory for the order.
inline void Ends(Account& told, Place&) {
    static std::string order;
    struct Link : EObject {
        int DataArrived(QObject*, Byte2Type) override { return 1; }
        Byte2Type GetSourcePadCount() override { return 1; }
        SOURCEPAD* GetSourcePad(Byte2Type) override { return &source; }
        static int Note(EObject& element) { return order += static_cast<Link&>(element).name, 1; }
        SINKPAD sink{this, 0};
        SOURCEPAD source{this};
        char name = 0;
    } links[90];
    EPipeline pipe;
    std::string wanted;
    for (Link& link : links) { // each sends to the one before
        link.name = static_cast<char>('!' + (&link - links));
        link.source.m_pSinkPad = &link == links ? nullptr : &(&link - 1)->sink;
        const int added = told.Answer(pipe.AddElement(&link));
        if (link.name % 3 > 0 && told.Answer(AtRunsEnd(link, Link::Note)) && added) {
            wanted += link.name;
        }
    }
    order.clear();
    if (told.Answer(pipe.EndRuns())) {
        std::reverse(wanted.begin(), wanted.end());
    }
    told.Must(order == wanted, "not told once and in order");
    told.result = order;
    pipe.m_iElementCount = 0; // they are lent
}

inline void Properties(Account& told, Place&) {
    PROPERTIES list;
    for (int i = 0; i < 20; ++i) { // the arrays grow, and values are replaced by longer ones
        const std::string before = EntriesOf(list), key = std::to_string(i % 18);
        const int set = told.Answer(Set(list, key.c_str(), std::string(static_cast<std::size_t>(i) * 2, 'v'),
                                        i % 2 ? "Standard" : "Camera"));
        told.Must(set || EntriesOf(list) == before, "a list that refused an entry");
    }
    told.result = EntriesOf(list);
}

// Copy goes on where an entry could not be set, and returns 1; a duplicate is whole or none.
inline void Copies(Account& told, Place& place) {
    PROPERTIES target;
    told.Must(target.Copy(&place.settings) == 1, "the answer of Copy");
    told.Must(now.lasting || target.m_b2PropertyCount >= 2, "more than one entry is missing");
    QObject* const copied[] = {&place.objects[0], &place.end};
    for (QObject* const object : copied) {
        const std::unique_ptr<QObject> copy(object->Duplicate());
        told.Must(copy ? copy->GetEOF() == object->GetEOF() &&
                             EntriesOf(copy->m_cProperties) == EntriesOf(object->m_cProperties)
                       : now.failed != nullptr,
                  "neither whole nor none");
    }
}

inline void SaveConfig(Account& told, Place& place) {
    told.Answer(place.saved.SaveConfig(Text(Written)));
}

// Behind a front, that another has written, some objects.
template <int Strict>
void Record(Account& told, Place& place) {
    std::string stored = place.front;
    {
        Built built(told, Strict ? "given/record1.pipe" : "given/record0.pipe");
        auto* const pRecorder =
            built.started ? static_cast<ESerialize*>(built.pipe.m_ppElements[0]) : nullptr;
        if (!place.front.empty()) {
            fwfputs(stored.data(), pRecorder->m_pWriter->m_pFile);
        }
        for (std::size_t n = place.first; pRecorder && n < place.behind; ++n) {
            now.room = n == place.back ? SIZE_MAX : now.room;
            if (told.Answer(pRecorder->DataArrived(&place.objects[n], 0))) {
                stored += place.texts[n];
                ++now.stored;
            }
        }
    }
    const std::string file = FileText(Written);
    std::size_t at = place.front.size();
    for (const std::string& text : place.texts) { // each is whole or lost; only the last may be a part
        at += file.compare(at, text.size(), text) == 0 ? text.size() : 0;
    }
    const std::string rest = file.substr(std::min(at, file.size()));
    const bool bPart = std::any_of(place.texts.begin(), place.texts.end(), [&](const std::string& text) {
        return text.compare(0, rest.size(), rest) == 0;
    });
    told.Must(file.empty() || (Strict ? file == stored : bPart), "a recording of what was not stored");
}

// Records and blocks, out and in again.
inline void Streams(Account& told, Place&) {
    unsigned char data[240] = "zzzzzzzz", packed[240], text[240] = {};
    Byte2Type size;
    {
        SFileWrite writer(Text(Written), 1);
        size = writer.Compress(packed, data, sizeof data, 0);
        writer.Serialize(Text(std::string(400, 'k').c_str()), 7);
        writer.SerializeBlock(Text("Data"), packed, size);
        told.Answer(writer.m_pFile && fwfprintf(writer.m_pFile, "%600d=8\n", 1) == 603 &&
                    !std::ferror(reinterpret_cast<std::FILE*>(writer.m_pFile)));
    }
    const std::string key(400, 'k'), file = FileText(Written);
    told.Must(!now.failed || now.lasting || std::strcmp(now.failed, "malloc") != 0 ||
                  file.find(key + "=7\n") != file.npos,
              "a record that was written in parts");
    SFileRead reader(Text(Written));
    int before = 0, after = 0;
    told.Answer(reader.Deserialize(&before));
    told.Answer(reader.DeserializeBlock(packed, size));
    told.Answer(reader.Deserialize(&after));
    told.Answer(reader.Decompress(text, sizeof text, packed, size, 0) == sizeof text);
    told.result = std::to_string(before) + reinterpret_cast<char*>(text) + std::to_string(after);
}

inline void Colours(Account& told, Place&) {
    MFColorTable table;
    unsigned int size = 0;
    unsigned char* pData = nullptr;
    told.Answer(table.SetFilename(Text("given/c")));
    told.Answer(table.GetHeaderSize(&size));
    const int got = told.Answer(table.GetData(4, 6, 8, &pData));
    told.Must(got == (pData != nullptr), "a block that is none");
    told.result = std::to_string(size) + (got ? std::string(pData, pData + 8) : "");
    table.DeleteData(pData);
}

enum class Writes { Nothing, File, Recording, StrictRecording };

struct Scenario {
    const char* name;
    int ones;   // among the results when nothing fails; given/NAME.written is what it writes then
    bool tells; // what is lost makes an answer 0 or is reported; else some losses are silent, as documented
    Writes writes;
    void (*act)(Account&, Place&);
};
inline const Scenario Scenarios[] = {
    {"Counter", 3, true, Writes::Nothing, [](Account& t, Place&) { RunPipe(t, "examples/counter.pipe"); }},
    {"Nested", 3, true, Writes::Nothing, [](Account& t, Place&) { RunPipe(t, "examples/nested.pipe"); }},
    {"Configured", 3, false, Writes::Nothing, [](Account& t, Place&) { RunPipe(t, "examples/config.pipe"); }},
    {"ReplayDefault", 6, false, Writes::Nothing, Replay<0>},
    {"ReplayStrict", 6, true, Writes::Nothing, Replay<1>},
    {"ReplayHeld", 9, true, Writes::Nothing, ReplayHeld},
    {"Elements", 21, true, Writes::Nothing, Elements},
    {"Tables", 6, true, Writes::Nothing, Tables},
    {"Names", 303, true, Writes::Nothing, Names},
    {"Ends", 151, true, Writes::Nothing, Ends},
    {"Hosts", 7, true, Writes::Nothing, Hosts},
    {"Properties", 20, true, Writes::Nothing, Properties},
    {"Copies", 0, false, Writes::Nothing, Copies},
    {"Colours", 3, true, Writes::Nothing, Colours},
    {"SaveConfig", 1, true, Writes::File, SaveConfig},
    {"Streams", 5, true, Writes::File, Streams},
    {"RecordDefault", 6, true, Writes::Recording, Record<0>},
    {"RecordStrict", 6, true, Writes::StrictRecording, Record<1>},
};
// From here on they write.
inline const Scenario* const Writers =
    std::find_if(std::begin(Scenarios), std::end(Scenarios),
                 [](const Scenario& s) { return s.writes != Writes::Nothing; });

#endif
