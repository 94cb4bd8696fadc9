#pragma once

#include "check/tree.h"
#include "database/entities.h"

#include <map>
#include <optional>
#include <tuple>

namespace tool::check {

/// What a data file says beside the value that the library reads from it.
struct ValueNotes {
    std::string comments; ///< its comment lines: what the numbers are, their units, their source
    std::vector<std::string> misreadings; ///< what the library reads otherwise than it stands there
};

/// The data files of a database by what they belong to, which the exported functions do not tell.
class ValueFiles {
public:
    /// Those of one substance, or of all.
    explicit ValueFiles(const std::string& directory, std::optional<long> substance = std::nullopt);
    ValueFiles(const ValueFiles&) = delete;
    ValueFiles& operator=(const ValueFiles&) = delete;

    /// Empty for a value that has no file, or several by mistake.
    ValueNotes notes(long substance, const Owner& owner, long parameter);

private:
    using Key = std::tuple<long, Owner::Kind, long, long>;

    void add(const SubstanceTree& substance);
    void add(long substance, Owner::Kind kind, const Entity& owner);

    Findings unused_;
    Context context_;
    Tree tree_;
    std::multimap<Key, std::pair<const Entity*, const Descriptor*>> heads_;
};

} // namespace tool::check
