#pragma once

#include "qm/handles.h"

#include <fcntl.h>
#include <string>
#include <sys/types.h>

namespace qm {

/// A path as the system takes it, in the locale's encoding: relative to an open directory, or by default
/// to where the process stands. It may be longer than the system takes in one piece.
struct NativePath {
    int directory = AT_FDCWD; ///< must stay open while the path is used
    std::string path;
};

enum class MoveResult {
    Moved,
    Occupied, ///< something stands there
    Unsupported, ///< by the file system, unless it replaces what stands there
    Failed,
};

/// Opening, testing, making and removing of entries. What a signal interrupts is tried again.
class CQMFileSystem {
public:
    /// Opens with O_CLOEXEC and without waiting, so that a FIFO cannot hang the host. The handle is empty
    /// on failure, and errno says why.
    static FileHandle Open(const NativePath& path, int flags, mode_t mode = 0);
    /// Opens a directory for listing it, flushing it and walking paths from it.
    static FileHandle OpenDirectory(const NativePath& path);

    /// True when something stands at the path; links are followed, an error counts as nothing.
    static bool Exists(const NativePath& path);
    /// True when nothing stands there. Throws EQMException when that cannot be found out.
    static bool IsFree(const NativePath& path);
    /// True for the error of asking after what is not there; links in circles and to impossible names lead to
    /// nothing either.
    static bool IsAbsence(int number) noexcept;
    static bool IsLink(const NativePath& path);
    /// Where links lead to, whether something stands there or not; the path itself when it is no link. The
    /// path is empty when that cannot be found out.
    static NativePath FollowLinks(NativePath path);
    /// True when the path can be opened for reading; a directory can.
    static bool FileExists(const NativePath& path);

    /// Makes one directory (mode 0750 before the umask). Throws EQMException, also when something stands
    /// there already.
    static void MakeDir(const NativePath& path);
    /// Removes a file or an empty directory. Throws EQMException.
    static void RemoveFile(const NativePath& path);
    /// Removes a file; failures are ignored.
    static void TryRemoveFile(const NativePath& path) noexcept;

    /// Moves a file to where nothing stands.
    static MoveResult MoveToFreePlace(const NativePath& from, const NativePath& to) noexcept;

    /// Flush an open file, or directory, to the disk. True as well where the file system has no such
    /// operation; else false with errno set.
    static bool FlushFile(int descriptor) noexcept;
    static bool FlushDirectory(int descriptor) noexcept;
    /// Flushes the directory that an entry lies in. True as well where it may not be opened.
    static bool FlushDirectoryOf(const NativePath& path);

    /// Throws what MakeDir() throws for an error number.
    [[noreturn]] static void ThrowMakeDirError(int number);
};

} // namespace qm
