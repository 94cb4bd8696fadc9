#include "commands/editing.h"

#include "commands/owners.h"
#include "common/characters.h"
#include "common/leftovers.h"
#include "common/names.h"
#include "input/recordTexts.h"
#include "output/Output.h"

#include <array>
#include <iostream>
#include <unistd.h>

namespace tool {

namespace {

/// Characters that a record holds of names and comments, and of units, with their end.
constexpr std::size_t longestName = std::extent_v<decltype(MATTER::name)>;
constexpr std::size_t longestUnits = std::extent_v<decltype(PARAMETER::units)>;

void checkText(writing::TextKey key, const std::string& text, const std::string& option)
{
    std::array<wchar_t, longestName> field {};
    const std::span all(field);
    switch (key) {
    case writing::TextKey::Name:
        return setName(all, text, option);
    case writing::TextKey::Comment:
        return setText(all, text, option);
    case writing::TextKey::Units:
        return setText(all.first(longestUnits), text, option);
    }
}

} // namespace

void addDryRun(CLI::App& command, EditOptions& options)
{
    command.add_flag("--dry-run", options.dryRun, "Show what would be written, and write nothing");
}

void addYes(CLI::App& command, EditOptions& options)
{
    command.add_flag("--yes", options.yes, "Do not ask");
}

void confirm(const EditOptions& options, std::string_view what)
{
    if (options.yes || options.dryRun) {
        return;
    }
    if (::isatty(STDIN_FILENO) != 1 || ::isatty(STDERR_FILENO) != 1) {
        throw Failure("{}: this cannot be undone; --yes does it, --dry-run shows what it would do", what);
    }
    fmt::print(stderr, "{}? This cannot be undone. [y/N] ", what);
    std::string answer;
    std::getline(std::cin, answer);
    if (const std::string lower = lowerCase(answer); lower != "y" && lower != "yes") {
        throw Failure("nothing is changed");
    }
}

int finishEdit(const writing::Edit& edit, const EditOptions& options, std::string_view done)
{
    const writing::Changes changes = edit.changes();
    Output output;
    if (changes.isEmpty()) {
        output.write("nothing to change: it is so already\n");
    } else if (options.dryRun) {
        for (const std::string& line : changes.preview(edit.directory())) {
            output.print("{}\n", line);
        }
    } else {
        const PutOffSignals putOff; // a change of several files is not left half way
        writing::removeRests(edit.directory());
        changes.apply(edit.directory());
        output.print("{}\n", done);
    }
    output.finish();
    return ExitDone;
}

void TextOptions::add(
    CLI::App& command, writing::TextKey key, const std::string& option, const std::string& what)
{
    all_.push_back(std::make_unique<Given>(Given { key, false, option, nullptr, {} }));
    all_.back()->given = command.add_option(option, all_.back()->text, what + ", in the language of --lang");
    all_.back()->given->type_name("TEXT");
    addRussian(command, key, option + "-ru", what);
}

void TextOptions::addRussian(
    CLI::App& command, writing::TextKey key, const std::string& option, const std::string& what)
{
    all_.push_back(std::make_unique<Given>(Given { key, true, option, nullptr, {} }));
    all_.back()->given = command.add_option(option, all_.back()->text, what + " in Russian");
    all_.back()->given->type_name("TEXT");
}

std::vector<writing::TextChange> TextOptions::changes(std::string_view language) const
{
    std::vector<writing::TextChange> changes;
    for (const auto& one : all_) {
        if (*one->given) {
            checkText(one->key, one->text, one->option);
            changes.push_back({ one->key,
                one->russian ? writing::Language::Russian : writing::languageOf(language), one->text });
        }
    }
    return changes;
}

void KeyOptions::add(
    CLI::App& command, const std::string& option, const std::string& key, const std::string& help)
{
    all_.push_back(std::make_unique<Given>(Given { key, nullptr, {} }));
    all_.back()->given = command.add_option(option, all_.back()->value, help);
    all_.back()->given->type_name("TEXT");
}

void KeyOptions::addAny(CLI::App& command)
{
    command
        .add_option("--key", any_,
            "Any key of the descriptor, several times if need be; an empty VALUE removes the key")
        ->type_name("KEY=VALUE")
        ->allow_extra_args(false);
}

std::vector<writing::KeyChange> KeyOptions::changes() const
{
    std::vector<writing::KeyChange> changes;
    for (const auto& one : all_) {
        if (*one->given) {
            changes.push_back(writing::checkedKey(kind_, one->key, one->value));
        }
    }
    for (const std::string& text : any_) {
        const std::size_t end = text.find('=');
        if (end == std::string::npos) {
            throw Failure("--key takes KEY=VALUE, and {} holds no \"=\"", shown(text));
        }
        changes.push_back(writing::checkedKey(kind_, text.substr(0, end), text.substr(end + 1)));
    }
    return changes;
}

void addSubstanceKeys(CLI::App& command, KeyOptions& keys)
{
    keys.add(command, "--formula", "Formula", "Chemical formula");
    keys.add(command, "--aliases", "Aliases", "Other names, with \";\" between");
    keys.add(command, "--cas", "CAS", "CAS number");
}

LockedDatabase::LockedDatabase(const Location& location)
    : lock(location.directory)
    , database(location)
    , annotations(location.directory)
    , resolver(database, annotations)
{
}

void requireAddition(
    const Location& location, long substance, Owner::Kind kind, const writing::DescriptorChange& change)
{
    if (!change.isEmpty()) {
        writing::Edit trial(location.directory, location.language);
        writing::requireNewOwnerFits(trial, substance, kind, change);
    }
}

void completeAddition(const Location& location, long substance, const Owner& owner,
    const writing::DescriptorChange& change, std::string_view name)
{
    if (change.isEmpty()) {
        return;
    }
    try {
        writing::Edit edit(location.directory, location.language);
        writing::changeOwner(edit, substance, owner, change);
        edit.changes().apply(location.directory);
    } catch (const std::exception& error) {
        const std::string_view kind = owner.kind == Owner::Kind::Substance ? "substance" : "change";
        throw Failure("{}\n{} is in the database now, but not all that was given with it: \"qmdb set {}\" "
                      "adds that when the cause is gone, \"qmdb remove {}\" takes it away again",
            error.what(), name, kind, kind);
    }
}

Owner chooseOwner(
    const Resolver& resolver, const Substance& substance, const std::string& phase, const std::string& change)
{
    OwnerOptions options;
    if (!phase.empty()) {
        options.phases.push_back(phase);
    }
    if (!change.empty()) {
        options.changes.push_back(change);
    }
    return resolver.owners(substance, options).front();
}

Description chooseDescription(const writing::Edit& edit, const std::string& wanted)
{
    const Annotations annotations(edit.directory());
    return choose<Description>(
        writing::descriptionsOf(edit), wanted, "parameter", [&annotations](const Description& description) {
            std::vector<std::string> names = annotations.descriptionNames(description.id);
            names.push_back(annotations.description(description.id).symbol);
            return names;
        });
}

} // namespace tool
