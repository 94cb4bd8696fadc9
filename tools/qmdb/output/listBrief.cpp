#include "output/listBrief.h"

#include "common/characters.h"
#include "output/columns.h"
#include "output/json.h"

#include <algorithm>
#include <array>
#include <fmt/ranges.h>

namespace tool {

namespace {

using Row = std::array<std::string, 5>;

Row rowOf(const BriefSubstance& brief)
{
    std::vector<std::string> phases;
    std::ranges::transform(brief.phases, std::back_inserter(phases), &Owner::name);
    return { std::to_string(brief.substance.id), brief.substance.name, printable(brief.notes.formula),
        fmt::format("{}", fmt::join(phases, ", ")),
        fmt::format("{} {}", brief.values, brief.values == 1 ? "value" : "values") };
}

} // namespace

void printBrief(Output& output, const std::vector<BriefSubstance>& listed)
{
    std::vector<Row> rows;
    std::array<std::size_t, std::tuple_size_v<Row>> widths {};
    for (const BriefSubstance& brief : listed) {
        rows.push_back(rowOf(brief));
        for (std::size_t i = 0; i < widths.size(); ++i) {
            widths[i] = std::max(widths[i], displayWidth(rows.back()[i]));
        }
    }
    for (const Row& row : rows) {
        output.print("{}  {}  {}  {}  {}\n", padLeft(row[0], widths[0]), padRight(row[1], widths[1]),
            padRight(row[2], widths[2]), padRight(row[3], widths[3]), row[4]);
    }
}

std::string briefJson(const std::vector<BriefSubstance>& listed)
{
    Json json = Json::array();
    for (const BriefSubstance& brief : listed) {
        Json phases = Json::array();
        for (const Owner& phase : brief.phases) {
            phases.push_back(
                { { "id", phase.id }, { "name", phase.name }, { "state", stateText(phase.state) } });
        }
        json.push_back({ { "id", brief.substance.id }, { "name", brief.substance.name },
            { "formula", textJson(brief.notes.formula) }, { "phases", phases }, { "values", brief.values } });
    }
    return dump(json, 2);
}

} // namespace tool
