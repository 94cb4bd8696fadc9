#include "output/SqliteExporter.h"

#include "output/OutputFile.h"
#include "output/Sqlite.h"
#include "output/referredNames.h"

namespace tool {

namespace {

constexpr auto tables = R"(
PRAGMA journal_mode = OFF;
PRAGMA synchronous = OFF;
BEGIN;
CREATE TABLE substance (
    id INTEGER PRIMARY KEY, name TEXT NOT NULL, formula TEXT, cas TEXT, aliases TEXT,
    comment TEXT NOT NULL, mixture INTEGER NOT NULL, composition TEXT, composition_ids TEXT);
CREATE TABLE component (
    substance_id INTEGER NOT NULL REFERENCES substance, position INTEGER NOT NULL,
    component_id INTEGER NOT NULL, molar_fraction REAL,
    PRIMARY KEY (substance_id, position)) WITHOUT ROWID;
CREATE TABLE phase (
    substance_id INTEGER NOT NULL REFERENCES substance, id INTEGER NOT NULL, name TEXT NOT NULL,
    state TEXT NOT NULL,
    PRIMARY KEY (substance_id, id)) WITHOUT ROWID;
CREATE TABLE phase_change (
    substance_id INTEGER NOT NULL REFERENCES substance, id INTEGER NOT NULL, name TEXT NOT NULL,
    phase1_id INTEGER NOT NULL, phase2_id INTEGER NOT NULL,
    PRIMARY KEY (substance_id, id)) WITHOUT ROWID;
CREATE TABLE parameter (
    id INTEGER PRIMARY KEY, name TEXT NOT NULL, symbol TEXT, units TEXT NOT NULL);
CREATE TABLE property (
    id INTEGER PRIMARY KEY, substance_id INTEGER NOT NULL REFERENCES substance, phase_id INTEGER,
    change_id INTEGER, parameter_id INTEGER NOT NULL REFERENCES parameter, type TEXT NOT NULL,
    vector INTEGER NOT NULL, source TEXT, accuracy TEXT, comments TEXT NOT NULL,
    first_argument_name TEXT, first_argument_units TEXT,
    second_argument_name TEXT, second_argument_units TEXT,
    FOREIGN KEY (substance_id, phase_id) REFERENCES phase,
    FOREIGN KEY (substance_id, change_id) REFERENCES phase_change);
CREATE TABLE point (
    property_id INTEGER NOT NULL REFERENCES property, position INTEGER NOT NULL, component TEXT NOT NULL,
    first_argument REAL, second_argument REAL, value REAL,
    PRIMARY KEY (property_id, position, component)) WITHOUT ROWID;
)";

constexpr auto indexesAndView = R"(
CREATE INDEX substance_name ON substance (name);
CREATE INDEX property_substance ON property (substance_id, parameter_id);
CREATE INDEX property_parameter ON property (parameter_id);
CREATE INDEX point_argument ON point (property_id, first_argument, second_argument);
CREATE VIEW tidy AS
    SELECT s.id AS substance_id, s.name AS substance, s.formula, s.cas, s.aliases, s.composition,
        s.composition_ids, r.phase_id, h.name AS phase, h.state, r.change_id, c.name AS change,
        c.phase1_id AS change_from, c.phase2_id AS change_to, r.parameter_id, m.name AS parameter, m.symbol,
        m.units, r.type, r.source, r.accuracy, r.comments, r.first_argument_name,
        r.first_argument_units, r.second_argument_name, r.second_argument_units, p.first_argument,
        p.second_argument, NULLIF(p.component, '') AS component, p.value
    FROM point p JOIN property r ON r.id = p.property_id JOIN substance s ON s.id = r.substance_id
        JOIN parameter m ON m.id = r.parameter_id
        LEFT JOIN phase h ON h.substance_id = r.substance_id AND h.id = r.phase_id
        LEFT JOIN phase_change c ON c.substance_id = r.substance_id AND c.id = r.change_id
    ORDER BY r.id, p.position, p.component;
COMMIT;
)";

