#pragma once

#include "writing/Changes.h"
#include "writing/language.h"

#include <memory>
#include <optional>
#include <string>

namespace tool::writing {

struct EditState;

/// A database that is being changed: its files as they stand, and the changes that are to be made to them.
/// The database's lock is held meanwhile.
class Edit {
public:
    /// Reads the descriptors; those of one substance, the descriptions and the tables are enough to add to
    /// it.
    Edit(const std::string& directory, std::string_view language,
        std::optional<long> substance = std::nullopt);
    Edit(const Edit&) = delete;
    Edit& operator=(const Edit&) = delete;
    ~Edit();

    const std::string& directory() const noexcept;
    /// Makes the string tables that are missing, with which a database opens without a word in its log.
    void requireTables();
    EditState& state() noexcept { return *state_; }
    const EditState& state() const noexcept { return *state_; }

    /// The changes in the order in which they are made, new texts first.
    Changes changes() const;

private:
    std::unique_ptr<EditState> state_;
};

} // namespace tool::writing
