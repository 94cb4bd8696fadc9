#include "files/CFilePath.h"

#include "format/paths.h"

std::string CFilePath::text() const
{
    return format::joinPath(*directory_, name_);
}

std::string CFilePath::shown() const
{
    return format::shown(text());
}

std::shared_ptr<const std::string> CFilePath::directoryPart() const
{
    if (format::isBareName(name_)) {
        return directory_;
    }
    return std::make_shared<const std::string>(format::splitPath(text()).dir);
}
