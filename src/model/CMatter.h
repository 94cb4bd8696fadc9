#pragma once

#include "model/CNames.h"
#include "model/CPhase.h"
#include "model/CPhaseChange.h"

/// One substance of an open database, with its phases, phase changes and parameter heads.
class CMatter : public CEntity {
public:
    static constexpr format::Key s_MixtureKey = format::Key::Mixture;
    static constexpr format::Key s_CompositionKey = format::Key::Composition;
    static constexpr format::Key s_CommentKey = format::Key::Comment;
    static constexpr format::Key s_CommentIDKey = format::Key::CommentID;

    /// An empty one to be filled and saved.
    CMatter(const CLog& log, CLocalizer& localizer) noexcept
        : CEntity(log, localizer)
    {
    }
    /// Reads the descriptor and everything below its directory, up to the first child that fails.
    CMatter(const FoundFile& file, const CLog& log, CLocalizer& localizer);

    std::string_view getComment() const { return textOf(placeOf(s_CommentIDKey), s_CommentKey); }
    long getMixture() const { return getNumber(s_MixtureKey); }
    std::string_view getComposition() const noexcept { return getParametr(s_CompositionKey); }

    void setComment(std::string_view comment) { setParametr(s_CommentKey, comment); }
    void setCommentID(long id) { setNumber(s_CommentIDKey, id); }
    void setMixture(long mixture) { setNumber(s_MixtureKey, mixture); }
    void setComposition(std::string_view composition) { setParametr(s_CompositionKey, composition); }

    int getPhases(PHASE*& records, int& count) const;
    int getPhaseChanges(PHASECHANGE*& records, int& count) const;
    int getPhaseParams(
        long phaseId, const CIdMap<CParameter>& descriptions, PARAMETER*& params, int& count) const;
    int getPhaseChangeParams(
        long phaseChangeId, const CIdMap<CParameter>& descriptions, PARAMETER*& params, int& count) const;

    /// The substance's own parameter when both IDs are -1, else the phase's, else the phase change's.
    int getParamValue(long phaseId, long phaseChangeId, long paramId, IDbData*& value) const;

    bool isPhaseNamePresent(std::string_view name);
    bool isPhaseChangeNamePresent(std::string_view name);

    CHeadMap heads;
    CIdMap<CPhase> phases;
    CIdMap<CPhaseChange> phaseChanges;
    CNames phaseNames;
    CNames phaseChangeNames;
    long maxPhaseId = -1;
    long maxPhaseChangeId = -1;

private:
    int loadBelow(CDirectory& directory);
    template <class Child>
    int loadChildren(CIdMap<Child>& children, long& maxId, CDirectory& directory,
        const format::DescriptorKind& kind, const LoadMessages& messages);
};
