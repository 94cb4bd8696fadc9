#include "help/CommandLine.h"

#include <algorithm>
#include <cctype>

namespace tool {

namespace {

bool looksLikeOption(std::string_view word)
{
    return word.size() > 1 && word[0] == '-' && !std::isdigit(static_cast<unsigned char>(word[1]));
}

/// How many values may follow the option at once.
int mostValues(const CLI::Option& option)
{
    const int most = option.get_items_expected_max();
    const bool oneByOne = most >= CLI::detail::expected_max_vector_size && !option.get_allow_extra_args();
    return oneByOne ? option.get_items_expected_min() : most;
}

} // namespace

std::string placeholder(const CLI::Option& option)
{
    return option.get_positional() ? option.get_name(true, false) : option.get_type_name();
}

bool isHidden(const CLI::App& command)
{
    return command.get_group().empty();
}

std::vector<const CLI::Option*> visibleOptions(const CLI::App& command)
{
    auto options = command.get_options(
        [](const CLI::Option* option) { return option->nonpositional() && !option->get_group().empty(); });
    const auto isGroup = [](const CLI::App* app) { return app->get_name().empty(); };
    for (const CLI::App* group : command.get_subcommands(isGroup)) {
        auto more = visibleOptions(*group);
        std::erase(more, group->get_help_ptr()); // each group has one of its own
        options.insert(options.end(), more.begin(), more.end());
    }
    return options;
}

std::vector<const CLI::Option*> positionals(const CLI::App& command)
{
    return command.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

std::vector<const CLI::App*> subcommands(const CLI::App& command)
{
    return command.get_subcommands(
        [](const CLI::App* app) { return !app->get_name().empty() && !isHidden(*app); });
}

CommandLine::CommandLine(const CLI::App& app, std::span<const std::string> words)
    : command_(&app)
{
    for (const std::string& word : words) {
        take(word);
    }
}

bool CommandLine::takesValue(const std::string& word) const
{
    return needsValue() || (pending_ && taken_ < mostValues(*pending_) && !looksLikeOption(word));
}

void CommandLine::take(const std::string& word)
{
    if (takesValue(word)) {
        given_.push_back({ pending_, word });
        ++taken_;
        return;
    }
    pending_ = nullptr;
    if (!onlyPositionals_ && word == "--") {
        onlyPositionals_ = true;
        return;
    }
    if (!onlyPositionals_ && looksLikeOption(word)) {
        takeOption(word);
        return;
    }
    const auto commands = mayTakeCommand() ? subcommands(*command_) : std::vector<const CLI::App*>();
    const auto named = std::ranges::find(commands, word, [](const CLI::App* app) { return app->get_name(); });
    if (named != commands.end()) {
        command_ = *named;
    } else if (const CLI::Option* positional = nextPositional()) {
        given_.push_back({ positional, word });
    }
}

void CommandLine::takeOption(const std::string& word)
{
    const std::size_t sign = word.find('=');
    const CLI::Option* option = command_->get_option_no_throw(word.substr(0, sign));
    if (!option) {
        return;
    }
    const bool takesValues = option->get_items_expected_max() > 0;
    if (!takesValues || sign != std::string::npos) {
        given_.push_back({ option, sign == std::string::npos ? "" : word.substr(sign + 1) });
        return;
    }
    pending_ = option;
    taken_ = 0;
}

const CLI::Option* CommandLine::nextPositional() const
{
    const auto all = positionals(*command_);
    const auto hasRoom = [this](const CLI::Option* option) {
        return std::ranges::count(given_, option, &Given::option) < mostValues(*option);
    };
    const auto next = std::ranges::find_if(all, hasRoom);
    return next == all.end() ? nullptr : *next;
}

const CLI::Option* CommandLine::expected() const
{
    return pending_ && taken_ < mostValues(*pending_) ? pending_ : nextPositional();
}

bool CommandLine::isGiven(const CLI::Option& option) const
{
    return std::ranges::find(given_, &option, &Given::option) != given_.end();
}

std::vector<std::string> CommandLine::values(std::string_view wanted) const
{
    std::vector<std::string> values;
    for (const Given& given : given_) {
        if (placeholder(*given.option) == wanted) {
            values.push_back(given.text);
        }
    }
    return values;
}

} // namespace tool
