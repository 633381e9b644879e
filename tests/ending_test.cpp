// SPDX-License-Identifier: MIT
// The end of the runs: which elements are told, in which order, and what they do then; requests to end.
#include "support/capture.h"
#include "support/support.h"

#include <chrono>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <thread>
#include <utility>

using namespace VESK;

namespace {

std::string journal; // what happened, a word each

// Forwards what arrives; what it does at the end is a function of the test.
class Stage : public EObject {
public:
    explicit Stage(const std::string& name, int sources = 2) {
        Set(m_cProperties, "Name", name);
        AddSinkPad(new SINKPAD(this, 0));
        for (int i = 0; i < sources; ++i) {
            AddSourcePad(new SOURCEPAD(this));
        }
        AtRunsEnd(*this, Ended);
    }
    int DataArrived(QObject* pObject, Byte2Type) override {
        char text[16];
        pObject->m_cProperties.GetProperty(Text("From"), text, sizeof text,
                                           Text(pObject->GetEOF() ? "EOF" : "?"), Section::Standard);
        journal += " " + Name() + "<" + text;
        return AtRunsEnd(*this, Ended) && answer; // as one that opens its connection now
    }
    std::string Name() {
        char text[16];
        m_cProperties.GetProperty(Key::Name, text, sizeof text, Text(""), Section::Standard);
        return text;
    }
    static int Ended(EObject& element) {
        auto& self = static_cast<Stage&>(element);
        EXPECT_EQ(EndingElement(), &element);
        journal += " " + self.Name();
        return self.atEnd ? self.atEnd(self) : self.answer;
    }
    int (*atEnd)(Stage&) = nullptr;
    int answer = 1;
};

int SendName(Stage& self) {
    QObject object;
    Set(object.m_cProperties, "From", self.Name());
    return self.m_ppSourcePads[0]->Push(&object);
}

// A pipeline of stages: "a b" are elements, "a>b" connects the next free source pad of one with the other, "(" begins a
// nested pipeline, ")" ends it.
class Plan : public EPipeline {
public:
    explicit Plan(const std::string& words) {
        std::istringstream stream(words);
        std::vector<EPipeline*> open = {this};
        for (std::string word; stream >> word;) {
            if (word == "(") {
                auto* const inner = new EPipeline;
                open.back()->AddElement(inner);
                open.push_back(inner);
            } else if (word == ")") {
                open.pop_back();
            } else if (word.size() == 3) {
                Stage &from = *stages[word.substr(0, 1)], &to = *stages[word.substr(2)];
                Byte2Type pad = 0;
                while (from.m_ppSourcePads[pad]->m_pSinkPad) {
                    ++pad;
                }
                from.m_ppSourcePads[pad]->m_pSinkPad = to.GetSinkPad(0);
            } else {
                open.back()->AddElement(stages[word] = new Stage(word));
            }
        }
    }
    Stage& operator[](const std::string& name) { return *stages[name]; }
    std::string End() {
        journal.clear();
        const std::string told = Told([&] { return EndRuns(); });
        EXPECT_EQ(EndingElement(), nullptr);
        return told + (told.size() > 2 ? "|" : "") + journal.substr(journal.empty() ? 0 : 1);
    }

private:
    std::map<std::string, Stage*> stages;
};

TEST(EndOfRuns, ElementsAreToldInTheOrderOfTheDeliveries) {
    const std::pair<const char*, const char*> plans[] = {
        {"", ""},
        {"c a b", "c a b"},
        {"d b c a a>b a>c b>d c>d", "a b c d"},                 // a diamond
        {"d c b a a>c a>b c>d b>d", "a c b d"},                 // pads in their order
        {"e ( c ( d ) ) ( b ) a a>b b>c c>d d>e", "a b c d e"}, // nested ones, last first
        {"x c a b a>b b>c c>a c>x", "c a b x"},                 // a loop, in the order of the file
        {"f d e y b c a a>b b>a a>c c>a b>d d>e e>d e>f y>e",
         "y b c a d e f"},              // two loops, one behind the other
        {"b a a>a a>b", "a b"},         // sends to itself
        {"a ( b c ) b>a a>c", "b a c"}, // in and out of a nested pipeline
    };
    for (const auto& [words, order] : plans) {
        EXPECT_EQ(Plan(words).End(), "1 " + std::string(order)) << words;
    }
}

TEST(EndOfRuns, EachIsToldOnceWhateverHappensMeanwhile) {
    static Plan* plan;
    const auto deleteLast = [](Stage& self) {
        delete plan->m_ppElements[--plan->m_iElementCount];
        static const std::unique_ptr<Stage> other(new Stage("z")); // at the same address, as a rule
        return SendName(self);
    };
    const auto endAgain = [](Stage&) { return plan->EndRuns(); };
    struct Case {
        const char* words;
        void (*prepare)(Plan&);
        int (*first)(Stage&);
        const char* told;
    };
    const Case cases[] = {
        {"a b c a>b b>c", [](Plan& p) { p["b"].answer = 0; }, nullptr, "0 a b c"},
        {"a b c a>b b>c", [](Plan& p) { AtRunsEnd(p["b"], nullptr); }, nullptr, "1 a c"},
        {"a b a>b", [](Plan& p) { AtRunsEnd(p["b"], nullptr); }, SendName,
         "1 a b<a b"}, // wants to know from then on
        {"b a a>b", [](Plan&) {}, endAgain, "1 a b"},
        {"a b c a>b", [](Plan&) {}, deleteLast, "1 a b<a b"},
    };
    for (const Case& now : cases) {
        Plan pipe(now.words);
        plan = &pipe;
        now.prepare(pipe);
        pipe["a"].atEnd = now.first;
        EXPECT_EQ(pipe.End(), now.told) << now.words;
        pipe["a"].atEnd = nullptr;
        const std::string again = pipe.End(), last(1, now.told[std::strlen(now.told) - 1]);
        EXPECT_EQ(again.substr(again.size() - 1), last) << again; // told again
    }
}

TEST(EndOfRuns, ElementsOutsideLeadToOthersAndAreNotTold) {
    Plan pipe("a b c b>a"), host("x y x>y");
    pipe["c"].m_ppSourcePads[0]->m_pSinkPad = host["x"].GetSinkPad(0);
    host["y"].m_ppSourcePads[0]->m_pSinkPad = pipe["b"].GetSinkPad(0);
    EXPECT_EQ(pipe.End(), "1 c b a");
    EXPECT_EQ(host.End(), "1 x y");
    SINKPAD nobody(nullptr, 0);
    pipe["c"].m_ppSourcePads[1]->m_pSinkPad = &nobody;
    EXPECT_EQ(pipe.End(), "1 c b a");
}

// As many as a pipeline may have, the last one first: in a chain, and in one loop.
TEST(EndOfRuns, TheOrderOfManyElementsTakesLittleTimeAndStack) {
    static int told, wrong, step;
    struct Link : Stage {
        Link() : Stage("", 1) { AtRunsEnd(*this, Note); }
        static int Note(EObject& element) {
            told += step;
            wrong += static_cast<Link&>(element).place != told;
            return 1;
        }
        int place = 0;
    };
    EPipeline pipe;
    std::vector<Link*> links;
    for (int i = 0; i < 65535; ++i) {
        links.push_back(new Link);
        links.back()->place = i;
        pipe.AddElement(links.back());
        links[static_cast<std::size_t>(i)]->m_ppSourcePads[0]->m_pSinkPad =
            i > 0 ? links[static_cast<std::size_t>(i) - 1]->GetSinkPad(0) : nullptr;
    }
    told = 65535;
    step = -1;
    EXPECT_EQ(pipe.EndRuns() + told + wrong, 1);
    links[0]->m_ppSourcePads[0]->m_pSinkPad = links.back()->GetSinkPad(0);
    told = -1;
    step = 1;
    EXPECT_EQ(pipe.EndRuns() + told + wrong, 65535);
}

TEST(EndOfRuns, PipelinesAreRecognizedByWhatTheyInherit) {
    struct Runs : EPipeline {
        int Run() override { return 2; }
    } runs;
    struct Initializes : EPipeline {
        int Initialize() override { return 2; }
    } initializes;
    struct Other : Runs {
        int Initialize() override { return 2; }
    } other;
    EPipeline plain;
    Stage stage("a");
    for (EPipeline* pipe : {&plain, static_cast<EPipeline*>(&runs), static_cast<EPipeline*>(&initializes)}) {
        EXPECT_EQ(EPipeline::From(pipe), pipe);
    }
    for (EObject* none :
         {static_cast<EObject*>(nullptr), static_cast<EObject*>(&stage), static_cast<EObject*>(&other)}) {
        EXPECT_EQ(EPipeline::From(none), nullptr);
    }
}

TEST(EndOfRuns, AnElementWaitsUntilTheEndIsRequested) {
    using Clock = std::chrono::steady_clock;
    FRAMEWORK framework;
    Stage stage("a");
    const auto begin = Clock::now();
    EXPECT_EQ(stage.Wait(150) - stage.EndRequested(), 1); // also without a framework
    EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(150));
    stage.RequestEnd();
    stage.m_pFramework = &framework;
    EXPECT_EQ(stage.Wait(0) - stage.EndRequested(), 1);
    std::thread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        framework.RequestEnd();
    });
    EXPECT_EQ(stage.Wait(4294967295), 0);
    other.join();
    EXPECT_EQ(stage.Wait(0) + stage.EndRequested(), 1);
    framework.ResetEnd();
    EXPECT_EQ(stage.EndRequested(), 0);
    stage.RequestEnd();
    EXPECT_EQ(framework.EndRequested(), 1);
}

TEST(EndOfRuns, TheEndGoesThroughEachConnectedPad) {
    Plan pipe("a b c a>b a>c");
    pipe["a"].AddSourcePad(new SOURCEPAD(&pipe["a"]));
    for (const auto& [answer, result] : {std::pair(1, 1), {0, 0}}) {
        journal.clear();
        pipe["b"].answer = answer;
        EXPECT_EQ(pipe["a"].SendEOF(), result);
        EXPECT_EQ(journal, " b<EOF c<EOF");
    }
}

} // namespace
