#include "database/CDatabase.h"

#include "database/onMatter.h"
#include "format/composition.h"
#include "format/recordText.h"
#include "qmdatabase/status.h"

#include <algorithm>
#include <vector>

int CDatabase::getMatters(MATTER*& matters, int& count) const
{
    if (matters_.empty()) {
        return QMDB_E_EMPTY;
    }
    auto records = std::make_unique<MATTER[]>(matters_.size());
    MATTER* record = records.get();
    int code = QMDB_OK;
    matters_.forEach([&](long, const CMatter& matter) {
        code = code == QMDB_OK ? fillMatter(matter, *record++) : code; // up to the first that fails
    });
    count = static_cast<int>(matters_.size());
    matters = code == QMDB_OK ? records.release() : nullptr;
    return code;
}

int CDatabase::fillMatter(const CMatter& matter, MATTER& record) const
{
    record.id = matter.getID();
    format::copyWStringToWtchar(matter.getName(), record.name);
    format::copyWStringToWtchar(matter.getComment(), record.comment);
    record.mixture = matter.getMixture();
    return record.mixture >= 1 ? fillComposition(matter, record) : QMDB_OK;
}

int CDatabase::fillComposition(const CMatter& matter, MATTER& record) const
{
    const std::string_view text = matter.getComposition();
    std::vector<COMPONENT> components;
    switch (format::parseComposition(text, components)) {
    case format::CompositionResult::BadFormat:
        log_.error("Bad format of a composition line: ", text);
        return QMDB_E_FORMAT;
    case format::CompositionResult::BadFraction:
        log_.error("Bad value of molar fraction: ", text);
        return QMDB_E_NUMBER;
    case format::CompositionResult::Read:
        break;
    }
    if (!components.empty()) {
        record.composition = new COMPONENT[components.size()]; // the record frees it
        std::ranges::copy(components, record.composition);
        record.compositionCount = static_cast<long>(components.size());
    }
    return QMDB_OK;
}

int CDatabase::getPhases(long matterId, PHASE*& phases, int& count) const
{
    return onMatter(matterId, [&](const CMatter& matter) { return matter.getPhases(phases, count); });
}

int CDatabase::getPhaseChanges(long matterId, PHASECHANGE*& changes, int& count) const
{
    return onMatter(matterId, [&](const CMatter& matter) { return matter.getPhaseChanges(changes, count); });
}

int CDatabase::getMatterParams(long matterId, PARAMETER*& params, int& count) const
{
    return onMatter(
        matterId, [&](const CMatter& matter) { return matter.heads.list(parameters_, params, count); });
}

int CDatabase::getPhaseParams(long matterId, long phaseId, PARAMETER*& params, int& count) const
{
    return onMatter(matterId,
        [&](const CMatter& matter) { return matter.getPhaseParams(phaseId, parameters_, params, count); });
}

int CDatabase::getPhaseChangeParams(long matterId, long phaseChangeId, PARAMETER*& params, int& count) const
{
    return onMatter(matterId, [&](const CMatter& matter) {
        return matter.getPhaseChangeParams(phaseChangeId, parameters_, params, count);
    });
}

int CDatabase::getParamValue(
    long matterId, long phaseId, long phaseChangeId, long paramId, IDbData*& value) const
{
    return onMatter(matterId,
        [&](const CMatter& matter) { return matter.getParamValue(phaseId, phaseChangeId, paramId, value); });
}
