// SPDX-License-Identifier: MIT
// Hosts: handlers that receive what would be printed, why a build failed, texts in memory, and factories of the host.
#include "support/capture.h"
#include "support/support.h"

#include <cstdarg>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

using namespace VESK;

namespace {

// "KIND STREAM TYPE NAME FILE:LINE TEXT", "-" for what there is not.
void Hear(void* all, const MessageLine& line) {
    const auto shown = [](const char* text) { return std::string(text ? text : "-"); };
    *static_cast<std::string*>(all) += std::to_string(line.b4Kind) + " " + std::to_string(line.iStream) +
                                       " " + shown(line.pchType) + " " + shown(line.pchName) + " " +
                                       shown(line.pchFile) + ":" + std::to_string(line.b4Line) + " " +
                                       line.pchText + "\n";
}

struct EOwn : EObject {
    int Initialize() override {
        EObject::Initialize();
        Message(1, "one\ntwo\n");
        WarningMessage("odd\n");
        return m_cProperties.m_b2PropertyCount == 0;
    }
    int DataArrived(QObject*, Byte2Type) override { return 0; }
};

struct EComplains : EObject {
    int Initialize() override {
        result ? ErrorMessage("not that bad\n") : void();
        return result;
    }
    int DataArrived(QObject*, Byte2Type) override { return 0; }
    int result = 1;
};

struct OwnFactory : LibraryFactory {
    EObject* CreateElement(char* type) override {
        asked += std::string(type) + " ";
        return std::string(type) == "EOwn" ? new EOwn : nullptr;
    }
    int Initialize(FRAMEWORK*) override { return throws ? throw std::runtime_error("no") : 1; }

    std::string asked;
    bool throws = false;
};

// "RESULT FILE:LINE: TEXT" of the thread's last failure.
std::string Shown(int result) {
    const Failure* const failure = LastFailure();
    return std::to_string(result) + (failure ? " " + std::string(failure->pchFile) + ":" +
                                                   std::to_string(failure->b4Line) + ": " + failure->pchText
                                             : "");
}

// A trace line under a name that may be empty.
int Trace(FRAMEWORK& framework, const char* name, const char* format, ...) {
    va_list values;
    va_start(values, format);
    framework.Message(Text(name), 0, format, values);
    va_end(values);
    return 1;
}

struct Host {
    Host() {
        framework.AddPlugin(Text("libfwlib.so"));
        pipe.m_pFramework = &framework;
    }
    std::string Build(const char* text) { return Shown(pipe.BuildPipeText("text", text)); }

