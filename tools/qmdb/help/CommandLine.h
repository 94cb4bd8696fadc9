#pragma once

#include <CLI/CLI.hpp>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// What stands for a value in help: "PHASE" of "--phase PHASE", "DIR" of a positional. The words of a choice
/// stand in braces.
std::string placeholder(const CLI::Option& option);

bool isHidden(const CLI::App& command);
/// In the order of the tree, with those of option groups, without what is hidden.
std::vector<const CLI::Option*> visibleOptions(const CLI::App& command);
std::vector<const CLI::Option*> positionals(const CLI::App& command);
/// Those that have a name and are not hidden.
std::vector<const CLI::App*> subcommands(const CLI::App& command);

/// The begin of a command line, which the parser would refuse because it is not complete.
class CommandLine {
public:
    CommandLine(const CLI::App& app, std::span<const std::string> words);

    const CLI::App& command() const noexcept { return *command_; }

    /// Whether the next word can only be a value of an option.
    bool needsValue() const { return pending_ && taken_ < pending_->get_items_expected_min(); }
    bool mayTakeOption() const { return !onlyPositionals_ && !needsValue(); }
    bool mayTakeCommand() const { return mayTakeOption() && !pending_ && given_.empty(); }
    /// The option or positional that the next word is a value of; null when there is none.
    const CLI::Option* expected() const;

    bool isGiven(const CLI::Option& option) const;
    /// The values of all options and positionals with such a placeholder.
    std::vector<std::string> values(std::string_view placeholder) const;

private:
    struct Given {
        const CLI::Option* option;
        std::string text;
    };

    void take(const std::string& word);
    void takeOption(const std::string& word);
    bool takesValue(const std::string& word) const;
    const CLI::Option* nextPositional() const;

    const CLI::App* command_;
    std::vector<Given> given_; ///< an option without a value with an empty text
    const CLI::Option* pending_ = nullptr; ///< the option whose values are being given
    int taken_ = 0; ///< how many of them have been
    bool onlyPositionals_ = false;
};

} // namespace tool
