#include "database/CDatabase.h"

#include "database/composition.h"
#include "qmdatabase/status.h"

#include <algorithm>

int CDatabase::getMatters(MATTER*& matters, int& count) const
{
    matters = nullptr;
    count = static_cast<int>(matters_.size());
    if (matters_.empty()) {
        return QMDB_E_EMPTY;
    }
    auto records = std::make_unique<MATTER[]>(matters_.size());
    MATTER* record = records.get();
    for (const auto& [id, matter] : matters_) {
        if (const int code = fillMatter(matter, *record++); code != QMDB_OK) {
            return code;
        }
    }
    matters = records.release();
    return QMDB_OK;
}

int CDatabase::fillMatter(const CMatter& matter, MATTER& record) const
{
    record.id = matter.getID();
    conversions::copyWStringToWtchar(matter.getName(), record.name);
    conversions::copyWStringToWtchar(matter.getComment(), record.comment);
    record.mixture = matter.getMixture();
    return record.mixture >= 1 ? fillComposition(matter, record) : QMDB_OK;
}

int CDatabase::fillComposition(const CMatter& matter, MATTER& record) const
{
    const std::string_view text = matter.getComposition();
    std::vector<COMPONENT> components;
    switch (composition::parse(text, components)) {
    case composition::Outcome::BadFormat:
        log_.error("Bad format of a composition line: ", text);
        return QMDB_E_FORMAT;
    case composition::Outcome::BadFraction:
        log_.error("Bad value of molar fraction: ", text);
        return QMDB_E_NUMBER;
    case composition::Outcome::Read:
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
    phases = nullptr;
    count = 0;
    const CMatter* matter = nullptr;
    const int code = findMatter(matterId, matter);
    return code == QMDB_OK ? matter->getPhases(phases, count) : code;
}

int CDatabase::getPhaseChanges(long matterId, PHASECHANGE*& changes, int& count) const
{
    changes = nullptr;
    count = 0;
    const CMatter* matter = nullptr;
    const int code = findMatter(matterId, matter);
    return code == QMDB_OK ? matter->getPhaseChanges(changes, count) : code;
}

int CDatabase::getMatterParams(long matterId, PARAMETER*& params, int& count) const
{
    params = nullptr;
    count = 0;
    const CMatter* matter = nullptr;
    int code = findMatter(matterId, matter);
    code = code == QMDB_OK ? matter->heads.list(params, count) : code;
    expandParamsList(params, count);
    return code;
}

int CDatabase::getPhaseParams(long matterId, long phaseId, PARAMETER*& params, int& count) const
{
    params = nullptr;
    count = 0;
    const CMatter* matter = nullptr;
    int code = findMatter(matterId, matter);
    code = code == QMDB_OK ? matter->getPhaseParams(phaseId, params, count) : code;
    expandParamsList(params, count);
    return code;
}

int CDatabase::getPhaseChangeParams(long matterId, long phaseChangeId, PARAMETER*& params, int& count) const
{
    params = nullptr;
    count = 0;
    const CMatter* matter = nullptr;
    int code = findMatter(matterId, matter);
    code = code == QMDB_OK ? matter->getPhaseChangeParams(phaseChangeId, params, count) : code;
    expandParamsList(params, count);
    return code;
}

/// Adds name and units to the records of a list.
void CDatabase::expandParamsList(PARAMETER* params, int count) const
{
    for (int i = 0; i < count; ++i) {
        if (const CParameter* description = parameters_.find(params[i].id)) {
            conversions::copyWStringToWtchar(description->getName(), params[i].name);
            conversions::copyWStringToWtchar(description->getUnits(), params[i].units);
        }
    }
}

int CDatabase::getParamValue(
    long matterId, long phaseId, long phaseChangeId, long paramId, IDbData*& value) const
{
    value = nullptr;
    const CMatter* matter = nullptr;
    const int code = findMatter(matterId, matter);
    return code == QMDB_OK ? matter->getParamValue(phaseId, phaseChangeId, paramId, value) : code;
}

int CDatabase::findMatter(long matterId, const CMatter*& matter) const
{
    matter = matters_.find(matterId);
    return matters_.check(matterId);
}

int CDatabase::findMatter(long matterId, CMatter*& matter)
{
    matter = matters_.find(matterId);
    return matters_.check(matterId);
}
