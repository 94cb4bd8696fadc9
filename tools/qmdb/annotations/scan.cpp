#include "annotations/scan.h"

#include "annotations/InputFile.h"

#include "format/innerText.h"
#include "format/paths.h"

#include <algorithm>
#include <iterator>

namespace tool {

namespace fs = std::filesystem;

std::string entryPath(std::string_view directory, std::string_view name)
{
    return directory.empty() ? std::string(name) : format::joinPath(directory, name);
}

std::string nativePath(std::string_view root, std::string_view file)
{
    return format::text::toLocale(file.empty() ? std::string(root) : format::joinPath(root, file));
}

bool countsAsDirectory(const fs::directory_entry& entry)
{
    std::error_code ignored;
    return entry.is_directory(ignored) || entry.is_socket(ignored) || entry.is_block_file(ignored);
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
    std::error_code failure;
    fs::directory_iterator entries(nativePath(root, directory), failure);
    for (; !failure && entries != fs::directory_iterator(); entries.increment(failure)) {
        std::string name = format::text::fromLocale(entries->path().filename().native());
        if (!name.empty()) {
            (countsAsDirectory(*entries) ? found.directories : found.files).push_back(std::move(name));
        }
    }
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
