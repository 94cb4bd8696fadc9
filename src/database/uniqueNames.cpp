#include "database/uniqueNames.h"

#include "files/conversions.h"
#include "qm/CQMDirectoryListing.h"
#include "qm/CQMFileSystem.h"

#include <optional>
#include <vector>

namespace {

/// The number between prefix and extension, when it is written as this file writes it.
std::optional<std::size_t> numberIn(
    std::string_view name, std::string_view prefix, std::string_view extension)
{
    if (name.size() <= prefix.size() + extension.size() || !name.starts_with(prefix)
        || !name.ends_with(extension)) {
        return std::nullopt;
    }
    name.remove_prefix(prefix.size());
    name.remove_suffix(extension.size());
    // Numbers that do not fit are never the first that is free.
    constexpr std::size_t maxDigits = 18;
    if (name.front() == '0' || name.size() > maxDigits) {
        return std::nullopt;
    }
    std::size_t number = 0;
    for (const char c : name) {
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
        number = number * 10 + static_cast<std::size_t>(c - '0');
    }
    return number;
}

std::string nameOf(std::string_view prefix, std::size_t number, std::string_view extension)
{
    return std::string(prefix) + conversions::long2wstr(number) + std::string(extension);
}

/// For a directory that cannot be listed.
std::string probe(std::string_view path, std::string_view prefix, std::string_view extension)
{
    const std::string base = std::string(path) + "/";
    std::size_t number = 1;
    while (qm::CQMFileSystem::Exists(base + nameOf(prefix, number, extension))) {
        ++number;
    }
    return nameOf(prefix, number, extension);
}

} // namespace

std::string uniqueName(const qm::CQMDirectory& directory, std::string_view path, std::string_view prefix,
    std::string_view extension)
{
    qm::CQMDirectoryReader reader(directory);
    std::vector<std::size_t> taken;
    for (qm::DirectoryEntry entry; reader.next(entry);) {
        const std::optional<std::size_t> number = numberIn(entry.name, prefix, extension);
        if (number && entry.kind != qm::EntryKind::Missing) {
            taken.push_back(*number);
        }
    }
    if (!reader.isComplete()) {
        return probe(path, prefix, extension);
    }
    // Of n numbers taken, at least one of 1 to n + 1 is free.
    std::vector<bool> isTaken(taken.size() + 2);
    for (const std::size_t number : taken) {
        if (number < isTaken.size()) {
            isTaken[number] = true;
        }
    }
    std::size_t number = 1;
    while (isTaken[number]) {
        ++number;
    }
    return nameOf(prefix, number, extension);
}
