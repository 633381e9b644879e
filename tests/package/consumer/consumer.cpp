// SPDX-License-Identifier: MIT
// A user's program: builds the pipe file it is given, puts an element of its own behind the source, and tells
// how many objects reached it.
#include <fwlib/fwlib.h>

#include <cstdio>
#include <memory>

namespace {

class ECounter : public VESK::EObject {
public:
    int Initialize() override { return AddSinkPad(new VESK::SINKPAD(this, 0)); }
    int DataArrived(VESK::QObject* pObject, VESK::Byte2Type) override {
        m_iObjects += pObject != nullptr;
        return 1;
    }
    int m_iObjects = 0;
};

char NameKey[] = "Name";
char Section[] = "Standard";
char Source[] = "numbers";
char Counter[] = "counter";

} // namespace

int main(int argc, char** argv) {
    VESK::FRAMEWORK framework;
    VESK::EPipeline pipeline;
    pipeline.m_pFramework = &framework;
    if (argc != 2 || !pipeline.BuildPipe(argv[1])) {
        return 1;
    }
    auto counter = std::make_unique<ECounter>();
    ECounter* const lent = counter.get();
    lent->m_cProperties.SetProperty(NameKey, Counter, Section);
    if (!pipeline.AddElement(lent)) {
        return 1;
    }
    counter.release(); // the pipeline owns it now
    const int ok = pipeline.Connect(Source, 0, Counter, 0) && pipeline.Initialize() && pipeline.Run();
    std::printf("consumer: %d objects\n", lent->m_iObjects);
    return ok ? 0 : 1;
}
