#include "values/CDataFile.h"
#include "values/formats.h"
#include "values/writing.h"

#include "qmdatabase/status.h"

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
    const std::optional<double> number = conversions::wstr2double(line);
    if (!number) {
        head.log().error("Bad const value: ", line, " (", path, ")");
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
    double* const components[] = { &value.x, &value.y, &value.z };
    const std::vector<std::string> parts = conversions::splitString(line);
    if (parts.size() != std::size(components)) {
        head.log().error("Bad const vector format: ", line, " (", path, ")");
        return QMDB_E_FORMAT;
    }
    for (std::size_t i = 0; i < std::size(components); ++i) {
        const std::optional<double> number = conversions::wstr2double(parts[i]);
        if (!number) {
            head.log().error("Bad const vector component: ", i, " (", path, ")");
            return QMDB_E_NUMBER;
        }
        *components[i] = *number;
    }
    return QMDB_OK;
}

int save(const CDbFile& head, const DataFilePlace& place, const PlainConst& value)
{
    return write(head, place, [&](CDataWriter& file) { file.line({ value.value }); });
}

int save(const CDbFile& head, const DataFilePlace& place, const PlainConstVector& value)
{
    return write(head, place, [&](CDataWriter& file) { file.line({ value.x, value.y, value.z }); });
}

} // namespace values
