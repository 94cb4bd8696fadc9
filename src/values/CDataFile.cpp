#include "values/CDataFile.h"

#include "format/innerText.h"
#include "format/rows.h"
#include "qm/CQMTranscoder.h"
#include "qmdatabase/status.h"

namespace values {

int reportMissing(const CLog& log, std::string_view path)
{
    log.error("Parameter data file doesn't exists: ", format::shown(path)); // a fixed text, as it stands
    return QMDB_E_NO_DATA_FILE;
}

CDataFile::CDataFile(const CLog& log, const std::string& path)
    : log_(log)
    , path_(path)
    , file_({ AT_FDCWD, format::text::toLocale(path) })
    , lines_(file_)
    , plainRowsAllowed_(format::plainNumbersAllowed() && qm::CQMTranscoder::IsAnsiAscii())
{
}

int CDataFile::checkOpen() const
{
    if (file_.isOpen()) {
        return QMDB_OK;
    }
    if (!qm::CQMFileSystem::Exists({ AT_FDCWD, format::text::toLocale(path_) })) {
        return reportMissing(log_, path_);
    }
    log_.error("Cannot open parameter data file: ", shownPath());
    return QMDB_E_FILE;
}

int CDataFile::next()
{
    isDecoded_ = false;
    if (lines_.next(bytes_) == CLineReader::Result::Line) {
        return QMDB_OK;
    }
    log_.error("Cannot read parameter data file: ", shownPath());
    return QMDB_E_READ;
}

bool CDataFile::parsePlainRow(std::span<double> numbers) const noexcept
{
    return plainRowsAllowed_ && format::parsePlainRow(bytes_, numbers);
}

std::string_view CDataFile::text()
{
    if (!isDecoded_) {
        text_ = decoder_.decode(bytes_);
        isDecoded_ = true;
    }
    return text_;
}

bool CDataFile::isSkipped()
{
    return format::isSkipped(text());
}

} // namespace values
