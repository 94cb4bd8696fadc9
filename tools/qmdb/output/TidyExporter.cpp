#include "output/TidyExporter.h"

#include "output/Output.h"
#include "output/json.h"
#include "output/valueTable.h"

namespace tool {

namespace {

/// The ID and name of an owner when it is of a kind; else both empty.
struct OwnerColumns {
    OwnerColumns(const Owner& owner, Owner::Kind kind)
        : given(owner.kind == kind)
        , id(given ? std::to_string(owner.id) : "")
        , name(given ? owner.name : "")
    {
    }

    bool given;
    std::string id;
    std::string name;
};

/// The two argument columns of a point, `none` in the place of those that its table lacks.
std::string argumentText(const Table& table, const Point& point, std::size_t index, std::string_view none)
{
    return index < table.arguments ? fmt::format("{}", point.arguments[index]) : std::string(none);
}

class CsvExporter : public Exporter {
public:
    explicit CsvExporter(const std::string& file)
        : output_(file)
    {
        output_.write("substance_id,substance,phase_id,phase,change_id,change,parameter_id,parameter,units,"
                      "first_argument,second_argument,component,value\n");
    }

    void addValue(const Substance& substance, const Owner& owner, const Parameter& parameter,
        const Table& table) override
    {
        const OwnerColumns phase(owner, Owner::Kind::Phase);
        const OwnerColumns change(owner, Owner::Kind::Change);
        const std::string front = fmt::format("{},{},{},{},{},{},{},{},{}", substance.id,
            csvField(substance.name), phase.id, csvField(phase.name), change.id, csvField(change.name),
            parameter.id, csvField(parameter.name), csvField(parameter.units));
        for (const Point& point : table.points) {
            const std::string first = argumentText(table, point, 0, "");
            const std::string second = argumentText(table, point, 1, "");
            for (std::size_t i = 0; i < table.components; ++i) {
                output_.print("{},{},{},{},{}\n", front, first, second, componentName(table.components, i),
                    point.components[i]);
            }
        }
    }

    void finish() override { output_.finish(); }

private:
    Output output_;
};

class JsonExporter : public Exporter {
public:
    JsonExporter(const std::string& file, bool array)
        : output_(file)
        , array_(array)
    {
        output_.write(array_ ? "[" : "");
    }

    void addValue(const Substance& substance, const Owner& owner, const Parameter& parameter,
        const Table& table) override
    {
        const std::string front = frontOf(substance, owner, parameter);
        for (const Point& point : table.points) {
            const std::string first = numberOrNull(argumentText(table, point, 0, "null"));
            const std::string second = numberOrNull(argumentText(table, point, 1, "null"));
            for (std::size_t i = 0; i < table.components; ++i) {
                const std::string component = table.components == 1
                    ? "null"
                    : fmt::format("\"{}\"", componentName(table.components, i));
                output_.print(
                    "{}{},\"first_argument\":{},\"second_argument\":{},\"component\":{},\"value\":{}}}",
                    separator(), front, first, second, component,
                    numberOrNull(fmt::format("{}", point.components[i])));
            }
        }
    }

    void finish() override
    {
        output_.write(array_ ? "\n]\n" : empty_ ? "" : "\n");
        output_.finish();
    }

private:
    /// The columns that all rows of a value share, as an object left open.
    static std::string frontOf(const Substance& substance, const Owner& owner, const Parameter& parameter)
    {
        const OwnerColumns phase(owner, Owner::Kind::Phase);
        const OwnerColumns change(owner, Owner::Kind::Change);
        Json json { { "substance_id", substance.id }, { "substance", substance.name },
            { "phase_id", phase.given ? Json(owner.id) : Json() },
            { "phase", phase.given ? Json(owner.name) : Json() },
            { "change_id", change.given ? Json(owner.id) : Json() },
            { "change", change.given ? Json(owner.name) : Json() }, { "parameter_id", parameter.id },
            { "parameter", parameter.name }, { "units", parameter.units } };
        std::string text = dump(json);
        text.pop_back();
        return text;
    }

    /// JSON has no infinite numbers and none that are not numbers.
    static std::string numberOrNull(const std::string& number)
    {
        return number.find_first_of("in") == std::string::npos ? number : "null";
    }

    std::string_view separator()
    {
        const bool first = std::exchange(empty_, false);
        return array_ ? (first ? "\n" : ",\n") : (first ? "" : "\n");
    }

    Output output_;
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
