#pragma once

#include "commands/owners.h"
#include "commands/subcommand.h"
#include "database/DatabaseLock.h"
#include "database/entities.h"
#include "writing/Edit.h"
#include "writing/descriptors.h"

#include <string>
#include <vector>

namespace tool {

/// How a command that changes a database is to go about it.
struct EditOptions {
    bool dryRun = false;
    bool yes = false;
};

void addDryRun(CLI::App& command, EditOptions& options);
void addYes(CLI::App& command, EditOptions& options);

/// Asks on a terminal whether to do what cannot be undone. Throws Failure for a no, and where nobody can be
/// asked and --yes is not given.
void confirm(const EditOptions& options, std::string_view what);

/// Makes the changes and tells `done`, or tells what they would be.
int finishEdit(const writing::Edit& edit, const EditOptions& options, std::string_view done);

/// Texts that a command takes in the language of --lang, and in Russian beside it.
class TextOptions {
public:
    /// Adds "--name TEXT" and "--name-ru TEXT" or the like.
    void add(CLI::App& command, writing::TextKey key, const std::string& option, const std::string& what);
    /// Adds "--name-ru TEXT" or the like.
    void addRussian(
        CLI::App& command, writing::TextKey key, const std::string& option, const std::string& what);

    /// Throws Failure for a text that cannot be one.
    std::vector<writing::TextChange> changes(std::string_view language) const;

private:
    struct Given {
        writing::TextKey key;
        bool russian;
        std::string option;
        CLI::Option* given;
        std::string text;
    };

    std::vector<std::unique_ptr<Given>> all_; ///< the parser keeps addresses
};

/// Keys that a command sets, by options of their own or by --key.
class KeyOptions {
public:
    explicit KeyOptions(writing::DescriptorOf kind)
        : kind_(kind)
    {
    }

    void add(CLI::App& command, const std::string& option, const std::string& key, const std::string& help);
    /// Adds "--key KEY=VALUE" for any key.
    void addAny(CLI::App& command);

    std::vector<writing::KeyChange> changes() const;

private:
    struct Given {
        std::string key;
        CLI::Option* given;
        std::string value;
    };

    writing::DescriptorOf kind_;
    std::vector<std::unique_ptr<Given>> all_;
    std::vector<std::string> any_;
};

/// Adds --formula, --aliases and --cas.
void addSubstanceKeys(CLI::App& command, KeyOptions& keys);

/// A database that a command changes: locked from before it is opened to the command's end.
struct LockedDatabase {
    explicit LockedDatabase(const Location& location);

    const DatabaseLock lock;
    Database database;
    const Annotations annotations;
    const Resolver resolver;
};

/// What the library's additions do not take is given to what they have added in a second step. The first
/// function, called before the addition, throws Failure when that would be refused; the message of the second
/// tells what stands in the database when the step fails all the same.
void requireAddition(
    const Location& location, long substance, Owner::Kind kind, const writing::DescriptorChange& change);
void completeAddition(const Location& location, long substance, const Owner& owner,
    const writing::DescriptorChange& change, std::string_view name);

/// A phase or a phase change of a substance, or the substance itself, as a user names it.
Owner chooseOwner(const Resolver& resolver, const Substance& substance, const std::string& phase,
    const std::string& change);

/// A parameter that the database describes, by name in either language, number or symbol.
Description chooseDescription(const writing::Edit& edit, const std::string& wanted);

} // namespace tool
