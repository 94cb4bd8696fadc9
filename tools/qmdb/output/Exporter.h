#pragma once

#include "annotations/Annotations.h"
#include "database/flatTable.h"

#include <string>

namespace tool {

/// A value with all that says what it is.
struct ExportedValue {
    const Substance& substance;
    std::string composition; ///< of a mixture, with the names of its components
    const Owner& owner;
    const Parameter& parameter;
    const Table& table;
    const SubstanceNotes& substanceNotes;
    const ParameterNotes& notes;
    std::string comments; ///< of the data file: what the numbers are
};

/// Takes a database piece by piece, each substance before what belongs to it.
class Exporter {
public:
    virtual ~Exporter() = default;
    virtual void addSubstance(const Substance&, const SubstanceNotes&, const std::string& /*composition*/) { }
    virtual void addOwner(const Substance&, const Owner&) { }
    virtual void addValue(const ExportedValue& value) = 0;
    virtual void finish() = 0;
};

} // namespace tool
