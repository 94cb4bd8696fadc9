#pragma once

#include "check/Descriptor.h"

#include <vector>

namespace tool::check {

/// A directory with a descriptor in it and the parameter heads beside it.
struct Entity {
    std::string directory; ///< below the database's
    Descriptor descriptor;
    std::vector<Descriptor> heads;
};

struct SubstanceTree {
    Entity self;
    std::vector<Entity> phases;
    std::vector<Entity> changes;
};

struct Tree {
    std::vector<SubstanceTree> substances;
    std::vector<Descriptor> descriptions;
    std::vector<Descriptor> tables; ///< the string tables that are there
};

/// Reads all descriptors that opening the database would read, in the order of their names, whatever is
/// wrong with them, and reports what is wrong with each and which files and directories are never read.
Tree readTree(Context& context);

/// Reads the descriptions, the string tables, and the substances with an ID.
Tree readPart(Context& context, long substance);

/// Reads what one directory below the database's own holds, and appends it when it is a substance.
void readSubstance(Context& context, const std::string& directory, Tree& tree);

} // namespace tool::check
