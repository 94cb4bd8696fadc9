#pragma once

#include "qm/CNativePath.h"
#include "qm/handles.h"

#include <string>

namespace qm {

/// An open directory, for listing it, for making entries in it and for flushing them to the disk.
class CQMDirectory {
public:
    /// `path` is inner text; ask isOpen() for the outcome.
    explicit CQMDirectory(const std::string& path, PathBase base = {});

    bool isOpen() const noexcept { return static_cast<bool>(handle_); }
    int descriptor() const noexcept { return handle_.get(); }

    /// Where paths begin that are this directory's path, "/" and a name.
    PathBase base() const noexcept { return isOpen() ? PathBase { descriptor(), nameAt_ } : PathBase(); }

    /// Flushes the entries to the disk. True as well where the file system has no such operation and
    /// where the directory may be written but not opened; else false with errno set.
    bool flush() const noexcept;

private:
    FileHandle handle_;
    int openError_ = 0;
    std::size_t nameAt_;
};

/// Flushes an open file or directory to the disk, where the file system has the operation.
bool flushToDisk(int descriptor) noexcept;

} // namespace qm
