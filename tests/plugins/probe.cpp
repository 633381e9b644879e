// SPDX-License-Identifier: MIT
// The plugin of the language tests: elements that send and take what a case needs.
//
// EFeed: each Run sends one object through each of its pads and returns what the last one returned.
//   source pads   "TotalSourcePads", 1 when absent
//   properties    those of its section "Object" are the object's, in section "Standard", and those of "Other" are in
//                 that section; a "^" in them stands for "=" and a "~" for a newline, which a configuration file
//                 cannot give
//                 "Kind": Null sends no object, Empty one without a type, End a QEOF, Refuse one that returns 0 to
//                 Serialize once it is written; a plain one when absent
//                 "Turns": behind each object the pads exchange their receivers, and the first is made anew
// EProbe: prints "NAME(INDEX): PROPERTIES" of each object.
//   sink pads     "TotalSinkPads", 1 when absent; their indexes are 10, 11 and so on
//   source pads   "TotalSourcePads", none when absent; gets each object on all of them
//   properties    "Answer": of DataArrived when nothing is passed on, 1 when absent
//                 "Every": a number N; then the result is 1 for all objects but each Nth
//                 "Mark": KEY^VALUE, set on the object once it is printed, so that who gets the same one sees it
//                 "Initialized": the result of Initialize, 1 when absent
// EBatch: keeps copies of what arrives, and sends them at the end of the runs, after "NAME ends".
//   sink pads     1
//   source pads   1
//   properties    "Stop": the number of objects after which it requests the end
//                 "Ends": what it returns then, 1 when absent
//   Run keeps an object, prints "NAME waits", waits for a minute or the request to end, and returns 0 after the request
// EBox: a pipeline with an EFeed "inner", which it destroys at the end of its first Run; later ones return 0.
// EFeed and EProbe print "NAME is gone" when they are destroyed with the property "Farewell".
#include "support/support.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

using namespace VESK;

