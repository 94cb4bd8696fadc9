#include "format/vocabulary.h"
#include "values/CDataWriter.h"
#include "values/CRowReader.h"
#include "values/formats.h"

#include <vector>

namespace values {

namespace {

/// Reads the subtables of one file.
template <class Row>
class CSubtableReader {
    using Reader = CRowReader<Row>;

public:
    CSubtableReader(const CLog& log, const std::string& path)
        : log_(log)
        , file_(log, path)
    {
    }

    int read()
    {
        if (const int code = file_.checkOpen(); code != QMDB_OK) {
            return code;
        }
        do {
            int code = file_.next();
            code = code == QMDB_OK ? addLine() : code;
            if (code != QMDB_OK) {
                return code;
            }
        } while (!file_.hitEnd());
        if (const int code = closeSubtable(); code != QMDB_OK) {
            return code;
        }
        return subtables_.empty() ? QMDB_E_EMPTY : QMDB_OK;
    }

    template <class Table>
    void handOver(Table& table)
    {
        using Subtable = std::remove_pointer_t<decltype(table.subtables)>;
        auto records = std::make_unique<Subtable[]>(subtables_.size());
        for (std::size_t i = 0; i < subtables_.size(); ++i) {
            records[i].firstArg = subtables_[i].firstArg;
            records[i].count = subtables_[i].count;
            records[i].rows = subtables_[i].rows.release();
        }
        table.count = static_cast<long>(subtables_.size());
        table.subtables = records.release();
    }

private:
    struct CSubtable {
        double firstArg;
        long count;
        std::unique_ptr<Row[]> rows;
    };

    int addLine()
    {
        typename Reader::Numbers numbers;
        if (file_.parsePlainRow(numbers)) {
            return addRow(&numbers);
        }
        if (file_.isSkipped()) {
            return QMDB_OK;
        }
        const std::optional<std::string_view> firstArgument = format::firstArgumentOf(file_.text());
        return firstArgument ? beginSubtable(*firstArgument) : addRow(nullptr);
    }

    int addRow(const typename Reader::Numbers* plain)
    {
        if (file_.hitEnd()) {
            return QMDB_OK; // a last row without a line end does not count
        }
        if (!hasFirstArg_) {
            // Rows that no first argument belongs to are refused.
            log_.error("Bad table format [0]: ", file_.text(), " (", file_.shownPath(), ")");
            return QMDB_E_FORMAT;
        }
        if (rows_.count() == 0) {
            rows_.reserve(expectedRows_);
        }
        rows_.add(file_, plain);
        return Reader::Traits::reportsAtOnce && rows_.failed() ? rows_.reportFault(log_) : QMDB_OK;
    }

    int beginSubtable(std::string_view firstArgument)
    {
        if (const int code = closeSubtable(); code != QMDB_OK || file_.hitEnd()) {
            return code;
        }
        const std::optional<double> number = format::wstr2double(firstArgument);
        if (!number) {
            log_.error("First arg value error [0]: ", file_.text(), " (", file_.shownPath(), ")");
            return QMDB_E_NUMBER;
        }
        firstArg_ = *number;
        hasFirstArg_ = true;
        return QMDB_OK;
    }

    /// A header without rows adds no subtable.
    int closeSubtable()
    {
        const std::size_t count = rows_.count();
        if (count == 0) {
            return QMDB_OK;
        }
        log_.info(count, " data lines subtable loaded");
        if (rows_.failed()) {
            return rows_.reportFault(log_);
        }
        CSubtable subtable { firstArg_, static_cast<long>(count), rows_.release() };
        subtables_.push_back(std::move(subtable));
        rows_ = {};
        expectedRows_ = count; // subtables of one file are mostly of one length
        return QMDB_OK;
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): subtables_ owns the rows
    }

    const CLog& log_;
    CDataFile file_;
    Reader rows_;
    std::size_t expectedRows_ = 1;
    std::vector<CSubtable> subtables_;
    double firstArg_ = 0;
    bool hasFirstArg_ = false;
};

template <class Row, class Table>
int loadTable(const CLog& log, const std::string& path, Table& table)
{
    CSubtableReader<Row> reader(log, path);
    if (const int code = reader.read(); code != QMDB_OK) {
        return code;
    }
    reader.handOver(table);
    log.info(table.count, " subtables loaded");
    return QMDB_OK;
}

template <class Table>
SaveResult saveTable(
    const CDbFile& head, const CDirectory& directory, const std::string& name, const Table& table)
{
    return write(head, directory, name, [&](CDataWriter& file) {
        for (long i = 0; table.subtables && i < table.count; ++i) {
            file.line({ &table.subtables[i].firstArg, 1 }, format::subtableSign);
            file.rows(table.subtables[i].rows, table.subtables[i].count);
        }
    });
}

} // namespace

int load(const CDbFile& head, const std::string& path, IDbDataTable2D& value)
{
    return loadTable<TABLEROW>(head.log(), path, value);
}

int load(const CDbFile& head, const std::string& path, IDbDataTable2DVector& value)
{
    return loadTable<TABLEROWVECT>(head.log(), path, value);
}

SaveResult save(const CDbFile& head, const CDirectory& directory, const std::string& name,
    const PlainTable2D<SUBTABLECONST>& value)
{
    return saveTable(head, directory, name, value);
}

SaveResult save(const CDbFile& head, const CDirectory& directory, const std::string& name,
    const PlainTable2D<SUBTABLEVECT>& value)
{
    return saveTable(head, directory, name, value);
}

} // namespace values
