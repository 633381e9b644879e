// SPDX-License-Identifier: MIT
// Every allocation of every operation fails once: the first, the second and so on, alone or with all that
// follow. Then the operation answers 0 or null, leaves everything as it was, and leaks nothing.
#include "support/capture.h"
#include "support/failing.h"

#include <gtest/gtest.h>
#include <memory>
#include <new>

using namespace VESK;

namespace {

bool Fails() {
    if (iUntilFailure == 0 || --iUntilFailure > 0) {
        return false;
    }
    iUntilFailure = bLasting ? 1 : 0;
    bFailed = true;
    return true;
}

} // namespace

extern "C" void* __real_malloc(std::size_t uSize);
extern "C" void* __real_calloc(std::size_t uCount, std::size_t uSize);
extern "C" void* __wrap_malloc(std::size_t uSize) {
    return Fails() ? nullptr : __real_malloc(uSize);
}
extern "C" void* __wrap_calloc(std::size_t uCount,
                               std::size_t uSize) { // what compilers make of a cleared malloc
    return Fails() ? nullptr : __real_calloc(uCount, uSize);
}

// operator new(nothrow), whose symbol has the width in its name.
#if __SIZEOF_POINTER__ == 8
#define NOTHROW_NEW "_ZnwmRKSt9nothrow_t"
#else
#define NOTHROW_NEW "_ZnwjRKSt9nothrow_t"
#endif
void* RealNew(std::size_t uSize, const std::nothrow_t& cTag) noexcept asm("__real_" NOTHROW_NEW);
void* WrapNew(std::size_t uSize, const std::nothrow_t& cTag) noexcept asm("__wrap_" NOTHROW_NEW);
void* WrapNew(std::size_t uSize, const std::nothrow_t& cTag) noexcept {
    return Fails() ? nullptr : RealNew(uSize, cTag);
}

