#pragma once

#include "Database.h"

#include <memory>
#include <string>

namespace tool {

/// Takes a database piece by piece, each substance before what belongs to it.
class Exporter {
public:
    virtual ~Exporter() = default;
    virtual void addSubstance(const Substance&) { }
    virtual void addOwner(const Substance&, const Owner&) { }
    virtual void addValue(
        const Substance& substance, const Owner& owner, const Parameter& parameter, const Table& table)
        = 0;
    virtual void finish() = 0;
};

/// Rows in long form, one a number, into `file` or standard output.
std::unique_ptr<Exporter> exportCsv(const std::string& file);
/// One JSON object a row, one a line; in brackets when `array` is set.
std::unique_ptr<Exporter> exportJson(const std::string& file, bool array);
/// A new SQLite database.
std::unique_ptr<Exporter> exportSqlite(const std::string& file);

} // namespace tool
