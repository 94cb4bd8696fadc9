#include "database/CDatabase.h"

#include "qmdatabase/status.h"

#include <algorithm>

int CDatabase::openDatabase(std::string_view path, std::string_view language)
{
    path_ = std::make_shared<const std::string>(path);
    log_.deleteLogFile();
    log_.info("Database path: ", path);
    const bool russian = language.starts_with("ru");
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
    log_.info("Start to search for materials");
    std::vector<FoundFile> files;
    int code = CDbFile::getFilesListDownLevel(log_, root, s_matterFilesExt, files);
    if (code != QMDB_OK) {
        return code;
    }
    matters_.beginLoading(files.size());
    for (const FoundFile& file : files) {
        code = loadMatter(file);
        if (code != QMDB_OK) {
            return code;
        }
        file.directory->forget();
    }
    matters_.finishLoading();
    log_.info("Materials have been added to database", matters_.size());
    return QMDB_OK;
}

int CDatabase::loadMatter(const FoundFile& file)
{
    CMatter matter(file, log_, *strings_);
    const long id = matter.getID();
    // A substance that is refused below uses its IDs up all the same.
    maxMatterId_ = std::max(maxMatterId_, id);
    strings_->updateMaxStringID(matter.getNumber(CMatter::s_NameIDKey));
    strings_->updateMaxStringID(matter.getNumber(CMatter::s_CommentIDKey));
    if (matter.status == QMDB_E_NO_PHASES) {
        log_.error("Material without phases: ", matter.path.text());
        return QMDB_OK;
    }
    if (matter.status != QMDB_OK) {
        log_.error("Cannot load matter file: ", matter.path.text());
        return matter.status;
    }
    matters_.load(id, std::move(matter));
    log_.info("Material has been added to database, ID=", id);
    return QMDB_OK;
}

int CDatabase::loadParameters(CDirectory& root)
{
    log_.info("Start to search for parameter descriptions");
    for (const FoundFile& file : CDbFile::getFilesList(log_, root, s_parameterFilesExt)) {
        CParameter parameter(file, log_, *strings_);
        if (parameter.status != QMDB_OK) {
            log_.error("Cannot load parameter description file: ", parameter.path.text());
            return parameter.status;
        }
        const long id = parameter.getID();
        strings_->updateMaxStringID(parameter.getNumber(CParameter::s_NameIDKey));
        strings_->updateMaxStringID(parameter.getNumber(CParameter::s_UnitsIDKey));
        parameters_.load(id, std::move(parameter));
        log_.info("Parameter description has been added to database, ID=", id);
    }
    parameters_.finishLoading();
    log_.info("Parameter descriptions have been added to database, ", parameters_.size());
    return QMDB_OK;
}
