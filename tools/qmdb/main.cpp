#include "commands/add.h"
#include "commands/check.h"
#include "commands/export.h"
#include "commands/get.h"
#include "commands/list.h"
#include "commands/new.h"
#include "commands/plot.h"
#include "common/encodings.h"
#include "common/failure.h"

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

int run(int count, char** arguments)
{
    CLI::App app("Looks at, checks, draws, fills and hands on a database of material properties", "qmdb");
    app.set_version_flag("--version", "qmdb " QMDB_VERSION);
    app.require_subcommand(1);
    tool::Action action;
    for (const auto add : { tool::addListCommand, tool::addGetCommand, tool::addPlotCommand,
             tool::addCheckCommand, tool::addExportCommand, tool::addAddCommand, tool::addNewCommand }) {
        add(app, action);
    }
    std::vector<std::string> texts;
    std::transform(arguments + 1, arguments + count, std::back_inserter(texts), tool::fromLocale);
    std::ranges::reverse(texts); // the order in which the parser takes them
    try {
        app.parse(texts);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? tool::ExitDone : tool::ExitFailed;
    }
    return action();
}

} // namespace

int main(int count, char** arguments)
{
    setLocale();
    std::signal(SIGPIPE, SIG_IGN); // writing reports a closed pipe instead
    try {
        return run(count, arguments);
    } catch (const tool::ClosedPipe&) {
        return tool::ExitDone;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "qmdb: %s\n", error.what());
        return tool::ExitFailed;
    }
}
