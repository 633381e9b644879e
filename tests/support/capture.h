// SPDX-License-Identifier: MIT
// What a piece of code answers and prints, as one text.
#ifndef FWLIB_TESTS_SUPPORT_CAPTURE_H
#define FWLIB_TESTS_SUPPORT_CAPTURE_H

#include <cstdio>
#include <string>
#include <unistd.h>

// Sends a standard stream to a file of its own until End.
class Redirected {
public:
    explicit Redirected(std::FILE* stream)
        : m_pStream(stream), m_iSaved((std::fflush(stream), dup(fileno(stream)))), m_pFile(std::tmpfile()) {
        dup2(fileno(m_pFile), fileno(m_pStream));
    }
    Redirected(const Redirected&) = delete;
    Redirected& operator=(const Redirected&) = delete;

    std::string End() {
        std::fflush(m_pStream);
        dup2(m_iSaved, fileno(m_pStream));
        close(m_iSaved);
        std::rewind(m_pFile);
        std::string text;
        for (int c; (c = std::fgetc(m_pFile)) != EOF;) {
            text += static_cast<char>(c);
        }
        std::fclose(m_pFile);
        return text;
    }

private:
    std::FILE* m_pStream;
    int m_iSaved;
    std::FILE* m_pFile;
};

// Makes a text the standard input of a piece of code.
class Input {
public:
    explicit Input(const std::string& text) : m_iSaved(dup(STDIN_FILENO)), m_pFile(std::tmpfile()) {
        std::fwrite(text.data(), 1, text.size(), m_pFile);
        std::rewind(m_pFile);
        dup2(fileno(m_pFile), STDIN_FILENO);
    }
    ~Input() {
        dup2(m_iSaved, STDIN_FILENO);
        close(m_iSaved);
        std::fclose(m_pFile);
        std::fflush(stdin); // forgets what was read ahead
        std::clearerr(stdin);
    }
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

private:
    int m_iSaved;
    std::FILE* m_pFile;
};

// "ANSWER STDOUT", and when there is any, "! STDERR" behind it.
template <class Code>
std::string Told(Code code) {
    Redirected out(stdout), err(stderr);
    const int answer = code();
    const std::string printed = out.End(), reported = err.End();
    return std::to_string(answer) + " " + printed + (reported.empty() ? "" : "! " + reported);
}

#endif
