#include "output/TidyExporter.h"

#include "common/numbers.h"
#include "output/Output.h"
#include "output/json.h"
#include "output/valueTable.h"

#include <cmath>
#include <vector>

namespace tool {

namespace {

/// An entry that a row may lack.
template <class Value>
Json given(bool present, const Value& value)
{
    return present ? Json(value) : Json();
}

Json given(const std::string& text)
{
    return given(!text.empty(), text);
}

ArgumentNotes argumentOf(const ParameterNotes& notes, std::size_t index)
{
    return index < notes.arguments.size() ? notes.arguments[index] : ArgumentNotes();
}

/// The columns that all rows of a value share.
Json sharedColumns(const ExportedValue& value)
{
    const auto& [substance, composition, owner, parameter, table, substanceNotes, notes, comments] = value;
    const ArgumentNotes first = argumentOf(notes, 0);
    const ArgumentNotes second = argumentOf(notes, 1);
    const bool phase = owner.kind == Owner::Kind::Phase;
    const bool change = owner.kind == Owner::Kind::Change;
    return { { "substance_id", substance.id }, { "substance", substance.name },
        { "formula", given(substanceNotes.formula) }, { "cas", given(substanceNotes.cas) },
        { "aliases", given(aliasesText(substanceNotes)) }, { "composition", given(composition) },
        { "phase_id", given(phase, owner.id) }, { "phase", given(phase, owner.name) },
        { "state", given(phase, stateText(owner.state)) }, { "change_id", given(change, owner.id) },
        { "change", given(change, owner.name) }, { "parameter_id", parameter.id },
        { "parameter", parameter.name }, { "symbol", given(notes.symbol) }, { "units", parameter.units },
        { "type", typeLetter(parameter.type) }, { "source", given(notes.source) },
        { "accuracy", given(notes.accuracy) }, { "comments", comments },
        { "first_argument_name", given(first.name) }, { "first_argument_units", given(first.units) },
        { "second_argument_name", given(second.name) }, { "second_argument_units", given(second.units) } };
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
    explicit CsvExporter(const std::string& file)
        : TidyExporter(file)
    {
        const Json columns = sharedColumns({ {}, {}, {}, {}, {}, {}, {}, {} });
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

std::unique_ptr<Exporter> exportCsv(const std::string& file)
{
    return std::make_unique<CsvExporter>(file);
}

std::unique_ptr<Exporter> exportJson(const std::string& file, bool array)
{
    return std::make_unique<JsonExporter>(file, array);
}

} // namespace tool
