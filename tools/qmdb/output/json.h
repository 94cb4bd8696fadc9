#pragma once

#include "database/Database.h"

#include <nlohmann/json.hpp>

namespace tool {

using Json = nlohmann::ordered_json;

/// The text of a JSON value; what is no UTF-8 in it is replaced.
inline std::string dump(const Json& json, int indent = -1)
{
    return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

/// What a parameter is: ID, name, units, type and form.
inline Json parameterJson(const Parameter& parameter)
{
    return { { "id", parameter.id }, { "name", parameter.name }, { "units", parameter.units },
        { "type", typeLetter(parameter.type) }, { "vector", parameter.vector } };
}

} // namespace tool
