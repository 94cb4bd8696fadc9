#pragma once

#include "model/CEntity.h"
#include "qmdatabase/records.h"

#include <memory>

/// One parameter description: what a property is, once for the whole database.
class CParameter : public CEntity {
public:
    static constexpr format::Key s_UnitsKey = format::Key::Units;
    static constexpr format::Key s_UnitsIDKey = format::Key::UnitsID;
    static constexpr format::Key s_BinaryKey = format::Key::Binary;
    static constexpr format::Key s_ScalarKey = format::Key::Scalar;
    static constexpr format::Key s_VectorKey = format::Key::Vector;
    static constexpr format::Key s_AvForPhasesKey = format::Key::AvForPhases;
    static constexpr format::Key s_DataTypesKey = format::Key::DataTypes;

    CParameter(const FoundFile& file, const CLog& log, CLocalizer& localizer);

    std::string_view getUnits() const { return textOf(placeOf(s_UnitsIDKey), s_UnitsKey); }
    bool getBinaryFlag() const noexcept { return getFlag(s_BinaryKey); }
    bool getScalarFlag() const noexcept { return getFlag(s_ScalarKey); }
    bool getVectorFlag() const noexcept { return getFlag(s_VectorKey); }
    std::string_view getAvForPhases() const noexcept { return getParametr(s_AvForPhasesKey); }
    std::string_view getDataTypes() const noexcept { return getParametr(s_DataTypesKey); }

    /// A parameter's record with name and units and nothing else.
    const PARAMETER& described() const;

private:
    /// Name and units, widened when they are first asked for: lists repeat them very often.
    mutable std::unique_ptr<PARAMETER> described_;
};
