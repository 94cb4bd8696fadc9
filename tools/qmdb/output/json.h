#pragma once

#include "annotations/Annotations.h"
#include "database/Database.h"

#include <nlohmann/json.hpp>

namespace tool {

using Json = nlohmann::ordered_json;

/// The text of a JSON value; what is no UTF-8 in it is replaced.
inline std::string dump(const Json& json, int indent = -1)
{
    return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

/// A text, or null for an empty one.
inline Json textJson(const std::string& text)
{
    return text.empty() ? Json() : Json(text);
}

/// What a parameter is, and where its value comes from.
inline Json parameterJson(const Parameter& parameter, const ParameterNotes& notes)
{
    Json names = Json::array();
    Json units = Json::array();
    for (const ArgumentNotes& argument : notes.arguments) {
        names.push_back(textJson(argument.name));
        units.push_back(textJson(argument.units));
    }
    return { { "id", parameter.id }, { "name", parameter.name }, { "symbol", textJson(notes.symbol) },
        { "units", parameter.units }, { "type", typeLetter(parameter.type) }, { "vector", parameter.vector },
        { "argumentNames", names }, { "argumentUnits", units }, { "source", textJson(notes.source) },
        { "accuracy", textJson(notes.accuracy) } };
}

} // namespace tool
