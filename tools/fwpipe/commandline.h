// SPDX-License-Identifier: MIT
// The command line, as the subcommands declare it. Only commandline.cpp includes the header of CLI11, which takes longer
// to compile than all other code of a subcommand.
#ifndef FWPIPE_COMMANDLINE_H
#define FWPIPE_COMMANDLINE_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace FwPipe {

// Executes a subcommand and returns the exit status. If that is ExitFailed, one line on standard error says why.
using Action = std::function<int()>;

// Returns an empty text for a valid argument, otherwise an error message.
using ArgumentCheck = std::string (*)(const std::string& cText);

// A declared option, flag or positional argument. A copy refers to the same option.
class Option {
public:
    explicit Option(CLI::Option& cOption) : m_pOption(&cOption) {}

    Option Required() const;
    Option Shows(const char* pchValue) const; // stands for the value in the help
    Option ShowsDefault() const;
    Option Single() const; // takes one value each time it is given; the next argument is not a second value
    Option Check(ArgumentCheck pCheck) const;
    Option OneOf(const std::vector<std::string>& cValues) const;
    Option Excludes(const Option& cOther) const;
    bool Given() const; // when the command line has been read

private:
    CLI::Option* m_pOption;
};

// A subcommand, or the program. The variables in which it stores values must exist until the command line has been read.
class Command {
public:
    Command(CLI::App& cApp, Action& cChosen) : m_pApp(&cApp), m_pChosen(&cChosen) {}

    Command Add(const char* pchName, const char* pchAbout, const char* pchExamples) const;
    void RequireSubcommand() const;

    // A name without dashes is a positional argument.
    Option AddOption(const char* pchNames, std::string& cValue, const char* pchAbout) const;
    Option AddOption(const char* pchNames, std::vector<std::string>& cValues, const char* pchAbout) const;
    Option AddOption(const char* pchNames, unsigned& uValue, const char* pchAbout) const;
    Option AddOption(const char* pchNames, unsigned long long& ullValue, const char* pchAbout) const;
    // Passes the value to Take, which returns an error message, or an empty text.
    Option AddOption(const char* pchNames, const std::function<std::string(const std::string&)>& Take,
                     const char* pchAbout) const;
    Option AddFlag(const char* pchNames, bool& bValue, const char* pchAbout) const;
    Option AddFlag(const char* pchNames, std::string& cValue,
                   const char* pchAbout) const; // --NAME or --NAME=VALUE

    void
    WhenRead(const std::function<void()>& Function) const; // is called when the options have their values
    void Runs(const Action& Function) const;

private:
    CLI::App* m_pApp;
    Action* m_pChosen;
};

class CommandLine {
public:
    CommandLine(const char* pchAbout, const char* pchFooter);
    ~CommandLine();

    Command Program();
    // Reads the words, without the name of the program. Returns the exit status, after a report if they are wrong, and
    // stores the action to execute; none if help or the version was printed.
    int Read(const std::vector<std::string>& cWords, Action& cChosen);

private:
    std::unique_ptr<CLI::App> m_pApp;
    Action m_cChosen;
};

} // namespace FwPipe

#endif
