// SPDX-License-Identifier: MIT
// fwpipe as a process, and the recordings it is given.
#ifndef FWLIB_TESTS_RECORDING_PROCESS_H
#define FWLIB_TESTS_RECORDING_PROCESS_H

#include "support/support.h"

#include <csignal>
#include <cstdio>
#include <functional>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

struct Outcome {
    int status; // the exit status, or 128 and a signal
    std::string out, err;
};

inline int StatusOf(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

[[noreturn]] inline void Become(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), FWPIPE);
    std::vector<char*> pointers;
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    execv(FWPIPE, pointers.data());
    _exit(127);
}

inline std::string Drained(std::FILE* file) {
    std::rewind(file);
    std::string text;
    char piece[4096];
    for (std::size_t length; (length = std::fread(piece, 1, sizeof piece, file)) > 0;) {
        text.append(piece, length);
    }
    std::fclose(file);
    return text;
}

// Runs fwpipe to its end, with this standard input; prepare is called in the new process.
inline Outcome Fwpipe(const std::vector<std::string>& arguments, const std::string& input = "",
                      const std::function<void()>& prepare = nullptr) {
    std::FILE* const files[] = {std::tmpfile(), std::tmpfile(), std::tmpfile()};
    std::fwrite(input.data(), 1, input.size(), files[0]);
    std::rewind(files[0]);
    const pid_t child = fork();
    if (child == 0) {
        for (int stream = 0; stream < 3; ++stream) {
            dup2(fileno(files[stream]), stream);
        }
        if (prepare) {
            prepare();
        }
        Become(arguments);
    }
    const int status = StatusOf(child);
    std::fclose(files[0]);
    const std::string out = Drained(files[1]);
    return {status, out, Drained(files[2])};
}

// From here on a write that would make a file longer fails, as on a full disk.
inline void LimitFiles(rlim_t bytes) {
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN);
}

using Lines = std::vector<std::string>; // of one object, below its count line

inline std::string ObjectText(const std::string& type, const Lines& lines) {
    std::string text = type + "\nm_b2PropertyCount=" + std::to_string(lines.size()) + "\n";
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

inline std::string Joined(const std::vector<std::string>& objects, std::size_t count) {
    std::string text;
    for (std::size_t u = 0; u < count; ++u) {
        text += objects[u];
    }
    return text;
}

// Objects of all shapes.
inline std::vector<std::string> SampleObjects() {
    std::vector<std::string> objects;
    for (int i = 0; i < 5; ++i) {
        const std::string number = std::to_string(i);
        objects.push_back(ObjectText("QObject", {"QObjectType=QObject", "Count=" + number}));
        objects.push_back(ObjectText("QObject", {}));
        objects.push_back(ObjectText("", {"=", "expression=a=b", "\xff\x80=\xc3\x28\r"}));
        objects.push_back(
            ObjectText(std::string(31, 't'), {"long=" + std::string(100, 'x'), "Count=" + number}));
    }
    return objects;
}

#endif
