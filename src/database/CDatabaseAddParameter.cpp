#include "database/CDatabase.h"

#include "format/paths.h"
#include "qm/CQMDirectoryLock.h"
#include "qmdatabase/status.h"

int CDatabase::addMatterParameter(long matterId, const PARAMETER& param, const IDbData* data)
{
    CMatter* matter = nullptr;
    int code = find(matters_, matterId, matter);
    code = code == QMDB_OK ? checkParameter(param) : code;
    if (code != QMDB_OK) {
        return code;
    }
    if (matter->heads.has(param.id)) {
        log_.error(
            "Cannot append the parameter to substance because a parameter with such ID is already present, ",
            param.id);
        return QMDB_E_DUPLICATE_PARAMETER;
    }
    return saveParameter(*matter, matter->heads, param, data, "New substance parameter saved: ");
}

int CDatabase::addPhaseParameter(long matterId, long phaseId, const PARAMETER& param, const IDbData* data)
{
    CMatter* matter = nullptr;
    int code = find(matters_, matterId, matter);
    code = code == QMDB_OK ? checkParameter(param) : code;
    if (code != QMDB_OK) {
        return code;
    }
    CPhase* const phase = matter->phases.find(phaseId);
    if (!phase) {
        return QMDB_E_NOT_FOUND;
    }
    if (!isParameterCorrectForPhase(param.id, phase->getAggreg())) {
        log_.error("Incorrect parameter for the phase AS, ParamID=", param.id,
            "AS=", static_cast<int>(phase->getAggreg()));
        return QMDB_E_STATE_NOT_ALLOWED;
    }
    if (phase->heads.has(param.id)) {
        log_.error(
            "Cannot append the parameter to phase because a parameter with such ID is already present, ",
            param.id);
        return QMDB_E_DUPLICATE_PARAMETER;
    }
    return saveParameter(*phase, phase->heads, param, data, "New phase parameter saved: ");
}

/// The rules of the parameter's description that do not depend on the owner.
int CDatabase::checkParameter(const PARAMETER& param) const
{
    if (!isParamIDCorrect(param.id)) {
        log_.error("Incorrect parameter ID for addition, ", param.id);
        return QMDB_E_UNKNOWN_PARAMETER;
    }
    if (!isParameterTypeCorrect(param.id, param.type)) {
        log_.error("Incorrect parameter type for addition, ParamID=", param.id,
            "ParamType=", static_cast<int>(param.type));
        return QMDB_E_TYPE_NOT_ALLOWED;
    }
    if (!isParameterVectorTypeCorrect(param.id, param.vector)) {
        log_.error("Incorrect parameter scalar/vector type for addition, ParamID=", param.id,
            "Vector=", static_cast<int>(param.vector));
        return QMDB_E_VECTOR_NOT_ALLOWED;
    }
    return QMDB_OK;
}

/// Writes the data file, then the head that names it, and attaches the head to its owner.
int CDatabase::saveParameter(const CEntity& owner, CHeadMap& heads, const PARAMETER& param,
    const IDbData* data, std::string_view successMessage)
{
    if (!data) {
        return QMDB_E_NULL_POINTER;
    }
    CDirectory directory(owner.path.directoryPart());
    directory.open();
    // From the choice of the name until its head stands: no other process's data file gets under it.
    const qm::CQMDirectoryLock lock(directory.descriptor());
    CParameterData head(log_);
    head.path = CFilePath(directory.path(), uniqueNames_.next(directory, format::Series::Heads));
    const std::string shownPath = head.path.shown();
    head.setID(param.id);
    head.setVector(param.vector);
    head.setType(param.type);
    const std::string_view stem = format::splitPath(head.path.name()).name;
    head.setDataFileName(std::string(stem).append(1, '.').append(s_paramDataFileExt));
    // A data file that cannot be opened is no failure: the head is saved, and reading the value fails.
    if (head.setData(*data, directory) == values::SaveResult::NotWritten) {
        return QMDB_E_FILE;
    }
    if (const int code = heads.saveAndInsert(std::move(head), directory); code != QMDB_OK) {
        return code;
    }
    log_.info(successMessage, shownPath, ", ID=", param.id);
    return QMDB_OK;
}
