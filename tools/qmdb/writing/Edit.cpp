#include "writing/Edit.h"

#include "annotations/scan.h"
#include "common/encodings.h"
#include "common/failure.h"
#include "database/statusText.h"
#include "writing/EditState.h"

#include <filesystem>
#include <fmt/ranges.h>

namespace tool::writing {

namespace {

namespace fs = std::filesystem;
using check::Descriptor;
using check::Entity;
using check::SubstanceTree;
using format::Key;

check::Tree readFiles(const std::string& directory, std::optional<long> substance)
{
    check::Findings unused;
    check::Context context { directory, unused };
    return substance ? check::readPart(context, *substance) : check::readTree(context);
}

/// The one with an ID among those of a kind; null when there is none.
template <class All, class DescriptorOf>
auto* findOne(const All& all, long id, std::string_view kind, DescriptorOf descriptorOf)
{
    typename All::const_pointer found = nullptr;
    std::vector<std::string> files;
    for (const auto& one : all) {
        if (descriptorOf(one).number(Key::ID) == id) {
            found = &one;
            files.push_back(descriptorOf(one).file());
        }
    }
    if (files.size() > 1) {
        throw Failure(
            "several {} have the number {}: {}; give each a number of its own, or remove all but one", kind,
            id, fmt::join(files, ", "));
    }
    return found;
}

template <class Found>
const Found& required(const Found* found, std::string_view kind, long id)
{
    if (!found) {
        throw Failure("no {} has the number {}", kind, id);
    }
    return *found;
}

const Descriptor& itself(const Descriptor& descriptor)
{
    return descriptor;
}

const Descriptor& ofSubstance(const SubstanceTree& substance)
{
    return substance.self.descriptor;
}

} // namespace

Edit::Edit(const std::string& directory, std::string_view language, std::optional<long> substance)
{
    check::Tree tree = readFiles(directory, substance);
    StringTables tables(directory, tree);
    state_ = std::make_unique<EditState>(EditState {
        directory, languageOf(language), std::move(tree), std::move(tables), {}, FreeNames(directory), {} });
}

Edit::~Edit() = default;

const std::string& Edit::directory() const noexcept
{
    return state_->directory;
}

void Edit::requireTables()
{
    state_->tables.require();
}

Changes Edit::changes() const
{
    Changes all;
    state_->tables.addNewTexts(all);
    all.append(state_->changes);
    state_->tables.addDroppedTexts(all);
    return all;
}

const SubstanceTree& substanceFiles(const EditState& state, long substance)
{
    return required(
        findOne(state.tree.substances, substance, "substances", ofSubstance), "substance", substance);
}

const Entity& ownerFiles(const EditState& state, long substance, const Owner& owner)
{
    const SubstanceTree& files = substanceFiles(state, substance);
    switch (owner.kind) {
    case Owner::Kind::Phase:
        return required(findOne(files.phases, owner.id, "phases", ofEntity), "phase", owner.id);
    case Owner::Kind::Change:
        return required(
            findOne(files.changes, owner.id, "phase changes", ofEntity), "phase change", owner.id);
    case Owner::Kind::Substance:
        break;
    }
    return files.self;
}

const Descriptor& descriptionFile(const EditState& state, long description)
{
    return required(
        findOne(state.tree.descriptions, description, "descriptions", itself), "description", description);
}

const Descriptor* findHead(const Entity& owner, long parameter)
{
    return findOne(owner.heads, parameter, "heads", itself);
}

const Descriptor& headFile(const Entity& owner, long parameter)
{
    return required(findHead(owner, parameter), "parameter", parameter);
}

std::string directoryOf(const std::string& file)
{
    const std::size_t end = file.rfind('/');
    return end == std::string::npos ? std::string() : file.substr(0, end);
}

void replaceDescriptor(EditState& state, const std::string& file, const DescriptorText& text)
{
    requireOwnFile(state.directory, file);
    state.changes.replaceFile(file, text.bytes());
}

} // namespace tool::writing
