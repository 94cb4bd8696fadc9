#pragma once

#include "annotations/Annotations.h"
#include "database/flatTable.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tool {

/// Further columns with their texts: what rebuilds a database beside its values.
using MoreTexts = std::vector<std::pair<std::string_view, std::string>>;

/// A substance without phases, or a phase or phase change that has no value, or a description alone.
struct BareEntry {
    const Substance* substance = nullptr; ///< null for a description
    std::string composition;
    const SubstanceNotes* substanceNotes = nullptr;
    const Owner* owner = nullptr;
    const Parameter* parameter = nullptr; ///< null but for a description
    const DescriptionNotes* notes = nullptr;
    const MoreTexts& more;
};

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
    const MoreTexts& more;
};

/// Takes a database piece by piece, each substance before what belongs to it.
class Exporter {
public:
    virtual ~Exporter() = default;
    virtual void addSubstance(const Substance&, const SubstanceNotes&, const std::string& /*composition*/) { }
    virtual void addOwner(const Substance&, const Owner&) { }
    virtual void addValue(const ExportedValue& value) = 0;
    /// What has no value has no row of its own in every format.
    virtual void addBare(const BareEntry& /*entry*/) { }
    virtual void finish() = 0;
};

} // namespace tool
