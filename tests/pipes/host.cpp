// SPDX-License-Identifier: MIT
// The host of the language tests, see run.py: builds, initializes and runs the pipe file main.pipe of each folder that
// it is given, in a process of its own, as the folder's file "how" says. Leaves the files out, err, built, answers and
// status there.
#include "support/support.h"

#include <cstdio>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

using namespace VESK;

namespace {

// What the framework and the pipeline hold after building.
std::string Built(const FRAMEWORK& framework, const EPipeline& pipe) {
    std::ostringstream text;
    text << "framework " << EntriesOf(framework) << "\npipeline " << EntriesOf(pipe.m_cProperties) << "\n";
    for (int i = 0; i < pipe.m_iElementCount; ++i) {
        text << "element " << EntriesOf(pipe.m_ppElements[i]->m_cProperties) << "\n";
    }
    for (unsigned int u = 0; u < pipe.m_b2ConnectionCount; ++u) {
        const CONNECTION& c = *pipe.m_ppConnections[u];
        text << "connection " << c.b2SourceElement << "(" << c.b2SourcePad << ") -> " << c.b2SinkElement
             << "(" << c.b2SinkPad << ")\n";
    }
    return text.str();
}

void RunCase() {
    std::ifstream how("how");
    std::string form, config, shown, step, answers;
    how >> form >> config >> shown;
    FRAMEWORK framework;
    {
        EPipeline pipe;
        pipe.m_pFramework = &framework;
        int answer = form == "plain"
                         ? pipe.BuildPipe(Text("main.pipe"))
                         : pipe.BuildPipe(Text("main.pipe"), form == "config", Text(config.c_str()));
        std::ofstream("built") << Built(framework, pipe);
        if (shown == "printed" && !std::freopen("out", "w", stdout)) {
            _exit(98);
        }
        for (int made = 0; how >> step && step != "error"; ++made) {
            const std::string again = step.rfind("again=", 0) == 0 ? "again=" : "";
            answer = made == 0 ? answer : made == 1 || !again.empty() ? pipe.Initialize() : pipe.Run();
            answers += (made ? " " : "") + again + std::to_string(answer);
        }
    }
    std::ofstream("answers") << answers << (framework.m_bError ? " error" : "");
}

} // namespace

int main(int count, char** folders) {
    for (int i = 1; i < count; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            if (chdir(folders[i]) != 0 || !std::freopen("in", "r", stdin) ||
                !std::freopen("out", "w", stdout) || !std::freopen("err", "w", stderr)) {
                _exit(99);
            }
            RunCase();
            std::exit(0); // not _exit: leaks are looked for at an orderly end
        }
        int status = -1;
        waitpid(child, &status, 0);
        std::ofstream(folders[i] + std::string("/status")) << status;
    }
}