class SqliteExporter : public Exporter {
public:
    explicit SqliteExporter(const std::string& file)
        : file_(file, OutputFile::Existing::Refuse) // nothing that a user has is ever replaced
        , database_(file_.path())
        , layout_(database_)
        , substance_(database_, "INSERT INTO substance VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)")
        , component_(database_, "INSERT INTO component VALUES (?, ?, ?, ?)")
        , phase_(database_, "INSERT INTO phase VALUES (?, ?, ?, ?)")
        , change_(database_, "INSERT INTO phase_change VALUES (?, ?, ?, ?, ?)")
        , parameter_(database_, "INSERT OR IGNORE INTO parameter VALUES (?, ?, ?, ?)")
        , property_(database_, "INSERT INTO property VALUES (NULL, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
        , point_(database_, "INSERT INTO point VALUES (?, ?, ?, ?, ?, ?)")
    {
    }

    void addSubstance(
        const Substance& substance, const SubstanceNotes& notes, const std::string& composition) override
    {
        substance_.run(substance.id, substance.name, given(notes.formula), given(notes.cas),
            given(aliasesText(notes)), substance.comment, substance.mixture, given(composition),
            given(compositionIds(substance)));
        long position = 0;
        for (const COMPONENT& component : substance.composition) {
            component_.run(substance.id, position++, component.matterId, component.molarFraction);
        }
    }

    void addOwner(const Substance& substance, const Owner& owner) override
    {
        if (owner.kind == Owner::Kind::Phase) {
            phase_.run(substance.id, owner.id, owner.name, stateText(owner.state));
        } else if (owner.kind == Owner::Kind::Change) {
            change_.run(substance.id, owner.id, owner.name, owner.phase1, owner.phase2);
        }
    }

    void addValue(const ExportedValue& value) override
    {
        const auto& [substance, composition, owner, parameter, table, unused, notes, comments, more] = value;
        parameter_.run(parameter.id, parameter.name, given(notes.symbol), parameter.units);
        property_.run(substance.id, idOf(owner, Owner::Kind::Phase), idOf(owner, Owner::Kind::Change),
            parameter.id, typeLetter(parameter.type), long { parameter.vector }, given(notes.source),
            given(notes.accuracy), comments, ofArgument(notes, 0, &ArgumentNotes::name),
            ofArgument(notes, 0, &ArgumentNotes::units), ofArgument(notes, 1, &ArgumentNotes::name),
            ofArgument(notes, 1, &ArgumentNotes::units));
        const long property = database_.lastRow();
        long position = 0;
        for (const Point& point : table.points) {
            addPoint(property, position++, table, point);
        }
    }

    void finish() override
    {
        database_.run(indexesAndView);
        file_.moveIntoPlace();
    }

private:
    /// Makes the tables, before the statements on them are prepared.
    struct Layout {
        explicit Layout(Sqlite& database) { database.run(tables); }
    };

    static std::optional<long> idOf(const Owner& owner, Owner::Kind kind)
    {
        return owner.kind == kind ? std::optional(owner.id) : std::nullopt;
    }

    static std::optional<std::string> given(const std::string& text)
    {
        return text.empty() ? std::nullopt : std::optional(text);
    }

    static std::optional<std::string> ofArgument(
        const ParameterNotes& notes, std::size_t index, std::string ArgumentNotes::*what)
    {
        return index < notes.arguments.size() ? given(notes.arguments[index].*what) : std::nullopt;
    }

    static std::optional<double> argumentOf(const Table& table, const Point& point, std::size_t index)
    {
        return index < table.arguments ? std::optional(point.arguments[index]) : std::nullopt;
    }

    void addPoint(long property, long position, const Table& table, const Point& point)
    {
        for (std::size_t i = 0; i < table.components; ++i) {
            point_.run(property, position, componentName(table.components, i), argumentOf(table, point, 0),
                argumentOf(table, point, 1), point.components[i]);
        }
    }

    OutputFile file_;
    Sqlite database_;
    Layout layout_;
    SqliteStatement substance_, component_, phase_, change_, parameter_, property_, point_;
};

} // namespace

std::unique_ptr<Exporter> exportSqlite(const std::string& file)
{
    return std::make_unique<SqliteExporter>(file);
}

} // namespace tool
