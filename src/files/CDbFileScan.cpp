#include "files/CDbFile.h"
#include "qmdatabase/status.h"

#include <algorithm>

namespace {

/// Appends the matching files of one directory; returns how many there are.
std::size_t appendFiles(CDirectory& directory, std::string_view mask, std::vector<FoundFile>& files)
{
    constexpr std::size_t usualNumber = 16;
    files.reserve(std::max(files.capacity(), usualNumber));
    const std::size_t before = files.size();
    qm::CQMDirectoryScanner scanner(directory.entries(), mask, false);
    for (qm::DirectoryEntry entry; scanner.GetNext(entry);) {
        files.push_back({ &directory, std::string(entry.name), entry.kind == qm::EntryKind::RegularFile });
    }
    return files.size() - before;
}

} // namespace

std::vector<FoundFile> CDbFile::getFilesList(const CLog& log, CDirectory& directory, std::string_view mask)
{
    log.info("Process subdirectory: ", *directory.path());
    std::vector<FoundFile> files;
    appendFiles(directory, mask, files);
    return files;
}

int CDbFile::getFilesListDownLevel(
    const CLog& log, CDirectory& directory, std::string_view mask, std::vector<FoundFile>& files)
{
    log.info("Process subdirectory one level: ", *directory.path());
    files.clear();
    for (CDirectory& subdirectory : directory.subdirectories()) {
        const std::size_t count = appendFiles(subdirectory, mask, files);
        if (count == 0) {
            log.info("No files");
        } else if (count > 1) {
            log.error("More than one files: ", subdirectory.name());
            return QMDB_E_FILE;
        }
    }
    return QMDB_OK;
}
