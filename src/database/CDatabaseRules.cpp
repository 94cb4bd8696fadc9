#include "database/CDatabase.h"

#include "database/onMatter.h"
#include "format/recordText.h"
#include "qmdatabase/status.h"

#include <vector>

namespace {

void fillDescription(const CParameter& parameter, PARAMETERDESCR& record)
{
    record.id = parameter.getID();
    record.binary = parameter.getBinaryFlag();
    record.scalar = parameter.getScalarFlag();
    record.vector = parameter.getVectorFlag();
    format::copyWStringToWtchar(parameter.getName(), record.name);
    format::copyWStringToWtchar(parameter.getUnits(), record.units);
    format::copyWStringToWtchar(parameter.getDataTypes(), record.dataTypes);
    format::copyWStringToWtchar(parameter.getAvForPhases(), record.avForPhases);
}

} // namespace

bool CDatabase::isParamIDCorrect(long paramId) const
{
    return parameters_.find(paramId) != nullptr;
}

bool CDatabase::isParameterTypeCorrect(long paramId, PARAM_TYPE type) const
{
    const CParameter* parameter = parameters_.find(paramId);
    return parameter && format::isAmong(format::letterOf(type), parameter->getDataTypes());
}

bool CDatabase::isParameterVectorTypeCorrect(long paramId, bool vector) const
{
    const CParameter* parameter = parameters_.find(paramId);
    return parameter && (vector ? parameter->getVectorFlag() : parameter->getScalarFlag());
}

bool CDatabase::isParameterCorrectForPhase(long paramId, MATTER_STATE state) const
{
    const CParameter* parameter = parameters_.find(paramId);
    return parameter && format::isAmong(format::letterOf(state), parameter->getAvForPhases());
}

int CDatabase::getPhaseParamsDescriptions(
    long matterId, long phaseId, PARAMETERDESCR*& descrs, int& count) const
{
    return onMatter(matterId, [&](const CMatter& matter) {
        const CPhase* phase = matter.phases.find(phaseId);
        return phase ? listDescriptions(phase->getAggreg(), descrs, count) : QMDB_E_NOT_FOUND;
    });
}

int CDatabase::listDescriptions(MATTER_STATE state, PARAMETERDESCR*& descrs, int& count) const
{
    std::vector<const CParameter*> available;
    parameters_.forEach([&](long id, const CParameter& parameter) {
        if (isParameterCorrectForPhase(id, state)) {
            available.push_back(&parameter);
        }
    });
    if (available.empty()) {
        return QMDB_OK;
    }
    auto records = std::make_unique<PARAMETERDESCR[]>(available.size());
    for (std::size_t i = 0; i < available.size(); ++i) {
        fillDescription(*available[i], records[i]);
    }
    count = static_cast<int>(available.size());
    descrs = records.release();
    return QMDB_OK;
}
