#include "output/TidyExporter.h"

#include "common/numbers.h"
#include "output/Output.h"
#include "output/json.h"
#include "output/referredNames.h"
#include "output/valueTable.h"

#include <cmath>
#include <vector>

namespace tool {

namespace {

/// An entry that a row may lack.
Json given(const std::string& text)
{
    return text.empty() ? Json() : Json(text);
}

ArgumentNotes argumentOf(const ParameterNotes& notes, std::size_t index)
{
    return index < notes.arguments.size() ? notes.arguments[index] : ArgumentNotes();
}

/// What a substance, a phase or a phase change is; nothing where there is none.
void addOwnerColumns(Json& columns, const Substance* substance, const std::string& composition,
    const SubstanceNotes* notes, const Owner* owner)
{
    const auto text = [&](const std::string& text) { return substance ? given(text) : Json(); };
    const bool phase = owner && owner->kind == Owner::Kind::Phase;
    const bool change = owner && owner->kind == Owner::Kind::Change;
    columns.update({ { "substance_id", substance ? Json(substance->id) : Json() },
        { "substance", substance ? Json(substance->name) : Json() },
        { "formula", notes ? text(notes->formula) : Json() }, { "cas", notes ? text(notes->cas) : Json() },
        { "aliases", notes ? text(aliasesText(*notes)) : Json() }, { "composition", given(composition) },
        { "composition_ids", substance ? given(compositionIds(*substance)) : Json() },
        { "phase_id", phase ? Json(owner->id) : Json() }, { "phase", phase ? Json(owner->name) : Json() },
        { "state", phase ? Json(stateText(owner->state)) : Json() },
        { "change_id", change ? Json(owner->id) : Json() }, { "change", change ? Json(owner->name) : Json() },
        { "change_from", change ? Json(owner->phase1) : Json() },
        { "change_to", change ? Json(owner->phase2) : Json() } });
}

/// What a parameter is; nothing where there is none.
void addParameterColumns(Json& columns, const Parameter* parameter, const std::string& symbol)
{
    columns.update({ { "parameter_id", parameter ? Json(parameter->id) : Json() },
        { "parameter", parameter ? Json(parameter->name) : Json() }, { "symbol", given(symbol) },
        { "units", parameter ? Json(parameter->units) : Json() } });
}

void addMoreColumns(Json& columns, const MoreTexts& more)
{
    for (const auto& [name, text] : more) {
        columns[std::string(name)] = given(text);
    }
}

/// The columns that all rows of a value share.
Json sharedColumns(const ExportedValue& value)
{
    const ArgumentNotes first = argumentOf(value.notes, 0);
    const ArgumentNotes second = argumentOf(value.notes, 1);
    Json columns = Json::object();
    addOwnerColumns(columns, &value.substance, value.composition, &value.substanceNotes, &value.owner);
    addParameterColumns(columns, &value.parameter, value.notes.symbol);
    columns.update({ { "type", typeLetter(value.parameter.type) }, { "source", given(value.notes.source) },
        { "accuracy", given(value.notes.accuracy) }, { "comments", value.comments },
        { "first_argument_name", given(first.name) }, { "first_argument_units", given(first.units) },
        { "second_argument_name", given(second.name) }, { "second_argument_units", given(second.units) } });
    addMoreColumns(columns, value.more);
    return columns;
}

Json sharedColumns(const BareEntry& entry)
{
    Json columns = Json::object();
    addOwnerColumns(columns, entry.substance, entry.composition, entry.substanceNotes, entry.owner);
    addParameterColumns(columns, entry.parameter, entry.notes ? entry.notes->symbol : std::string());
    for (const auto name : { "type", "source", "accuracy", "comments", "first_argument_name",
             "first_argument_units", "second_argument_name", "second_argument_units" }) {
        columns[name] = Json();
    }
    addMoreColumns(columns, entry.more);
    return columns;
}

constexpr auto numberColumns = { "first_argument", "second_argument", "component", "value" };

/// Writes the rows of a value in some notation.
class TidyExporter : public Exporter {
public:
    explicit TidyExporter(const std::string& file)
        : output_(file)
    {
    }

