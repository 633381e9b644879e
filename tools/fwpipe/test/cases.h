// SPDX-License-Identifier: MIT
// Test files: cases of sections. docs/testing-pipes.md describes the format.
#ifndef FWPIPE_TEST_CASES_H
#define FWPIPE_TEST_CASES_H

#include <stdexcept>
#include <string>
#include <vector>

namespace FwPipe {

struct Section {
    std::string cKind;     // the first word of the heading
    std::string cArgument; // the rest of the heading
    unsigned int uLine;    // of the heading, from 1
    unsigned int uEnd;     // the first line after the section
    std::string cText;     // what its lines stand for; empty lines at the end do not count
};

struct Case {
    std::string cName;
    unsigned int uLine;             // of the heading
    unsigned int uEnd;              // the first line after the case
    std::vector<Section> cSections; // for "also", with those of an earlier case
    bool bAlso;

    // The first section of that kind and argument; null for none. "" is any argument.
    const Section* Find(const std::string& cKind, const std::string& cArgument = "") const;
};

struct TestFile {
    std::string cPath;
    std::vector<std::string> cLines;
    std::vector<std::string> cLinks; // of the sections "link", relative to the file's folder
    std::vector<Case> cCases;
};

// What is wrong with a test file, and the line; 0 for the whole file.
class TestFileError : public std::runtime_error {
public:
    TestFileError(unsigned int uErrorLine, const std::string& cText)
        : std::runtime_error(cText), uLine(uErrorLine) {}

    unsigned int uLine;
};

// Throws TestFileError, as ReadTestFile does.
std::vector<std::string> ReadLines(const std::string& cPath);
TestFile ReadTestFile(const std::string& cPath);

// The objects of an input in the form of object streams. An empty line ends an object. Where the line with the number
// of properties is missing, it is added: each line up to the next empty one is then a property. Returns what is wrong.
std::string AppendInput(const std::string& cText, std::vector<std::vector<std::string>>& cBlocks);

} // namespace FwPipe

#endif
