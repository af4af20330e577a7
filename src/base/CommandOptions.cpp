#include "base/CommandOptions.h"

#include <utility>

#include <CLI/CLI.hpp> // here only: it takes seconds to compile

namespace vantro::base {
namespace {

constexpr int usageExitCode = 2;

template <typename Function>
void translatingErrors(Function&& function) {
    try {
        function();
    } catch (const UsageError& error) {
        throw CLI::ParseError(error.what(), usageExitCode);
    }
}

} // namespace

CommandOption CommandOption::required() {
    m_option->required();
    return *this;
}

CommandOption CommandOption::valueName(const std::string& name) {
    m_option->type_name(name);
    return *this;
}

CommandOption CommandOption::check(OptionCheck check) {
    m_option->check(std::move(check));
    return *this;
}

CommandOption CommandOption::oneOf(std::initializer_list<const char*> values) {
    m_option->check(CLI::IsMember(std::vector<std::string>(values.begin(), values.end())));
    return *this;
}

CommandOption CommandOption::within(double lowest, double highest) {
    m_option->check(CLI::Range(lowest, highest));
    return *this;
}

CommandOption CommandOption::existingFolder() {
    m_option->check(CLI::ExistingDirectory);
    return *this;
}

CommandOption CommandOption::optionalValue() {
    m_option->expected(0, 1);
    return *this;
}

CommandOption CommandOption::count(int values) {
    m_option->expected(values);
    return *this;
}

CommandOption CommandOption::needs(CommandOption other) {
    m_option->needs(other.m_option);
    return *this;
}

CommandOption CommandOption::excludes(CommandOption other) {
    m_option->excludes(other.m_option);
    return *this;
}

CommandOption Command::flag(const std::string& name, bool& target, const std::string& help) {
    return CommandOption(*m_app->add_flag(name, target, help));
}

template <typename Target>
CommandOption Command::option(const std::string& name, Target& target, const std::string& help) {
    return CommandOption(*m_app->add_option(name, target, help));
}
template CommandOption Command::option(const std::string&, std::string&, const std::string&);
template CommandOption Command::option(const std::string&, std::filesystem::path&,
                                       const std::string&);
template CommandOption Command::option(const std::string&, int&, const std::string&);
template CommandOption Command::option(const std::string&, unsigned&, const std::string&);
template CommandOption Command::option(const std::string&, double&, const std::string&);
template CommandOption Command::option(const std::string&, std::optional<int>&, const std::string&);
template CommandOption Command::option(const std::string&, std::optional<std::uint32_t>&,
                                       const std::string&);
template CommandOption Command::option(const std::string&, std::optional<double>&,
                                       const std::string&);
template CommandOption Command::option(const std::string&, std::vector<std::string>&,
                                       const std::string&);
template CommandOption Command::option(const std::string&, std::vector<std::filesystem::path>&,
                                       const std::string&);
template CommandOption Command::option(const std::string&, std::vector<double>&,
                                       const std::string&);

CommandOption Command::option(const std::string& name, std::function<void(const std::string&)> set,
                              const std::string& help) {
    return CommandOption(*m_app->add_option_function<std::string>(
        name,
        [set = std::move(set)](const std::string& text) { translatingErrors([&] { set(text); }); },
        help));
}

Command Command::command(const std::string& name, const std::string& purpose) {
    return Command(*m_app->add_subcommand(name, purpose));
}

void Command::whenChosen(std::function<void()> function) {
    m_app->callback([function = std::move(function)] { translatingErrors(function); });
}

CommandLineReader::CommandLineReader(const std::string& purpose, const std::string& name)
    : CommandLineReader(std::make_unique<CLI::App>(purpose, name)) {}

CommandLineReader::CommandLineReader(std::unique_ptr<CLI::App> app)
    : Command(*app), m_owned(std::move(app)) {}

CommandLineReader::~CommandLineReader() = default;

void CommandLineReader::requireCommand() {
    m_owned->require_subcommand(1);
    m_owned->fallthrough();
}

void CommandLineReader::version(const std::string& text) {
    m_owned->set_version_flag("--version", text);
}

std::optional<int> CommandLineReader::read(int count, const char* const* words) {
    try {
        m_owned->parse(count, words);
        return {};
    } catch (const CLI::ParseError& error) {
        return m_owned->exit(error) == 0 ? 0 : usageExitCode;
    }
}

} // namespace vantro::base
