#pragma once

#include "output/Exporter.h"

namespace tool {

/// Exports into a new SQLite file.
std::unique_ptr<Exporter> exportSqlite(const std::string& file);

} // namespace tool
