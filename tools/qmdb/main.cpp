#include "commands/commands.h"
#include "common/encodings.h"
#include "common/failure.h"
#include "common/leftovers.h"
#include "help/Completion.h"
#include "help/HelpFormatter.h"
#include "help/manual.h"
#include "help/mistakes.h"
#include "output/Output.h"

#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <exception>

namespace {

/// What a shell calls the end by a signal.
constexpr int signalStatus = 128;

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
    CLI::App* add
        = app.add_subcommand("add", "Add substances, phases, phase changes, parameters and descriptions");
    add->require_subcommand(1);
    for (const auto addTo : { tool::addSubstanceCommand, tool::addPhaseCommand, tool::addChangeCommand,
             tool::addParameterCommand, tool::addDescriptionCommand }) {
        addTo(*add, action);
    }
    add->footer("Example:\n  qmdb add substance mine Water --comment H2O --liquid Liquid --gas Steam");
}

void addCommands(CLI::App& app, tool::Action& action)
{
    app.formatter(std::make_shared<tool::HelpFormatter>());
    app.set_version_flag("--version", "qmdb " QMDB_VERSION);
    app.require_subcommand(1);
    for (const auto add : { tool::addListCommand, tool::addGetCommand, tool::addFindCommand,
             tool::addPlotCommand, tool::addCheckCommand, tool::addExportCommand, tool::addPageCommand,
             tool::addImportCommand, tool::addDiffCommand, addAddCommand, tool::addSetCommand,
             tool::addRemoveCommand, tool::addNewCommand }) {
        add(app, action);
    }
    // Commands made before this do not inherit it.
    app.footer("Examples:\n"
               "  qmdb list materials Water\n"
               "  qmdb get materials Water:Liquid Density --at P=1e6,T=350\n"
               "  qmdb plot materials Copper Iron \"Thermal conductivity\" --phase Solid -o metals.svg\n"
               "  qmdb export materials --sqlite materials.sqlite");
}

int printManual(const CLI::App& app)
{
    tool::Output output;
    output.write(tool::manualPage(app));
    output.finish();
    return tool::ExitDone;
}

int run(const std::vector<std::string>& words)
{
    CLI::App app("Lists, checks, draws, fills and exports a database of material properties", "qmdb");
    tool::Action action;
    addCommands(app, action);
    // Scripts ask for these: what they give must not be taken for options.
    const std::string first = words.empty() ? "" : words.front();
    if (first == "complete") {
        return tool::runComplete(app, { words.begin() + 1, words.end() });
    }
    if (first == "manual") {
        return printManual(app);
    }
    if (first == "help") {
        std::vector<std::string> asked(words.begin() + 1, words.end());
        asked.emplace_back("--help");
        return run(asked);
    }
    tool::requireCommands(app, words);
    try {
        app.parse(std::vector<std::string>(words.rbegin(), words.rend())); // the order that it takes
    } catch (const CLI::Success& answer) {
        return app.exit(answer);
    } catch (const CLI::ParseError& error) {
        throw tool::Failure(tool::mistakeText(app, error));
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
    } catch (const tool::Interrupted& interrupted) {
        return signalStatus + interrupted.signal(); // for when the signal itself does not end the command
    } catch (const tool::Failure& failure) {
        return report(failure.what(), failure.status());
    } catch (const std::exception& error) {
        return report(error.what(), tool::ExitFailed);
    }
}
