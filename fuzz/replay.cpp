// SPDX-License-Identifier: MIT
// Runs the targets on the inputs of the tree, or on files: fwlib_fuzz_replay CORPUS [VARIATIONS], or TARGET FILE...
// Each input of the tree is run as it is, and then changed at random in so many ways, the same ones every time. The
// input that ends the process is the last one named on standard output; a changed one is left in the working folder
// as "variation".
#include "targets.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <unistd.h>

namespace {

using Random = std::minstd_rand;

std::string Load(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void Run(const fuzz::Target& target, const std::string& input) {
    const fuzz::Exact bytes(input);
    const fuzz::World world;
    fuzz::Input in(bytes.Data(), bytes.Size());
    target.pRun(in);
}

// A part of the text, often short.
std::pair<std::size_t, std::size_t> Part(const std::string& text, Random& random) {
    const std::size_t at = random() % (text.size() + 1);
    return {at, std::min<std::size_t>(text.size() - at, random() % 4 ? random() % 9 : random() % 99)};
}

// A few edits: bytes that mean something or anything, parts that go, come again or come from another input.
std::string Varied(std::string text, const std::string& other, Random& random) {
    static const std::string signs("\n=\0 []#\t\r-09\x01\xff", 14);
    for (unsigned long edits = 1 + random() % 4; edits > 0; --edits) {
        const auto [at, size] = Part(text, random);
        const auto [from, length] = Part(random() % 2 ? text : other, random);
        const std::string& source = from + length <= text.size() && random() % 2 ? text : other;
        switch (random() % 4) {
        case 0:
            text.replace(at, at < text.size(), 1, signs[random() % signs.size()]);
            break;
        case 1:
            text.insert(at, 1, static_cast<char>(random() >> 8));
            break;
        case 2:
            text.erase(at, size);
            break;
        default:
            text.replace(at, size, from < source.size() ? source.substr(from, length) : "");
        }
    }
    return text;
}

// What the file "variation" holds from here on. It stays open: closing it for each would wait for the disk.
void Keep(const std::string& input) {
    static const int iFile = open("variation", O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    const auto iSize = static_cast<off_t>(input.size());
    CLAIM(pwrite(iFile, input.data(), input.size(), 0) == iSize && ftruncate(iFile, iSize) == 0);
}

void RunFolder(const fuzz::Target& target, const std::filesystem::path& folder, int variations) {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        paths.push_back(entry.path());
    }
    CLAIM(!paths.empty());
    std::sort(paths.begin(), paths.end());
    Random random(1);
    for (const auto& path : paths) {
        std::printf("%s %s\n", target.name, path.c_str());
        std::fflush(stdout);
        const std::string input = Load(path);
        Run(target, input);
        for (int n = 0; n < variations; ++n) {
            const std::string varied = Varied(input, Load(paths[random() % paths.size()]), random);
            Keep(varied);
            Run(target, varied);
        }
    }
}

} // namespace

int main(int count, char** arguments) {
    const fuzz::Target* const pTarget = count > 2 ? fuzz::FindTarget(arguments[1]) : nullptr;
    for (int i = 2; pTarget && i < count; ++i) {
        std::printf("%s %s\n", pTarget->name, arguments[i]);
        std::fflush(stdout);
        Run(*pTarget, Load(arguments[i]));
    }
    if (!pTarget) {
        CLAIM(count == 2 || count == 3);
        for (const fuzz::Target& target : fuzz::Targets) {
            RunFolder(target, std::filesystem::path(arguments[1]) / target.name,
                      count == 3 ? std::atoi(arguments[2]) : 0);
        }
        std::filesystem::remove("variation");
    }
}
