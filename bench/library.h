#pragma once

#include "qmdatabase/QMNative.h"

#include <filesystem>
#include <memory>

namespace bench {

/// Throws for a code of failure.
int checked(int code);

/// A database opened through the library; closed at the end of its life.
class Database {
public:
    explicit Database(const std::filesystem::path& root, bool logInfo = false);
    ~Database() { close(); }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    long id() const noexcept { return id_; }
    void close() noexcept;

private:
    long id_ = -1;
};

struct DestroyValue {
    void operator()(IDbData* value) const { qmdbDestroyParameterData(&value); }
};
using Value = std::unique_ptr<IDbData, DestroyValue>;

/// Parameter 1 of phase 0 of substance 0.
Value firstValue(const Database& database);

} // namespace bench
