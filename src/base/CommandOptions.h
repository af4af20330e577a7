#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace CLI { // NOLINT(readability-identifier-naming): the library's own name
class App;
class Option;
} // namespace CLI

namespace vantro::base {

/// Words on a command line that mean nothing; the text says which and why.
class UsageError : public std::runtime_error {
  public:
    UsageError(const std::string& option, const std::string& problem)
        : std::runtime_error(option + ": " + problem) {}
};

/// What help tells of an option or an argument. A plain record.
struct OptionDescription {
    std::vector<std::string> names; ///< "--long" first; empty: an argument, which stands by itself
    std::string value;              ///< what help shows for it; empty: it takes none
    std::vector<std::string> choices; ///< the only values that there are; empty: any
    std::string help;
    bool isRequired = false;
    bool mayRepeat = false;
};

/// What help tells of a program or of one of its commands. A plain record.
struct CommandDescription {
    std::string name;
    std::string purpose;
    std::vector<OptionDescription> options;
    std::vector<CommandDescription> commands;
};

/// Says what is wrong with an option's text; empty where nothing is.
using OptionCheck = std::function<std::string(const std::string&)>;

/// An option of a command, to be described further. A handle; its program owns what it stands for.
class CommandOption {
  public:
    explicit CommandOption(CLI::Option& option) : m_option(&option) {}

    CommandOption required();
    /// What help shows in the place of the value, for example "FILE".
    CommandOption valueName(const std::string& name);
    CommandOption check(OptionCheck check);
    CommandOption oneOf(std::initializer_list<const char*> values);
    CommandOption within(double lowest, double highest);
    CommandOption existingFolder();
    /// It may stand without a value, which is then the empty text.
    CommandOption optionalValue();
    /// It takes so many values.
    CommandOption count(int values);
    CommandOption needs(CommandOption other);
    CommandOption excludes(CommandOption other);

  private:
    CLI::Option* m_option;
};

/// A command and its options, which fill their targets while the command line is read. Names are
/// "--long,-s", or "argument" for what stands without a name. A handle; its program owns it.
class Command {
  public:
    explicit Command(CLI::App& app) : m_app(&app) {}

    /// A name that begins with "!" clears the target.
    CommandOption flag(const std::string& name, bool& target, const std::string& help);
    /// For std::string, path, int, unsigned, double, optional numbers, and vectors of strings,
    /// paths and doubles.
    template <typename Target>
    CommandOption option(const std::string& name, Target& target, const std::string& help);
    /// Gives the text, once it passed all checks, to `set`, which may throw UsageError.
    CommandOption option(const std::string& name, std::function<void(const std::string&)> set,
                         const std::string& help);

    Command command(const std::string& name, const std::string& purpose);
    /// Called when the whole line was read and names this command; may throw UsageError.
    void whenChosen(std::function<void()> function);

  private:
    CLI::App* m_app;
};

/// A program's command line. One thread.
class CommandLineReader : public Command {
  public:
    explicit CommandLineReader(const std::string& purpose, const std::string& name = {});
    ~CommandLineReader();

    /// One of its commands must be named; options of the program's own may stand behind it, too.
    void requireCommand();
    void version(const std::string& text);
    /// Prints help, the version or what is wrong where that is asked for or needed, and says with
    /// which code the program ends: 0, or 2 for wrong usage. Nothing where it goes on.
    std::optional<int> read(int count, const char* const* words);
    CommandDescription description() const;

  private:
    explicit CommandLineReader(std::unique_ptr<CLI::App> app);

    std::unique_ptr<CLI::App> m_owned;
};

} // namespace vantro::base
