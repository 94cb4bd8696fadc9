#include "values/CDataFile.h"

#include "files/descriptorLine.h"
#include "files/plainNumbers.h"
#include "qm/CQMFileSystem.h"
#include "qmdatabase/status.h"

namespace values {

int tellMissing(const CLog& log, std::string_view path)
{
    log.error("Parameter data file doesn't exists: ", path);
    return QMDB_E_NO_DATA_FILE;
}

CDataFile::CDataFile(const CLog& log, const std::string& path)
    : log_(log)
    , path_(path)
    , file_(path)
    , lines_(file_, false)
    , plainNumbersAllowed_(conversions::plainNumbersAllowed())
{
}

int CDataFile::checkOpen() const
{
    if (file_.isOpen()) {
        return QMDB_OK;
    }
    if (!qm::CQMFileSystem::Exists(path_)) {
        return tellMissing(log_, path_);
    }
    log_.error("Cannot open parameter data file: ", path_);
    return QMDB_E_FILE;
}

int CDataFile::next()
{
    isDecoded_ = false;
    if (lines_.next(bytes_) == CLineReader::Result::Line) {
        return QMDB_OK;
    }
    log_.error("Cannot read parameter data file: ", path_);
    return QMDB_E_READ;
}

bool CDataFile::readPlainNumbers(std::span<double> numbers) const noexcept
{
    if (!plainNumbersAllowed_) {
        return false;
    }
    const char* at = bytes_.data();
    const char* const end = at + bytes_.size();
    for (double& number : numbers) {
        if (&number != numbers.data() && (at == end || *at != ' ')) {
            return false;
        }
        while (at != end && *at == ' ' && &number != numbers.data()) {
            ++at;
        }
        at = conversions::takePlainNumber(at, end, number);
        if (!at) {
            return false;
        }
    }
    return at == end || (*at == '\r' && at + 1 == end);
}

std::string_view CDataFile::text()
{
    if (!isDecoded_) {
        text_ = decodeLine(bytes_, false, decoded_);
        isDecoded_ = true;
    }
    return text_;
}

bool CDataFile::isSkipped()
{
    return text().empty() || text().starts_with('#');
}

} // namespace values
