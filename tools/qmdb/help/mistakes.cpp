#include "help/mistakes.h"

#include "common/encodings.h"
#include "common/failure.h"
#include "common/names.h"
#include "help/CommandLine.h"
#include "help/prose.h"

#include <algorithm>
#include <filesystem>
#include <fmt/ranges.h>

namespace tool {

namespace {

std::string fullName(const CLI::App& command)
{
    const std::string name = commandName(command);
    return name.empty() ? "qmdb" : "qmdb " + name;
}

const CLI::App& innermost(const CLI::App& app)
{
    const auto given = app.get_subcommands();
    return given.empty() ? app : innermost(*given.front());
}

/// "qmdb get [OPTIONS] DIR MATERIAL PARAMETER"
std::string usage(const CLI::App& command)
{
    const CLI::Formatter formatter;
    std::string text = fullName(command) + " [OPTIONS]";
    for (const CLI::Option* positional : positionals(command)) {
        text += " " + formatter.make_option_usage(positional);
    }
    return text;
}

/// The list, or what in it is like a word.
std::string offer(const std::vector<std::string>& names, const std::string& word)
{
    const auto near = nearMatches(names, word);
    return fmt::format(
        "{}: {}", near.empty() ? "there are" : "near matches", fmt::join(near.empty() ? names : near, ", "));
}

/// Whether there are too few words or too many, and not a wrong one.
bool concernsWords(const CLI::ParseError& error)
{
    return dynamic_cast<const CLI::ExtrasError*>(&error) || dynamic_cast<const CLI::RequiredError*>(&error)
        || dynamic_cast<const CLI::ArgumentMismatch*>(&error);
}

bool isDirectory(const std::string& word)
{
    std::error_code ignored;
    return std::filesystem::is_directory(toLocale(word), ignored);
}

[[noreturn]] void throwUnknownCommand(const std::vector<std::string>& names, const std::string& word)
{
    throw Failure("there is no command \"{}\"; {}{}", word, offer(names, word),
        isDirectory(word) ? fmt::format("\n\"qmdb list {}\" shows what is in that directory", word) : "");
}

std::string unknownOption(const CLI::App& command, const std::string& word)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : visibleOptions(command)) {
        names.push_back("--" + option->get_lnames().front());
    }
    return fmt::format(
        "\"{}\" has no option {}; {}", fullName(command), word, offer(names, word.substr(0, word.find('='))));
}

std::string tooManyWords(const CLI::App& command, const std::string& word)
{
    const bool hasPhases = command.get_option_no_throw("--phase") != nullptr;
    return fmt::format("\"{}\" is one word too many: names with blanks stand in quotes{}", word,
        hasPhases ? ", and phases behind --phase" : "");
}

} // namespace

void requireCommands(const CLI::App& app, const std::vector<std::string>& words)
{
    const CLI::App* parent = &app;
    auto below = subcommands(app);
    for (auto word = words.begin(); !below.empty(); ++word) {
        std::vector<std::string> names;
        std::ranges::transform(
            below, std::back_inserter(names), [](const CLI::App* command) { return command->get_name(); });
        if (word == words.end()) {
            throw Failure(
                "a command is missing behind \"{}\"; there are: {}\n\"{} --help\" tells what they do",
                fullName(*parent), fmt::join(names, ", "), fullName(*parent));
        }
        if (word->starts_with('-')) {
            return;
        }
        const auto named = std::ranges::find(names, *word);
        if (named == names.end()) {
            throwUnknownCommand(names, *word);
        }
        parent = below[static_cast<std::size_t>(named - names.begin())];
        below = subcommands(*parent);
    }
}

std::string mistakeText(const CLI::App& app, const CLI::ParseError& error)
{
    const CLI::App& command = innermost(app);
    std::string wrong = error.what();
    if (dynamic_cast<const CLI::ExtrasError*>(&error)) {
        const auto extra = command.remaining();
        const auto option
            = std::ranges::find_if(extra, [](const std::string& word) { return word.starts_with('-'); });
        wrong = option != extra.end() ? unknownOption(command, *option)
            : extra.empty()           ? wrong
                                      : tooManyWords(command, extra.front());
    }
    if (concernsWords(error)) {
        return fmt::format(
            "{}\nwrite: {}; \"{} --help\" tells more", wrong, usage(command), fullName(command));
    }
    return fmt::format("{}\n\"{} --help\" tells what to write", wrong, fullName(command));
}

} // namespace tool
