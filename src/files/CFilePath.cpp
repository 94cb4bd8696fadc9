#include "files/CFilePath.h"

#include "qm/CQMFileSystem.h"

std::string joinPath(std::string_view directory, std::string_view name)
{
    std::string path;
    path.reserve(directory.size() + 1 + name.size());
    return path.append(directory).append(1, '/').append(name);
}

std::shared_ptr<const std::string> CFilePath::directoryPart() const
{
    if (name_.find('\\') == std::string::npos) {
        return directory_;
    }
    return std::make_shared<const std::string>(qm::CQMFileSystem::ExtractDir(text()));
}
