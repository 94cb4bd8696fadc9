#include "output/foundValues.h"

#include "common/names.h"
#include "common/numbers.h"
#include "output/columns.h"
#include "output/json.h"
#include "output/valueTable.h"

#include <algorithm>
#include <fmt/ranges.h>

namespace tool {

namespace {

using Rows = std::vector<std::vector<std::string>>;

/// Rows in columns, the first right-aligned when it holds numbers.
void printColumns(Output& output, const Rows& rows, bool numbersFirst)
{
    std::vector<std::size_t> widths(rows.empty() ? 0 : rows.front().size());
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], displayWidth(row[i]));
        }
    }
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += i == 0 ? "" : "  ";
            line += i == 0 && numbersFirst ? padLeft(row[i], widths[i]) : padRight(row[i], widths[i]);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        output.print("{}\n", line);
    }
}

void printCsvRows(Output& output, std::string_view head, const Rows& rows)
{
    output.print("{}\n", head);
    for (const auto& row : rows) {
        std::vector<std::string> fields(row.size());
        std::ranges::transform(row, fields.begin(), csvField);
        output.print("{}\n", fmt::join(fields, ","));
    }
}

/// "Water:Steam", and the component of a vector: how the material is named to other commands.
std::string materialText(const FoundValue& found)
{
    const bool self = found.owner.kind == Owner::Kind::Substance;
    return fmt::format("{}{}{}", found.substance.name, self ? "" : ":", self ? "" : found.owner.name);
}

Rows alignedRows(const std::vector<FoundValue>& all)
{
    Rows rows;
    const bool vectors = std::ranges::any_of(all, [](const auto& found) { return !found.component.empty(); });
    for (const FoundValue& found : all) {
        rows.push_back({ numberText(found.value), materialText(found) });
        if (vectors) {
            rows.back().emplace_back(found.component);
        }
        rows.back().push_back(typeText(found.type));
    }
    return rows;
}

Rows csvRows(const Parameter& parameter, const std::vector<FoundValue>& all)
{
    Rows rows;
    for (const FoundValue& found : all) {
        const bool phase = found.owner.kind == Owner::Kind::Phase;
        const bool change = found.owner.kind == Owner::Kind::Change;
        rows.push_back({ numberText(found.value), parameter.units, std::to_string(found.substance.id),
            found.substance.name, phase ? std::to_string(found.owner.id) : "", phase ? found.owner.name : "",
            phase ? stateText(found.owner.state) : "", change ? std::to_string(found.owner.id) : "",
            change ? found.owner.name : "", std::string(found.component),
            std::string(typeLetter(found.type)) });
    }
    return rows;
}

Json toJson(const FoundValue& found)
{
    Json json { { "value", found.value },
        { "substance", { { "id", found.substance.id }, { "name", found.substance.name } } } };
    if (found.owner.kind == Owner::Kind::Phase) {
        json["phase"] = { { "id", found.owner.id }, { "name", found.owner.name },
            { "state", stateText(found.owner.state) } };
    } else if (found.owner.kind == Owner::Kind::Change) {
        json["change"] = { { "id", found.owner.id }, { "name", found.owner.name } };
    }
    json["component"] = textJson(std::string(found.component));
    json["type"] = typeLetter(found.type);
    return json;
}

} // namespace

void printFound(Output& output, Form form, const Parameter& parameter, const std::string& at,
    const std::vector<FoundValue>& found)
{
    const std::string head = fmt::format("{}{}{}{}{}", parameter.name, parameter.units.empty() ? "" : ", ",
        parameter.units, at.empty() ? "" : ", at ", at);
    if (form == Form::Csv) {
        printCsvRows(output,
            "value,units,substance_id,substance,phase_id,phase,state,change_id,change,component,type",
            csvRows(parameter, found));
    } else if (form == Form::Json) {
        Json json { { "parameter", { { "id", parameter.id }, { "name", parameter.name } } },
            { "units", parameter.units }, { "at", textJson(at) }, { "found", Json::array() } };
        std::ranges::transform(
            found, std::back_inserter(json["found"]), [](const FoundValue& one) { return toJson(one); });
        output.print("{}\n", dump(json));
    } else {
        output.print("{}\n", output.styled(fmt::emphasis::bold, head));
        printColumns(output, alignedRows(found), true);
    }
}

void printFound(Output& output, Form form, const std::vector<FoundName>& found)
{
    Rows rows;
    Json json = Json::array();
    for (const FoundName& one : found) {
        const bool part = one.substanceId >= 0;
        if (form == Form::Json) {
            json.push_back({ { "kind", one.kind }, { "id", one.id }, { "name", one.name },
                { "substance",
                    part ? Json { { "id", one.substanceId }, { "name", one.substance } } : Json() },
                { "details", textJson(one.details) } });
        } else if (form == Form::Csv) {
            rows.push_back({ one.kind, std::to_string(one.id), one.name,
                part ? std::to_string(one.substanceId) : "", one.substance, one.details });
        } else {
            const std::string details = part
                ? fmt::format("of {}{}{}", one.substance, one.details.empty() ? "" : ", ", one.details)
                : one.details;
            rows.push_back({ label(one.name, one.id), one.kind, details });
        }
    }
    if (form == Form::Json) {
        output.print("{}\n", dump(json));
    } else if (form == Form::Csv) {
        printCsvRows(output, "kind,id,name,substance_id,substance,details", rows);
    } else {
        printColumns(output, rows, false);
    }
}

} // namespace tool
