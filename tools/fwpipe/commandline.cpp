// SPDX-License-Identifier: MIT
#include "commandline.h"

#include "command.h"
#include "message.h"
#include "nearest.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <set>

namespace FwPipe {
namespace {

// Lists the options that an option excludes in the order of their names, not of their addresses.
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_option_opts(const CLI::Option* pOption) const override {
        std::string cText = CLI::Formatter::make_option_opts(pOption);
        const std::size_t uExcludes = cText.find(" Excludes:");
        if (uExcludes == std::string::npos) {
            return cText;
        }
        std::set<std::string> cNames;
        for (const CLI::Option* const pExcluded : pOption->get_excludes()) {
            cNames.insert(pExcluded->get_name());
        }
        cText.erase(uExcludes + sizeof " Excludes:" - 1);
        for (const std::string& cName : cNames) {
            cText += ' ' + cName;
        }
        return cText;
    }
};

// The names of what may stand here: options, and commands of the program.
std::vector<std::string> NamesOf(const CLI::App& cApp) {
    std::vector<std::string> cNames;
    for (const CLI::App* const pCommand : cApp.get_subcommands([](const CLI::App*) { return true; })) {
        cNames.push_back(pCommand->get_name());
    }
    for (const CLI::Option* const pOption : cApp.get_options()) {
        for (const std::string& cName : pOption->get_lnames()) {
            cNames.push_back("--" + cName);
        }
    }
    return cNames;
}

int ReportUsage(const CLI::App& cApp, const CLI::ParseError& cError) {
    const auto cNamed = cApp.get_subcommands();
    const CLI::App& cCommand = cNamed.empty() ? cApp : *cNamed.front();
    const auto cUnknown = cCommand.remaining();
    std::string cComplaint = cError.what();
    std::string cHint = cUnknown.empty() ? "" : Nearest(cUnknown.front(), NamesOf(cCommand));
    if (cNamed.empty() && cUnknown.empty()) {
        cComplaint = "no command is given";
    } else if (cNamed.empty()) {
        cComplaint = "unknown command or option: " + cUnknown.front();
        cHint = std::filesystem::exists(cUnknown.front()) ? "run " + cUnknown.front() : cHint;
    }
    Complain(cComplaint + DidYouMean(cHint));
    std::fprintf(stderr, "Try \"fwpipe %s--help\".\n",
                 cNamed.empty() ? "" : (cCommand.get_name() + " ").c_str());
    return ExitUsage;
}

} // namespace

Option Option::Required() const {
    m_pOption->required();
    return *this;
}

Option Option::Shows(const char* pchValue) const {
    m_pOption->type_name(pchValue);
    return *this;
}

Option Option::ShowsDefault() const {
    m_pOption->capture_default_str();
    return *this;
}

Option Option::Single() const {
    m_pOption->allow_extra_args(false);
    return *this;
}

Option Option::Check(ArgumentCheck pCheck) const {
    m_pOption->check(CLI::Validator(pCheck, ""));
    return *this;
}

Option Option::OneOf(const std::vector<std::string>& cValues) const {
    m_pOption->check(CLI::IsMember(cValues));
    return *this;
}

Option Option::Excludes(const Option& cOther) const {
    m_pOption->excludes(cOther.m_pOption);
    return *this;
}

bool Option::Given() const {
    return m_pOption->count() > 0;
}

Command Command::Add(const char* pchName, const char* pchAbout, const char* pchExamples) const {
    CLI::App* const pApp = m_pApp->add_subcommand(pchName, pchAbout);
    pApp->footer(pchExamples);
    return Command(*pApp, *m_pChosen);
}

void Command::RequireSubcommand() const {
    m_pApp->require_subcommand(1);
}

Option Command::AddOption(const char* pchNames, std::string& cValue, const char* pchAbout) const {
    return Option(*m_pApp->add_option(pchNames, cValue, pchAbout));
}

Option Command::AddOption(const char* pchNames, std::vector<std::string>& cValues,
                          const char* pchAbout) const {
    return Option(*m_pApp->add_option(pchNames, cValues, pchAbout));
}

Option Command::AddOption(const char* pchNames, unsigned& uValue, const char* pchAbout) const {
    return Option(*m_pApp->add_option(pchNames, uValue, pchAbout));
}

Option Command::AddOption(const char* pchNames, unsigned long long& ullValue, const char* pchAbout) const {
    return Option(*m_pApp->add_option(pchNames, ullValue, pchAbout));
}

Option Command::AddOption(const char* pchNames, const std::function<std::string(const std::string&)>& Take,
                          const char* pchAbout) const {
    const std::string cName = pchNames;
    return Option(*m_pApp->add_option(
        pchNames,
        [cName, Take](const CLI::results_t& cValues) {
            const std::string cError = Take(cValues.front());
            if (!cError.empty()) {
                throw CLI::ValidationError(cName, cError);
            }
            return true;
        },
        pchAbout));
}

Option Command::AddFlag(const char* pchNames, bool& bValue, const char* pchAbout) const {
    return Option(*m_pApp->add_flag(pchNames, bValue, pchAbout));
}

Option Command::AddFlag(const char* pchNames, std::string& cValue, const char* pchAbout) const {
    return Option(*m_pApp->add_flag(pchNames, cValue, pchAbout));
}

void Command::WhenRead(const std::function<void()>& Function) const {
    m_pApp->parse_complete_callback(Function);
}

void Command::Runs(const Action& Function) const {
    Action* const pChosen = m_pChosen;
    m_pApp->callback([pChosen, Function] { *pChosen = Function; });
}

CommandLine::CommandLine(const char* pchAbout, const char* pchFooter)
    : m_pApp(std::make_unique<CLI::App>(pchAbout, "fwpipe")) {
    m_pApp->formatter(std::make_shared<HelpFormatter>());
    m_pApp->set_version_flag("--version", "fwpipe " FWPIPE_VERSION);
    m_pApp->footer(pchFooter);
}

CommandLine::~CommandLine() = default;

Command CommandLine::Program() {
    return Command(*m_pApp, m_cChosen);
}

int CommandLine::Read(const std::vector<std::string>& cWords, Action& cChosen) {
    try {
        m_pApp->parse(std::vector<std::string>(cWords.rbegin(), cWords.rend())); // takes the last word first
    } catch (const CLI::Success& cHelp) {
        m_pApp->exit(cHelp);
    } catch (const CLI::ParseError& cError) {
        return ReportUsage(*m_pApp, cError);
    }
    cChosen = m_cChosen;
    return ExitDone;
}

} // namespace FwPipe
