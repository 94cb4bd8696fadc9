#pragma once

#include "model/CEntity.h"
#include "model/CHeadMap.h"

/// One phase of a substance, with its parameter heads.
class CPhase : public CEntity {
public:
    static constexpr format::Key s_AggregKey = format::Key::Aggreg;

    /// An empty one to be filled and saved.
    CPhase(const CLog& log, CLocalizer& localizer) noexcept
        : CEntity(log, localizer)
    {
    }
    /// Reads the descriptor and the heads beside it.
    CPhase(const FoundFile& file, const CLog& log, CLocalizer& localizer);

    /// Not checked against the enumeration.
    MATTER_STATE getAggreg() const { return static_cast<MATTER_STATE>(getNumber(s_AggregKey)); }
    void setMatterState(MATTER_STATE state) { setNumber(s_AggregKey, state); }

    CHeadMap heads;
};
