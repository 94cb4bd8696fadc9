#include "qmdatabase/QMNative.h"

#include "api/guard.h"
#include "format/innerText.h"
#include "format/vocabulary.h"
#include "qm/CQMCriticalSection.h"

#include <cstring>

namespace {

/// Made and destroyed with the library. Callers serialise their calls, so nothing enters it.
[[maybe_unused]] qm::CQMCriticalSection m_cs;

std::string argumentText(const wchar_t* text)
{
    return text ? format::text::fromWide(text) : std::string();
}

/// A byte from another language may be more than 0 and 1, which a bool must not be: every other one is true.
bool isTrue(const bool& flag)
{
    unsigned char byte = 0;
    std::memcpy(&byte, &flag, sizeof byte);
    return byte != 0;
}

PARAMETER withValidFlag(PARAMETER param)
{
    param.vector = isTrue(param.vector);
    return param;
}

template <class Record>
int destroyArray(Record** records) noexcept
{
    if (!records || !*records) {
        return QMDB_E_NULL_POINTER;
    }
    delete[] * records;
    return QMDB_OK;
}

} // namespace

int qmdbOpen(
    const wchar_t* path, const wchar_t* language, const wchar_t* logDir, bool logInfo, long* databaseId)
{
    if (!databaseId) {
        return QMDB_E_NULL_POINTER;
    }
    *databaseId = format::noId;
    try {
        const std::string pathText = argumentText(path);
        const std::string logDirText = argumentText(logDir);
        const std::string& usedLogDir = logDirText.empty() ? pathText : logDirText;
        const bool withInfo = isTrue(logInfo);
        return guarded(CLog(usedLogDir, withInfo), [&] {
            return dbEngine.openDatabase(pathText, argumentText(language), usedLogDir, withInfo, *databaseId);
        });
    } catch (const std::exception&) {
        return QMDB_E_INTERNAL; // no memory for the arguments
    }
}

int qmdbClose(long databaseId)
{
    return dbEngine.closeDatabase(databaseId);
}

int qmdbGetMatters(long databaseId, MATTER** matters, int* count)
{
    return onDatabase(
        databaseId, [&](CDatabase& database) { return database.getMatters(*matters, *count); }, matters,
        count);
}

int qmdbGetPhases(long databaseId, long matterId, PHASE** phases, int* count)
{
    return onDatabase(
        databaseId, [&](CDatabase& database) { return database.getPhases(matterId, *phases, *count); },
        phases, count);
}

int qmdbGetPhaseChanges(long databaseId, long matterId, PHASECHANGE** changes, int* count)
{
    return onDatabase(
        databaseId, [&](CDatabase& database) { return database.getPhaseChanges(matterId, *changes, *count); },
        changes, count);
}

int qmdbGetMatterParams(long databaseId, long matterId, PARAMETER** params, int* count)
{
    return onDatabase(
        databaseId, [&](CDatabase& database) { return database.getMatterParams(matterId, *params, *count); },
        params, count);
}

int qmdbGetPhaseParams(long databaseId, long matterId, long phaseId, PARAMETER** params, int* count)
{
    return onDatabase(
        databaseId,
        [&](CDatabase& database) { return database.getPhaseParams(matterId, phaseId, *params, *count); },
        params, count);
}

int qmdbGetPhaseChangeParams(
    long databaseId, long matterId, long phaseChangeId, PARAMETER** params, int* count)
{
    return onDatabase(
        databaseId,
        [&](CDatabase& database) {
            return database.getPhaseChangeParams(matterId, phaseChangeId, *params, *count);
        },
        params, count);
}

int qmdbGetParamValue(
    long databaseId, long matterId, long phaseId, long phaseChangeId, long paramId, IDbData** value)
{
    if (phaseId != format::noId && phaseChangeId != format::noId) {
        return QMDB_E_NOT_FOUND;
    }
    return onDatabase(
        databaseId,
        [&](CDatabase& database) {
            return database.getParamValue(matterId, phaseId, phaseChangeId, paramId, *value);
        },
        value);
}

int qmdbAddMatter(long databaseId, const MATTER* matter)
{
    return onDatabase(
        databaseId, [&](CDatabase& database) { return database.addMatter(*matter); }, matter);
}

int qmdbAddPhase(long databaseId, long matterId, const PHASE* phase)
{
    return onDatabase(
        databaseId, [&](CDatabase& database) { return database.addPhase(matterId, *phase); }, phase);
}

int qmdbAddPhaseChange(long databaseId, long matterId, const PHASECHANGE* change)
{
    return onDatabase(
        databaseId, [&](CDatabase& database) { return database.addPhaseChange(matterId, *change); }, change);
}

int qmdbAddMatterParam(long databaseId, long matterId, const PARAMETER* param, const IDbData* value)
{
    return onDatabase(
        databaseId,
        [&](CDatabase& database) {
            return database.addMatterParameter(matterId, withValidFlag(*param), value);
        },
        param);
}

int qmdbAddPhaseParam(
    long databaseId, long matterId, long phaseId, const PARAMETER* param, const IDbData* value)
{
    return onDatabase(
        databaseId,
        [&](CDatabase& database) {
            return database.addPhaseParameter(matterId, phaseId, withValidFlag(*param), value);
        },
        param);
}

int qmdbGetAvailablePhaseParams(
    long databaseId, long matterId, long phaseId, PARAMETERDESCR** descrs, int* count)
{
    return onDatabase(
        databaseId,
        [&](CDatabase& database) {
            return database.getPhaseParamsDescriptions(matterId, phaseId, *descrs, *count);
        },
        descrs, count);
}

int qmdbDestroyMatterArray(MATTER** matters)
{
    return destroyArray(matters);
}

int qmdbDestroyPhasesArray(PHASE** phases)
{
    return destroyArray(phases);
}

int qmdbDestroyPhaseChangeArray(PHASECHANGE** changes)
{
    return destroyArray(changes);
}

int qmdbDestroyParametersArray(PARAMETER** params)
{
    return destroyArray(params);
}

int qmdbDestroyParamDescrArray(PARAMETERDESCR** descrs)
{
    return destroyArray(descrs);
}

int qmdbDestroyParameterData(IDbData** value)
{
    if (!value || !*value) {
        return QMDB_E_NULL_POINTER;
    }
    delete *value;
    return QMDB_OK;
}
