#pragma once

#include "model/CEntity.h"
#include "model/CHeadMap.h"

/// One phase change of a substance, with its parameter heads.
class CPhaseChange : public CEntity {
public:
    static constexpr format::Key s_Phase1Key = format::Key::Phase1;
    static constexpr format::Key s_Phase2Key = format::Key::Phase2;

    /// An empty one to be filled and saved.
    CPhaseChange(const CLog& log, CLocalizer& localizer) noexcept
        : CEntity(log, localizer)
    {
    }
    /// Reads the descriptor and the heads beside it.
    CPhaseChange(const FoundFile& file, const CLog& log, CLocalizer& localizer);

    /// Not checked to exist.
    long getPhase1() const { return getNumber(s_Phase1Key); }
    long getPhase2() const { return getNumber(s_Phase2Key); }
    void setPhase1ID(long id) { setNumber(s_Phase1Key, id); }
    void setPhase2ID(long id) { setNumber(s_Phase2Key, id); }

    CHeadMap heads;
};
