#include "annotations/scan.h"

#include "annotations/InputFile.h"

#include "format/innerText.h"
#include "format/paths.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <iterator>
#include <memory>
#include <sys/stat.h>

namespace tool {

namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const { ::closedir(directory); }
};

/// The kind of an entry, of which the system mostly tells when it lists it; 0 when it cannot be found out.
mode_t kindOf(DIR* directory, const dirent& entry, int flags)
{
    if (entry.d_type != DT_UNKNOWN && (entry.d_type != DT_LNK || flags == AT_SYMLINK_NOFOLLOW)) {
        return static_cast<mode_t>(DTTOIF(entry.d_type));
    }
    struct stat status { };
    return ::fstatat(::dirfd(directory), entry.d_name, &status, flags) == 0 ? status.st_mode : 0;
}

bool countsAsDirectory(mode_t kind)
{
    return S_ISDIR(kind) || S_ISSOCK(kind) || S_ISBLK(kind);
}

} // namespace

std::string entryPath(std::string_view directory, std::string_view name)
{
    return directory.empty() ? std::string(name) : format::joinPath(directory, name);
}

std::string nativePath(std::string_view root, std::string_view file)
{
    return format::text::toLocale(file.empty() ? std::string(root) : format::joinPath(root, file));
}

bool forEachEntry(const std::string& nativeDirectory, const std::function<void(const DirectoryEntry&)>& use)
{
    const std::unique_ptr<DIR, CloseDirectory> directory(::opendir(nativeDirectory.c_str()));
    if (!directory) {
        return false;
    }
    while (const dirent* const entry = ::readdir(directory.get())) {
        const std::string_view name(entry->d_name);
        if (name != "." && name != "..") {
            const mode_t kind = kindOf(directory.get(), *entry, AT_SYMLINK_NOFOLLOW);
            const bool isLink = S_ISLNK(kind);
            use({ format::text::fromLocale(name), name,
                countsAsDirectory(isLink ? kindOf(directory.get(), *entry, 0) : kind), isLink });
        }
    }
    return true;
}

std::vector<std::string> Scan::filesWith(std::string_view extension) const
{
    std::vector<std::string> found;
    std::ranges::copy_if(files, std::back_inserter(found),
        [extension](const std::string& name) { return format::hasExtension(name, extension); });
    return found;
}

Scan scan(std::string_view root, std::string_view directory)
{
    Scan found;
    forEachEntry(nativePath(root, directory), [&found](const DirectoryEntry& entry) {
        if (!entry.name.empty()) {
            (entry.isDirectory ? found.directories : found.files).push_back(entry.name);
        }
    });
    return found;
}

void forEachLine(
    std::string_view root, std::string_view file, const std::function<void(std::string_view)>& use)
{
    using Result = format::CLineCutter::Result;
    const InputFile input(nativePath(root, file));
    if (!input.isOpen() || !input.isPlain()) {
        return;
    }
    format::CLineCutter lines;
    for (;;) {
        std::string_view line;
        const Result result = lines.next(line);
        if (result != Result::NeedBytes) {
            use(line);
            if (result == Result::TooLong || lines.hitEnd()) {
                return;
            }
        } else if (!input.feed(lines)) {
            return;
        }
    }
}

} // namespace tool
