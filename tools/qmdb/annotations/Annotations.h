#pragma once

#include "database/entities.h"

#include <future>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// What a substance's descriptor tells beside what the library hands out. What is not given is empty.
struct SubstanceNotes {
    std::string formula;
    std::vector<std::string> aliases;
    std::string cas;
};

/// The aliases as the descriptor lists them: "H2O;R718".
std::string aliasesText(const SubstanceNotes& notes);

/// The same of a parameter description.
struct DescriptionNotes {
    std::string symbol;
    std::string argumentUnits; ///< items, as they stand
    std::string argumentName;
};

struct ArgumentNotes {
    std::string name; ///< "temperature" and the like; empty when nobody knows
    std::string units; ///< empty when nobody knows
    std::string symbol; ///< the name where the description gives one, else the letter of the type: "T"

    std::string label() const; ///< for axes and heads: "T, K"
};

/// The arguments of values of a type, first argument first.
std::vector<ArgumentNotes> argumentsOf(const DescriptionNotes& description, PARAM_TYPE type);

/// What belongs to one value.
struct ValueNotes {
    std::string source;
    std::string accuracy;
    std::string dataFile; ///< its path below the database's directory; empty when that is not known
};

/// Both in one line without control characters: "Source (accuracy 1 %)"; empty when nothing is given.
std::string sourceText(const ValueNotes& notes);

/// What a command shows of a value beside its numbers.
struct ParameterNotes : ValueNotes {
    std::string symbol;
    std::vector<ArgumentNotes> arguments;
    std::string units {}; ///< of the value, whole: the library hands out nine characters
};

/// What a database's files tell that the exported functions do not.
///
/// Files are found as the library finds them, each when it is first asked for. Where several things share an
/// ID, nothing is told of them: which one the library shows is left to the file system.
class Annotations {
public:
    explicit Annotations(std::string directory);
    Annotations(const Annotations&) = delete;
    Annotations& operator=(const Annotations&) = delete;
    ~Annotations();

    /// Begins to read the descriptors of all substances in a thread of its own, for a command that will ask
    /// for them once it has opened the database.
    void readAhead();

    /// Reads the descriptors of all substances once, and nothing else.
    SubstanceNotes substance(long id) const;
    /// Reads the descriptions once.
    DescriptionNotes description(long parameter) const;
    /// Reads the substance's directory, and keeps it until another substance is asked for.
    ValueNotes value(long substance, const Owner& owner, long parameter) const;

    /// The notes of a parameter's description alone: what only the value's own files tell is left empty. They
    /// are put together once for each parameter and type.
    const ParameterNotes& describe(const Parameter& parameter) const;
    /// The notes of a value and of its description.
    ParameterNotes parameter(long substance, const Owner& owner, const Parameter& parameter) const;

    /// The names of a substance, of a description, of a phase or a phase change, in each of the two
    /// languages; none where several share the ID.
    std::vector<std::string> names(long substance) const;
    std::vector<std::string> descriptionNames(long parameter) const;
    std::vector<std::string> names(long substance, const Owner& owner) const;

    /// The comment lines of a data file, with " | " between: what the numbers are.
    std::string comments(const std::string& dataFile) const;

    const std::string& directory() const noexcept { return directory_; }

private:
    struct Substances;
    struct Descriptions;
    struct Values;
    struct StringTables;

    const Substances& substances() const;
    const Descriptions& descriptions() const;
    const Values& values(long substance) const;
    const StringTables& stringTables() const;
    std::string wholeUnits(const Parameter& parameter) const;

    std::string directory_;
    mutable std::future<std::unique_ptr<const Substances>> substancesAhead_;
    mutable std::unique_ptr<const Substances> substances_;
    mutable std::unique_ptr<const Descriptions> descriptions_;
    mutable std::map<std::pair<long, PARAM_TYPE>, ParameterNotes> described_;
    mutable std::unique_ptr<const Values> values_; ///< of the substance asked for last
    mutable std::unique_ptr<const StringTables> stringTables_;
};

} // namespace tool
