#pragma once

#include "files/CDirectory.h"
#include "files/CFilePath.h"
#include "files/CKeyMap.h"
#include "files/CLog.h"
#include "qm/CQMDirectory.h"

#include <string>
#include <string_view>
#include <vector>

/// A descriptor file that a scan has found.
struct FoundFile {
    CDirectory* directory = nullptr; ///< where it lies; valid while the load lasts
    std::string name;
    bool regular = false;

    CFilePath path() const { return { directory->path(), name }; }

    /// Calls `use` with the directory part of the path: where the file lies, unless a backslash in its
    /// name makes the part another.
    template <class Use>
    auto withDirectoryPart(Use&& use) const
    {
        const std::shared_ptr<const std::string> part = path().directoryPart();
        if (part == directory->path()) {
            return use(*directory);
        }
        CDirectory other(part);
        return use(other);
    }
};

/// A file of "key=value" lines, read whole when the object is made: the base of every descriptor.
///
/// `log` must outlive the object.
class CDbFile {
public:
    /// An empty descriptor for a file that is still to be written.
    explicit CDbFile(const CLog& log) noexcept
        : log_(&log)
    {
    }

    /// Reads the file; `status` tells how it went.
    CDbFile(const FoundFile& file, const CLog& log);
    CDbFile(CFilePath path, const CLog& log);

    int status = 0;
    /// True when the file that was read began with a UTF-8 mark.
    bool utf8 = false;
    CFilePath path;

    const CLog& log() const noexcept { return *log_; }

    /// The value under a key, or the default; valid until the key map changes.
    std::string_view getParametr(CKey key, std::string_view defaultValue = {}) const noexcept;
    void setParametr(CKey key, std::string_view value) { keys_.set(key.text(), value); }

    /// A value read with "%ld"; 0 when the key is missing or no number can be read.
    long getNumber(CKey key) const;
    void setNumber(CKey key, long number);
    /// True exactly when the value is the one character "1".
    bool getFlag(CKey key) const noexcept { return getParametr(key) == "1"; }

    const CKeyMap& keys() const noexcept { return keys_; }

    /// Writes all keys to the file in `directory`; it appears complete or not at all. 0, or -6 when it
    /// cannot be written. Throws EQMException when a text has no UTF-8 form; nothing is written then.
    int saveFile(const qm::CQMDirectory& directory) const;

    /// Lists the files with an extension directly in a directory, in the system's order.
    static std::vector<FoundFile> getFilesList(const CLog& log, CDirectory& directory, std::string_view mask);

    /// Looks for one file with the extension in every subdirectory. -6 when one holds several.
    static int getFilesListDownLevel(
        const CLog& log, CDirectory& directory, std::string_view mask, std::vector<FoundFile>& files);

protected:
    /// Sets the status to "a required key is missing" and says so unless all keys are present.
    void requireKeys(std::initializer_list<CKey> required);

private:
    void read(qm::CQMInputFile file, bool regularFile);

    const CLog* log_;
    CKeyMap keys_;
};
