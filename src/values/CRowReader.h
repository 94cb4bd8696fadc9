#pragma once

#include "values/CDataFile.h"
#include "values/rows.h"

#include "qmdatabase/status.h"

#include <cmath>
#include <concepts>
#include <optional>
#include <string>

namespace values {

/// Scalar rows are checked as they are met, so that the first fault ends the load. Vector rows are
/// counted and the count is logged first, so that a fault is told only when all rows have been read.
template <class Row>
constexpr bool tellsFaultsAtOnce = std::same_as<Row, TABLEROW>;

/// Collects the rows of one table or subtable and remembers the first fault.
template <class Row>
class CRowReader {
public:
    /// Takes the file's current line, whose numbers are `plain` when they have been read already.
    void take(CDataFile& file, const Row* plain)
    {
        const std::size_t index = count_++;
        if (failed()) {
            return;
        }
        Row row {};
        if (plain) {
            row = *plain;
        } else if (!readRow(file, index, row)) {
            return;
        }
        // A NaN has no place in an order, so it is refused even in the first row.
        if (std::isnan(row.x) || (rows_.size() > 0 && !(rows_.back().x < row.x))) {
            fail(QMDB_E_NUMBER, "Monotony error [", index, file.text(), file.path());
            return;
        }
        rows_.push(row);
    }

    /// Rows that are expected beside those taken.
    void expect(std::size_t rows) { rows_.expect(rows); }

    bool failed() const noexcept { return code_ != QMDB_OK; }
    /// Lines taken, those from the fault on included.
    std::size_t count() const noexcept { return count_; }
    std::unique_ptr<Row[]> takeRows() { return rows_.take(); }

    /// Writes the fault to the log and returns its code.
    int tellFault(const CLog& log) const
    {
        log.error(message_);
        return code_;
    }

private:
    static constexpr std::string_view badComponent
        = tellsFaultsAtOnce<Row> ? "Bad table component [" : "Bad table vector component [";

    bool readRow(CDataFile& file, std::size_t index, Row& row)
    {
        const std::vector<std::string> parts = conversions::splitString(file.text());
        const auto numbers = numbersOf(row);
        if (parts.size() != numbers.size()) {
            fail(QMDB_E_FORMAT, "Bad table format [", index, file.text(), file.path());
            return false;
        }
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            const std::optional<double> number = conversions::wstr2double(parts[i]);
            if (!number) {
                fail(QMDB_E_NUMBER, badComponent, index, conversions::long2wstr(i), file.path());
                return false;
            }
            numbers[i] = *number;
        }
        return true;
    }

    void fail(
        int code, std::string_view what, std::size_t index, std::string_view detail, const std::string& path)
    {
        code_ = code;
        message_.append(what).append(conversions::long2wstr(index)).append("]: ");
        message_.append(detail).append(" (").append(path).append(")");
    }

    CRowArray<Row> rows_;
    std::size_t count_ = 0;
    int code_ = QMDB_OK;
    std::string message_;
};

} // namespace values
