#include "commands/commands.h"

#include "commands/commonParameters.h"
#include "common/encodings.h"
#include "common/leftovers.h"
#include "common/vocabulary.h"
#include "database/DatabaseLock.h"
#include "output/Output.h"
#include "output/columns.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace tool {

namespace {

struct NewOptions {
    std::string directory;
};

constexpr std::string_view readmeHead = R"(A database of material properties

This directory holds no substance yet. Each substance gets a directory of its own here:

    qmdb add substance DIR Water --liquid Liquid --gas Steam
    qmdb add parameter DIR Water Density --phase Liquid --file density.csv
    qmdb list DIR
    qmdb check DIR

The files with the extension "prd" describe the parameters that substances, phases and phase changes may
have, one each. Change them, remove them and add others as you need them; a parameter's number, once
used, should stay. Their names and units stand in two tables, default.lst (English) and strings.lst
(Russian), under the numbers in "NameID" and "UnitsID"; give own descriptions numbers of their own there,
or leave "NameID" and "UnitsID" out. "Symbol" is the short name of a parameter, "ArgumentUnits" the units of
pressures and temperatures in its tables.

Types: C constant, t and p table of one argument, T and X table of two arguments.
States: S solid, L liquid, V gas; a parameter without states is for substances and phase changes.

)";

std::string line(std::string_view key, std::string_view value)
{
    return fmt::format("{}={}\n", key, value);
}

/// The keys in the order in which the library would write them.
std::string descriptionText(const CommonParameter& parameter)
{
    const CommonUnits& units = unitsOf(parameter);
    const std::string argumentUnits
        = parameter.argumentUnits.empty() ? "" : line("ArgumentUnits", parameter.argumentUnits);
    return std::string(vocabulary::utf8Mark) + argumentUnits + line("AvForPhases", parameter.states)
        + line("Binary", "0") + line("DataTypes", parameter.types) + line("ID", std::to_string(parameter.id))
        + line("Name", parameter.name) + line("NameID", std::to_string(parameter.nameId()))
        + line("Scalar", "1") + line("Symbol", parameter.symbol) + line("Units", units.text)
        + line("UnitsID", std::to_string(units.id)) + line("Vector", parameter.vector ? "1" : "0");
}

std::string tableText(bool russian)
{
    std::string text(vocabulary::utf8Mark);
    for (const CommonParameter& parameter : commonParameters()) {
        text += line(std::to_string(parameter.nameId()), russian ? parameter.russianName : parameter.name);
    }
    for (const CommonUnits& units : commonUnits()) {
        text += line(std::to_string(units.id), russian ? units.russianText : units.text);
    }
    return text;
}

std::string readmeText()
{
    std::string text(readmeHead);
    text += "Number  Name                          Units      Types  States  Remark\n";
    for (const CommonParameter& parameter : commonParameters()) {
        text += fmt::format("{:>6}  {}{}{}{}{}\n", parameter.id, padRight(parameter.name, 30),
            padRight(unitsOf(parameter).text, 11), padRight(parameter.types, 7),
            padRight(parameter.states, 8), parameter.remark);
    }
    return text;
}

void writeFile(const std::filesystem::path& path, std::string_view text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush()) {
        throw Failure("cannot write \"{}\": {}", path.string(), std::strerror(errno));
    }
}

std::filesystem::path makeDirectory(const std::string& name)
{
    std::filesystem::path path = toLocale(name);
    if (std::filesystem::exists(path) && !std::filesystem::is_directory(path)) {
        throw Failure("\"{}\" is a file", name);
    }
    std::error_code failure;
    std::filesystem::create_directories(path, failure);
    if (failure) {
        throw Failure("cannot make \"{}\": {}", name, failure.message());
    }
    return path;
}

int runNew(const NewOptions& options)
{
    const std::filesystem::path directory = makeDirectory(options.directory);
    const DatabaseLock lock(options.directory);
    if (!std::filesystem::is_empty(directory)) {
        throw Failure(
            "\"{}\" is not empty; give a directory that is not there yet. \"qmdb add\" fills a database",
            options.directory);
    }
    const PutOffSignals putOff; // half of it would be in the way of the next attempt
    writeFile(directory / "README.txt", readmeText());
    writeFile(directory / vocabulary::defaultTable, tableText(false));
    writeFile(directory / vocabulary::russianTable, tableText(true));
    for (const CommonParameter& parameter : commonParameters()) {
        writeFile(directory / fmt::format("{}.{}", parameter.file, vocabulary::descriptionExtension),
            descriptionText(parameter));
    }
    Output output;
    output.print("made {} with {} parameter descriptions; README.txt tells how to go on\n", options.directory,
        commonParameters().size());
    output.finish();
    return ExitDone;
}

} // namespace

void addNewCommand(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<NewOptions>();
    CLI::App* command
        = app.add_subcommand("new", "Make an empty database with common parameter descriptions");
    command->add_option("DIR", options->directory, "Directory to make; it may exist when it is empty")
        ->required()
        ->check(notEmpty());
    command->footer("Example:\n  qmdb new mine");
    command->callback([&action, options] { action = [options] { return runNew(*options); }; });
}

} // namespace tool
