#include "files/CDbFile.h"

#include "format/descriptor.h"
#include "format/innerText.h"
#include "format/numbers.h"
#include "format/paths.h"
#include "qm/CQMOutputFile.h"
#include "qm/EQMException.h"
#include "qmdatabase/status.h"

namespace {

/// Appends the files of one directory; returns how many there are.
std::size_t append(std::vector<FoundFile>& files, CDirectory& directory, std::string_view extension)
{
    const std::size_t before = files.size();
    directory.forEachFile(extension, [&](const CDirectory::Entry& entry) {
        files.push_back({ &directory, &entry });
    });
    return files.size() - before;
}

bool isTooLarge(const CLineReader& lines, const CKeyMap::Builder& entries)
{
    return lines.bytesDelivered() >= format::maxDescriptorSize || entries.size() > CKeyMap::maxSize;
}

} // namespace

CDirectory& FoundFile::neighbours(std::optional<CDirectory>& other) const
{
    return format::isBareName(entry->name) ? *directory : other.emplace(path().directoryPart());
}

CDbFile::CDbFile(const FoundFile& file, const CLog& log)
    : status(QMDB_E_READ)
    , path(file.path())
    , log_(&log)
{
    if (const auto bytes = file.directory->bytesOf(*file.entry)) {
        readAhead(*bytes);
    } else {
        read(file.directory->pathOf(file.entry->name));
    }
}

CDbFile::CDbFile(CFilePath path, const CLog& log)
    : status(QMDB_E_READ)
    , path(std::move(path))
    , log_(&log)
{
    read({ AT_FDCWD, format::text::toLocale(this->path.text()) });
}

void CDbFile::read(const qm::NativePath& native)
{
    qm::CQMInputFile file(native);
    if (!file.isOpen()) {
        log_->error("Cannot open file: ", path.shown());
        status = QMDB_E_FILE;
        return;
    }
    CLineReader lines(file);
    parse(lines);
}

void CDbFile::readAhead(std::string_view bytes)
{
    CLineReader lines(bytes);
    parse(lines);
}

void CDbFile::parse(CLineReader& lines)
{
    format::CDescriptorParser parser;
    CKeyMap::Builder entries;
    while (status == QMDB_E_READ) {
        std::string_view bytes;
        const CLineReader::Result result = lines.next(bytes);
        if (result == CLineReader::Result::Failed || isTooLarge(lines, entries)) {
            log_->error("Cannot read from  file: ", path.shown());
            break;
        }
        switch (parser.parse(bytes)) {
        case format::CDescriptorParser::Result::Entry:
            entries.add(parser.key(), parser.value());
            break;
        case format::CDescriptorParser::Result::NoKey:
            log_->error("File format error: ", path.shown(), "(", parser.value(), ")");
            break;
        case format::CDescriptorParser::Result::Blank:
            break;
        }
        if (result == CLineReader::Result::TooLong) {
            log_->error("File format error (line too long): ", path.shown());
        }
        if (result == CLineReader::Result::TooLong || lines.hitEnd()) {
            status = QMDB_OK;
        }
    }
    utf8 = parser.isUtf8();
    if (entries.size() <= CKeyMap::maxSize) {
        keys_ = entries.finish();
    }
}

std::string_view CDbFile::getParametr(format::Key key, std::string_view defaultValue) const noexcept
{
    return keys_.find(key).value_or(defaultValue);
}

long CDbFile::getNumber(format::Key key) const
{
    return format::wstr2long(getParametr(key));
}

void CDbFile::setNumber(format::Key key, long number)
{
    setParametr(key, format::long2wstr(static_cast<unsigned long>(number)));
}

void CDbFile::setFlag(format::Key key, bool flag)
{
    setParametr(key, flag ? format::trueFlag : format::falseFlag);
}

int CDbFile::saveFile(const CDirectory& directory) const
{
    std::string bytes(format::utf8Mark);
    CKeyMap::Entry entry;
    for (std::size_t position = 0; keys_.next(position, entry);) {
        if (!format::appendEntry(bytes, entry.key, entry.value)) {
            throw qm::EQMException(qm::ErrorCode::NotConvertible);
        }
    }
    if (!directory.writeWholeFile(path.name(), bytes)) {
        log_->error("Cannot open file for write: ", path.shown());
        return QMDB_E_FILE;
    }
    return QMDB_OK;
}

int CDbFile::findFiles(
    const CLog& log, CDirectory& directory, const format::DescriptorKind& kind, std::vector<FoundFile>& files)
{
    constexpr std::size_t usualFiles = 16;
    files.reserve(usualFiles);
    return kind.hasDirectory ? getFilesListDownLevel(log, directory, kind.extension, files)
                             : getFilesList(log, directory, kind.extension, files);
}

int CDbFile::getFilesList(
    const CLog& log, CDirectory& directory, std::string_view extension, std::vector<FoundFile>& files)
{
    log.info("Process subdirectory: ", CLog::Path { *directory.path() });
    if (const int code = directory.list(log); code != QMDB_OK) {
        return code;
    }
    append(files, directory, extension);
    return QMDB_OK;
}

int CDbFile::getFilesListDownLevel(
    const CLog& log, CDirectory& directory, std::string_view extension, std::vector<FoundFile>& files)
{
    log.info("Process subdirectory one level: ", CLog::Path { *directory.path() });
    if (const int code = directory.list(log); code != QMDB_OK) {
        return code;
    }
    for (CDirectory& subdirectory : directory.subdirectories()) {
        if (const int code = subdirectory.list(log); code != QMDB_OK) {
            return code;
        }
        const std::size_t count = append(files, subdirectory, extension);
        if (count == 0) {
            log.info("No files");
        } else if (count > 1) {
            log.error("More than one files: ", CLog::Path { subdirectory.name() });
            return QMDB_E_FILE;
        }
    }
    return QMDB_OK;
}

void CDbFile::requireKeys(format::KeySet required)
{
    if (status != QMDB_OK || keys_.hasAll(required)) {
        return;
    }
    status = QMDB_E_REQUIRED_KEY;
    log_->error("No required field(s) in file: ", path.shown());
}
