#pragma once

#include "format/paths.h"

#include <map>
#include <set>
#include <string>

namespace tool::writing {

/// Names for new entries of a database, with the smallest number that is free. Anything under a name takes
/// its number, and so does a name that was given out before.
class FreeNames {
public:
    explicit FreeNames(std::string root)
        : root_(std::move(root))
    {
    }

    /// A name in a directory below the database's, which need not be there yet. The number of a head is free
    /// only where its data file's name is free too.
    std::string next(const std::string& directory, format::Series series);
    /// A name for a file that people name: "density.prd", or "density2.prd".
    std::string nextFile(const std::string& stem, std::string_view extension);

private:
    struct Place {
        std::set<std::string> taken;
        std::map<format::Series, std::size_t> last; ///< no smaller number is free
    };

    Place& placeOf(const std::string& directory);

    std::string root_;
    std::map<std::string, Place> places_;
};

/// The name of a head's data file.
std::string dataNameOf(const std::string& headName);

} // namespace tool::writing
