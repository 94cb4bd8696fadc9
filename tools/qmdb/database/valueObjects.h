#pragma once

#include "database/flatTable.h"

#include <memory>

namespace tool {

/// The library's value object of a table, to be handed to an addition.
std::unique_ptr<IDbData> valueObject(const Table& table, PARAM_TYPE type);

} // namespace tool
