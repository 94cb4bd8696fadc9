#include "files/CDirectory.h"

CDirectory::CDirectory(const std::string& parent, std::string_view name)
    : path_(std::make_shared<const std::string>(parent + "/" + std::string(name)))
    , nameAt_(parent.size() + 1)
{
}

const qm::CQMDirectoryListing& CDirectory::entries()
{
    if (!entries_) {
        entries_.emplace(*path_);
    }
    return *entries_;
}

std::vector<CDirectory>& CDirectory::subdirectories()
{
    if (!subdirectories_) {
        std::vector<CDirectory> found;
        qm::CQMDirectoryScanner scanner(entries(), "*", true);
        for (qm::DirectoryEntry entry; scanner.GetNext(entry);) {
            found.push_back(CDirectory(*path_, entry.name));
        }
        subdirectories_ = std::move(found);
    }
    return *subdirectories_;
}

void CDirectory::forget()
{
    entries_.reset();
    subdirectories_.reset();
}
