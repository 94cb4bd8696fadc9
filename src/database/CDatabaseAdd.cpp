#include "database/CDatabase.h"

#include "database/composition.h"
#include "database/uniqueNames.h"
#include "files/nextId.h"
#include "qm/CQMFileSystem.h"
#include "qmdatabase/status.h"

namespace {

constexpr double minSumOfFractions = 0.99;
constexpr double maxSumOfFractions = 1.0;

/// Makes a directory for a new entity; returns the path of its descriptor, which is still to be
/// written.
CFilePath makeEntityDir(const std::string& parent, std::string_view prefix, std::string_view extension)
{
    const qm::CQMDirectory parentDirectory(parent);
    const std::string name = uniqueName(parentDirectory, parent, prefix);
    auto directory = std::make_shared<const std::string>(joinPath(parent, name));
    qm::CQMFileSystem::MakeDir(*directory, parentDirectory);
    return { std::move(directory), name + "." + std::string(extension) };
}

/// Saves a new entity, puts it into its map and says so.
template <class Entity>
int saveEntity(CIdMap<Entity>& entities, Entity entity, std::string_view successMessage)
{
    const CLog& log = entity.log();
    const long id = entity.getID();
    const std::string path = entity.path.text();
    const qm::CQMDirectory directory(*entity.path.directoryPart());
    if (const int code = entities.saveAndInsert(std::move(entity), directory); code != QMDB_OK) {
        return code;
    }
    log.info(successMessage, path, ", ID=", id);
    return QMDB_OK;
}

/// Keeps a name in a set while its owner is being saved, and for good once that has worked.
class CNameClaim {
public:
    CNameClaim(std::unordered_set<std::string>& names, std::string_view name)
        : names_(names)
    {
        const auto [at, isNew] = names.emplace(name);
        claimed_ = isNew ? &*at : nullptr;
    }
    CNameClaim(const CNameClaim&) = delete;
    CNameClaim& operator=(const CNameClaim&) = delete;
    ~CNameClaim()
    {
        if (claimed_) {
            names_.erase(names_.find(*claimed_));
        }
    }
    void keep() noexcept { claimed_ = nullptr; }

private:
    std::unordered_set<std::string>& names_;
    const std::string* claimed_ = nullptr;
};

} // namespace

int CDatabase::addMatter(const MATTER& matter)
{
    const std::string name = conversions::fieldText(matter.name);
    if (isMatterNamePresent(name)) {
        log_.error("Cannot append a substance because a duplicated name, ", name);
        return QMDB_E_DUPLICATE_NAME;
    }
    CMatter created(log_, *strings_);
    created.path = makeEntityDir(*path_, s_matterDirsPrefix, s_matterFilesExt);
    maxMatterId_ = nextId(maxMatterId_);
    created.setID(maxMatterId_);
    created.setName(name);
    created.setNameID(strings_->increaseMaxStringID());
    created.setComment(conversions::fieldText(matter.comment));
    created.setCommentID(strings_->increaseMaxStringID());
    if (const int code = setComposition(created, matter); code != QMDB_OK) {
        return code;
    }
    CNameClaim claim(*matterNames_, created.getName());
    if (const int code = saveEntity(matters_, std::move(created), "New material saved: "); code != QMDB_OK) {
        return code;
    }
    claim.keep();
    return static_cast<int>(maxMatterId_);
}

int CDatabase::setComposition(CMatter& created, const MATTER& matter) const
{
    created.setMixture(matter.mixture);
    if (matter.mixture == 0) {
        created.setComposition("");
        return QMDB_OK;
    }
    const auto components = composition::componentsOf(matter);
    const double sum = composition::sumOfFractions(components);
    // A sum that is not a number passes.
    if (sum > maxSumOfFractions || sum < minSumOfFractions) {
        log_.error(
            "Incorrect molar fractions summ at sunstance addition (", conversions::double2wstr(sum), ")");
        return QMDB_E_FRACTIONS;
    }
    created.setComposition(composition::format(components));
    return QMDB_OK;
}

bool CDatabase::isMatterNamePresent(std::string_view name)
{
    if (!matterNames_) {
        std::unordered_set<std::string> names;
        for (const auto& [id, matter] : matters_) {
            names.emplace(matter.getName());
        }
        matterNames_ = std::move(names);
    }
    return matterNames_->contains(std::string(name));
}

int CDatabase::addPhase(long matterId, const PHASE& phase)
{
    CMatter* matter = nullptr;
    if (const int code = findMatter(matterId, matter); code != QMDB_OK) {
        return code;
    }
    const std::string name = conversions::fieldText(phase.name);
    if (matter->isPhaseNamePresent(name)) {
        log_.error("Cannot append a phase because a duplicated name, ", name);
        return QMDB_E_DUPLICATE_NAME;
    }
    CPhase created(log_, *strings_);
    created.path = makeEntityDir(*matter->path.directoryPart(), s_phasesDirsPrefix, s_phaseFilesExt);
    matter->maxPhaseId = nextId(matter->maxPhaseId);
    created.setID(matter->maxPhaseId);
    created.setName(name);
    created.setNameID(strings_->increaseMaxStringID());
    created.setMatterState(phase.aggreg);
    const int code = saveEntity(matter->phases, std::move(created), "New phase saved: ");
    return code == QMDB_OK ? static_cast<int>(matter->maxPhaseId) : code;
}

int CDatabase::addPhaseChange(long matterId, const PHASECHANGE& phaseChange)
{
    CMatter* matter = nullptr;
    if (const int code = findMatter(matterId, matter); code != QMDB_OK) {
        return code;
    }
    const std::string name = conversions::fieldText(phaseChange.name);
    if (matter->isPhaseChangeNamePresent(name)) {
        log_.error("Cannot append a phase change because a duplicated name, ", name);
        return QMDB_E_DUPLICATE_NAME;
    }
    CPhaseChange created(log_, *strings_);
    created.path
        = makeEntityDir(*matter->path.directoryPart(), s_phasesChangeDirsPrefix, s_phaseChangeFilesExt);
    matter->maxPhaseChangeId = nextId(matter->maxPhaseChangeId);
    created.setID(matter->maxPhaseChangeId);
    created.setName(name);
    created.setNameID(strings_->increaseMaxStringID());
    created.setPhase1ID(phaseChange.phase1);
    created.setPhase2ID(phaseChange.phase2);
    const int code = saveEntity(matter->phaseChanges, std::move(created), "New phase change saved: ");
    return code == QMDB_OK ? static_cast<int>(matter->maxPhaseChangeId) : code;
}
