#pragma once

#include "format/numbers.h"
#include "format/rows.h"
#include "values/CDataFile.h"
#include "values/CRowArray.h"
#include "values/RowTraits.h"

#include "qmdatabase/status.h"

#include <memory>
#include <optional>
#include <string>

namespace values {

/// Collects the rows of one table or subtable and remembers the first fault.
template <class Row>
class CRowReader {
public:
    using Traits = RowTraits<Row>;
    using Numbers = typename Traits::Numbers;

    /// Adds the file's current line, whose numbers are given when they have been read already.
    void add(CDataFile& file, const Numbers* plain)
    {
        const std::size_t index = count_++;
        if (failed()) {
            return;
        }
        Numbers numbers {};
        if (plain) {
            numbers = *plain;
        } else if (!parse(file, index, numbers)) {
            return;
        }
        const auto before = rows_.size() > 0 ? std::optional(rows_.back().x) : std::nullopt;
        if (!format::mayFollow(before, numbers.front())) {
            fail(QMDB_E_NUMBER, "Monotony error [", index, file.text(), file.shownPath());
            return;
        }
        rows_.push(Traits::row(numbers));
    }

    /// Makes room for so many rows in all.
    void reserve(std::size_t rows) { rows_.reserve(rows); }
    bool isFull() const noexcept { return rows_.isFull(); }

    bool failed() const noexcept { return code_ != QMDB_OK; }
    /// Lines added, those from the fault on included.
    std::size_t count() const noexcept { return count_; }
    std::unique_ptr<Row[]> release() { return rows_.release(); }

    /// Writes the fault to the log and returns its code.
    int reportFault(const CLog& log) const
    {
        log.error(message_);
        return code_;
    }

private:
    bool parse(CDataFile& file, std::size_t index, Numbers& numbers)
    {
        const format::RowResult result = format::parseRow(file.text(), numbers);
        switch (result.fault) {
        case format::RowFault::Columns:
            fail(QMDB_E_FORMAT, "Bad table format [", index, file.text(), file.shownPath());
            return false;
        case format::RowFault::Number:
            fail(QMDB_E_NUMBER, Traits::badComponent, index, format::long2wstr(result.column),
                file.shownPath());
            return false;
        case format::RowFault::None:
            break;
        }
        return true;
    }

    void fail(
        int code, std::string_view what, std::size_t index, std::string_view detail, const std::string& path)
    {
        code_ = code;
        message_.append(what).append(format::long2wstr(index)).append("]: ");
        message_.append(detail).append(" (").append(path).append(")");
    }

    CRowArray<Row> rows_;
    std::size_t count_ = 0;
    int code_ = QMDB_OK;
    std::string message_;
};

} // namespace values
