// SPDX-License-Identifier: MIT
// Runs the targets on the inputs of the tree, or on files: fwlib_fuzz_replay CORPUS, or TARGET FILE...
// A file that ends the process is the last one named on standard output.
#include "targets.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

void Run(const fuzz::Target& target, const std::filesystem::path& path) {
    std::printf("%s %s\n", target.name, path.c_str());
    std::fflush(stdout);
    std::ifstream file(path, std::ios::binary);
    const fuzz::Exact bytes(std::string(std::istreambuf_iterator<char>(file), {}));
    const fuzz::World world;
    fuzz::Input in(bytes.Data(), bytes.Size());
    target.pRun(in);
}

} // namespace

int main(int count, char** arguments) {
    if (count > 2) {
        const fuzz::Target* const pTarget = fuzz::FindTarget(arguments[1]);
        CLAIM(pTarget);
        for (int i = 2; i < count; ++i) {
            Run(*pTarget, arguments[i]);
        }
        return 0;
    }
    CLAIM(count == 2);
    for (const fuzz::Target& target : fuzz::Targets) {
        const auto folder = std::filesystem::path(arguments[1]) / target.name;
        CLAIM(!std::filesystem::is_empty(folder));
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            Run(target, entry.path());
        }
    }
}
