#include "check/presence.h"

#include "check/listing.h"

#include <algorithm>

namespace tool::check {

bool holdsDatabase(const std::string& directory)
{
    Findings ignored;
    Context context { directory, ignored };
    const Listing root = list(context, "");
    return !root.isOpen || !root.filesWith("prd").empty() || std::ranges::any_of(root.files, isStringTable)
        || std::ranges::any_of(root.directories,
            [&](const std::string& name) { return !list(context, name).filesWith("mtd").empty(); });
}

} // namespace tool::check
