#include "app/cli/ManualPage.h"

#include <cctype>

#include <fmt/format.h>

namespace vantro::app::cli {
namespace {

using base::CommandDescription;
using base::OptionDescription;

std::string escaped(const std::string& text) {
    std::string page;
    for (const char letter : text) {
        if (letter == '\\')
            page += "\\e";
        else if (letter == '-')
            page += "\\-";
        else
            page += letter;
    }
    // A line that began with one would be a request.
    return page.starts_with('.') || page.starts_with('\'') ? "\\&" + page : page;
}

std::string synopsis(const CommandDescription& command) {
    std::string words;
    for (const auto& option : command.options) {
        if (!option.names.empty())
            continue;
        const auto value =
            fmt::format("\\fI{}\\fR{}", escaped(option.value), option.mayRepeat ? " ..." : "");
        words += option.isRequired ? " " + value : fmt::format(" [{}]", value);
    }
    return words;
}

std::string describe(const OptionDescription& option) {
    std::string names;
    for (const auto& name : option.names)
        names += fmt::format("{}\\fB{}\\fR", names.empty() ? "" : ", ", escaped(name));
    if (!option.value.empty())
        names += fmt::format("{}\\fI{}\\fR", names.empty() ? "" : " ", escaped(option.value));
    return fmt::format(".TP\n{}\n{}\n", names, escaped(option.help));
}

std::string describe(const std::vector<OptionDescription>& options) {
    std::string text;
    for (const auto& option : options)
        if (option.names.empty() || option.names.front() != "--help")
            text += describe(option);
    return text;
}

constexpr auto ending = R"(.SH FILES
.TP
\fINAME\fR.vantro
A project: a folder, or one file, that holds the recording and what was made of it.
.TP
~/.local/share/vantro/Recordings
Where recordings are kept until they are saved or deleted.
.TP
~/.local/state/vantro
Edits that were not saved, to be offered after a crash.
.SH EXIT STATUS
.TP
0
All was done.
.TP
1
Something went wrong; standard error says what and where.
.TP
2
The command line means nothing.
.TP
130
The user took it back, or refused the desktop's question.
)";

} // namespace

std::string manualPage(const CommandDescription& program, const std::string& version) {
    const auto& name = program.name;
    std::string title;
    for (const char letter : name)
        title += static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    auto page = fmt::format(".TH {} 1 \"\" \"{} {}\" \"User Commands\"\n", title, name, version);
    page += fmt::format(".SH NAME\n{} \\- record the screen and zoom into every click\n", name);
    page += fmt::format(".SH SYNOPSIS\n.B {0}\n[\\fIPROJECT\\fR|\\fIMOVIE\\fR]\n.br\n.B {0}\n"
                        "\\fICOMMAND\\fR [\\fIOPTION\\fR ...]\n",
                        name);
    page += fmt::format(".SH DESCRIPTION\n{}\nWithout a command it opens its window, with what is "
                        "named there to be edited.\n",
                        escaped(program.purpose));
    page += ".SH OPTIONS\n" + describe(program.options) + ".SH COMMANDS\n";
    for (const auto& command : program.commands)
        page += fmt::format(".SS \"{} {}{}\"\n{}.\n{}", name, command.name, synopsis(command),
                            escaped(command.purpose), describe(command.options));
    return page + ending;
}

} // namespace vantro::app::cli
