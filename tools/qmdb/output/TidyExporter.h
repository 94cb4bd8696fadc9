#pragma once

#include "output/Exporter.h"

#include <memory>

namespace tool {

/// Rows in long form, one a number, into `file` or standard output. `columns` are the further ones.
std::unique_ptr<Exporter> exportCsv(const std::string& file, const MoreTexts& columns);
/// One JSON object a row, one a line; in brackets when `array` is set.
std::unique_ptr<Exporter> exportJson(const std::string& file, bool array);

} // namespace tool
