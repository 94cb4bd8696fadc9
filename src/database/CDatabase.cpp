#include "database/CDatabase.h"

#include "model/loading.h"
#include "qmdatabase/status.h"

#include <algorithm>

namespace {

constexpr LoadMessages matterMessages = {
    "Start to search for materials",
    "Cannot load matter file: ",
    "Material has been added to database, ID=",
    "Materials have been added to database",
};

constexpr LoadMessages parameterMessages = {
    "Start to search for parameter descriptions",
    "Cannot load parameter description file: ",
    "Parameter description has been added to database, ID=",
    "Parameter descriptions have been added to database, ",
};

} // namespace

int CDatabase::openDatabase(std::string_view path, std::string_view language)
{
    path_ = std::make_shared<const std::string>(path);
    log_.deleteLogFile();
    log_.info("Database path: ", path);
    const bool russian = language.starts_with(format::russianLanguage);
    strings_
        = std::make_unique<CLocalizer>(CFilePath(path_, russian ? s_localFileName : s_defaultFileName), log_);
    CDirectory root(path_);
    if (const int code = loadMatters(root); code != QMDB_OK) {
        return code;
    }
    return loadParameters(root);
}

int CDatabase::loadMatters(CDirectory& root)
{
    return loadAll(
        matters_, root, format::substanceKind, matterMessages, log_,
        [this](const FoundFile& file) { return CMatter(file, log_, *strings_); },
        [this](const CMatter& matter, long id) {
            // One that is refused uses its IDs up all the same.
            maxMatterId_ = std::max(maxMatterId_, id);
            matter.noteStringIds(format::substanceKind);
        });
}

int CDatabase::loadParameters(CDirectory& root)
{
    return loadAll(
        parameters_, root, format::descriptionKind, parameterMessages, log_,
        [this](const FoundFile& file) { return CParameter(file, log_, *strings_); },
        [](const CParameter& parameter, long) { parameter.noteStringIds(format::descriptionKind); });
}
