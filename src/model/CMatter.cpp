#include "model/CMatter.h"

#include "model/entityMap.h"
#include "qmdatabase/status.h"

#include <algorithm>

namespace {

constexpr long none = -1;

template <class Map> bool hasName(const Map& entities, std::string_view name)
{
    return std::ranges::any_of(
        entities, [name](const auto& entry) { return entry.second.getName() == name; });
}

template <class Map> int listParams(const Map& owners, long ownerId, PARAMETER*& params, int& count)
{
    params = nullptr;
    count = 0;
    const typename Map::mapped_type* owner = nullptr;
    const int code = findEntity(owners, ownerId, owner);
    return code == QMDB_OK ? owner->heads.list(params, count) : code;
}

template <class Map> int readValue(const Map& owners, long ownerId, long paramId, IDbData*& value)
{
    value = nullptr;
    const typename Map::mapped_type* owner = nullptr;
    const int code = findEntity(owners, ownerId, owner);
    return code == QMDB_OK ? owner->heads.getParamData(paramId, value) : code;
}

} // namespace

int CMatter::getPhases(PHASE*& records, int& count) const
{
    return listRecords(phases, records, count, [](const CPhase& phase, PHASE& record) {
        record.id = phase.getID();
        conversions::copyWStringToWtchar(phase.getName(), record.name);
        record.aggreg = phase.getAggreg();
    });
}

int CMatter::getPhaseChanges(PHASECHANGE*& records, int& count) const
{
    return listRecords(phaseChanges, records, count, [](const CPhaseChange& change, PHASECHANGE& record) {
        record.id = change.getID();
        conversions::copyWStringToWtchar(change.getName(), record.name);
        record.phase1 = change.getPhase1();
        record.phase2 = change.getPhase2();
    });
}

int CMatter::getPhaseParams(long phaseId, PARAMETER*& params, int& count) const
{
    return listParams(phases, phaseId, params, count);
}

int CMatter::getPhaseChangeParams(long phaseChangeId, PARAMETER*& params, int& count) const
{
    return listParams(phaseChanges, phaseChangeId, params, count);
}

int CMatter::getParamValue(long phaseId, long phaseChangeId, long paramId, IDbData*& value) const
{
    if (phaseId != none) {
        return readValue(phases, phaseId, paramId, value);
    }
    if (phaseChangeId != none) {
        return readValue(phaseChanges, phaseChangeId, paramId, value);
    }
    return heads.getParamData(paramId, value);
}

bool CMatter::isPhaseNamePresent(std::string_view name) const
{
    return hasName(phases, name);
}

bool CMatter::isPhaseChangeNamePresent(std::string_view name) const
{
    return hasName(phaseChanges, name);
}
