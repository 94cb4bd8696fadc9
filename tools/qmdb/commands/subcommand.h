#pragma once

#include "database/Database.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tool {

/// What the command line asks for; it returns an ExitStatus.
using Action = std::function<int()>;

/// Adds a command with the arguments and options that all commands on a database have, and DIR first.
/// `run` is what the command does with its options, a struct that has a `location`.
template <class Options>
CLI::App* addCommand(CLI::App& parent, Action& action, const std::string& name, const std::string& help,
    const std::shared_ptr<Options>& options, int (*run)(const Options&))
{
    CLI::App* command = parent.add_subcommand(name, help);
    Location& location = options->location;
    command->add_option("DIR", location.directory, "Directory of the database")->required();
    command->add_option("--lang", location.language,
        "Language of the names: \"ru\" takes strings.lst, any other default.lst");
    command
        ->add_option("--log", location.logDirectory, "Write the library's log, qmdb.log, to this directory")
        ->type_name("DIR");
    command->callback([&action, options, run] { action = [options, run] { return run(*options); }; });
    return command;
}

} // namespace tool