namespace {

void Fill(PROPERTIES& list) { // so that the next entry grows the arrays
    for (int i = list.m_b2PropertyCount; i < 16; ++i) {
        Set(list, std::to_string(i).c_str(), "old", i % 2 ? "Standard" : "Camera");
    }
}

TEST(Alloc, PropertiesAreSetWholeOrNotAtAll) {
    FailEach(6, [] {
        PROPERTIES list;
        Fill(list);
        const std::string before = Entries(list);
        const int answer = Armed([&] { return Set(list, "new", "value"); });
        EXPECT_EQ(answer, !bFailed);
        EXPECT_EQ(Entries(list), bFailed ? before : before + " Standard.new=value");
        EXPECT_EQ(Set(list, "after", std::string(99, 'a')), 1); // still usable
    });
    FailEach(1, [] {
        PROPERTIES list;
        Set(list, "n", "old");
        const std::string value(99, 'v'); // longer than the room of the old one
        const int answer = Armed([&] { return Set(list, "n", value); });
        EXPECT_EQ(answer, !bFailed);
        EXPECT_EQ(Entries(list), "Standard.n=" + (bFailed ? "old" : value));
    });
}

TEST(Alloc, ACopyGoesOnAndADuplicateIsWhole) {
    FailEach(50, [] {
        QEOF object;
        Fill(object.m_cProperties);
        const std::unique_ptr<QObject> copy(Armed([&] { return object.Duplicate(); }));
        EXPECT_TRUE(copy || bFailed);
        EXPECT_FALSE(copy && bLasting && bFailed);
        if (copy) {
            EXPECT_EQ(copy->m_cProperties.m_b2PropertyCount, 16);
            EXPECT_EQ(copy->GetEOF(), 1);
        }
    });
    FailEach(50, [] {
        PROPERTIES source, target;
        Fill(source);
        EXPECT_EQ(Armed([&] { return target.Copy(&source); }), 1); // also when a single set failed
        EXPECT_EQ(target.m_b2PropertyCount == 16, !bFailed);
        EXPECT_TRUE(bLasting || target.m_b2PropertyCount >= 15);
    });
}

TEST(Alloc, PadsThatCannotBeAddedStayTheCallers) {
    FailEach(2, [] {
        Probe element;
        auto sink = std::make_unique<SINKPAD>(&element, Byte2Type{0});
        auto source = std::make_unique<SOURCEPAD>(&element);
        const int answer =
            Armed([&] { return element.AddSinkPad(sink.get()) + 2 * element.AddSourcePad(source.get()); });
        EXPECT_EQ(answer == 3, !bFailed);
        EXPECT_EQ(element.GetSinkPad(0), answer & 1 ? sink.release() : nullptr);
        EXPECT_EQ(element.m_b2SinkPadCapacity, answer & 1 ? 16 : 0);
        EXPECT_EQ(element.GetSourcePad(0), answer & 2 ? source.release() : nullptr);
    });
}

TEST(Alloc, BuiltInElementsAreMadeAndInitializedOrFail) {
    const Scratch scratch;
    const std::string file = scratch.Write("objects", "");
    FACTORY::FWElementsFactory factory;
    for (char* const* type = FACTORY::FWElementsFactory::pchNames; *type; ++type) {
        FailEach(1, [&] {
            const std::unique_ptr<EObject> made(Armed([&] { return factory.CreateElement(*type); }));
            EXPECT_TRUE(made || bFailed);
        });
        FailEach(2, [&] {
            const std::unique_ptr<EObject> element(factory.CreateElement(*type));
            Set(element->m_cProperties, "Filename", file);
            Set(element->m_cProperties, "Strict", "1");
            const int answer = Armed([&] { return element->Initialize(); });
            EXPECT_EQ(answer, !bFailed);
            const bool failed = bFailed;
            QObject object;
            Told([&] { // a half-made element holds out, with little memory too
                return Armed([&] { return element->DataArrived(&object, 0) + element->Run(); });
            });
            bFailed = failed;
        });
    }
}

TEST(Alloc, PipelinesTakeElementsAndConnectionsWholeOrNotAtAll) {
    FailEach(3, [] {
        EPipeline pipe;
        auto probe = std::make_unique<Probe>("a");
        const int answer = Armed(
            [&] { return pipe.AddElement(probe.get()) + 2 * pipe.Connect(Text("a"), 1, Text("a"), 2); });
        EXPECT_EQ(answer == 3, !bFailed);
        EXPECT_EQ(pipe.m_iElementCount, answer & 1);
        EXPECT_EQ(pipe.m_iElementCapacity, answer & 1 ? 16 : 0);
        EXPECT_EQ(pipe.m_b2ConnectionCount, answer >> 1);
        if (answer & 1) {
            probe.release();
        }
    });
}

TEST(Alloc, PluginsAreAddedOrClosedAgain) {
    FailEach(2, [] {
        FRAMEWORK framework;
        const int answer = Armed([&] { return framework.AddPlugin(Text(FWLIB_TEST_PLUGINS "/good.so")); });
        EXPECT_TRUE(answer || bFailed);
        EXPECT_EQ(framework.m_b2PluginCount, answer);
        EXPECT_EQ(framework.m_b2PluginCapacity, answer * 16);
    });
}

TEST(Alloc, BuildingInitializingAndRunningEndCleanly) {
    const Scratch scratch;
    const std::string config = scratch.Write("c.cfg", "[ETee]\nA=1\n");
    const std::string inner =
        scratch.Write("inner.pipe", "element ETee\nproperty Name fork\nsink fork\nsource fork\n");
    const std::string path = scratch.Write(
        "main.pipe", "fwprop F 1\nelement ESource\nproperty Name counter\npipe " + inner +
                         "\nproperty Name inner\n" + "element EDevNull\nproperty Name end\nconfig " + config +
                         " ETee\nconnect counter 0 inner 0\n" +
                         "connect inner 0 end 0\nconnect inner 1 end 0\nsink counter\n");
    FailEach(50, [&] {
        OwnFramework framework;
        EPipeline pipe;
        pipe.m_pFramework = &framework;
        const std::string told = Told([&] {
            const int built = Armed([&] {
                return pipe.BuildPipe(Text(path.c_str()), 1, Text(config.c_str())) && pipe.Initialize();
            });
            return pipe.Run() && built;
        });
        EXPECT_TRUE(told[0] == '1' || bFailed);
    });
}

TEST(Alloc, AFailedReallocKeepsTheBlock) {
    FailEach(1, [] {
        void* block = fwmalloc(4);
        fwmemcpy(block, Text("abc"), 4);
        void* const before = block;
        const int answer = Armed([&] { return fwrealloc(&block, 4, 8); });
        EXPECT_EQ(answer, !bFailed);
        EXPECT_EQ(block == before, bFailed);
        EXPECT_STREQ(static_cast<char*>(block), "abc");
        fwfree(block);
    });
}

} // namespace
