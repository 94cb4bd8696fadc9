#include "commands/export.h"

#include "commands/owners.h"
#include "output/Progress.h"
#include "output/SqliteExporter.h"
#include "output/TidyExporter.h"

namespace tool {

namespace {

struct ExportOptions {
    Location location;
    bool csv = false;
    bool jsonLines = false;
    bool json = false;
    std::string sqlite;
    std::string file;
};

std::unique_ptr<Exporter> makeExporter(const ExportOptions& options)
{
    if (!options.sqlite.empty()) {
        return exportSqlite(options.sqlite);
    }
    const bool asJson = options.json || options.jsonLines;
    return asJson ? exportJson(options.file, options.json) : exportCsv(options.file);
}

/// Hands one substance over; false when some value cannot be read.
bool exportSubstance(const Database& database, const Substance& substance, Exporter& exporter)
{
    bool whole = true;
    exporter.addSubstance(substance);
    for (const Owner& owner : database.owners(substance.id)) {
        exporter.addOwner(substance, owner);
        for (const Parameter& parameter : database.parameters(substance.id, owner)) {
            try {
                const Table table = database.value(substance.id, owner, parameter.id);
                exporter.addValue(substance, owner, parameter, table);
            } catch (const UnreadableValue& failure) {
                fmt::print(stderr, "qmdb: {} of {} is left out: {}\n", parameter.name,
                    ownerText(substance, owner), failure.what());
                whole = false;
            }
        }
    }
    return whole;
}

int runExport(const ExportOptions& options)
{
    const Database database(options.location);
    const std::vector<Substance> substances = database.substances();
    const auto exporter = makeExporter(options);
    bool whole = true;
    {
        Progress progress(substances.size());
        for (const Substance& substance : substances) {
            whole = exportSubstance(database, substance, *exporter) && whole;
            progress.step();
        }
    }
    exporter->finish();
    return whole ? ExitDone : ExitFindings;
}

} // namespace

void addExportCommand(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<ExportOptions>();
    CLI::App* command = addCommand(
        app, action, "export", "Hand on the whole database, one row a number", options, runExport);
    auto* form = command->add_option_group("Form", "CSV unless one of these is given");
    form->add_flag("--csv", options->csv, "CSV with a head line");
    form->add_flag("--jsonl", options->jsonLines, "JSON lines: one object a row");
    form->add_flag("--json", options->json, "One JSON array");
    auto* sqlite
        = form->add_option("--sqlite", options->sqlite, "A new SQLite file with tables, keys and indexes");
    form->require_option(0, 1);
    sqlite->type_name("FILE");
    command->add_option("-o,--output", options->file, "Write to this file, not to standard output")
        ->type_name("FILE")
        ->excludes(sqlite);
}

} // namespace tool