namespace {

class ETested : public EObject {
public:
    explicit ETested(const char* type) { Set(m_cProperties, "EObjectType", type); }
    ~ETested() override {
        if (!Own("Farewell").empty()) {
            std::printf("%s is gone\n", Own("Name").c_str());
        }
    }

protected:
    std::string Own(const char* key, const char* otherwise = "") {
        char text[256];
        m_cProperties.GetProperty(Text(key), text, sizeof text, Text(otherwise), Section::Standard);
        return text;
    }
    void Pads(int sinks, int sources) {
        for (int i = 0; i < sinks; ++i) {
            AddSinkPad(new SINKPAD(this, static_cast<Byte2Type>(10 + i)));
        }
        for (int i = 0; i < sources; ++i) {
            AddSourcePad(new SOURCEPAD(this));
        }
    }
};

std::string Given(std::string text) {
    std::replace(text.begin(), text.end(), '^', '=');
    std::replace(text.begin(), text.end(), '~', '\n');
    return text;
}

struct Refuser : QObject {
    int Serialize(SWrite* pWriter) override { return QObject::Serialize(pWriter), 0; }
};

class EFeed final : public ETested {
public:
    EFeed() : ETested("EFeed") {}
    int Initialize() override { return Pads(0, std::stoi(Own("TotalSourcePads", "1"))), 1; }
    int DataArrived(QObject*, Byte2Type) override { return 0; }
    int Run() override {
        const std::string kind = Own("Kind");
        QObject plain;
        QEOF end;
        Refuser refuser;
        const bool refuses = kind == "Refuse" && m_iRuns++ % 2 == 0;
        QObject& object = kind == "End" ? end : refuses ? refuser : plain;
        if (kind == "Empty") {
            object.m_cProperties.Reset();
        }
        char key[4096], value[4096];
        for (Byte2Type b2 = 0; b2 < m_cProperties.GetNumberOfProperties(); ++b2) {
            for (const char* section : {"Object", "Other"}) {
                if (m_cProperties.GetKeyValuePair(b2, Text(section), key, value)) {
                    Set(object.m_cProperties, Given(key).c_str(), Given(value),
                        section[1] == 'b' ? "Standard" : section);
                }
            }
        }
        int answer = 0;
        const int pads = std::stoi(Own("TotalSourcePads", "1"));
        for (int i = 0; i < pads; ++i) {
            answer = GetSourcePad(static_cast<Byte2Type>(i))->Push(kind == "Null" ? nullptr : &object);
        }
        if (!Own("Turns").empty()) {
            std::swap(GetSourcePad(0)->m_pSinkPad, GetSourcePad(1)->m_pSinkPad);
            auto* const pAnew = new SOURCEPAD(this);
            pAnew->m_pSinkPad = GetSourcePad(0)->m_pSinkPad;
            delete std::exchange(m_ppSourcePads[0], pAnew);
        }
        return answer;
    }

private:
    int m_iRuns = 0;
};

class EProbe final : public ETested {
public:
    EProbe() : ETested("EProbe") {}
    int Initialize() override {
        Pads(std::stoi(Own("TotalSinkPads", "1")), std::stoi(Own("TotalSourcePads", "0")));
        return std::stoi(Own("Initialized", "1"));
    }
    int DataArrived(QObject* pObject, Byte2Type b2Index) override {
        std::printf("%s(%d): %s%s\n", Own("Name").c_str(), b2Index,
                    pObject ? EntriesOf(pObject->m_cProperties).c_str() : "null",
                    pObject && pObject->GetEOF() ? " end" : "");
        if (pObject) {
            pObject->m_cProperties.AddKeyValuePair(Section::Standard, Given(Own("Mark")).data());
        }
        ++m_iArrived;
        const bool plain = m_iArrived % std::stoi(Own("Every", "1")) != 0;
        int answer = plain ? 1 : std::stoi(Own("Answer", "1"));
        for (Byte2Type b2 = 0; b2 < GetSourcePadCount(); ++b2) {
            answer = GetSourcePad(b2)->Push(pObject);
        }
        return answer;
    }

private:
    int m_iArrived = 0;
};

class EBatch final : public ETested {
public:
    EBatch() : ETested("EBatch") {}
    int Initialize() override { return Pads(1, 1), AtRunsEnd(*this, Ended); }
    int DataArrived(QObject* pObject, Byte2Type) override {
        m_cKept.emplace_back(pObject->Duplicate());
        if (std::to_string(m_cKept.size()) == Own("Stop")) {
            RequestEnd();
        }
        return 1;
    }
    int Run() override {
        QObject object;
        std::printf("%s waits\n", Own("Name").c_str());
        std::fflush(stdout);
        return DataArrived(&object, 0), Wait(60000);
    }

private:
    static int Ended(EObject& element) {
        auto& self = static_cast<EBatch&>(element);
        std::printf("%s ends\n", self.Own("Name").c_str());
        for (const auto& object : self.m_cKept) {
            self.GetSourcePad(0)->Push(object.get());
        }
        return std::stoi(self.Own("Ends", "1"));
    }

    std::vector<std::unique_ptr<QObject>> m_cKept;
};

class EBox final : public EPipeline {
public:
    EBox() {
        auto* const pInner = new EFeed;
        Set(pInner->m_cProperties, "Name", "inner");
        AddElement(pInner);
        Set(m_cProperties, "SinkElement", "inner");
        Set(m_cProperties, "SourceElement", "inner");
    }
    int Run() override {
        const int answer = EPipeline::Run();
        if (m_pSinkElement) {
            delete m_ppElements[--m_iElementCount];
            m_pSinkElement = nullptr;
        }
        return answer;
    }
};

class ProbeFactory : public LibraryFactory {
public:
    EObject* CreateElement(char* pchType) override {
        const std::string type = pchType;
        if (type == "EBatch") {
            return new EBatch;
        }
        EObject* const box = type == "EBox" ? new EBox : nullptr;
        return type == "EFeed" ? new EFeed : type == "EProbe" ? new EProbe : box;
    }
};

ProbeFactory cFactory;

} // namespace

Factory* GetFactory() {
    return &cFactory;
}
