// SPDX-License-Identifier: MIT
// Graphviz's program dot computes the layout.
#include "formats.h"

#include "../file.h"

#include <cerrno>
#include <cstring>
#include <spawn.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace FwPipe {

namespace {

[[noreturn]] void Fail(const char* pchWhat) {
    throw std::runtime_error(std::string(pchWhat) + ": " + std::strerror(errno));
}

std::string ReadAllOf(int iFile) {
    std::string cText;
    char achPiece[1 << 16];
    lseek(iFile, 0, SEEK_SET);
    ssize_t iRead;
    while ((iRead = read(iFile, achPiece, sizeof achPiece)) > 0) {
        cText.append(achPiece, static_cast<std::size_t>(iRead));
    }
    return cText;
}

// Both ends are files in memory, so neither process waits for the other to read.
int RunDot(int iInput, int iOutput) {
    const char* const apchArguments[] = {"dot", "-q", "-Tsvg", nullptr};
    posix_spawn_file_actions_t Actions;
    posix_spawn_file_actions_init(&Actions);
    posix_spawn_file_actions_adddup2(&Actions, iInput, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&Actions, iOutput, STDOUT_FILENO);
    pid_t iProcess;
    const int iError = posix_spawnp(&iProcess, apchArguments[0], &Actions, nullptr,
                                    const_cast<char* const*>(apchArguments), environ);
    posix_spawn_file_actions_destroy(&Actions);
    if (iError != 0) {
        throw std::runtime_error(std::string("cannot run dot: ") + std::strerror(iError) +
                                 "; the formats svg and html need the package graphviz");
    }
    int iStatus = 0;
    while (waitpid(iProcess, &iStatus, 0) < 0 && errno == EINTR) {
    }
    return iStatus;
}

} // namespace

std::string SvgOf(const Picture& cPicture) {
    const File cInput(memfd_create("dot", MFD_CLOEXEC));
    const File cOutput(memfd_create("svg", MFD_CLOEXEC));
    if (cInput.Get() < 0 || cOutput.Get() < 0) {
        Fail("cannot run dot");
    }
    const std::string cDot = DotOf(cPicture);
    if (!WriteAll(cInput.Get(), cDot.data(), cDot.size()) || lseek(cInput.Get(), 0, SEEK_SET) < 0) {
        Fail("cannot keep the drawing for dot");
    }
    const int iStatus = RunDot(cInput.Get(), cOutput.Get());
    std::string cSvg = ReadAllOf(cOutput.Get());
    if (iStatus != 0 || cSvg.find("</svg>") == std::string::npos) {
        throw std::runtime_error("dot of the package graphviz failed");
    }
    return cSvg;
}

} // namespace FwPipe
