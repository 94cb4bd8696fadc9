#pragma once

#include "format/rows.h"
#include "qm/CQMOutputFile.h"
#include "qmdatabase/status.h"
#include "values/RowTraits.h"
#include "values/formats.h"

#include <span>
#include <string>
#include <string_view>

namespace values {

/// Writes the lines of a data file.
class CDataWriter {
public:
    explicit CDataWriter(qm::CQMOutputFile& file) noexcept
        : file_(file)
    {
    }

    void line(std::span<const double> numbers, std::string_view sign = {})
    {
        line_.clear();
        format::appendRow(line_, numbers, sign);
        file_.append(line_);
    }

    /// Nothing when there are no rows, whatever the count says.
    template <class Row>
    void rows(const Row* rows, long count)
    {
        for (long i = 0; rows && i < count; ++i) {
            line(RowTraits<Row>::numbers(rows[i]));
        }
    }

private:
    qm::CQMOutputFile& file_;
    std::string line_;
};

/// Opens a data file, lets `fill` write it, and flushes it and its directory to the disk.
template <class Fill>
SaveResult write(const CDbFile& head, const CDirectory& directory, const std::string& name, Fill&& fill)
{
    qm::CQMOutputFile file(directory.pathOf(name));
    if (!file.isOpen()) {
        // The head's path, not the data file's: hosts match on this message.
        head.log().error("Cannot open file for write: ", head.path.shown());
        return SaveResult::NotOpened;
    }
    CDataWriter writer(file);
    fill(writer);
    if (!file.finish() || !directory.flush()) {
        file.discard();
        head.log().error(
            "Cannot write parameter data file: ", CFilePath(head.path.directoryPart(), name).shown());
        return SaveResult::NotWritten;
    }
    return SaveResult::Saved;
}

} // namespace values
