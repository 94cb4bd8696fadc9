#include "check/listing.h"

#include "annotations/scan.h"
#include "common/characters.h"
#include "common/encodings.h"
#include "common/names.h"

#include "format/innerText.h"
#include "format/paths.h"
#include "format/vocabulary.h"

#include <algorithm>
#include <filesystem>
#include <fmt/format.h>

namespace tool::check {

namespace {

namespace fs = std::filesystem;

/// The extensions of the database's files and where each is looked for.
struct Extension {
    std::string_view name;
    std::string_view where;
};

constexpr Extension extensions[] = {
    { format::substanceExtension, "directly in a directory below the database's own" },
    { format::phaseExtension, "directly in a directory below a substance's" },
    { format::phaseChangeExtension, "directly in a directory below a substance's" },
    { format::descriptionExtension, "directly in the database's directory" },
    { format::headExtension, "directly in the directory of a substance, a phase or a phase change" },
    { format::dataExtension, "beside the parameter heads that name them" },
};

std::string_view extensionOf(std::string_view name)
{
    return format::splitPath(name).ext;
}

const Extension* find(std::string_view name)
{
    const auto found = std::ranges::find(extensions, name, &Extension::name);
    return found == std::end(extensions) ? nullptr : found;
}

/// The extension that a name nearly has: in other letters, or with something behind it.
const Extension* nearlyHas(std::string_view name)
{
    const std::string lower = lowerCase(name);
    const auto fits = [&lower](const Extension& extension) {
        return lower.find(fmt::format(".{}", extension.name)) != std::string::npos;
    };
    const auto found = std::ranges::find_if(extensions, fits);
    return found == std::end(extensions) ? nullptr : found;
}

/// The library writes descriptors under such names before it moves them into place.
bool isInterruptedAddition(std::string_view name)
{
    return name.ends_with(format::temporaryEnding);
}

/// True when an entry leads to a directory or to one above it.
bool leadsBack(const Context& context, const std::string& directory, const fs::path& entry)
{
    std::error_code ignored;
    if (fs::equivalent(context.pathOf(directory), entry, ignored)) {
        return true;
    }
    const std::size_t end = directory.rfind('/');
    return !directory.empty()
        && leadsBack(context, directory.substr(0, end == std::string::npos ? 0 : end), entry);
}

void addEntry(Context& context, Listing& listing, const DirectoryEntry& entry)
{
    const std::string& name = entry.name;
    if (name.empty()) {
        context.findings.error("bad-name", { listing.directory },
            "the directory holds an entry whose name is no text in the locale's encoding", "rename it");
        return;
    }
    if (std::ranges::any_of(toWide(name), isControl)) {
        context.findings.warning("control-character", { entryPath(listing.directory, name) },
            "the name of the entry holds control characters", "remove them");
    }
    if (!entry.isDirectory) {
        listing.files.push_back(name);
    } else if (entry.isLink
        && leadsBack(
            context, listing.directory, fs::path(context.pathOf(listing.directory)) / entry.nativeName)) {
        context.findings.warning("link-loop", { entryPath(listing.directory, name) },
            "the link leads back to a directory that it lies in", "remove it");
    } else {
        listing.directories.push_back(name);
    }
}

void reportStrayFile(Context& context, const Place& place, std::string_view name)
{
    if (const Extension* misplaced = find(extensionOf(name))) {
        context.findings.warning("misplaced-file", place, "no scan finds the file here",
            fmt::format("move it: \"{}\" files are read {}", misplaced->name, misplaced->where));
        return;
    }
    const Extension* meant = nearlyHas(name);
    if (!meant) {
        return;
    }
    const std::string advice = isInterruptedAddition(name)
        ? "remove it: an addition was interrupted"
        : fmt::format("let the name end in \".{}\", or remove the file", meant->name);
    context.findings.warning(
        "wrong-extension", place, "no scan finds the file because of its extension", advice);
}

} // namespace

std::vector<std::string> Listing::filesWith(std::string_view extension) const
{
    std::vector<std::string> found;
    std::ranges::copy_if(files, std::back_inserter(found),
        [&](const std::string& name) { return format::hasExtension(name, extension); });
    return found;
}

Listing list(Context& context, const std::string& directory)
{
    Listing listing { directory, {}, {}, false };
    listing.isOpen = forEachEntry(
        context.pathOf(directory), [&](const DirectoryEntry& entry) { addEntry(context, listing, entry); });
    if (!listing.isOpen) {
        context.findings.error("cannot-open", { directory }, "the directory cannot be opened",
            "give the right to read and search it");
    }
    std::ranges::sort(listing.directories);
    std::ranges::sort(listing.files);
    return listing;
}

bool isLink(const Context& context, const std::string& directory)
{
    std::error_code ignored;
    return fs::is_symlink(context.pathOf(directory), ignored);
}

bool isStringTable(std::string_view name)
{
    return name == format::defaultTable || name == format::russianTable;
}

void reportStrayFiles(
    Context& context, const Listing& listing, std::initializer_list<std::string_view> expected)
{
    for (const std::string& name : listing.files) {
        if (std::ranges::find(expected, extensionOf(name)) != expected.end()) {
            continue;
        }
        const Place place { entryPath(listing.directory, name) };
        if (listing.directory.empty() && extensionOf(name) == extensionOf(format::defaultTable)
            && !isStringTable(name)) {
            context.findings.warning("wrong-extension", place, "no language reads this string table",
                fmt::format("call it {} or {}, or remove it", format::defaultTable, format::russianTable));
        }
        reportStrayFile(context, place, name);
    }
}

void reportUnreadFiles(Context& context, const std::string& directory)
{
    if (isLink(context, directory)) {
        return; // what it leads to is not the database's
    }
    const Listing listing = list(context, directory);
    reportStrayFiles(context, listing, { format::dataExtension });
    for (const std::string& name : listing.directories) {
        reportUnreadFiles(context, entryPath(directory, name));
    }
}

} // namespace tool::check
