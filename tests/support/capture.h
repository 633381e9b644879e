// SPDX-License-Identifier: MIT
// What a piece of code writes to standard output and standard error.
#ifndef FWLIB_TESTS_SUPPORT_CAPTURE_H
#define FWLIB_TESTS_SUPPORT_CAPTURE_H

#include <cstdio>
#include <ostream>
#include <string>
#include <unistd.h>

struct Output {
    std::string out;
    std::string err;

    friend bool operator==(const Output& l, const Output& r) { return l.out == r.out && l.err == r.err; }
    friend std::ostream& operator<<(std::ostream& stream, const Output& output) {
        return stream << "stdout <<" << output.out << ">> stderr <<" << output.err << ">>";
    }
};

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

template <class Code>
Output Captured(Code code) {
    Redirected out(stdout);
    Redirected err(stderr);
    code();
    return {out.End(), err.End()};
}

#endif
