#pragma once

#include "database/Database.h"
#include "writing/Edit.h"
#include "writing/importDraft.h"

#include <functional>

namespace tool::writing {

struct ImportCounts {
    std::size_t substances = 0; ///< new ones
    std::size_t owners = 0;
    std::size_t descriptions = 0;
    std::size_t values = 0;
    std::size_t replaced = 0;
    std::size_t same = 0; ///< values that were there already
};

/// Adds the changes that bring a draft into a database. `present` is the database as it stands, null for a
/// new one. Throws Failure that names row and column of all that does not fit; `replace` takes the draft's
/// values and texts where the database has others.
ImportCounts planImport(
    Edit& edit, const Database* present, const Draft& draft, const std::string& name, bool replace);

} // namespace tool::writing
