#pragma once

#include "qm/CQMOutputFile.h"
#include "qmdatabase/status.h"
#include "values/formats.h"

#include <initializer_list>

namespace values {

/// Writes the lines of a data file.
class CDataWriter {
public:
    explicit CDataWriter(qm::CQMOutputFile& file) noexcept
        : file_(file)
    {
    }

    void line(std::initializer_list<double> numbers, std::string_view prefix = {})
    {
        std::string text(prefix);
        std::string_view separator;
        for (const double number : numbers) {
            text.append(separator).append(conversions::double2wstr(number));
            separator = " ";
        }
        file_.append(text + "\n");
    }

    /// Nothing when there are no rows, whatever the count says.
    void rows(const TABLEROW* rows, long count)
    {
        for (long i = 0; rows && i < count; ++i) {
            line({ rows[i].x, rows[i].y });
        }
    }
    void rows(const TABLEROWVECT* rows, long count)
    {
        for (long i = 0; rows && i < count; ++i) {
            line({ rows[i].x, rows[i].vx, rows[i].vy, rows[i].vz });
        }
    }

private:
    qm::CQMOutputFile& file_;
};

/// Opens a data file, lets `fill` write it, and flushes it and its directory to the disk.
template <class Fill>
int write(const CDbFile& head, const DataFilePlace& place, Fill&& fill)
{
    qm::CQMOutputFile file(place.path, place.directory.base());
    if (!file.isOpen()) {
        // The head's path, not the data file's: hosts match on this message.
        head.log().error("Cannot open file for write: ", head.path.text());
        return QMDB_E_FILE;
    }
    CDataWriter writer(file);
    fill(writer);
    // Errors after a successful open have no code; reading the value tells.
    static_cast<void>(file.finish());
    static_cast<void>(place.directory.flush());
    return QMDB_OK;
}

} // namespace values
