#include "base/CommandOptions.h"

#include <sstream>
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

/// Values that are few are named with bars between them.
std::vector<std::string> choicesIn(const std::string& valueName) {
    std::vector<std::string> choices;
    std::istringstream names(valueName);
    for (std::string name; std::getline(names, name, '|');)
        choices.push_back(name);
    return choices.size() > 1 ? choices : std::vector<std::string>{};
}

OptionDescription describe(const CLI::Option& option) {
    OptionDescription found;
    found.help = option.get_description();
    found.isRequired = option.get_required();
    for (const auto& name : option.get_lnames())
        found.names.push_back("--" + name);
    for (const auto& name : option.get_snames())
        found.names.push_back("-" + name);
    if (option.get_items_expected_max() > 0)
        found.value = option.get_type_name();
    found.choices = choicesIn(found.value);
    found.mayRepeat = option.get_expected_max() > 1;
    return found;
}

CommandDescription describe(const CLI::App& app) {
    CommandDescription found;
    found.name = app.get_name();
    found.purpose = app.get_description();
    for (const auto* option : app.get_options())
        found.options.push_back(describe(*option));
    for (const auto* command : app.get_subcommands([](const CLI::App*) { return true; }))
        found.commands.push_back(describe(*command));
    return found;
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
    CLI::Validator check = CLI::IsMember(std::vector<std::string>(values.begin(), values.end()));
    m_option->check(check.description({})); // the value's name says it
    return *this;
}

CommandOption CommandOption::within(double lowest, double highest) {
    CLI::Validator check = CLI::Range(lowest, highest);
    m_option->check(check.description({}));
    return *this;
}

CommandOption CommandOption::existingFolder() {
    CLI::Validator check = CLI::ExistingDirectory;
    m_option->check(check.description({}));
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

CommandDescription CommandLineReader::description() const {
    return describe(*m_owned);
}

} // namespace vantro::base
