#include "writing/Changes.h"

#include "common/encodings.h"
#include "common/failure.h"
#include "writing/fileWriting.h"

#include "format/vocabulary.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace tool::writing {

namespace {

namespace fs = std::filesystem;

/// What is being removed lies in such a directory of the root, too deep for any scan.
constexpr std::string_view removalPrefix = ".qmdb-removed-";

fs::path placeOf(const std::string& root, const std::string& name)
{
    return fs::path(toLocale(root)) / toLocale(name);
}

std::vector<std::string> linesOf(std::string_view bytes)
{
    std::vector<std::string> lines;
    bytes.remove_prefix(bytes.starts_with(format::utf8Mark) ? format::utf8Mark.size() : 0);
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        lines.emplace_back(bytes.substr(0, end));
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    return lines;
}

std::string readFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

/// The lines of one text that the other has not.
void appendOthers(std::vector<std::string>& shown, std::string_view sign,
    const std::vector<std::string>& lines, std::vector<std::string> others)
{
    constexpr std::ptrdiff_t mostLines = 12;
    std::ptrdiff_t count = 0;
    for (const std::string& line : lines) {
        if (const auto same = std::ranges::find(others, line); same != others.end()) {
            others.erase(same);
        } else if (++count <= mostLines) {
            shown.push_back(fmt::format("    {} {}", sign, line));
        }
    }
    if (count > mostLines) {
        shown.push_back(fmt::format("    {} and {} lines more", sign, count - mostLines));
    }
}

/// Takes a directory away in one step, and then its contents.
void removeTree(const std::string& root, const fs::path& directory)
{
    if (fs::is_symlink(directory)) {
        removeFile(directory);
        return;
    }
    const fs::path rest = placeOf(root, fmt::format("{}{}", removalPrefix, ::getpid()));
    makeDirectory(rest);
    if (std::rename(directory.c_str(), (rest / directory.filename()).c_str()) != 0) {
        const int error = errno;
        ::rmdir(rest.c_str());
        errno = error;
        throwSystemFailure("remove", directory);
    }
    flushDirectory(rest);
    flushDirectory(directory.parent_path());
    std::error_code ignored; // it is out of the database; the next removal tries again
    fs::remove_all(rest, ignored);
}

} // namespace

void Changes::makeFile(std::string file, std::string bytes)
{
    steps_.push_back({ Action::MakeFile, std::move(file), std::move(bytes) });
}

void Changes::replaceFile(std::string file, std::string bytes)
{
    steps_.push_back({ Action::ReplaceFile, std::move(file), std::move(bytes) });
}

void Changes::removeFile(std::string file)
{
    steps_.push_back({ Action::RemoveFile, std::move(file), {} });
}

void Changes::makeDirectory(std::string directory)
{
    steps_.push_back({ Action::MakeDirectory, std::move(directory), {} });
}

void Changes::removeDirectory(std::string directory)
{
    steps_.push_back({ Action::RemoveDirectory, std::move(directory), {} });
}

void Changes::append(const Changes& more)
{
    steps_.insert(steps_.end(), more.steps_.begin(), more.steps_.end());
}

std::vector<std::string> Changes::previewLines(const Step& step, const std::string& root)
{
    switch (step.action) {
    case Action::MakeFile: {
        std::vector<std::string> lines { fmt::format("would make {}", step.name) };
        appendOthers(lines, "+", linesOf(step.bytes), {});
        return lines;
    }
    case Action::ReplaceFile: {
        std::vector<std::string> lines { fmt::format("would change {}", step.name) };
        const auto before = linesOf(readFile(placeOf(root, step.name)));
        const auto after = linesOf(step.bytes);
        appendOthers(lines, "-", before, after);
        appendOthers(lines, "+", after, before);
        return lines;
    }
    case Action::MakeDirectory:
        return { fmt::format("would make {}/", step.name) };
    case Action::RemoveFile:
        return { fmt::format("would remove {}", step.name) };
    case Action::RemoveDirectory:
        return { fmt::format("would remove {}/ with all that is in it", step.name) };
    }
    return {};
}

std::vector<std::string> Changes::preview(const std::string& root) const
{
    std::vector<std::string> lines;
    for (const Step& step : steps_) {
        std::ranges::move(previewLines(step, root), std::back_inserter(lines));
    }
    return lines;
}

void Changes::applyStep(const Step& step, const std::string& root) const
{
    const fs::path path = placeOf(root, step.name);
    switch (step.action) {
    case Action::MakeFile:
        return writeWholeFile(path, step.bytes, Existing::Refuse);
    case Action::ReplaceFile:
        return writeWholeFile(path, step.bytes, Existing::Replace);
    case Action::MakeDirectory:
        return writing::makeDirectory(path);
    case Action::RemoveFile:
        return writing::removeFile(path);
    case Action::RemoveDirectory:
        return removeTree(root, path);
    }
}

void Changes::apply(const std::string& root) const
{
    for (const Step& step : steps_) {
        applyStep(step, root);
    }
}

void Changes::applyUnseen(const std::string& root, const std::function<void()>& checkpoint) const
{
    for (const Step& step : steps_) {
        checkpoint();
        const fs::path path = placeOf(root, step.name);
        std::error_code ignored;
        if (step.action == Action::MakeDirectory) {
            fs::create_directory(path);
        } else if (step.action == Action::RemoveFile) {
            fs::remove(path);
        } else {
            fs::remove(path, ignored); // a link to the file of the database itself
            writeUnseenFile(path, step.bytes);
        }
    }
}

void removeRests(const std::string& root)
{
    std::error_code ignored;
    std::vector<fs::path> rests;
    for (const auto& entry : fs::directory_iterator(toLocale(root), ignored)) {
        if (entry.path().filename().native().starts_with(removalPrefix)) {
            rests.push_back(entry.path());
        }
    }
    for (const fs::path& rest : rests) {
        fs::remove_all(rest, ignored);
    }
}

void requireOwnFile(const std::string& directory, const std::string& file)
{
    const fs::path root = toLocale(directory);
    fs::path path = root;
    for (const fs::path& part : fs::path(toLocale(file))) {
        path /= part;
        if (fs::is_symlink(path)) {
            throw Failure(
                "\"{}\" is a link, and what it leads to may belong to others too: replace it by what it "
                "leads to, or change that",
                fromLocale(path.c_str()));
        }
    }
}

} // namespace tool::writing
