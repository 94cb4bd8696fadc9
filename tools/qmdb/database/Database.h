#pragma once

#include "database/LogDirectory.h"
#include "database/entities.h"
#include "database/flatTable.h"

#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// How to open a database; the options that all commands share.
struct Location {
    std::string directory;
    std::string language = "en";
    std::string logDirectory;
    bool quiet = false; ///< do not tell what the log complains of at opening
};

/// An open database: the exported functions with texts and lists as C++ knows them.
///
/// A call that fails throws Failure with the library's own words from its log.
class Database {
public:
    explicit Database(const Location& location);
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    ~Database();

    std::vector<Substance> substances() const;
    std::vector<Owner> phases(long substance) const;
    std::vector<Owner> changes(long substance) const;
    /// The substance itself, its phases, its phase changes.
    std::vector<Owner> owners(long substance) const;
    std::vector<Parameter> parameters(long substance, const Owner& owner) const;
    std::vector<Description> descriptions(long substance, long phase) const;

    Table value(long substance, const Owner& owner, long parameter) const;

    /// The additions return the new ID.
    long addSubstance(const MATTER& substance);
    long addPhase(long substance, const PHASE& phase);
    long addChange(long substance, const PHASECHANGE& change);
    void addParameter(long substance, const Owner& owner, const PARAMETER& parameter, const IDbData& value);

private:
    std::string failureText(int status, std::string_view what) const;
    int check(int status, std::string_view what) const;
    void checkList(int status, std::string_view what) const;

    std::string directory_;
    mutable LogDirectory log_;
    long id_ = -1;
};

} // namespace tool
