#pragma once

#include "model/CEntity.h"

/// One parameter description: what a property is, once for the whole database.
class CParameter : public CEntity {
public:
    static constexpr CKey s_UnitsKey = "Units";
    static constexpr CKey s_UnitsIDKey = "UnitsID";
    static constexpr CKey s_BinaryKey = "Binary";
    static constexpr CKey s_ScalarKey = "Scalar";
    static constexpr CKey s_VectorKey = "Vector";
    static constexpr CKey s_AvForPhasesKey = "AvForPhases";
    static constexpr CKey s_DataTypesKey = "DataTypes";

    CParameter(const FoundFile& file, const CLog& log, CLocalizer& localizer);

    std::string_view getUnits() const { return localizer().textOf(*this, s_UnitsIDKey, s_UnitsKey); }
    bool getBinaryFlag() const noexcept { return getFlag(s_BinaryKey); }
    bool getScalarFlag() const noexcept { return getFlag(s_ScalarKey); }
    bool getVectorFlag() const noexcept { return getFlag(s_VectorKey); }
    std::string_view getAvForPhases() const noexcept { return getParametr(s_AvForPhasesKey); }
    std::string_view getDataTypes() const noexcept { return getParametr(s_DataTypesKey); }
};
