#include "values/CRowReader.h"
#include "values/formats.h"
#include "values/writing.h"

namespace values {

namespace {

template <class Row, class Table>
int loadTable(const CLog& log, const std::string& path, Table& table)
{
    CDataFile file(log, path);
    if (const int code = file.checkOpen(); code != QMDB_OK) {
        return code;
    }
    CRowReader<Row> rows;
    do {
        if (const int code = file.next(); code != QMDB_OK) {
            return code;
        }
        Row row;
        const bool isFirst = rows.count() == 0;
        if (file.readPlainNumbers(numbersOf(row))) {
            rows.take(file, &row);
        } else if (!file.isSkipped()) {
            rows.take(file, nullptr);
        }
        if (tellsFaultsAtOnce<Row> && rows.failed()) {
            return rows.tellFault(log);
        }
        if (isFirst && rows.count() == 1 && !rows.failed() && !file.hitEnd()) {
            // Only now, because a file that begins with something else may have no end.
            constexpr std::size_t digitAndBlank = 2;
            rows.expect(file.linesAhead(digitAndBlank * numbersOf(row).size() - 1));
        }
    } while (!file.hitEnd());
    log.info(rows.count(), " data lines loaded");
    if (rows.failed()) {
        return rows.tellFault(log);
    }
    if (rows.count() == 0) {
        return QMDB_E_EMPTY;
    }
    table.count = static_cast<long>(rows.count());
    table.rows = rows.takeRows().release();
    return QMDB_OK;
}

template <class Table>
int saveTable(const CDbFile& head, const DataFilePlace& place, const Table& table)
{
    return write(head, place, [&](CDataWriter& file) { file.rows(table.rows, table.count); });
}

} // namespace

int load(const CDbFile& head, const std::string& path, IDbDataTable& value)
{
    return loadTable<TABLEROW>(head.log(), path, value);
}

int load(const CDbFile& head, const std::string& path, IDbDataTableVector& value)
{
    return loadTable<TABLEROWVECT>(head.log(), path, value);
}

int save(const CDbFile& head, const DataFilePlace& place, const PlainTable<TABLEROW>& value)
{
    return saveTable(head, place, value);
}

int save(const CDbFile& head, const DataFilePlace& place, const PlainTable<TABLEROWVECT>& value)
{
    return saveTable(head, place, value);
}

} // namespace values
