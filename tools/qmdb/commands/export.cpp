#include "commands/commands.h"

#include "annotations/Annotations.h"
#include "commands/misreadings.h"
#include "commands/owners.h"
#include "commands/unitOptions.h"
#include "output/Progress.h"
#include "output/SqliteExporter.h"
#include "output/TidyExporter.h"
#include "output/referredNames.h"

namespace tool {

namespace {

struct ExportOptions {
    Location location;
    bool csv = false;
    bool jsonLines = false;
    bool json = false;
    std::vector<std::string> units;
    std::string sqlite; ///< empty when not given
    std::string file; ///< empty for standard output
};

std::unique_ptr<Exporter> makeExporter(const ExportOptions& options)
{
    if (!options.sqlite.empty()) {
        return exportSqlite(options.sqlite);
    }
    const bool asJson = options.json || options.jsonLines;
    return asJson ? exportJson(options.file, options.json) : exportCsv(options.file);
}

/// Exports a database, substance by substance.
class Export {
public:
    explicit Export(const ExportOptions& options)
        : units_(options.units)
        , database_(options.location)
        , annotations_(options.location.directory)
        , substances_(database_.substances())
        , exporter_(makeExporter(options))
    {
    }

    /// False when some value cannot be read.
    bool run()
    {
        {
            Progress progress(substances_.size());
            for (const Substance& substance : substances_) {
                addSubstance(substance);
                progress.step();
            }
        }
        exporter_->finish();
        if (const std::string unused = units_.unused(); !unused.empty()) {
            fmt::print(stderr, "qmdb: note: --units {} fits nothing in the database\n", unused);
        }
        return whole_;
    }

private:
    void addSubstance(const Substance& substance)
    {
        exporter_->addSubstance(
            substance, annotations_.substance(substance.id), compositionText(substance, substances_));
        for (const Owner& owner : database_.owners(substance.id)) {
            exporter_->addOwner(substance, owner);
            for (const Parameter& parameter : database_.parameters(substance.id, owner)) {
                addValue(substance, owner, parameter);
            }
        }
    }

    void addValue(const Substance& substance, const Owner& owner, const Parameter& parameter)
    {
        try {
            Table table = database_.value(substance.id, owner, parameter.id);
            ParameterNotes notes = annotations_.parameter(substance.id, owner, parameter);
            warnOfMisreadings(annotations_, notes.dataFile, substance, owner, parameter);
            Parameter shown = parameter;
            units_.chooseFitting(shown, notes).convert(table);
            exporter_->addValue({ substance, compositionText(substance, substances_), owner, shown, table,
                annotations_.substance(substance.id), notes, annotations_.comments(notes.dataFile) });
        } catch (const UnreadableValue& failure) {
            fmt::print(stderr, "qmdb: warning: {} of {} is left out: {}\n", parameter.name,
                ownerText(substance, owner), failure.what());
            whole_ = false;
        }
    }

    UnitChoice units_;
    Database database_;
    Annotations annotations_;
    std::vector<Substance> substances_;
    std::unique_ptr<Exporter> exporter_;
    bool whole_ = true;
};

int runExport(const ExportOptions& options)
{
    return Export(options).run() ? ExitDone : ExitFindings;
}

} // namespace

void addExportCommand(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<ExportOptions>();
    CLI::App* command = addCommand(
        app, action, "export", "Write out the whole database, one row a number", options, runExport);
    auto* form = command->add_option_group("Form", "CSV unless one of these is given");
    form->add_flag("--csv", options->csv, "CSV with a head line");
    form->add_flag("--jsonl", options->jsonLines, "JSON lines: one object a row");
    form->add_flag("--json", options->json, "One JSON array");
    auto* sqlite
        = form->add_option("--sqlite", options->sqlite, "A new SQLite file with tables, keys and indexes");
    form->require_option(0, 1);
    sqlite->type_name("FILE")->check(notEmpty());
    addUnitsOption(*command, options->units);
    command->add_option("-o,--output", options->file, "Write to this file, not to standard output")
        ->type_name("FILE")
        ->check(notEmpty())
        ->excludes(sqlite);
}

} // namespace tool