    void addValue(const ExportedValue& value) override
    {
        const Table& table = value.table;
        const std::string shared = front(sharedColumns(value));
        for (const Point& point : table.points) {
            const auto argument = [&](std::size_t index) {
                return index < table.arguments ? number(point.arguments[index]) : none();
            };
            const std::string arguments[] = { argument(0), argument(1) };
            for (std::size_t i = 0; i < table.components; ++i) {
                addRow(shared, arguments[0], arguments[1], componentName(table.components, i),
                    number(point.components[i]));
            }
        }
    }

    void addBare(const BareEntry& entry) override
    {
        addRow(front(sharedColumns(entry)), none(), none(), {}, none());
    }

    void finish() override { output_.finish(); }

protected:
    virtual std::string front(const Json& columns) const = 0;
    virtual std::string number(double value) const = 0;
    virtual std::string none() const = 0;
    virtual void addRow(std::string_view shared, std::string_view first, std::string_view second,
        std::string_view component, std::string_view value)
        = 0;

    Output output_;
};

class CsvExporter : public TidyExporter {
public:
    CsvExporter(const std::string& file, const MoreTexts& more)
        : TidyExporter(file)
    {
        const Json columns = sharedColumns(BareEntry { .composition = {}, .more = more });
        for (const auto& [name, value] : columns.items()) {
            output_.print("{},", name);
        }
        output_.print("{}\n", fmt::join(numberColumns, ","));
    }

private:
    std::string front(const Json& columns) const override
    {
        std::string text;
        for (const Json& column : columns) {
            const bool plain = column.is_string();
            text += (column.is_null() ? "" : csvField(plain ? column.get<std::string>() : column.dump()))
                + ",";
        }
        return text;
    }

    std::string number(double value) const override { return numberText(value); }
    std::string none() const override { return {}; }

    void addRow(std::string_view shared, std::string_view first, std::string_view second,
        std::string_view component, std::string_view value) override
    {
        output_.print("{}{},{},{},{}\n", shared, first, second, component, value);
    }
};

class JsonExporter : public TidyExporter {
public:
    JsonExporter(const std::string& file, bool array)
        : TidyExporter(file)
        , array_(array)
    {
        output_.write(array_ ? "[" : "");
    }

    void finish() override
    {
        output_.write(array_ ? "\n]\n" : empty_ ? "" : "\n");
        TidyExporter::finish();
    }

private:
    /// An object left open.
    std::string front(const Json& columns) const override
    {
        std::string text = dump(columns);
        text.pop_back();
        return text;
    }

    /// JSON has no infinite numbers and none that are not numbers.
    std::string number(double value) const override
    {
        return std::isfinite(value) ? numberText(value) : none();
    }

    std::string none() const override { return "null"; }

    void addRow(std::string_view shared, std::string_view first, std::string_view second,
        std::string_view component, std::string_view value) override
    {
        const std::string name = component.empty() ? none() : fmt::format("\"{}\"", component);
        const bool isFirst = std::exchange(empty_, false);
        output_.print("{}{},\"first_argument\":{},\"second_argument\":{},\"component\":{},\"value\":{}}}",
            array_ ? (isFirst ? "\n" : ",\n") : (isFirst ? "" : "\n"), shared, first, second, name, value);
    }

    bool array_;
    bool empty_ = true;
};

} // namespace

std::unique_ptr<Exporter> exportCsv(const std::string& file, const MoreTexts& columns)
{
    return std::make_unique<CsvExporter>(file, columns);
}

std::unique_ptr<Exporter> exportJson(const std::string& file, bool array)
{
    return std::make_unique<JsonExporter>(file, array);
}

} // namespace tool
