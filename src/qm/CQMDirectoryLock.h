#pragma once

namespace qm {

/// An exclusive lock on an open directory, held while the object lives; making it waits until nobody else
/// holds one. A file system without locks does without, and so does a directory that is not open (-1).
class CQMDirectoryLock {
public:
    explicit CQMDirectoryLock(int directory) noexcept;
    CQMDirectoryLock(const CQMDirectoryLock&) = delete;
    CQMDirectoryLock& operator=(const CQMDirectoryLock&) = delete;
    ~CQMDirectoryLock();

private:
    int directory_;
};

} // namespace qm
