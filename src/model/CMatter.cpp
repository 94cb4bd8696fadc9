#include "model/CMatter.h"

#include "format/recordText.h"
#include "format/vocabulary.h"
#include "model/lists.h"

namespace {

template <class Owner>
int listParams(const CIdMap<Owner>& owners, long ownerId, const CIdMap<CParameter>& descriptions,
    PARAMETER*& params, int& count)
{
    const Owner* owner = nullptr;
    const int code = find(owners, ownerId, owner);
    return code == QMDB_OK ? owner->heads.list(descriptions, params, count) : code;
}

template <class Owner>
int readValue(const CIdMap<Owner>& owners, long ownerId, long paramId, IDbData*& value)
{
    const Owner* owner = nullptr;
    const int code = find(owners, ownerId, owner);
    return code == QMDB_OK ? owner->heads.getParamData(paramId, value) : code;
}

} // namespace

int CMatter::getPhases(PHASE*& records, int& count) const
{
    return listRecords(phases, records, count, [](long id, const CPhase& phase, PHASE& record) {
        record = {};
        record.id = id;
        format::copyWStringToWtchar(phase.getName(), record.name);
        record.aggreg = phase.getAggreg();
    });
}

int CMatter::getPhaseChanges(PHASECHANGE*& records, int& count) const
{
    return listRecords(
        phaseChanges, records, count, [](long id, const CPhaseChange& change, PHASECHANGE& record) {
            record.id = id;
            format::copyWStringToWtchar(change.getName(), record.name);
            record.phase1 = change.getPhase1();
            record.phase2 = change.getPhase2();
        });
}

int CMatter::getPhaseParams(
    long phaseId, const CIdMap<CParameter>& descriptions, PARAMETER*& params, int& count) const
{
    return listParams(phases, phaseId, descriptions, params, count);
}

int CMatter::getPhaseChangeParams(
    long phaseChangeId, const CIdMap<CParameter>& descriptions, PARAMETER*& params, int& count) const
{
    return listParams(phaseChanges, phaseChangeId, descriptions, params, count);
}

int CMatter::getParamValue(long phaseId, long phaseChangeId, long paramId, IDbData*& value) const
{
    if (phaseId != format::noId) {
        return readValue(phases, phaseId, paramId, value);
    }
    if (phaseChangeId != format::noId) {
        return readValue(phaseChanges, phaseChangeId, paramId, value);
    }
    return heads.getParamData(paramId, value);
}

bool CMatter::isPhaseNamePresent(std::string_view name)
{
    return phaseNames.contains(phases, name);
}

bool CMatter::isPhaseChangeNamePresent(std::string_view name)
{
    return phaseChangeNames.contains(phaseChanges, name);
}
