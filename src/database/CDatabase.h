#pragma once

#include "files/CUniqueNames.h"
#include "model/CMatter.h"
#include "model/CParameter.h"
#include "qmdatabase/records.h"
#include "qmdatabase/values.h"

#include <memory>
#include <string>
#include <string_view>

/// One open database: the image of a directory tree of descriptors, read once at the open and kept in
/// step with what is added.
class CDatabase {
public:
    static constexpr std::string_view s_matterFilesExt = format::substanceExtension;
    static constexpr std::string_view s_phaseFilesExt = format::phaseExtension;
    static constexpr std::string_view s_phaseChangeFilesExt = format::phaseChangeExtension;
    static constexpr std::string_view s_parameterFilesExt = format::descriptionExtension;
    static constexpr std::string_view s_paramFileExt = format::headExtension;
    static constexpr std::string_view s_paramDataFileExt = format::dataExtension;
    static constexpr std::string_view s_matterDirsPrefix = format::substancePrefix;
    static constexpr std::string_view s_phasesDirsPrefix = format::phasePrefix;
    static constexpr std::string_view s_phasesChangeDirsPrefix = format::phaseChangePrefix;
    static constexpr std::string_view s_paramFilePrefix = format::headPrefix;
    static constexpr std::string_view s_localFileName = format::russianTable;
    static constexpr std::string_view s_defaultFileName = format::defaultTable;

    CDatabase(std::string_view logDir, bool logInfo)
        : log_(logDir, logInfo)
    {
    }
    // The objects of the image point at the log and the string table.
    CDatabase(const CDatabase&) = delete;
    CDatabase& operator=(const CDatabase&) = delete;

    const CLog& log() const noexcept { return log_; }

    /// Loads the tree; called once. After a failure the object is of no use.
    int openDatabase(std::string_view path, std::string_view language);

    // Lists and values for the caller. All arrays are new; failures leave the outputs as they are, except
    // that getMatters() gives the number of substances with -11 and -12.
    int getMatters(MATTER*& matters, int& count) const;
    int getPhases(long matterId, PHASE*& phases, int& count) const;
    int getPhaseChanges(long matterId, PHASECHANGE*& changes, int& count) const;
    int getMatterParams(long matterId, PARAMETER*& params, int& count) const;
    int getPhaseParams(long matterId, long phaseId, PARAMETER*& params, int& count) const;
    int getPhaseChangeParams(long matterId, long phaseChangeId, PARAMETER*& params, int& count) const;
    int getParamValue(long matterId, long phaseId, long phaseChangeId, long paramId, IDbData*& value) const;
    int getPhaseParamsDescriptions(long matterId, long phaseId, PARAMETERDESCR*& descrs, int& count) const;

    // Additions. The first three return the new ID; all return a negative code on failure and may
    // throw EQMException when a directory cannot be made or a text has no UTF-8 form.
    int addMatter(const MATTER& matter);
    int addPhase(long matterId, const PHASE& phase);
    int addPhaseChange(long matterId, const PHASECHANGE& phaseChange);
    int addMatterParameter(long matterId, const PARAMETER& param, const IDbData* data);
    int addPhaseParameter(long matterId, long phaseId, const PARAMETER& param, const IDbData* data);

    // What the descriptions allow.
    bool isParamIDCorrect(long paramId) const;
    bool isParameterTypeCorrect(long paramId, PARAM_TYPE type) const;
    bool isParameterVectorTypeCorrect(long paramId, bool vector) const;
    bool isParameterCorrectForPhase(long paramId, MATTER_STATE state) const;

private:
    int loadMatters(CDirectory& root);
    int loadParameters(CDirectory& root);

    /// Looks for a substance and runs `body` on it; -9 when there is none at all, -2 when none has the ID.
    template <class Body>
    int onMatter(long matterId, Body&& body) const;

    int fillMatter(const CMatter& matter, MATTER& record) const;
    int fillComposition(const CMatter& matter, MATTER& record) const;
    int listDescriptions(MATTER_STATE state, PARAMETERDESCR*& descrs, int& count) const;

    bool isMatterNamePresent(std::string_view name) { return matterNames_.contains(matters_, name); }
    void setIdentity(CEntity& created, long& maxId, std::string_view name);
    int setComposition(CMatter& created, const MATTER& matter) const;
    int checkParameter(const PARAMETER& param) const;
    int saveParameter(const CEntity& owner, CHeadMap& heads, const PARAMETER& param, const IDbData* data,
        std::string_view successMessage);

    CFilePath makeEntityDir(
        std::shared_ptr<const std::string> parentPath, format::Series series, std::string_view extension);

    CLog log_;
    std::shared_ptr<const std::string> path_;
    std::unique_ptr<CLocalizer> strings_;
    CIdMap<CMatter> matters_;
    CIdMap<CParameter> parameters_;
    long maxMatterId_ = -1;
    CUniqueNames uniqueNames_;
    CNames matterNames_;
};
