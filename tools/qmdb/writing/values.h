#pragma once

#include "database/entities.h"
#include "database/flatTable.h"
#include "writing/Edit.h"
#include "writing/descriptors.h"

#include <optional>
#include <string>
#include <vector>

namespace tool::writing {

/// A value to be attached to a substance, a phase or a phase change.
struct NewValue {
    long parameter = 0;
    PARAM_TYPE type {};
    Table table;
    std::vector<std::string> comments; ///< of the data file
    std::vector<KeyChange> keys; ///< of the head: source, accuracy
};

/// Throws Failure, in the words of the library's own additions, when the description does not allow the
/// value or the owner has the parameter already.
void addValue(Edit& edit, long substance, const Owner& owner, const NewValue& value);

/// What changes of a value.
struct ValueChange {
    std::optional<Table> table;
    PARAM_TYPE type {}; ///< of the new table
    std::optional<std::vector<std::string>> comments;
    std::vector<KeyChange> keys;
};

/// A reader finds the old value or the new one, never a part of either. A data file that other heads name
/// stays as it is. Returns what is said about a new value and was said about the one before: "comments" and
/// the like.
std::vector<std::string> setValue(
    Edit& edit, long substance, const Owner& owner, long parameter, const ValueChange& change);

void removeValue(Edit& edit, long substance, const Owner& owner, long parameter);

/// Throws Failure unless the description of a parameter allows a type and a form, and, for a phase, its
/// state.
void requireAllowed(const Edit& edit, long parameter, PARAM_TYPE type, bool vector, const Owner& owner);

} // namespace tool::writing
