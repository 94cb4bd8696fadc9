#pragma once

#include <string>

namespace tool {

/// Keeps other commands from changing a database at the same time: what one adds, the next one must see
/// when it opens the database, or both give out the same IDs.
class DatabaseLock {
public:
    /// Waits for another holder, with a note on standard error.
    explicit DatabaseLock(const std::string& directory);
    DatabaseLock(const DatabaseLock&) = delete;
    DatabaseLock& operator=(const DatabaseLock&) = delete;
    ~DatabaseLock();

private:
    int descriptor_;
};

} // namespace tool
