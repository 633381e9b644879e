// SPDX-License-Identifier: MIT
// What a host uses beside pipelines.
#ifndef FWLIB_TESTS_FAILURES_HOSTS_H
#define FWLIB_TESTS_FAILURES_HOSTS_H

#include "failures/account.h"

#include <string>
#include <thread>

struct EOwn : Element<EOwn> {
    static constexpr const char* TypeName = "EOwn";
    static constexpr const char* Meaning = "has pads and a number";
    static void Declare(Declaration<EOwn>& declare) {
        declare.SinkPads(20);
        declare.Number("n", &EOwn::n, 7, nullptr, "");
    }
    int n = 0;
};
constexpr const char* EOwn::TypeName;

// A thread that has no failure yet, with a handler, a type of its own, and lines in memory.
inline void Hosts(Account& told, Place&) {
    const auto hear = [](void* lines, const MessageLine& line) {
        *static_cast<std::string*>(lines) += std::string(line.pchText) + "\n";
    };
    std::thread([&] {
        TypesFactory<EOwn> factory;
        FRAMEWORK framework;
        EPipeline pipe;
        pipe.m_pFramework = &framework;
        told.Answer(framework.SetMessageHandler(hear, &told.result));
        const int added = told.Answer(framework.AddFactory(&factory));
        told.Must(framework.m_b2PluginCount == added, "a factory");
        told.Answer(pipe.BuildPipeText("t", "element EOwn\nproperty n 8\n"));
        told.Answer(pipe.Initialize());
        told.Answer(told.result.find("ERROR") == std::string::npos); // a report
        const std::string type(3000, 'x'), before = told.result;
        framework.CreateElement(Text(type.c_str()));
        const std::string line = told.result.substr(before.size());
        told.result = before;
        const std::string wanted = "FRAMEWORK::CreateElement: Could not instantiate: " + type + "\n";
        told.Must(line.empty() || wanted.find(line.substr(0, line.size() - 1)) == 0, "another line");
        told.Answer(line == wanted); // or its beginning
        told.Must(!pipe.BuildPipeText("wrong", "element None"), "an element without a type");
        const Failure* const failure = LastFailure();
        const bool known = failure && failure->pchFile && failure->pchText;
        told.Must(known && *failure->pchText, "no reason");
        told.Answer(known && std::string(failure->pchFile) == "wrong" && failure->b4Line == 1);
    }).join();
}

#endif
