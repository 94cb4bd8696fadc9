#include "library.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace bench {

int checked(int code)
{
    if (code < QMDB_OK) {
        throw std::runtime_error("the library returned " + std::to_string(code));
    }
    return code;
}

Database::Database(const std::filesystem::path& root, bool logInfo)
{
    checked(qmdbOpen(root.wstring().c_str(), L"en", L"", logInfo, &id_));
}

void Database::close() noexcept
{
    if (id_ >= 0) {
        qmdbClose(std::exchange(id_, -1));
    }
}

Value firstValue(const Database& database)
{
    IDbData* value = nullptr;
    checked(qmdbGetParamValue(database.id(), 0, 0, -1, 1, &value));
    return Value(value);
}

} // namespace bench
