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
    const std::lock_guard guard(lock_);
    databases_.insert_or_assign(lastDbID + 1, std::move(database));
    databaseId = getDatabaseID(); // only now: a failure above uses no ID up
    return QMDB_OK;
}

int CDbEngine::closeDatabase(long databaseId)
{
    std::unique_lock guard(lock_);
    const auto closed = databases_.extract(databaseId);
    guard.unlock(); // freeing a large database takes its time
    return closed ? QMDB_OK : QMDB_E_NOT_FOUND;
}

int CDbEngine::getDatabase(long databaseId, CDatabase*& database) const
{
    const std::lock_guard guard(lock_);
    const auto found = databases_.find(databaseId);
    if (found == databases_.end()) {
        return QMDB_E_NOT_FOUND;
    }
    database = found->second.get();
    return QMDB_OK;
}
