// SPDX-License-Identifier: MIT
// builds: for each path on standard input, builds and initializes that pipe file, and prints the path and whether the
// file was built, was initialized, and has a sink element, with that element's type. It prints nothing else.
#include "fwlib/fwlib.h"

#include <iostream>
#include <memory>
#include <string>

using namespace VESK;

namespace {

// The type of the element that runs; that of a nested pipeline's sink element, and so on.
std::string Runs(EPipeline* pPipeline) {
    EObject* pElement = pPipeline->m_pSinkElement;
    for (EPipeline* pInner; (pInner = EPipeline::From(pElement)) != nullptr;) {
        pElement = pInner->m_pSinkElement;
    }
    const char* const pchType = pElement ? FindValue(pElement->m_cProperties, Key::EObjectType) : "-";
    return pchType ? pchType : "?"; // a class without a type
}

} // namespace

int main() {
    for (std::string path; std::getline(std::cin, path);) {
        FRAMEWORK framework;
        framework.SetMessageHandler([](void*, const MessageLine&) {}, nullptr);
        const std::unique_ptr<EPipeline> pipeline(new EPipeline);
        pipeline->m_pFramework = &framework;
        const bool built = pipeline->BuildPipe(Text(path.c_str())) != 0;
        const bool initialized = built && pipeline->Initialize();
        std::cout << path << ' ' << built << ' ' << initialized << ' '
                  << (initialized ? Runs(pipeline.get()) : "-") << '\n';
    }
}
