#pragma once

#include "database/CDatabase.h"

#include <map>
#include <memory>
#include <mutex>

/// The registry of the open databases. Threads may use it at once: a lock guards it, which is not held while
/// a database works. Calls on one database are the host's to serialise.
class CDbEngine {
public:
    /// Opens a database and registers it under the next ID; on failure the ID is -1 and none is used
    /// up. An exception leaves a line in the log of the database that was being opened.
    int openDatabase(std::string_view path, std::string_view language, std::string_view logDir, bool logInfo,
        long& databaseId);

    int closeDatabase(long databaseId);

    /// -2 for an unknown ID; `database` then stays as it was.
    int getDatabase(long databaseId, CDatabase*& database) const;

private:
    /// The next ID; never issued again. Under the lock only.
    static long getDatabaseID() noexcept { return ++lastDbID; }

    static inline long lastDbID = 0;
    mutable std::mutex lock_;
    std::map<long, std::unique_ptr<CDatabase>> databases_;
};
