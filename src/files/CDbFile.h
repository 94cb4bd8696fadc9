#pragma once

#include "files/CDirectory.h"
#include "files/CFilePath.h"
#include "files/CKeyMap.h"
#include "files/CLineReader.h"
#include "files/CLog.h"
#include "format/keys.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A descriptor file that a scan has found.
struct FoundFile {
    CDirectory* directory = nullptr; ///< where it lies; valid while the load lasts
    const CDirectory::Entry* entry = nullptr; ///< in it, valid until it is closed

    CFilePath path() const { return { directory->path(), entry->name }; }

    /// The directory of the path's directory part, where what belongs to the file is looked for: mostly
    /// the one that it lies in, else one that is made in `other`.
    CDirectory& neighbours(std::optional<CDirectory>& other) const;
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

    /// Reads the file; `status` is the outcome.
    CDbFile(const FoundFile& file, const CLog& log);
    CDbFile(CFilePath path, const CLog& log);

    int status = 0;
    /// True when the file that was read began with a UTF-8 mark.
    bool utf8 = false;
    CFilePath path;

    const CLog& log() const noexcept { return *log_; }

    /// The value under a key, or the default; valid until the key map changes.
    std::string_view getParametr(format::Key key, std::string_view defaultValue = {}) const noexcept;
    void setParametr(format::Key key, std::string_view value) { keys_.set(key, value); }

    /// A value read with "%ld"; 0 when the key is missing or no number can be read.
    long getNumber(format::Key key) const;
    void setNumber(format::Key key, long number);
    /// False as well when the key is missing.
    bool getFlag(format::Key key) const noexcept { return getParametr(key) == format::trueFlag; }
    void setFlag(format::Key key, bool flag);

    const CKeyMap& keys() const noexcept { return keys_; }

    /// Writes all keys to the file in `directory`, which is open; it appears complete or not at all. 0, or
    /// -6 when it cannot be written. Throws EQMException when a text has no UTF-8 form; nothing is written
    /// then.
    int saveFile(const CDirectory& directory) const;

    /// Finds the files of one kind that belong to a directory, in the system's order. -6 when a directory
    /// holds several of a kind of which it may hold one.
    static int findFiles(const CLog& log, CDirectory& directory, const format::DescriptorKind& kind,
        std::vector<FoundFile>& files);

protected:
    /// Sets the status to "a required key is missing" and reports it unless all keys are present, or the
    /// file has failed before.
    void requireKeys(format::KeySet required);

private:
    static int getFilesList(
        const CLog& log, CDirectory& directory, std::string_view extension, std::vector<FoundFile>& files);
    static int getFilesListDownLevel(
        const CLog& log, CDirectory& directory, std::string_view extension, std::vector<FoundFile>& files);

    // Not inlined together: each holds a buffer, and a host's thread may have a small stack.
    [[gnu::noinline]] void read(const qm::NativePath& native);
    [[gnu::noinline]] void readAhead(std::string_view bytes);
    void parse(CLineReader& lines);

    const CLog* log_;
    CKeyMap keys_;
};
