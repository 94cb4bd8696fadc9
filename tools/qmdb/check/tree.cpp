#include "check/tree.h"

#include "annotations/scan.h"
#include "check/listing.h"
#include "check/parallel.h"
#include "check/rules.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>

namespace tool::check {

namespace {

/// Reads the files of one extension in a directory.
std::vector<Descriptor> readFiles(
    Context& context, const Listing& listing, const format::DescriptorKind& kind)
{
    std::vector<Descriptor> descriptors;
    for (const std::string& name : listing.filesWith(kind.extension)) {
        descriptors.emplace_back(context, entryPath(listing.directory, name));
        checkKeys(context, descriptors.back(), kind);
    }
    return descriptors;
}

/// Appends what a directory holds when there is a descriptor of the kind in it.
bool appendEntity(Context& context, const Listing& listing, const format::DescriptorKind& kind,
    std::vector<Entity>& entities)
{
    std::vector<Descriptor> descriptors = readFiles(context, listing, kind);
    if (descriptors.empty()) {
        return false;
    }
    if (descriptors.size() > 1) {
        context.findings.error("several-descriptors", { listing.directory },
            fmt::format(
                "the directory holds {} files with the extension \"{}\": the database cannot be opened",
                descriptors.size(), kind.extension),
            "leave one of them here");
    }
    entities.push_back(
        { listing.directory, std::move(descriptors.front()), readFiles(context, listing, format::headKind) });
    return true;
}

void reportNoEntity(Context& context, const Listing& listing, std::string_view extensions)
{
    const bool hidden = listing.directory.substr(listing.directory.rfind('/') + 1).starts_with('.');
    if (hidden || !listing.isOpen) {
        return; // a directory that cannot be opened has been reported
    }
    if (listing.isEmpty()) {
        context.findings.warning("empty-directory", { listing.directory },
            "the directory is empty, as an addition that was refused leaves it", "remove it");
        return;
    }
    context.findings.warning("no-descriptor", Place { listing.directory }.behind(listing.directory),
        fmt::format("the directory holds no file with the extension {}: nothing in it is read", extensions),
        "add the file, or remove the directory");
}

void readSubdirectory(Context& context, const std::string& directory, SubstanceTree& substance)
{
    const Listing listing = list(context, directory);
    const bool phase = appendEntity(context, listing, format::phaseKind, substance.phases);
    const bool change = appendEntity(context, listing, format::phaseChangeKind, substance.changes);
    if (!phase && !change) {
        reportNoEntity(context, listing,
            fmt::format("\"{}\" or \"{}\"", format::phaseExtension, format::phaseChangeExtension));
    }
    if (phase && change) {
        context.findings.warning("two-kinds", { directory },
            "the directory is a phase and a phase change at once, and both have its parameters",
            "give each a directory of its own");
    }
    reportStrayFiles(context, listing,
        { format::phaseExtension, format::phaseChangeExtension, format::headExtension,
            format::dataExtension });
    if (isLink(context, directory)) {
        return; // whatever is below it lies elsewhere
    }
    for (const std::string& name : listing.directories) {
        reportUnreadFiles(context, entryPath(directory, name));
    }
}

} // namespace

void readSubstance(Context& context, const std::string& directory, Tree& tree)
{
    const Listing listing = list(context, directory);
    std::vector<Entity> found;
    if (!appendEntity(context, listing, format::substanceKind, found)) {
        reportNoEntity(context, listing, fmt::format("\"{}\"", format::substanceExtension));
        reportStrayFiles(context, listing, {});
        return;
    }
    SubstanceTree substance { std::move(found.front()), {}, {} };
    for (const std::string& name : listing.directories) {
        readSubdirectory(context, entryPath(directory, name), substance);
    }
    if (substance.phases.empty()) {
        context.findings.error("no-phase", Place { substance.self.descriptor.file() }.behind(directory),
            "the substance has no phase: opening the database skips it", "add a phase");
    }
    reportStrayFiles(
        context, listing, { format::substanceExtension, format::headExtension, format::dataExtension });
    tree.substances.push_back(std::move(substance));
}

namespace {

void readRootFiles(Context& context, const Listing& root, Tree& tree)
{
    tree.descriptions = readFiles(context, root, format::descriptionKind);
    for (const std::string& name : root.files) {
        if (isStringTable(name)) {
            tree.tables.emplace_back(context, name);
        }
    }
}

void readSubstances(Context& context, const Listing& root, Tree& tree)
{
    std::vector<Tree> parts(root.directories.size());
    doInThreads(
        context, parts.size(),
        [&](Context& own, std::size_t i) { readSubstance(own, root.directories[i], parts[i]); }, [] {});
    for (Tree& part : parts) {
        std::ranges::move(part.substances, std::back_inserter(tree.substances));
    }
}

} // namespace

Tree readTree(Context& context)
{
    const Listing root = list(context, "");
    Tree tree;
    readSubstances(context, root, tree);
    readRootFiles(context, root, tree);
    reportStrayFiles(context, root, { format::descriptionExtension });
    return tree;
}

Tree readPart(Context& context, long substance)
{
    const Listing root = list(context, "");
    Tree tree;
    for (const std::string& directory : root.directories) {
        const auto names = list(context, directory).filesWith(format::substanceExtension);
        const bool isIt = std::ranges::any_of(names, [&](const std::string& name) {
            return Descriptor(context, entryPath(directory, name)).number(format::Key::ID) == substance;
        });
        if (isIt) {
            readSubstance(context, directory, tree);
        }
    }
    readRootFiles(context, root, tree);
    return tree;
}

} // namespace tool::check
