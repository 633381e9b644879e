// SPDX-License-Identifier: MIT
// What a piece of code answers and prints, as one text.
#ifndef FWLIB_TESTS_SUPPORT_CAPTURE_H
#define FWLIB_TESTS_SUPPORT_CAPTURE_H

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

struct Output {
    std::string printed, reported; // on standard output and standard error
};

// The standard streams are in memory while the code runs.
template <class Code>
Output Captured(Code code) {
    std::FILE* const own[] = {stdout, stderr};
    char* texts[2];
    std::size_t sizes[2];
    stdout = open_memstream(&texts[0], &sizes[0]);
    stderr = open_memstream(&texts[1], &sizes[1]);
    code();
    std::fclose(std::exchange(stdout, own[0]));
    std::fclose(std::exchange(stderr, own[1]));
    const Output output = {{texts[0], sizes[0]}, {texts[1], sizes[1]}};
    std::free(texts[0]);
    std::free(texts[1]);
    return output;
}

// "ANSWER STDOUT", and when there is any, "! STDERR" behind it.
template <class Code>
std::string Told(Code code) {
    int answer = 0;
    const Output output = Captured([&] { answer = code(); });
    return std::to_string(answer) + " " + output.printed +
           (output.reported.empty() ? "" : "! " + output.reported);
}

#endif
