#pragma once

#include "check/tree.h"
#include "database/DatabaseLock.h"
#include "database/entities.h"
#include "writing/Changes.h"
#include "writing/FreeNames.h"
#include "writing/StringTables.h"

#include <algorithm>
#include <memory>
#include <string>

namespace tool::writing {

/// What the functions that change a database work with.
struct EditState {
    std::string directory;
    Language language = Language::Default;
    check::Tree tree;
    StringTables tables;
    Changes changes;
    FreeNames names;
    std::unique_ptr<DatabaseLock> ownerLock; ///< keeps the library's additions from the names chosen
};

/// For searches among phases and phase changes.
inline const check::Descriptor& ofEntity(const check::Entity& entity)
{
    return entity.descriptor;
}

/// Calls `use` with each value's owner and head.
template <class Use>
void forEachHead(const check::Tree& tree, Use&& use)
{
    const auto each = [&use](const check::Entity& owner) {
        for (const check::Descriptor& head : owner.heads) {
            use(owner, head);
        }
    };
    for (const check::SubstanceTree& substance : tree.substances) {
        each(substance.self);
        std::ranges::for_each(substance.phases, each);
        std::ranges::for_each(substance.changes, each);
    }
}

/// All three throw Failure where several have the ID, or none has.
const check::SubstanceTree& substanceFiles(const EditState& state, long substance);
const check::Entity& ownerFiles(const EditState& state, long substance, const Owner& owner);
const check::Descriptor& descriptionFile(const EditState& state, long description);

/// The head of a parameter; null when the owner has none. Throws Failure when there are several.
const check::Descriptor* findHead(const check::Entity& owner, long parameter);
const check::Descriptor& headFile(const check::Entity& owner, long parameter);

/// The part of a name below the database's directory before its last separator.
std::string directoryOf(const std::string& file);

/// Adds the change of a descriptor that stands there.
void replaceDescriptor(EditState& state, const std::string& file, const DescriptorText& text);

} // namespace tool::writing
