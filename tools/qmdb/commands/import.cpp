#include "commands/commands.h"

#include "commands/editing.h"
#include "common/encodings.h"
#include "common/leftovers.h"
#include "database/DatabaseLock.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "writing/Stage.h"
#include "writing/importPlan.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>

namespace tool {

namespace {

struct ImportOptions {
    Location location;
    EditOptions edit;
    std::string file;
    bool replace = false;
};

std::string readAll(const std::string& file)
{
    if (file == "-") {
        return { std::istreambuf_iterator<char>(std::cin), {} };
    }
    std::ifstream input(toLocale(file), std::ios::binary);
    std::string bytes { std::istreambuf_iterator<char>(input), {} };
    if (!input.is_open() || input.bad()) {
        throw Failure("cannot read \"{}\": {}", file, std::strerror(errno));
    }
    return bytes;
}

writing::Draft readDraft(const std::string& file, const std::string& name)
{
    const std::string bytes = readAll(file);
    Progress progress(static_cast<std::size_t>(std::ranges::count(bytes, '\n')), "rows");
    return writing::readDraft(bytes, name, [&] {
        PutOffSignals::check();
        progress.step();
    });
}

std::string counted(std::size_t count, std::string_view one, std::string_view many)
{
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

std::string summary(const writing::Draft& draft, const writing::ImportCounts& counts)
{
    std::string text = fmt::format("{}: {}, {}, {}, {}", counted(draft.rows, "row", "rows"),
        counted(counts.substances, "new substance", "new substances"),
        counted(counts.owners, "new phase or phase change", "new phases and phase changes"),
        counted(counts.descriptions, "new parameter", "new parameters"),
        counted(counts.values, "new value", "new values"));
    if (counts.replaced > 0) {
        text += fmt::format(", {} replaced", counts.replaced);
    }
    if (counts.same > 0) {
        text += fmt::format(", {} there already", counts.same);
    }
    return text;
}

/// Makes the new state beside the database, looks whether it opens, and lets it take its place.
void put(const std::string& directory, const writing::Changes& changes)
{
    writing::Stage stage(directory);
    stage.copyTarget(PutOffSignals::check);
    {
        Progress progress(changes.size(), "files");
        changes.applyUnseen(stage.directory(), [&] {
            PutOffSignals::check();
            progress.step();
        });
    }
    const Database trial({ stage.directory(), "en", {} });
    trial.substances();
    PutOffSignals::check();
    stage.moveIntoPlace();
}

/// A shell that stands in the database's directory stands in the old one then.
void noteWhereWeAre(const std::filesystem::path& before)
{
    std::error_code failure;
    const auto inside = std::filesystem::current_path(failure);
    if (failure || !std::filesystem::exists(before) || inside.empty()) {
        fmt::print(stderr,
            "qmdb: note: the database's directory is a new one: \"cd .\" takes a shell that "
            "stands in it there\n");
    }
}

/// Throws Failure for a directory that holds something, but no database.
bool holdsDatabase(const std::string& directory)
{
    const std::filesystem::path path = toLocale(directory);
    if (!std::filesystem::exists(path)) {
        return false;
    }
    if (!std::filesystem::is_directory(path)) {
        throw Failure("\"{}\" is a file", directory);
    }
    if (std::filesystem::is_empty(path)) {
        return false;
    }
    requireDatabase(directory);
    return true;
}

int runImport(const ImportOptions& options)
{
    const PutOffSignals putOff;
    const std::string& directory = options.location.directory;
    const std::string name = options.file == "-" ? "standard input" : options.file;
    const writing::Draft draft = readDraft(options.file, name);
    if (draft.rows == 0) {
        throw Failure("{} holds no row", name);
    }
    std::optional<DatabaseLock> lock;
    if (std::filesystem::exists(toLocale(directory))) {
        lock.emplace(directory);
    }
    std::optional<Database> present;
    if (holdsDatabase(directory)) {
        present.emplace(options.location);
    }
    writing::Edit edit(directory, options.location.language);
    edit.requireTables();
    const writing::ImportCounts counts
        = writing::planImport(edit, present ? &*present : nullptr, draft, name, options.replace);
    present.reset();
    const writing::Changes changes = edit.changes();
    if (!options.edit.dryRun) {
        writing::Stage::removeRests(directory);
    }
    Output output;
    if (options.edit.dryRun) {
        output.print("{}\n", summary(draft, counts));
    } else if (changes.isEmpty()) {
        output.print("{}; nothing to change\n", summary(draft, counts));
    } else {
        std::error_code ignored;
        const auto before = std::filesystem::current_path(ignored);
        put(directory, changes);
        output.print("{}\n", summary(draft, counts));
        noteWhereWeAre(before);
    }
    output.finish();
    return ExitDone;
}

} // namespace

void addImportCommand(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<ImportOptions>();
    CLI::App* command = app.add_subcommand(
        "import", "Make or extend a database from CSV or JSON Lines, as export writes them");
    command->add_option("FILE", options->file, "CSV, JSON Lines or a JSON array; - is standard input")
        ->required()
        ->check(notEmpty());
    command
        ->add_option("DIR", options->location.directory, "Directory of the database; it is made when missing")
        ->required()
        ->check(notEmpty());
    command
        ->add_option("--lang", options->location.language,
            "Language of the names in the database: \"ru\" takes strings.lst, any other default.lst")
        ->type_name("LANGUAGE");
    command->add_flag(
        "--replace", options->replace, "Take the rows' values and texts where the database has others");
    addDryRun(*command, options->edit);
    command->footer("Example:\n  qmdb export materials --all | qmdb import - copy");
    command->callback([&action, options] { action = [options] { return runImport(*options); }; });
}

} // namespace tool
