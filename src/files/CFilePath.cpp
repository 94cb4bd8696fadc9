#include "files/CFilePath.h"

#include "qm/CQMFileSystem.h"

std::shared_ptr<const std::string> CFilePath::directoryPart() const
{
    if (name_.find('\\') == std::string::npos) {
        return directory_;
    }
    return std::make_shared<const std::string>(qm::CQMFileSystem::ExtractDir(text()));
}
