#pragma once

#include "common/failure.h"
#include "database/LogDirectory.h"
#include "database/flatTable.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "qmdatabase/QMNative.h"

namespace tool {

struct Substance {
    long id = 0;
    std::string name;
    std::string comment;
    long mixture = 0;
    std::vector<COMPONENT> composition;
};

struct Parameter {
    long id = 0;
    std::string name;
    std::string units;
    PARAM_TYPE type {};
    bool vector = false;
};

struct Description {
    long id = 0;
    std::string name;
    std::string units;
    bool scalar = false;
    bool vector = false;
    std::string dataTypes;
};

/// What parameters are attached to: a substance itself, one of its phases or one of its phase changes.
struct Owner {
    enum class Kind { Substance, Phase, Change };

    Kind kind = Kind::Substance;
    long id = -1; ///< of the phase or the phase change
    std::string name;
    MATTER_STATE state = MATTER_STATE_NOT_GIVEN; ///< of a phase
    long phase1 = -1; ///< of a phase change
    long phase2 = -1;
};

/// How to open a database; the options that all commands share.
struct Location {
    std::string directory;
    std::string language = "en";
    std::string logDirectory;
};

/// Throws Failure unless the directory exists: the library takes a missing one for an empty database.
void requireDatabaseDirectory(const std::string& directory);

/// What a result code means, in words.
std::string_view statusText(int status);

/// "solid", "liquid", "gas", or the number that the database holds.
std::string stateText(MATTER_STATE state);

using Value = std::unique_ptr<const IDbData, void (*)(const IDbData*)>;

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

    mutable LogDirectory log_;
    long id_ = -1;
};

} // namespace tool
