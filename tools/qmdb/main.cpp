#include "commands/commands.h"
#include "common/encodings.h"
#include "common/failure.h"
#include "common/leftovers.h"
#include "common/names.h"

#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <exception>

namespace {

/// Names beyond ASCII need a locale that can express them; numbers keep their point.
void setLocale()
{
    const char* chosen = std::setlocale(LC_ALL, "");
    if (!chosen || std::string_view(chosen) == "C" || std::string_view(chosen) == "POSIX") {
        std::setlocale(LC_ALL, "C.UTF-8");
    }
    std::setlocale(LC_NUMERIC, "C");
}

/// An argument in UTF-8. The parser takes "-.5" for an option, but not "-0.5".
std::string argumentText(const char* argument)
{
    std::string text = tool::fromLocale(argument);
    const bool bareFraction = text.size() > 2 && text.starts_with("-.") && text[2] >= '0' && text[2] <= '9';
    return bareFraction ? "-0" + text.substr(1) : text;
}

void addAddCommand(CLI::App& app, tool::Action& action)
{
    CLI::App* add = app.add_subcommand("add", "Add substances, phases, phase changes and parameters");
    add->require_subcommand(1);
    for (const auto addTo : { tool::addSubstanceCommand, tool::addPhaseCommand, tool::addChangeCommand,
             tool::addParameterCommand }) {
        addTo(*add, action);
    }
}

/// Throws Failure when a word stands where a command should; the parser would not name it.
void requireCommands(const CLI::App& app, const std::vector<std::string>& words)
{
    const CLI::App* parent = &app;
    for (const std::string& word : words) {
        std::vector<std::string> names;
        const auto isNamed = [](const CLI::App* command) { return !command->get_name().empty(); };
        for (const CLI::App* command : parent->get_subcommands(isNamed)) { // option groups have no name
            names.push_back(command->get_name());
        }
        if (names.empty() || word.starts_with('-')) {
            return;
        }
        if (std::ranges::find(names, word) == names.end()) {
            const auto near = tool::nearMatches(names, word);
            throw tool::Failure("there is no command \"{}\"; {}: {}", word,
                near.empty() ? "there are" : "near matches", fmt::join(near.empty() ? names : near, ", "));
        }
        parent = parent->get_subcommand(word);
    }
}

/// The parser's words, and which command explains what to write.
std::string usageText(const CLI::App& app, const CLI::ParseError& error)
{
    const CLI::App* innermost = &app;
    std::string command = app.get_name();
    while (!innermost->get_subcommands().empty()) {
        innermost = innermost->get_subcommands().front();
        command += " " + innermost->get_name();
    }
    return fmt::format("{}\n\"{} --help\" tells what to write", error.what(), command);
}

int run(const std::vector<std::string>& words)
{
    CLI::App app("Lists, checks, draws, fills and exports a database of material properties", "qmdb");
    app.set_version_flag("--version", "qmdb " QMDB_VERSION);
    app.require_subcommand(1);
    tool::Action action;
    for (const auto add : { tool::addListCommand, tool::addGetCommand, tool::addFindCommand,
             tool::addPlotCommand, tool::addCheckCommand, tool::addExportCommand, tool::addPageCommand,
             addAddCommand, tool::addNewCommand }) {
        add(app, action);
    }
    requireCommands(app, words);
    try {
        app.parse(std::vector<std::string>(words.rbegin(), words.rend())); // the order that it takes
    } catch (const CLI::Success& answer) {
        return app.exit(answer);
    } catch (const CLI::ParseError& error) {
        throw tool::Failure(usageText(app, error));
    }
    return action();
}

/// Tells what went wrong, each line with the command's name.
int report(std::string_view message, int status)
{
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = message.find('\n');
        fmt::print(stderr, "qmdb: {}\n", message.substr(0, end));
        message.remove_prefix(end == std::string_view::npos ? message.size() : end + 1);
    }
    return status;
}

} // namespace

int main(int count, char** arguments)
{
    setLocale();
    std::signal(SIGPIPE, SIG_IGN); // writing reports a closed pipe instead
    tool::removeLeftoversWhenInterrupted();
    try {
        std::vector<std::string> words;
        std::transform(arguments + 1, arguments + count, std::back_inserter(words), argumentText);
        return run(words);
    } catch (const tool::ClosedPipe&) {
        return tool::ExitDone;
    } catch (const tool::Failure& failure) {
        return report(failure.what(), failure.status());
    } catch (const std::exception& error) {
        return report(error.what(), tool::ExitFailed);
    }
}
