#pragma once

#include "output/Exporter.h"

#include <memory>

namespace tool {

/// Exports into a new SQLite file.
std::unique_ptr<Exporter> exportSqlite(const std::string& file);

} // namespace tool
