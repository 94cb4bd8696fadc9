#include "database/CDbEngine.h"

#include "qmdatabase/status.h"

int CDbEngine::openDatabase(
    std::string_view path, std::string_view language, std::string_view logDir, bool logInfo, long& databaseId)
{
    databaseId = -1;
    auto database = std::make_unique<CDatabase>(logDir, logInfo);
    if (const int code = database->openDatabase(path, language); code != QMDB_OK) {
        return code;
    }
    databases_.insert_or_assign(lastDbID + 1, std::move(database));
    databaseId = getDatabaseID(); // only now: a failure above uses no ID up
    return QMDB_OK;
}

int CDbEngine::closeDatabase(long databaseId)
{
    return databases_.erase(databaseId) > 0 ? QMDB_OK : QMDB_E_NOT_FOUND;
}

int CDbEngine::getDatabase(long databaseId, CDatabase*& database) const
{
    const auto found = databases_.find(databaseId);
    if (found == databases_.end()) {
        return QMDB_E_NOT_FOUND;
    }
    database = found->second.get();
    return QMDB_OK;
}
