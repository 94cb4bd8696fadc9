#pragma once

#include "annotations/Annotations.h"
#include "commands/owners.h"
#include "database/Database.h"
#include "help/CommandLine.h"
#include "help/Completion.h"

#include <string_view>
#include <vector>

namespace tool {

/// The names in the database on a command line that may stand next on it.
class NamesInDatabase {
public:
    /// Throws Failure when there is no database that can be opened.
    explicit NamesInDatabase(const CommandLine& line);

    std::vector<Candidate> substances() const;
    /// Substances, and behind a substance and a colon its phases and phase changes.
    std::vector<Candidate> materials(std::string_view word) const;
    std::vector<Candidate> phases() const;
    std::vector<Candidate> changes() const;
    /// What the substances, phases and phase changes on the line have all; everything that something in the
    /// database has where none is named.
    std::vector<Candidate> parameters() const;
    /// What can be added to the substance on the line.
    std::vector<Candidate> describedParameters() const;

private:
    using Names = std::vector<Candidate>;

    Names parametersOf(const Material& material) const;

    Database database_;
    Annotations annotations_;
    Resolver resolver_;
    OwnerOptions owners_;
    std::vector<Material> materials_; ///< those named on the line
};

} // namespace tool
