#pragma once

#include "common/failure.h"
#include "database/Database.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>

namespace tool {

/// What the command line asks for; it returns an ExitStatus.
using Action = std::function<int()>;

/// Refuses an empty text, which names nothing and would be taken for an option that is not given.
const CLI::Validator& notEmpty();

/// Throws Failure unless there is such a directory, NoDatabase when it holds nothing of a database: the
/// library takes both for an empty one.
void requireDatabase(const std::string& directory);
/// Throws Failure when the directory cannot be listed, which the library does not tell either.
void requireListable(const std::string& directory);

/// Adds a command with the arguments and options that all commands have that open a database, DIR first.
/// `run` is what the command does with its options, a struct that has a `location`.
template <class Options>
CLI::App* addCommand(CLI::App& parent, Action& action, const std::string& name, const std::string& help,
    const std::shared_ptr<Options>& options, int (*run)(const Options&))
{
    CLI::App* command = parent.add_subcommand(name, help);
    Location& location = options->location;
    command->add_option("DIR", location.directory, "Directory of the database")
        ->required()
        ->check(notEmpty());
    command
        ->add_option("--lang", location.language,
            "Language of the names: \"ru\" takes strings.lst, any other default.lst")
        ->type_name("LANGUAGE");
    command
        ->add_option("--log", location.logDirectory, "Write the library's log, qmdb.log, to this directory")
        ->type_name("DIR")
        ->check(notEmpty());
    command->callback([&action, options, run] {
        action = [options, run] {
            requireDatabase(options->location.directory);
            requireListable(options->location.directory);
            return run(*options);
        };
    });
    return command;
}

} // namespace tool
