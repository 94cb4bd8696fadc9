#include "commands/commands.h"

#include "annotations/Annotations.h"
#include "commands/misreadings.h"
#include "commands/owners.h"
#include "commands/unitOptions.h"
#include "output/Progress.h"
#include "output/SqliteExporter.h"
#include "output/TidyExporter.h"
#include "output/referredNames.h"
#include "writing/descriptors.h"

#include <algorithm>
#include <optional>
#include <set>
#include <span>

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
    bool all = false;
};

constexpr std::string_view moreColumns[] = { "substance_comment", "substance_ru", "substance_comment_ru",
    "phase_ru", "change_ru", "parameter_ru", "units_ru", "parameter_types", "parameter_forms",
    "parameter_states", "argument_units", "argument_names" };

/// The further columns of an export with all that import takes, from the database in both languages.
class More {
public:
    explicit More(const ExportOptions& options)
        : options_(options)
    {
        if (options.all) {
            edit_.emplace(options.location.directory, options.location.language);
            descriptions_ = writing::describedParameters(*edit_);
        }
    }

    const std::vector<writing::NewDescription>& descriptions() const { return descriptions_; }

    /// The texts of one row; what is not known is empty. None unless all is asked for.
    MoreTexts texts(const Substance* substance, const Owner* owner, std::optional<long> parameter) const
    {
        MoreTexts texts;
        for (const std::string_view column :
            options_.all ? std::span(moreColumns) : std::span<const std::string_view>()) {
            texts.emplace_back(column, "");
        }
        if (edit_ && substance) {
            texts[0].second = substance->comment;
            texts[1].second = writing::russianText(*edit_, substance->id, Owner(), writing::TextKey::Name);
            texts[2].second = writing::russianText(*edit_, substance->id, Owner(), writing::TextKey::Comment);
            const bool phase = owner && owner->kind == Owner::Kind::Phase;
            if (owner && owner->kind != Owner::Kind::Substance) {
                texts[phase ? 3 : 4].second
                    = writing::russianText(*edit_, substance->id, *owner, writing::TextKey::Name);
            }
        }
        const auto described = std::ranges::find(descriptions_, parameter, &writing::NewDescription::id);
        if (parameter && described != descriptions_.end()) {
            addDescription(texts, *described);
        }
        return texts;
    }

private:
    static void addDescription(MoreTexts& texts, const writing::NewDescription& description)
    {
        texts[5].second = description.russianName;
        texts[6].second = description.russianUnits;
        texts[7].second = description.types.empty() ? "none" : description.types;
        texts[8].second = fmt::format("{}{}{}", description.scalar ? "scalar" : "",
            description.scalar && description.vector ? " " : "", description.vector ? "vector" : "");
        texts[9].second = description.states.empty() ? "none" : description.states;
        for (const writing::KeyChange& key : description.keys) {
            if (key.key == "ArgumentUnits" || key.key == "ArgumentName") {
                texts[key.key == "ArgumentUnits" ? 10 : 11].second = key.value;
            }
        }
    }

    const ExportOptions& options_;
    std::optional<writing::Edit> edit_;
    std::vector<writing::NewDescription> descriptions_;
};

std::unique_ptr<Exporter> makeExporter(const ExportOptions& options, const More& more)
{
    if (!options.sqlite.empty()) {
        return exportSqlite(options.sqlite);
    }
    const bool asJson = options.json || options.jsonLines;
    return asJson ? exportJson(options.file, options.json)
                  : exportCsv(options.file, more.texts(nullptr, nullptr, {}));
}

/// Exports a database, substance by substance.
class Export {
public:
    explicit Export(const ExportOptions& options)
        : units_(options.units)
        , database_(options.location)
        , annotations_(options.location.directory)
        , substances_(database_.substances())
        , more_(options)
        , exporter_(makeExporter(options, more_))
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
        for (const writing::NewDescription& description : more_.descriptions()) {
            if (!exported_.contains(*description.id)) {
                addBareDescription(description);
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
            bool any = owner.kind == Owner::Kind::Substance; // its phases tell of it
            for (const Parameter& parameter : database_.parameters(substance.id, owner)) {
                any = addValue(substance, owner, parameter) || any;
            }
            if (!any) {
                addBareOwner(substance, owner);
            }
        }
    }

    void addBareOwner(const Substance& substance, const Owner& owner)
    {
        const SubstanceNotes notes = annotations_.substance(substance.id);
        const MoreTexts more = more_.texts(&substance, &owner, {});
        exporter_->addBare(
            { &substance, compositionText(substance, substances_), &notes, &owner, nullptr, nullptr, more });
    }

    void addBareDescription(const writing::NewDescription& description)
    {
        const Parameter parameter { *description.id, description.name, description.units, {}, false };
        const DescriptionNotes notes = annotations_.description(*description.id);
        const MoreTexts more = more_.texts(nullptr, nullptr, description.id);
        exporter_->addBare({ nullptr, {}, nullptr, nullptr, &parameter, &notes, more });
    }

    /// False when it cannot be read.
    bool addValue(const Substance& substance, const Owner& owner, const Parameter& parameter)
    {
        try {
            Table table = database_.value(substance.id, owner, parameter.id);
            ParameterNotes notes = annotations_.parameter(substance.id, owner, parameter);
            warnOfMisreadings(annotations_, notes.dataFile, substance, owner, parameter);
            Parameter shown = parameter;
            units_.chooseFitting(shown, notes).convert(table);
            exporter_->addValue({ substance, compositionText(substance, substances_), owner, shown, table,
                annotations_.substance(substance.id), notes, annotations_.comments(notes.dataFile),
                more_.texts(&substance, &owner, parameter.id) });
            exported_.insert(parameter.id);
            return true;
        } catch (const UnreadableValue& failure) {
            fmt::print(stderr, "qmdb: warning: {} of {} is left out: {}\n", parameter.name,
                ownerText(substance, owner), failure.what());
            whole_ = false;
            return false;
        }
    }

    UnitChoice units_;
    Database database_;
    Annotations annotations_;
    std::vector<Substance> substances_;
    More more_;
    std::unique_ptr<Exporter> exporter_;
    std::set<long> exported_; ///< parameters that have a row
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
    command
        ->add_flag("--all", options->all,
            "With rows and columns for what has no values, and texts in Russian: all that import takes")
        ->excludes(sqlite);
    command->add_option("-o,--output", options->file, "Write to this file, not to standard output")
        ->type_name("FILE")
        ->check(notEmpty())
        ->excludes(sqlite);
    command->footer("Examples:\n"
                    "  qmdb export materials -o materials.csv\n"
                    "  qmdb export materials --jsonl --units T=degC\n"
                    "  qmdb export materials --sqlite materials.sqlite");
}

} // namespace tool
