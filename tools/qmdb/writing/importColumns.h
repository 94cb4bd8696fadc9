#pragma once

#include <array>
#include <string_view>

namespace tool::writing {

/// The columns that an import knows, in the order of columnNames.
enum class Column : std::size_t {
    SubstanceId,
    Substance,
    SubstanceRu,
    SubstanceComment,
    SubstanceCommentRu,
    Formula,
    Cas,
    Aliases,
    Composition,
    CompositionIds,
    PhaseId,
    Phase,
    PhaseRu,
    State,
    ChangeId,
    Change,
    ChangeRu,
    ChangeFrom,
    ChangeTo,
    ParameterId,
    Parameter,
    ParameterRu,
    Symbol,
    Units,
    UnitsRu,
    ParameterTypes,
    ParameterForms,
    ParameterStates,
    ArgumentUnits,
    ArgumentNames,
    Type,
    Source,
    Accuracy,
    Comments,
    FirstArgumentName,
    FirstArgumentUnits,
    SecondArgumentName,
    SecondArgumentUnits,
    FirstArgument, // from here on what differs from row to row of one value
    SecondArgument,
    Component,
    Value,
};

inline constexpr std::array<std::string_view, 42> columnNames = { "substance_id", "substance", "substance_ru",
    "substance_comment", "substance_comment_ru", "formula", "cas", "aliases", "composition",
    "composition_ids", "phase_id", "phase", "phase_ru", "state", "change_id", "change", "change_ru",
    "change_from", "change_to", "parameter_id", "parameter", "parameter_ru", "symbol", "units", "units_ru",
    "parameter_types", "parameter_forms", "parameter_states", "argument_units", "argument_names", "type",
    "source", "accuracy", "comments", "first_argument_name", "first_argument_units", "second_argument_name",
    "second_argument_units", "first_argument", "second_argument", "component", "value" };

static_assert(columnNames.size() == static_cast<std::size_t>(Column::Value) + 1);

constexpr std::string_view nameOf(Column column) noexcept
{
    return columnNames[static_cast<std::size_t>(column)];
}

} // namespace tool::writing