    FRAMEWORK framework;
    EPipeline pipe;
    std::string heard;
};

TEST(Messages, GoToTheHandlerWithTheirPlaceAndNothingIsPrinted) {
    Host host;
    OwnFactory own;
    ASSERT_EQ(host.framework.AddFactory(&own), 1);
    const Output output = Captured([&] {
        EXPECT_EQ(host.framework.SetMessageHandler(Hear, &host.heard), 1);
        EXPECT_EQ(host.Build("# a comment\n\nelement EOwn\nproperty Debug 1\r\nelement ESink\nconnect a x b"),
                  "0 text:6: Missing arguments of connect: 4 needed, 3 given.");
        EXPECT_EQ(Shown(host.pipe.Initialize()),
                  "0 :0: [No Element Type] - [No Element Name]: Initialize failed");
        QObject object;
        host.pipe.m_ppElements[1]->DataArrived(&object, 0);
        host.pipe.Run();
    });
    EXPECT_EQ(output.printed + output.reported, "");
    EXPECT_EQ(host.heard, "0 1 - - -:0 Processing pipe file: text\n"
                          "0 1 - - text:3 Instantiating EOwn\n"
                          "0 1 - - text:4 Setting property Debug to 1\n"
                          "0 1 - - text:5 Instantiating ESink\n"
                          "4 2 - - text:6 Missing arguments of connect: 4 needed, 3 given.\n"
                          "1 1 - - -:0 [No Element Type] - [No Element Name]: one\n"
                          "1 1 - - -:0 two\n"
                          "3 2 - - -:0 WARNING: [No Element Type] - [No Element Name]: odd\n"
                          "2 1 ESink - -:0 ESink::DataArrived: QObject\n"
                          "4 2 - - -:0 EPipeline::Run(): Error: No sink element.\n");
    EXPECT_EQ(host.framework.m_bError, 0);
    host.framework.SetMessageHandler(nullptr, nullptr);
    EXPECT_EQ(Told([&] { return host.pipe.Run(); }), "0 ! EPipeline::Run(): Error: No sink element.\n");
    EXPECT_EQ(Told([&] { return Trace(host.framework, "", "%d\n", 7); }), "1 : 7\n");
}

// What a handler reports itself is printed; it does not call itself.
TEST(Messages, OfAHandlerArePrinted) {
    Host host;
    host.framework.SetMessageHandler(
        [](void* framework, const MessageLine&) {
            static_cast<FRAMEWORK*>(framework)->CreateElement(Text("EInner"));
        },
        &host.framework);
    EXPECT_EQ(Told([&] { return host.framework.CreateElement(Text("EOuter")) != nullptr; }),
              "0 ! FRAMEWORK::CreateElement: Could not instantiate: EInner\n");
    const std::string longer(3000, 'x'); // longer than what is composed without memory
    host.framework.SetMessageHandler(Hear, &host.heard);
    host.framework.CreateElement(Text(longer.c_str()));
    EXPECT_EQ(host.heard, "4 2 - - -:0 FRAMEWORK::CreateElement: Could not instantiate: " + longer + "\n");
}

// What was reported in a call that succeeded is not the reason of a later failure.
TEST(Failures, HaveTheirOwnReason) {
    Host host;
    host.framework.SetMessageHandler(Hear, &host.heard);
    auto* const element = new EComplains;
    host.pipe.AddElement(element);
    EXPECT_EQ(host.pipe.Initialize(), 1);
    element->result = 0;
    EXPECT_EQ(Shown(host.pipe.Initialize()),
              "0 :0: [No Element Type] - [No Element Name]: Initialize failed");
}

TEST(Failures, HaveAFileALineAndTheFirstErrorInIt) {
    const Scratch scratch;
    const std::string inner = scratch.Write("inner", "element ESink\n\nelement ENone"),
                      outer = "pipe " + inner;
    Host host;
    host.framework.SetMessageHandler(Hear, &host.heard);
    EXPECT_EQ(host.Build(outer.c_str()),
              "0 " + inner + ":3: FRAMEWORK::CreateElement: Could not instantiate: ENone");
    EXPECT_EQ(host.Build("pipe /none"), "0 text:1: Unable to open pipefile /none");
    EXPECT_EQ(Shown(host.pipe.BuildPipe(Text("/none"))), "0 /none:0: Unable to open pipefile /none");
    EXPECT_EQ(host.Build((std::string(255, '#') + "nonsense\nsink").c_str()),
              "0 text:1: Unknown token nonsense");
    EXPECT_EQ(Shown(host.pipe.BuildPipeText(nullptr, nullptr)), "0 :0: the text is null");
    const std::string config = scratch.Write("config", "[ETee]\nTotalSourcePads=3\n");
    EXPECT_EQ(Shown(host.pipe.BuildPipeText("configured", "element ETee\nsink", 1, Text(config.c_str()))),
              "0 configured:2: Missing arguments of sink: 1 needed, 0 given.");
    EXPECT_EQ(EntriesOf(host.pipe.m_ppElements[host.pipe.m_iElementCount - 1]->m_cProperties),
              "Standard.EObjectType=ETee ETee.TotalSourcePads=3");
    char* tokens[] = {Text("connect"), Text("a"), Text("0"), Text("b"), Text("0"), nullptr};
    EXPECT_EQ(Shown(host.pipe.ProcessTokens(tokens)), "0 :0: Unable to connect pipe");
    EXPECT_EQ(host.Build("element ETee\nproperty TotalSourcePads -1\n").front(), '1'); // the old one remains
    EXPECT_EQ(Shown(host.pipe.Initialize()).substr(0, 15), "0 :0: ERROR: ET");
    std::thread([&] {
        EXPECT_EQ(LastFailure(), nullptr);
        Host own;
        own.framework.SetMessageHandler(Hear, &own.heard);
        EXPECT_EQ(own.Build("sink"), "0 text:1: Missing arguments of sink: 1 needed, 0 given.");
    }).join();
    EXPECT_EQ(Shown(0).substr(0, 15), "0 :0: ERROR: ET");
}

TEST(Factories, OfAHostAreAskedInOrderAndStayItsOwn) {
    Host host;
    OwnFactory own, second;
    second.throws = true;
    EXPECT_EQ(host.framework.AddFactory(nullptr), 0);
    EXPECT_EQ(host.framework.AddFactory(&own), 1);
    EXPECT_EQ(Told([&] { return host.framework.AddFactory(&second); }),
              "1 ! FRAMEWORK: Error: A plugin's factory threw an exception: of the host\n");
    delete host.framework.CreateElement(Text("ESink")); // of the library, which is asked first
    delete host.framework.CreateElement(Text("EOwn"));
    EXPECT_EQ(Told([&] { return host.framework.CreateElement(Text("ENone")) != nullptr; }),
              "0 ! FRAMEWORK::CreateElement: Could not instantiate: ENone\n");
    EXPECT_EQ(own.asked + "/ " + second.asked, "EOwn ENone / ENone ");
    EXPECT_EQ(GetVersion(), static_cast<Byte4Type>(FWLIB_VERSION));
}

// A name without a slash: the folders of the variable in order, then the loader's. A described plugin has a description.
TEST(Plugins, AreLookedForInTheFoldersOfTheVariable) {
    const Scratch scratch;
    const std::string folder = scratch.Path("a box");
    std::filesystem::create_directory(folder);
    std::filesystem::copy(FWLIB_TEST_PLUGINS "/good.so", folder + "/found.so");
    scratch.Write("a box/text.so", "no plugin");
    Host host;
    host.framework.SetMessageHandler(Hear, &host.heard);
    setenv("FWLIB_PLUGIN_PATH", (":/none:" + folder + ":").c_str(), 1);
    EXPECT_EQ(host.framework.AddPlugin(Text("found.so")), 1);
    EXPECT_EQ(host.framework.AddPlugin(Text("text.so")), 0);
    EXPECT_NE(host.heard.find("FWPLUGIN: dlopen() Error: " + folder + "/text.so"), std::string::npos)
        << host.heard;
    unsetenv("FWLIB_PLUGIN_PATH");
    EXPECT_EQ(host.framework.AddPlugin(Text("found.so")), 0);
    EXPECT_EQ(static_cast<FWPLUGIN*>(host.framework.m_ppPlugins[0])->GetDescription(),
              GetPluginDescription());
    EXPECT_EQ(static_cast<FWPLUGIN*>(host.framework.m_ppPlugins[1])->GetDescription(), nullptr);
}

} // namespace
