// SPDX-License-Identifier: MIT
// Plugins and factories as a host uses them beyond a pipe file, and the messages of the framework.
#include "support/capture.h"
#include "support/support.h"

#include <csignal>
#include <cstdarg>
#include <dlfcn.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <link.h>
#include <memory>
#include <pthread.h>
#include <sys/stat.h>

using namespace VESK;

// Of the leak checkers, where there is one.
extern "C" void __lsan_disable() __attribute__((weak));
extern "C" void __lsan_enable() __attribute__((weak));

namespace {

char* const Own = Text("libfwlib.so");
char* const Good = Text(FWLIB_TEST_PLUGINS "/good.so");

TEST(Plugins, PathsThatNameNoneAndFilesThatWereCutAreRefused) {
    const Scratch scratch;
    const std::string whole = FileText(Good);
    std::vector<std::pair<std::string, const char*>> failures = {
        {"", "empty or longer"},
        {std::string(255, 'x'), "cannot open shared object file"},
        {std::string(256, 'x'), "longer than 255 characters"}};
    // Less than what is mapped, also by the last byte of a part only.
    std::vector<std::size_t> sizes = {0, 10, 63, 500, 4095, 4096, 5000, 8192};
    const auto* const header = reinterpret_cast<const ElfW(Ehdr)*>(whole.data());
    const auto* const parts = reinterpret_cast<const ElfW(Phdr)*>(whole.data() + header->e_phoff);
    for (int i = 0; i < header->e_phnum; ++i) {
        parts[i].p_type == PT_LOAD ? sizes.push_back(parts[i].p_offset + parts[i].p_filesz - 1) : void();
    }
    for (const std::size_t size : sizes) {
        failures.emplace_back(scratch.Write(std::to_string(size) + ".so", whole.substr(0, size)), ".so: ");
    }
    const std::string fifo = scratch.Path("fifo"); // which nobody writes to
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    failures.emplace_back(fifo, "fifo: not a regular file");
    FRAMEWORK framework;
    for (const auto& [path, part] : failures) {
        const std::string told = Told([&, &own = path] { return framework.AddPlugin(Text(own.c_str())); });
        EXPECT_EQ(told.find("0 ! FWPLUGIN: dlopen() Error: "), 0u) << told;
        EXPECT_NE(told.find(part), std::string::npos) << told;
        EXPECT_EQ(told.find('\n'), told.size() - 1) << told;
    }
    EXPECT_EQ(Told([&] { return framework.AddPlugin(nullptr); }).find("0 ! "), 0u);
    EXPECT_EQ(framework.m_b2PluginCount + framework.m_b2PluginCapacity + framework.m_bError, 0);
}

// Leaves an element of a plugin behind its framework.
void Outlive() {
    std::signal(SIGABRT, [](int) { std::exit(3); }); // in good order, so that what ran is counted
    auto framework = std::make_unique<FRAMEWORK>();
    framework->AddPlugin(Good);
    static EObject* const element = framework->CreateElement(Text("EWitness"));
    framework.reset();
    std::_Exit(element ? 0 : 1);
}

TEST(PluginsDeathTest, DebugBuildsEndWhenTheCodeOfALivingElementGoes) {
#ifdef NDEBUG
    EXPECT_EXIT(Outlive(), testing::ExitedWithCode(0), "^$");
#else
    EXPECT_EXIT(Outlive(), testing::ExitedWithCode(3),
                "good.so was unloaded before 1 of its objects were destroyed.\n$");
#endif
}

// What a framework makes of a type: 100 for an element, 10 for a data object, 1 for another object.
std::string Made(FRAMEWORK& framework, const char* type) {
    return Told([&] {
        const std::unique_ptr<EObject> element(framework.CreateElement(Text(type)));
        const std::unique_ptr<QObject> object(framework.CreateQObject(Text(type)));
        EXPECT_TRUE(!element || element->m_pFramework == &framework);
        return (element ? 100 : 0) + (object ? 10 : 0) + (framework.CreateObject(Text(type)) ? 1 : 0);
    });
}

TEST(Plugins, EachKindOfObjectHasItsTypesAndAMissingFactoryIsPassedOver) {
    FRAMEWORK framework, none;
    for (char* const path : {Good, Own, Own, Good}) {
        EXPECT_EQ(framework.AddPlugin(path), 1);
    }
    framework.m_ppPlugins[0]->m_pFactory = nullptr;
    delete std::exchange(framework.m_ppPlugins[1], nullptr);
    const std::string missing = "ERROR: PLUGIN::GetFactory(): Factory is NULL!\n",
                      thrown = "FRAMEWORK: Error: A plugin's factory threw an exception: Thrown\n";
    const std::pair<const char*, int> types[] = {{"ESink", 100}, {"QObject", 10}, {"QGood", 10},
                                                 {"Extra", 1},   {"Thrown", 0},   {"(null)", 0}};
    for (const auto& [type, made] : types) {
        const bool null = *type == '(';
        std::string told = std::to_string(made) + " ! ";
        for (const auto& [kind, worth] : {std::pair("Element", 100), {"QObject", 10}, {"Object", 1}}) {
            told += (null ? "" : missing) + (*type == 'T' ? thrown : "");
            if (made != worth) {
                told += std::string("FRAMEWORK::Create") + kind + ": Could not instantiate: " + type + "\n";
            }
        }
        EXPECT_EQ(null ? Made(none, nullptr) : Made(framework, type), told);
    }
    PluginFactory empty(nullptr);
    EXPECT_EQ(empty.Initialize(&none), 1);
    EXPECT_FALSE(empty.CreateElement(Own) || empty.CreateQObject(Own) || empty.CreateObject(Own));
    auto* component = reinterpret_cast<KESTRAN::IComponent*>(&none);
    EXPECT_EQ(none.GetDataRecorderComponentPortal(Text("x"), &component), 1);
    EXPECT_EQ(component, reinterpret_cast<KESTRAN::IComponent*>(&none));
}

TEST(Plugins, AreClosedWithTheirLastOwnerAndKeptUpToTheLimit) {
    void* const block = std::malloc(sizeof(Probe));
    new (block) Probe; // never destroyed
    std::free(block);
    {
        FRAMEWORK framework;
        EXPECT_EQ(framework.AddPlugin(Good), 1);
        const std::unique_ptr<PLUGIN> plugin(framework.LoadPlugin(Good)); // the caller's own
        EXPECT_EQ(plugin->Initialize(&framework), 1); // once more, which does not keep it open
        EXPECT_EQ(plugin->m_pFramework, &framework);
        EXPECT_EQ(plugin->GetFactory(), framework.m_ppPlugins[0]->GetFactory());
        EXPECT_EQ(framework.m_b2PluginCount * 100 + framework.m_b2PluginCapacity, 116);
    }
    EXPECT_EQ(dlopen(Good, RTLD_NOW | RTLD_NOLOAD), nullptr);
    std::vector<PLUGIN*> table(65520); // as long as it may be
    FRAMEWORK full;
    full.m_ppPlugins = table.data();
    full.m_b2PluginCapacity = full.m_b2PluginCount = 65520;
    EXPECT_EQ(full.AddPlugin(Own), 0);
    full.m_ppPlugins = nullptr;
    full.m_b2PluginCount = 0;
}

// Serves nothing itself, but loads what does.
struct Loader : PLUGIN, LibraryFactory {
    Loader(std::string& text, char name) : closed(text), m_chName(name) { m_pFactory = this; }
    ~Loader() override { closed += m_chName; }
    int Initialize(FRAMEWORK* pFramework) override { return m_pFramework = pFramework, 1; }
    QObject* CreateQObject(char*) override { return m_pFramework->AddPlugin(Own), nullptr; }
    std::string& closed;
    char m_chName;
};

TEST(Plugins, ThoseThatAFactoryAddsAreAskedTooAndAllAreClosedInTheirOrder) {
    std::string closed;
    {
        FRAMEWORK framework;
        for (int i = 0; i < 3; ++i) {
            framework.AddPlugin(Own);
            auto* const loader = new Loader(closed, static_cast<char>('a' + i));
            loader->Initialize(&framework);
            delete std::exchange(framework.m_ppPlugins[i], loader);
        }
        const std::unique_ptr<QObject> object(framework.CreateQObject(Type::QObject));
        EXPECT_TRUE(object && framework.m_b2PluginCount == 6);
    }
    EXPECT_EQ(closed, "abc");
}

// Ends the thread in a factory while it builds from a file within a file. What it had open is closed then.
TEST(Plugins, AThreadMayEndInAFactory) {
#ifdef _LIBCPP_VERSION
    GTEST_SKIP() << "libc++ catches the end of a thread and cannot pass it on";
#endif
    const Scratch scratch;
    const std::string inner = scratch.Write("inner", "element Ended\n");
    const std::string outer =
        scratch.Write("outer", "plugin " + std::string(Good) + "\npipe " + inner + "\n");
    const auto build = [](void* path) -> void* {
        FRAMEWORK framework;
        EPipeline pipe;
        pipe.m_pFramework = &framework;
        return pipe.BuildPipe(static_cast<char*>(path)), path;
    };
    const auto open = [] { return std::filesystem::exists("/proc/self/fd/40"); };
    ASSERT_FALSE(open());
    Told([&] {
        for (int i = 0; i < 20; ++i) {
            pthread_t thread;
            void* result = &thread;
            EXPECT_EQ(pthread_create(&thread, nullptr, build, Text(outer.c_str())), 0);
            EXPECT_TRUE(pthread_join(thread, &result) == 0 && !result);
        }
        return 1;
    });
    EXPECT_FALSE(open());
    EXPECT_EQ(dlopen(Good, RTLD_NOW | RTLD_NOLOAD), nullptr);
}

TEST(Plugins, PullinMakesWhatNobodyDestroys) {
    __lsan_disable ? __lsan_disable() : void();
    EXPECT_EQ(Told([] { return Pullin(), 1; }), "1 ");
    __lsan_enable ? __lsan_enable() : void();
}

TEST(Framework, LinesCarryTheirOrigin) {
    FRAMEWORK framework;
    Probe nameless;
    va_list none = {};
    const auto told = [&](auto* name) {
        return Told([&] { return framework.Message(name, 99, "1%%\n", none), framework.m_bError; });
    };
    EXPECT_EQ(told(Text("%s")), "0 %s: 1%\n");
    EXPECT_EQ(told(static_cast<EObject*>(&nameless)), "0 [No Element Type] - [No Element Name]: 1%\n");
    EXPECT_EQ(told(static_cast<char*>(nullptr)) + told(static_cast<EObject*>(nullptr)), "0 0 ");
    EXPECT_EQ(Told([&] { return framework.ErrorMessage(nullptr, "1%%\n", none), framework.m_bError; }),
              "1 ! ERROR: [No Element Pointer]: 1%\n");
    nameless.m_pFramework = &framework;
    const auto error = [&](const char* end) {
        return Told([&] { return nameless.ErrorMessage("half%s", end), framework.m_bError; });
    };
    const std::string half = "1 ! ERROR: [No Element Type] - [No Element Name]: half";
    EXPECT_EQ(error(""), half);
    framework.SetProperty(Key::EndErrorLines, 1, Section::Standard);
    EXPECT_EQ(error("") + error("\n"), half + "\n" + half + "\n");
}

} // namespace
