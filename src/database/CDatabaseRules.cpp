#include "database/CDatabase.h"

#include "qmdatabase/status.h"

#include <ranges>
#include <vector>

namespace {

/// No letter stands for no type at all.
constexpr char none = '\0';

char letterOf(PARAM_TYPE type) noexcept
{
    switch (type) {
    case PARAM_TYPE_CONSTANT:
        return 'C';
    case PARAM_TYPE_TABLE_T:
        return 't';
    case PARAM_TYPE_TABLE_P:
        return 'p';
    case PARAM_TYPE_TABLE2D_T:
        return 'T';
    case PARAM_TYPE_TABLE2D_X:
        return 'X';
    }
    return none;
}

char letterOf(MATTER_STATE state) noexcept
{
    switch (state) {
    case MATTER_STATE_SOLID:
        return 'S';
    case MATTER_STATE_LIQUID:
        return 'L';
    case MATTER_STATE_GAS:
        return 'V';
    case MATTER_STATE_NOT_GIVEN:
        return none;
    }
    return none;
}

bool isFlagInParamStr(std::string_view letters, char letter) noexcept
{
    return letter != none && letters.find(letter) != std::string_view::npos;
}

void fillDescription(const CParameter& parameter, PARAMETERDESCR& record)
{
    record.id = parameter.getID();
    record.binary = parameter.getBinaryFlag();
    record.scalar = parameter.getScalarFlag();
    record.vector = parameter.getVectorFlag();
    conversions::copyWStringToWtchar(parameter.getName(), record.name);
    conversions::copyWStringToWtchar(parameter.getUnits(), record.units);
    conversions::copyWStringToWtchar(parameter.getDataTypes(), record.dataTypes);
    conversions::copyWStringToWtchar(parameter.getAvForPhases(), record.avForPhases);
}

} // namespace

bool CDatabase::isParamIDCorrect(long paramId) const
{
    return parameters_.find(paramId) != nullptr;
}

bool CDatabase::isParameterTypeCorrect(long paramId, PARAM_TYPE type) const
{
    const CParameter* parameter = parameters_.find(paramId);
    return parameter && isFlagInParamStr(parameter->getDataTypes(), letterOf(type));
}

bool CDatabase::isParameterVectorTypeCorrect(long paramId, bool vector) const
{
    const CParameter* parameter = parameters_.find(paramId);
    return parameter && (vector ? parameter->getVectorFlag() : parameter->getScalarFlag());
}

bool CDatabase::isParameterCorrectForPhase(long paramId, MATTER_STATE state) const
{
    const CParameter* parameter = parameters_.find(paramId);
    return parameter && isFlagInParamStr(parameter->getAvForPhases(), letterOf(state));
}

int CDatabase::getPhaseParamsDescriptions(
    long matterId, long phaseId, PARAMETERDESCR*& descrs, int& count) const
{
    descrs = nullptr;
    count = 0;
    const CMatter* matter = nullptr;
    if (const int code = findMatter(matterId, matter); code != QMDB_OK) {
        return code;
    }
    const CPhase* phase = matter->phases.find(phaseId);
    if (!phase) {
        return QMDB_E_NOT_FOUND;
    }
    const MATTER_STATE state = phase->getAggreg();
    std::vector<const CParameter*> available;
    for (const auto& [id, parameter] : parameters_) {
        if (isParameterCorrectForPhase(id, state)) {
            available.push_back(&parameter);
        }
    }
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
