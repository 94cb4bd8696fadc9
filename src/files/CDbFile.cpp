#include "files/CDbFile.h"

#include "files/CLineReader.h"
#include "files/descriptorLine.h"
#include "qm/CQMOutputFile.h"
#include "qm/CQMTranscoder.h"
#include "qmdatabase/status.h"

CDbFile::CDbFile(const FoundFile& file, const CLog& log)
    : status(QMDB_E_READ)
    , path(file.path())
    , log_(&log)
{
    read(file.directory->openFile(file.name), file.regular);
}

CDbFile::CDbFile(CFilePath path, const CLog& log)
    : status(QMDB_E_READ)
    , path(std::move(path))
    , log_(&log)
{
    read(qm::CQMInputFile(this->path.text()), false);
}

void CDbFile::read(qm::CQMInputFile file, bool regularFile)
{
    if (!file.isOpen()) {
        log_->error("Cannot open file: ", path.text());
        status = QMDB_E_FILE;
        return;
    }
    CLineReader lines(file, regularFile);
    CKeyMap::Builder entries;
    std::string decoded;
    bool plain = false; // from the first line to the end, as most files are
    for (bool first = true; status == QMDB_E_READ; first = false) {
        std::string_view bytes;
        const CLineReader::Result result = lines.next(bytes);
        if (result == CLineReader::Result::Failed) {
            log_->error("Cannot read from  file: ", path.text());
            break;
        }
        if (first) {
            utf8 = bytes.starts_with(utf8Mark);
            bytes.remove_prefix(utf8 ? utf8Mark.size() : 0);
            plain = qm::text::isPlain(bytes) && lines.isRestPlain()
                && (utf8 || qm::CQMTranscoder::IsAnsiAscii());
        }
        const std::string_view line = plain ? withoutCr(bytes) : decodeLine(bytes, utf8, decoded);
        const std::size_t sign = line.find('=');
        if (sign != std::string_view::npos) {
            entries.add(line.substr(0, sign), line.substr(sign + 1));
        } else if (!line.empty()) {
            log_->error("File format error: ", path.text(), "(", line, ")");
        }
        if (result == CLineReader::Result::TooLong) {
            log_->error("File format error (line too long): ", path.text());
        }
        if (result == CLineReader::Result::TooLong || lines.hitEnd()) {
            status = QMDB_OK;
        }
    }
    keys_ = entries.finish();
}

std::string_view CDbFile::getParametr(CKey key, std::string_view defaultValue) const noexcept
{
    return keys_.find(key).value_or(defaultValue);
}

long CDbFile::getNumber(CKey key) const
{
    return conversions::wstr2long(getParametr(key));
}

void CDbFile::setNumber(CKey key, long number)
{
    setParametr(key, conversions::long2wstr(static_cast<unsigned long>(number)));
}

int CDbFile::saveFile(const qm::CQMDirectory& directory) const
{
    std::string bytes(utf8Mark);
    CKeyMap::Entry entry;
    for (std::size_t position = 0; keys_.next(position, entry);) {
        bytes += qm::CQMTranscoder::TextToUTF8(entry.key);
        bytes += '=';
        bytes += qm::CQMTranscoder::TextToUTF8(entry.value);
        bytes += '\n';
    }
    const std::string pathText = path.text();
    if (!qm::writeWholeFile(pathText, bytes, directory)) {
        log_->error("Cannot open file for write: ", pathText);
        return QMDB_E_FILE;
    }
    return QMDB_OK;
}

void CDbFile::requireKeys(std::initializer_list<CKey> required)
{
    if (keys_.hasAll(required)) {
        return;
    }
    status = QMDB_E_REQUIRED_KEY;
    log_->error("No required field(s) in file: ", path.text());
}
