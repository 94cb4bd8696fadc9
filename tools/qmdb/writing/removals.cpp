#include "writing/descriptors.h"

#include "annotations/scan.h"
#include "common/characters.h"
#include "common/encodings.h"
#include "common/failure.h"
#include "writing/EditState.h"

#include "format/composition.h"
#include "format/keys.h"
#include "format/paths.h"

#include <filesystem>
#include <set>

namespace tool::writing {

namespace {

namespace fs = std::filesystem;
using check::Descriptor;
using check::Entity;
using check::SubstanceTree;
using format::Key;

std::string nameIn(const EditState& state, const Descriptor& descriptor)
{
    return displayText(state.tables, descriptor, TextKey::Name, state.language);
}

std::vector<const Entity*> entitiesOf(const SubstanceTree& substance)
{
    std::vector<const Entity*> entities { &substance.self };
    for (const auto* more : { &substance.phases, &substance.changes }) {
        for (const Entity& entity : *more) {
            entities.push_back(&entity);
        }
    }
    return entities;
}

bool isBelow(const std::string& name, const std::string& directory)
{
    return name == directory || name.starts_with(directory + '/');
}

/// Throws Failure when a value elsewhere takes its data from a directory that should go.
void requireNoDataFor(const EditState& state, const std::string& directory)
{
    std::error_code ignored;
    const fs::path root = fs::weakly_canonical(toLocale(state.directory), ignored);
    const std::string going = fs::weakly_canonical(root / toLocale(directory), ignored).string();
    for (const SubstanceTree& substance : state.tree.substances) {
        for (const Entity* owner : entitiesOf(substance)) {
            for (const Descriptor& head : owner->heads) {
                if (format::isBareName(head.text(Key::Data)) || isBelow(owner->directory, directory)) {
                    continue;
                }
                const fs::path data = root / toLocale(owner->directory) / toLocale(head.text(Key::Data));
                if (isBelow(fs::weakly_canonical(data, ignored).string(), going)) {
                    throw Failure("{} takes its data from \"{}\"; remove that value first, or give it a data "
                                  "file of its own",
                        head.file(), directory);
                }
            }
        }
    }
}

/// True for a file that belongs to the database where it lies.
bool isOfDatabase(const fs::path& path)
{
    constexpr std::string_view extensions[] = { format::substanceExtension, format::phaseExtension,
        format::phaseChangeExtension, format::headExtension, format::dataExtension };
    const std::string name = path.filename().native();
    return name.ends_with(format::temporaryEnding)
        || std::ranges::any_of(
            extensions, [&](std::string_view extension) { return format::hasExtension(name, extension); });
}

/// Throws Failure when a directory holds what is not the database's.
void requireNothingForeign(const EditState& state, const std::string& directory, const SubstanceTree& files)
{
    std::set<fs::path> data;
    const fs::path root = toLocale(state.directory);
    for (const Entity* owner : entitiesOf(files)) {
        for (const Descriptor& head : owner->heads) {
            data.insert(
                (root / toLocale(owner->directory) / toLocale(head.text(Key::Data))).lexically_normal());
        }
    }
    for (const auto& entry : fs::recursive_directory_iterator(root / toLocale(directory))) {
        const bool directoryItself = entry.is_directory() && !entry.is_symlink();
        if (!directoryItself && !isOfDatabase(entry.path())
            && !data.contains(entry.path().lexically_normal())) {
            throw Failure("\"{}\" is no file of the database; move it away first",
                fromLocale(entry.path().lexically_relative(root).c_str()));
        }
    }
}

void releaseTexts(EditState& state, const Entity& entity)
{
    state.tables.release(entity.descriptor);
}

void removeEntity(EditState& state, const SubstanceTree& substance, const Entity& entity)
{
    requireNoDataFor(state, entity.directory);
    requireOwnFile(state.directory, directoryOf(entity.directory));
    if (!fs::is_symlink(fs::path(toLocale(state.directory)) / toLocale(entity.directory))) {
        requireNothingForeign(state, entity.directory, substance);
    }
    state.changes.removeDirectory(entity.directory);
}

/// Throws Failure when a mixture has the substance as a component.
void requireNoMixture(const EditState& state, long id)
{
    for (const SubstanceTree& other : state.tree.substances) {
        const Descriptor& descriptor = other.self.descriptor;
        std::vector<COMPONENT> components;
        if (descriptor.number(Key::Mixture) > 0) {
            format::parseComposition(descriptor.text(Key::Composition), components);
        }
        const bool names = std::ranges::count(components, id, &COMPONENT::matterId) > 0;
        if (names && descriptor.number(Key::ID) != id) {
            throw Failure(
                "{} ({}) has it as a component; remove that mixture first, or give it other components by "
                "\"qmdb set substance\" with --component",
                nameIn(state, descriptor), descriptor.number(Key::ID));
        }
    }
}

void requireNoChange(const EditState& state, const SubstanceTree& files, long phase)
{
    for (const Entity& change : files.changes) {
        const Descriptor& descriptor = change.descriptor;
        if (descriptor.number(Key::Phase1) == phase || descriptor.number(Key::Phase2) == phase) {
            throw Failure("the phase change {} ({}) refers to it; remove that first",
                nameIn(state, descriptor), descriptor.number(Key::ID));
        }
    }
}

void requireOneKind(const SubstanceTree& files, const Entity& entity)
{
    for (const Entity* other : entitiesOf(files)) {
        if (other != &entity && other->directory == entity.directory) {
            throw Failure(
                "the directory \"{}\" is a phase and a phase change at once; give each a directory of "
                "its own",
                entity.directory);
        }
    }
}

} // namespace

void removeSubstance(Edit& edit, long substance)
{
    EditState& state = edit.state();
    const SubstanceTree& files = substanceFiles(state, substance);
    requireNoMixture(state, substance);
    removeEntity(state, files, files.self);
    for (const Entity* entity : entitiesOf(files)) {
        releaseTexts(state, *entity);
    }
}

void removeOwner(Edit& edit, long substance, const Owner& owner)
{
    EditState& state = edit.state();
    const SubstanceTree& files = substanceFiles(state, substance);
    const Entity& entity = ownerFiles(state, substance, owner);
    if (owner.kind == Owner::Kind::Phase) {
        requireNoChange(state, files, owner.id);
        if (files.phases.size() == 1) {
            throw Failure("a substance without phases would not be found again: add another phase first, or "
                          "remove the substance");
        }
    }
    requireOneKind(files, entity);
    removeEntity(state, files, entity);
    releaseTexts(state, entity);
}

void removeDescription(Edit& edit, long description)
{
    EditState& state = edit.state();
    const Descriptor& file = descriptionFile(state, description);
    for (const SubstanceTree& substance : state.tree.substances) {
        for (const Entity* owner : entitiesOf(substance)) {
            if (const Descriptor* head = findHead(*owner, description)) {
                throw Failure("{} is a value of it; remove the values first", head->file());
            }
        }
    }
    requireOwnFile(state.directory, file.file());
    state.changes.removeFile(file.file());
    state.tables.release(file);
}

} // namespace tool::writing
