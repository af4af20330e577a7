#include "app/cli/ShellCompletion.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace vantro::app::cli {
namespace {

using base::CommandDescription;
using base::OptionDescription;

bool isArgument(const OptionDescription& option) {
    return option.names.empty();
}

bool isFolder(const OptionDescription& option) {
    return option.value == "FOLDER";
}

/// Between single quotes of a shell.
std::string quoted(std::string text) {
    for (auto at = text.find('\''); at != std::string::npos; at = text.find('\'', at + 4))
        text.replace(at, 1, "'\\''");
    return text;
}

std::vector<std::string> optionNames(const CommandDescription& command) {
    std::vector<std::string> names;
    for (const auto& option : command.options)
        names.insert(names.end(), option.names.begin(), option.names.end());
    return names;
}

std::vector<std::string> commandNames(const CommandDescription& program) {
    std::vector<std::string> names;
    for (const auto& command : program.commands)
        names.push_back(command.name);
    return names;
}

std::string bashScript(const CommandDescription& program) {
    std::string values;
    std::string options;
    for (const auto& command : program.commands) {
        for (const auto& option : command.options)
            for (const auto& name : option.names)
                if (!option.choices.empty())
                    values += fmt::format("        '{} {}') words='{}' ;;\n", command.name, name,
                                          fmt::join(option.choices, " "));
        options += fmt::format("        {}) words='{}' ;;\n", command.name,
                               fmt::join(optionNames(command), " "));
    }
    return fmt::format(R"(_{0}() {{
    local cur=${{COMP_WORDS[COMP_CWORD]}} prev=${{COMP_WORDS[COMP_CWORD-1]}} command='' words='' word
    for word in "${{COMP_WORDS[@]:1:COMP_CWORD-1}}"; do
        case $word in {1}) command=$word; break ;; esac
    done
    case "$command $prev" in
{2}    esac
    if [[ -z $words && $cur == -* ]]; then
        case $command in
{3}        '') words='{4}' ;;
        esac
    elif [[ -z $words && -z $command ]]; then
        words='{5}'
    fi
    COMPREPLY=()
    [[ -z $words ]] || mapfile -t COMPREPLY < <(compgen -W "$words" -- "$cur")
}}
complete -o default -F _{0} {0}
)",
                       program.name, fmt::join(commandNames(program), "|"), values, options,
                       fmt::join(optionNames(program), " "), fmt::join(commandNames(program), " "));
}

/// In a description of zsh, where brackets and colons have a meaning.
std::string zshText(const std::string& text) {
    std::string escaped;
    for (const char letter : text) {
        if (letter == '[' || letter == ']' || letter == ':' || letter == '\\')
            escaped += '\\';
        escaped += letter;
    }
    return quoted(escaped);
}

std::string zshValue(const OptionDescription& option) {
    if (option.value.empty())
        return {};
    const auto action = !option.choices.empty()
                            ? fmt::format("({})", fmt::join(option.choices, " "))
                        : isFolder(option) ? std::string("_files -/")
                                           : std::string("_files");
    return fmt::format(":{}:{}", zshText(option.choices.empty() ? option.value : "value"), action);
}

std::string zshOptions(const CommandDescription& command, std::string_view indent) {
    std::string lines;
    for (const auto& option : command.options) {
        if (isArgument(option))
            lines +=
                fmt::format("{}'{}{}' \\\n", indent, option.mayRepeat ? "*" : "", zshValue(option));
        for (const auto& name : option.names)
            lines += fmt::format("{}'{}[{}]{}' \\\n", indent, name, zshText(option.help),
                                 zshValue(option));
    }
    return lines;
}

std::string zshScript(const CommandDescription& program) {
    std::string purposes;
    std::string cases;
    for (const auto& command : program.commands) {
        purposes += fmt::format("            '{}:{}'\n", command.name, zshText(command.purpose));
        cases += fmt::format("            {})\n                _arguments \\\n{}"
                             "                    && return ;;\n",
                             command.name, zshOptions(command, "                    "));
    }
    return fmt::format(R"(#compdef {0}
_{0}() {{
    local context state state_descr line
    typeset -A opt_args
    _arguments -C \
{1}        '1: :->command' \
        '*:: :->rest' && return
    case $state in
    command)
        local -a commands=(
{2}        )
        _describe command commands
        _files -g '*.vantro(-/,.)' ;;
    rest)
        case $words[1] in
{3}        esac ;;
    esac
}}
_{0} "$@"
)",
                       program.name, zshOptions(program, "        "), purposes, cases);
}

std::string fishOption(const OptionDescription& option) {
    std::string words;
    for (const auto& name : option.names)
        words += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    words += fmt::format(" -d '{}'", quoted(option.help));
    if (!option.choices.empty())
        words += fmt::format(" -x -a '{}'", fmt::join(option.choices, " "));
    else if (isFolder(option))
        words += " -x -a '(__fish_complete_directories)'";
    else if (!option.value.empty())
        words += " -r";
    return words;
}

std::string fishScript(const CommandDescription& program) {
    std::string lines;
    for (const auto& option : program.options)
        lines += fmt::format("complete -c {}{}\n", program.name, fishOption(option));
    for (const auto& command : program.commands) {
        lines += fmt::format("complete -c {} -n __fish_use_subcommand -a {} -d '{}'\n",
                             program.name, command.name, quoted(command.purpose));
        for (const auto& option : command.options)
            if (!isArgument(option))
                lines += fmt::format("complete -c {} -n '__fish_seen_subcommand_from {}'{}\n",
                                     program.name, command.name, fishOption(option));
    }
    return lines;
}

} // namespace

std::optional<std::string> completionScript(const CommandDescription& program,
                                            const std::string& shell) {
    if (shell == "bash")
        return bashScript(program);
    if (shell == "zsh")
        return zshScript(program);
    if (shell == "fish")
        return fishScript(program);
    return {};
}

} // namespace vantro::app::cli
