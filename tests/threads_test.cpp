// SPDX-License-Identifier: MIT
// Threads that each have a framework and pipelines of their own. ./dev ci runs them with ThreadSanitizer too.
#include "support/capture.h"
#include "support/support.h"

#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

using namespace VESK;

namespace {

constexpr int Elements = 70; // enough for an index of names
constexpr int Files = 40;    // one within the other; of two threads together more than may be

// How many elements came out with their own name and number.
int Whole(EPipeline& pipe) {
    int whole = 0;
    for (int i = 0; i < pipe.m_iElementCount - 1; ++i) {
        const std::string number = std::to_string(i);
        whole += EntriesOf(pipe.m_ppElements[i]->m_cProperties) ==
                 "Standard.EObjectType=" + std::string(i ? "EDevNull" : "ESource") + " Standard.Name=e" +
                     number + " Standard.p=" + number;
    }
    return whole;
}

// Builds, runs and destroys, and returns what went wrong.
int Work(char* path, bool configured, int rounds) {
    int wrong = 0;
    const Scratch scratch;
    FRAMEWORK framework;
    framework.AddPlugin(Text("libfwlib.so"));
    for (int i = 0; i < rounds; ++i) {
        ESerialize recorder; // asks when it ends whether its framework lives, and lists its file
        recorder.m_pFramework = &framework;
        Set(recorder.m_cProperties, "Filename", scratch.Path("objects"));
        wrong += !recorder.Initialize();
        EPipeline pipe;
        pipe.m_pFramework = &framework;
        const int built = configured ? pipe.BuildPipe(path, 0, nullptr) : pipe.BuildPipe(path);
        wrong += !built || Whole(pipe) != Elements || !pipe.Initialize() || !pipe.Run();
        unsigned char bytes[240] = {}, coded[240];
        MemoryWrite writer;
        writer.SerializeBlock(Text("k"), bytes, 100);
        wrong += writer.all.size() != 139 || writer.Compress(coded, bytes, 240, 0) != 8;
    }
    return wrong;
}

TEST(Threads, BuildRunAndDestroyPipelinesOfTheirOwn) {
    const Scratch scratch;
    std::string text;
    for (int i = 0; i < Elements; ++i) {
        const std::string number = std::to_string(i);
        text += std::string("element ") + (i ? "EDevNull" : "ESource") + "\nproperty Name e" + number +
                "\nproperty p " + number + "\n";
    }
    text += "connect e0 0 e69 0\nsink e0\n";
    std::string path = scratch.Write("empty", "");
    for (int i = 0; i < Files; ++i) {
        path = scratch.Write("nested" + std::to_string(i), "pipe " + path + "\n");
    }
    path = scratch.Write("all", text + "pipe " + path + "\n");
    int wrong[4] = {};
    const Output output = Captured([&] {
        // The stream's memory grows before they begin: ThreadSanitizer does not know the lock that it has.
        std::printf("%*s", 1 << 22, "");
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&, i] { wrong[i] = Work(path.data(), i % 2, 30); });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    });
    EXPECT_EQ(output.reported.substr(0, 200), "");
    EXPECT_EQ(wrong[0] + wrong[1] + wrong[2] + wrong[3], 0);
}

// A Debug build looks after what is unloaded while another thread's plugin destroys an object of static storage.
TEST(Threads, UnloadPluginsOfTheirOwn) {
    std::atomic<bool> loaded{false};
    FRAMEWORK framework;
    std::vector<std::unique_ptr<PLUGIN>> plugins;
    for (int i = 0; i < 2000; ++i) {
        plugins.emplace_back(framework.LoadPlugin(Text("libfwlib.so")));
    }
    std::thread other([&] {
        FRAMEWORK own;
        own.SetProperty(Text("Slow"), 1, Section::Standard);
        own.AddPlugin(Text(FWLIB_TEST_PLUGINS "/good.so"));
        loaded = true;
    });
    while (!loaded) {
    }
    plugins.clear();
    other.join();
}

TEST(Threads, EndTheRunsOfTheirOwnPipelines) {
    struct Told : Probe {
        explicit Told(std::atomic<int>& number) : count(number) { AtRunsEnd(*this, Count); }
        static int Count(EObject& element) { return static_cast<Told&>(element).count++, 1; }
        std::atomic<int>& count;
    };
    std::atomic<int> count{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 100; ++round) {
                EPipeline pipe;
                for (int n = 0; n < Elements; ++n) {
                    pipe.AddElement(n % 2 ? new Probe : new Told(count));
                }
                pipe.EndRuns();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(count, 4 * 100 * Elements / 2);
}

class EOwn : public Element<EOwn> {
public:
    static constexpr const char* TypeName = "EOwn";
    static constexpr const char* Meaning = "counts";
    static void Declare(Declaration<EOwn>& declare) {
        declare.SinkPads(1);
        declare.Number("Every", &EOwn::every, 1, nullptr, "");
    }
    int RunsEnded() { return Message(0, "ended\n"), 1; }
    int every = 0;
};
constexpr const char* EOwn::TypeName;

// Each thread hears its own lines and has its own failure. They share the factory, and all are asked to end.
TEST(Threads, HearAndFailForThemselves) {
    TypesFactory<EOwn> factory;
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&factory, &wrong, i] {
            const std::string name = "t" + std::to_string(i), text = "element EOwn\nproperty Name " + name;
            for (int round = 0; round < 100; ++round) {
                std::string heard;
                FRAMEWORK framework;
                EPipeline pipe;
                pipe.m_pFramework = &framework;
                framework.SetMessageHandler(
                    [](void* all, const MessageLine& line) {
                        *static_cast<std::string*>(all) += std::string(line.pchText) + "\n";
                    },
                    &heard);
                wrong += !framework.AddFactory(&factory) || !DescribeTypes<EOwn>();
                wrong += !pipe.BuildPipeText(name.c_str(), text.c_str()) || !pipe.Initialize();
                std::thread([&framework] { framework.RequestEnd(); }).join();
                wrong += !framework.EndRequested() || !pipe.EndRuns();
                wrong += pipe.BuildPipeText(name.c_str(), "\nsink") || LastFailure()->pchFile != name ||
                         LastFailure()->b4Line != 2;
                wrong += heard != "Processing pipe file: " + name +
                                      "\nInstantiating EOwn\nSetting property "
                                      "Name to " +
                                      name + "\nEOwn - " + name + ": ended\nProcessing pipe file: " + name +
                                      "\nMissing arguments of sink: 1 needed, 0 given.\n";
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

// Of two recorders that open one file at the same time, one is refused, so the other's objects are kept.
TEST(Threads, OpenOneRecordingOnlyOnce) {
    const Scratch scratch;
    const std::string path = scratch.Path("objects");
    for (int round = 0; round < 100; ++round) {
        ESerialize elements[2];
        std::atomic<int> ready{0}, opened{0};
        std::vector<std::thread> threads;
        for (ESerialize& element : elements) {
            Set(element.m_cProperties, "Filename", path);
            threads.emplace_back([&] {
                ++ready;
                while (ready < 2) {
                }
                opened += element.Initialize();
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        ASSERT_EQ(opened, 1) << "round " << round;
    }
}

} // namespace
