#include "database/CDatabase.h"

#include "files/nextId.h"
#include "format/composition.h"
#include "format/paths.h"
#include "format/recordText.h"
#include "model/saving.h"
#include "qmdatabase/status.h"

#include <span>

namespace {

/// Saves a new entity, puts it into its map and logs that.
template <class Entity>
int saveEntity(CIdMap<Entity>& entities, CNames& names, Entity entity, std::string_view successMessage)
{
    const CLog& log = entity.log();
    const long id = entity.getID();
    const std::string path = entity.path.shown();
    CDirectory directory(entity.path.directoryPart());
    directory.open();
    const int code = names.addWith(
        entity.getName(), [&] { return saveAndInsert(entities, std::move(entity), directory); });
    if (code == QMDB_OK) {
        log.info(successMessage, path, ", ID=", id);
    }
    return code;
}

/// The components of a caller's record; none when it counts some and has none.
std::span<const COMPONENT> componentsOf(const MATTER& matter) noexcept
{
    if (!matter.composition || matter.compositionCount <= 0) {
        return {};
    }
    return { matter.composition, static_cast<std::size_t>(matter.compositionCount) };
}

/// False when the mixture's composition would make a line that cannot be read; a sum that is refused later
/// makes none.
bool compositionFits(const MATTER& matter)
{
    const std::span<const COMPONENT> components = componentsOf(matter);
    if (matter.mixture == 0 || !format::isSumAllowed(format::sumOfFractions(components))) {
        return true;
    }
    constexpr std::size_t keyLength = textOf(CMatter::s_CompositionKey).size() + 1;
    return keyLength + format::compositionText(components).size() <= format::maxLineLength;
}

} // namespace

/// Makes a directory for a new entity; returns the path of its descriptor, which is still to be
/// written.
CFilePath CDatabase::makeEntityDir(
    std::shared_ptr<const std::string> parentPath, format::Series series, std::string_view extension)
{
    CDirectory parent(std::move(parentPath));
    parent.open();
    const std::string name = uniqueNames_.next(parent, series);
    parent.makeDirectory(name);
    return { std::make_shared<const std::string>(format::joinPath(*parent.path(), name)),
        name + "." + std::string(extension) };
}

int CDatabase::addMatter(const MATTER& matter)
{
    const std::string name = format::fieldText(matter.name);
    if (isMatterNamePresent(name)) {
        log_.error("Cannot append a substance because a duplicated name, ", name);
        return QMDB_E_DUPLICATE_NAME;
    }
    if (!compositionFits(matter)) {
        log_.error("Composition line is too long: ", name);
        return QMDB_E_FORMAT;
    }
    CMatter created(log_, *strings_);
    created.path = makeEntityDir(path_, format::Series::Substances, s_matterFilesExt);
    setIdentity(created, maxMatterId_, name);
    created.setComment(format::fieldText(matter.comment));
    created.setCommentID(strings_->increaseMaxStringID());
    if (const int code = setComposition(created, matter); code != QMDB_OK) {
        return code;
    }
    const int code = saveEntity(matters_, matterNames_, std::move(created), "New material saved: ");
    return code == QMDB_OK ? static_cast<int>(maxMatterId_) : code;
}

int CDatabase::setComposition(CMatter& created, const MATTER& matter) const
{
    created.setMixture(matter.mixture);
    if (matter.mixture == 0) {
        created.setComposition("");
        return QMDB_OK;
    }
    const std::span<const COMPONENT> components = componentsOf(matter);
    const double sum = format::sumOfFractions(components);
    if (!format::isSumAllowed(sum)) {
        log_.error("Incorrect molar fractions summ at sunstance addition (", format::double2wstr(sum), ")");
        return QMDB_E_FRACTIONS;
    }
    created.setComposition(format::compositionText(components));
    return QMDB_OK;
}

int CDatabase::addPhase(long matterId, const PHASE& phase)
{
    CMatter* matter = nullptr;
    if (const int code = find(matters_, matterId, matter); code != QMDB_OK) {
        return code;
    }
    const std::string name = format::fieldText(phase.name);
    if (matter->isPhaseNamePresent(name)) {
        log_.error("Cannot append a phase because a duplicated name, ", name);
        return QMDB_E_DUPLICATE_NAME;
    }
    CPhase created(log_, *strings_);
    created.path = makeEntityDir(matter->path.directoryPart(), format::Series::Phases, s_phaseFilesExt);
    setIdentity(created, matter->maxPhaseId, name);
    created.setMatterState(phase.aggreg);
    const int code = saveEntity(matter->phases, matter->phaseNames, std::move(created), "New phase saved: ");
    return code == QMDB_OK ? static_cast<int>(matter->maxPhaseId) : code;
}

int CDatabase::addPhaseChange(long matterId, const PHASECHANGE& phaseChange)
{
    CMatter* matter = nullptr;
    if (const int code = find(matters_, matterId, matter); code != QMDB_OK) {
        return code;
    }
    const std::string name = format::fieldText(phaseChange.name);
    if (matter->isPhaseChangeNamePresent(name)) {
        log_.error("Cannot append a phase change because a duplicated name, ", name);
        return QMDB_E_DUPLICATE_NAME;
    }
    CPhaseChange created(log_, *strings_);
    created.path
        = makeEntityDir(matter->path.directoryPart(), format::Series::PhaseChanges, s_phaseChangeFilesExt);
    setIdentity(created, matter->maxPhaseChangeId, name);
    created.setPhase1ID(phaseChange.phase1);
    created.setPhase2ID(phaseChange.phase2);
    const int code = saveEntity(
        matter->phaseChanges, matter->phaseChangeNames, std::move(created), "New phase change saved: ");
    return code == QMDB_OK ? static_cast<int>(matter->maxPhaseChangeId) : code;
}

/// Gives a new entity the next ID, its name and the next string ID. IDs are used up whatever follows.
void CDatabase::setIdentity(CEntity& created, long& maxId, std::string_view name)
{
    maxId = nextId(maxId);
    created.setID(maxId);
    created.setName(name);
    created.setNameID(strings_->increaseMaxStringID());
}
