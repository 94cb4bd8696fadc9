#include "model/CMatter.h"

#include "qmdatabase/status.h"

#include <algorithm>

namespace {

/// What a substance says while it loads its phases, or its phase changes.
struct ChildMessages {
    std::string_view search;
    std::string_view cannotLoad; ///< the path follows
    std::string_view added; ///< the ID follows
    std::string_view total; ///< the number of children follows
};

constexpr ChildMessages phaseMessages = {
    "Start to search for phases",
    "Cannot load phase file: ",
    "Phase has been added to database,ID=",
    "Phases have been added",
};

constexpr ChildMessages phaseChangeMessages = {
    "Start to search for phase changes",
    "Cannot load phase change file: ",
    "Phase change has been added to database, ID=",
    "Phase changes have been added",
};

constexpr HeadMessages headMessages = {
    "Start to search for material parameters",
    "Material parameter head has been added to database: ",
    "Material parameters have been added",
};

/// Loads the children found; stops at the first bad one and returns its code.
template <class Child>
int loadChildren(const std::vector<FoundFile>& files, const CLog& log, CLocalizer& localizer,
    const ChildMessages& messages, CIdMap<Child>& children, long& maxId)
{
    children.beginLoading(files.size());
    for (const FoundFile& file : files) {
        Child child(file, log, localizer);
        if (child.status != QMDB_OK) {
            log.error(messages.cannotLoad, child.path.text());
            return child.status;
        }
        const long id = child.getID();
        localizer.updateMaxStringID(child.getNumber(CEntity::s_NameIDKey));
        maxId = std::max(maxId, id);
        children.load(id, std::move(child));
        log.info(messages.added, id);
    }
    children.finishLoading();
    log.info(messages.total, children.size());
    return QMDB_OK;
}

} // namespace

CMatter::CMatter(const FoundFile& file, const CLog& log, CLocalizer& localizer)
    : CEntity(file, log, localizer)
{
    if (status == QMDB_OK) {
        requireKeys({ s_IDKey, s_NameKey, s_MixtureKey, s_CompositionKey });
    }
    if (status == QMDB_OK) {
        status = file.withDirectoryPart([this](CDirectory& directory) { return loadBelow(directory); });
    }
}

int CMatter::loadBelow(CDirectory& directory)
{
    std::vector<FoundFile> files;
    log().info(phaseMessages.search);
    if (const int code = getFilesListDownLevel(log(), directory, "phd", files); code != QMDB_OK) {
        return code;
    }
    if (files.empty()) {
        return QMDB_E_NO_PHASES;
    }
    int code = loadChildren(files, log(), localizer(), phaseMessages, phases, maxPhaseId);
    if (code != QMDB_OK) {
        return code;
    }
    log().info(phaseChangeMessages.search);
    code = getFilesListDownLevel(log(), directory, "pcd", files);
    if (code != QMDB_OK) {
        return code;
    }
    code = loadChildren(files, log(), localizer(), phaseChangeMessages, phaseChanges, maxPhaseChangeId);
    if (code != QMDB_OK) {
        return code;
    }
    return heads.load(directory, log(), headMessages);
}
