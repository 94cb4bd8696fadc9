#include "values/CDataWriter.h"
#include "values/CRowReader.h"
#include "values/formats.h"

#include <algorithm>

namespace values {

namespace {

/// How many rows to make room for when there is none left: those that are buffered, later as many as the
/// file's size calls for.
std::size_t expectedRows(const CDataFile& file, std::size_t count)
{
    if (count == 0) {
        return file.linesBuffered() + 1;
    }
    constexpr std::size_t mostGrowth = 64; // what follows a few rows may be no rows at all
    const std::size_t more = file.bytesAhead() / (file.bytesDelivered() / count) + 1;
    return count + std::min(more + more / 16, count * mostGrowth);
}

template <class Row, class Table>
int loadTable(const CLog& log, const std::string& path, Table& table)
{
    using Reader = CRowReader<Row>;
    CDataFile file(log, path);
    if (const int code = file.checkOpen(); code != QMDB_OK) {
        return code;
    }
    Reader rows;
    do {
        if (const int code = file.next(); code != QMDB_OK) {
            return code;
        }
        typename Reader::Numbers numbers;
        const bool isPlain = file.parsePlainRow(numbers);
        if (isPlain || !file.isSkipped()) {
            if (rows.isFull()) {
                rows.reserve(expectedRows(file, rows.count()));
            }
            rows.add(file, isPlain ? &numbers : nullptr);
        }
        if (Reader::Traits::reportsAtOnce && rows.failed()) {
            return rows.reportFault(log);
        }
    } while (!file.hitEnd());
    log.info(rows.count(), " data lines loaded");
    if (rows.failed()) {
        return rows.reportFault(log);
    }
    if (rows.count() == 0) {
        return QMDB_E_EMPTY;
    }
    table.count = static_cast<long>(rows.count());
    table.rows = rows.release().release();
    return QMDB_OK;
}

template <class Table>
SaveResult saveTable(
    const CDbFile& head, const CDirectory& directory, const std::string& name, const Table& table)
{
    return write(head, directory, name, [&](CDataWriter& file) { file.rows(table.rows, table.count); });
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

SaveResult save(const CDbFile& head, const CDirectory& directory, const std::string& name,
    const PlainTable<TABLEROW>& value)
{
    return saveTable(head, directory, name, value);
}

SaveResult save(const CDbFile& head, const CDirectory& directory, const std::string& name,
    const PlainTable<TABLEROWVECT>& value)
{
    return saveTable(head, directory, name, value);
}

} // namespace values
