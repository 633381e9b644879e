// SPDX-License-Identifier: MIT
// Input: files between bytes 1, named a, b and so on: a pipe file, and what it names. It is built, in one form or
// the other, initialized, and an object goes through every source pad, where the pipeline is small and has no
// circle.
#include "../models.h"
#include "../targets.h"

void fuzz::Pipe(Input& in) {
    const bool configured = in.Byte() & 1;
    for (char name = 'a'; name < 'a' + 3; ++name) {
        files[std::string(1, name)] = in.UpTo(1);
    }
    VESK::FRAMEWORK framework;
    VESK::EPipeline pipe;
    pipe.m_pFramework = &framework;
    const int iBuilt =
        configured ? pipe.BuildPipe(VESK::Text("a"), 1, VESK::Text("b")) : pipe.BuildPipe(VESK::Text("a"));
    CLAIM(Printed().compare(0, 24, "Processing pipe file: a\n") == 0);
    const ExpectedPipe made(files["a"]);
    char achSink[512];
    pipe.m_cProperties.GetProperty(VESK::Key::SinkElement, achSink, sizeof achSink, nullptr,
                                   VESK::Section::Standard);
    CLAIM(!iBuilt || (made.wellFormed && made.elements == pipe.m_iElementCount &&
                      made.connections == pipe.m_b2ConnectionCount && made.sink == achSink));
    VESK::QObject object;
    if (iBuilt && Modest(pipe) && pipe.Initialize()) {
        for (int i = 0; i < pipe.m_iElementCount; ++i) {
            for (unsigned int u = 0; u < pipe.m_ppElements[i]->GetSourcePadCount(); ++u) {
                auto* const pPad = pipe.m_ppElements[i]->GetSourcePad(static_cast<VESK::Byte2Type>(u));
                CLAIM(pPad);
                pPad->Push(&object);
            }
        }
        if (auto* const pPlayer = dynamic_cast<VESK::EDeserialize*>(pipe.m_pSinkElement)) {
            pPlayer->Run();
        }
    }
    CLAIM(Same(object.m_cProperties, VESK::QObject().m_cProperties));
}
