#include "format/numbers.h"
#include "values/CDataFile.h"
#include "values/CDataWriter.h"
#include "values/formats.h"

#include "qmdatabase/status.h"

#include <array>
#include <optional>

namespace values {

namespace {

/// Reads the file's last data line, which is the one that counts; empty when there is none.
int readLastDataLine(const CLog& log, const std::string& path, std::string& line)
{
    CDataFile file(log, path);
    if (const int code = file.checkOpen(); code != QMDB_OK) {
        return code;
    }
    do {
        if (const int code = file.next(); code != QMDB_OK) {
            return code;
        }
        if (!file.isSkipped()) {
            line = file.text();
        }
    } while (!file.hitEnd());
    return QMDB_OK;
}

} // namespace

int load(const CDbFile& head, const std::string& path, IDbDataConst& value)
{
    std::string line;
    if (const int code = readLastDataLine(head.log(), path, line); code != QMDB_OK) {
        return code;
    }
    const std::optional<double> number = format::wstr2double(line);
    if (!number) {
        head.log().error("Bad const value: ", line, " (", format::shown(path), ")");
        return QMDB_E_NUMBER;
    }
    value.value = *number;
    return QMDB_OK;
}

int load(const CDbFile& head, const std::string& path, IDbDataConstVector& value)
{
    std::string line;
    if (const int code = readLastDataLine(head.log(), path, line); code != QMDB_OK) {
        return code;
    }
    std::array<double, 3> components {};
    const format::RowResult result = format::parseRow(line, components);
    switch (result.fault) {
    case format::RowFault::Columns:
        head.log().error("Bad const vector format: ", line, " (", format::shown(path), ")");
        return QMDB_E_FORMAT;
    case format::RowFault::Number:
        head.log().error("Bad const vector component: ", result.column, " (", format::shown(path), ")");
        return QMDB_E_NUMBER;
    case format::RowFault::None:
        break;
    }
    value.x = components[0];
    value.y = components[1];
    value.z = components[2];
    return QMDB_OK;
}

SaveResult save(
    const CDbFile& head, const CDirectory& directory, const std::string& name, const PlainConst& value)
{
    return write(head, directory, name, [&](CDataWriter& file) { file.line({ &value.value, 1 }); });
}

SaveResult save(
    const CDbFile& head, const CDirectory& directory, const std::string& name, const PlainConstVector& value)
{
    return write(head, directory, name, [&](CDataWriter& file) {
        file.line(std::array { value.x, value.y, value.z });
    });
}

} // namespace values
