#include "model/CMatter.h"

#include "qmdatabase/status.h"

#include <algorithm>

namespace {

constexpr LoadMessages phaseMessages = {
    "Start to search for phases",
    "Cannot load phase file: ",
    "Phase has been added to database,ID=",
    "Phases have been added",
};

constexpr LoadMessages phaseChangeMessages = {
    "Start to search for phase changes",
    "Cannot load phase change file: ",
    "Phase change has been added to database, ID=",
    "Phase changes have been added",
};

constexpr LoadMessages headMessages = {
    "Start to search for material parameters",
    "Cannot load parameter head file: ",
    "Material parameter head has been added to database: ",
    "Material parameters have been added",
};

} // namespace

CMatter::CMatter(const FoundFile& file, const CLog& log, CLocalizer& localizer)
    : CEntity(file, log, localizer)
{
    constexpr format::KeySet required = format::substanceKind.requiredKeys();
    requireKeys(required);
    if (status == QMDB_OK) {
        std::optional<CDirectory> other;
        CDirectory& directory = file.neighbours(other);
        status = loadBelow(directory);
        directory.close(); // one substance's listings at a time
    }
}

int CMatter::loadBelow(CDirectory& directory)
{
    if (const int code = loadChildren(phases, maxPhaseId, directory, format::phaseKind, phaseMessages);
        code != QMDB_OK) {
        return code;
    }
    if (const int code = loadChildren(
            phaseChanges, maxPhaseChangeId, directory, format::phaseChangeKind, phaseChangeMessages);
        code != QMDB_OK) {
        return code;
    }
    return heads.load(directory, log(), headMessages);
}

template <class Child>
int CMatter::loadChildren(CIdMap<Child>& children, long& maxId, CDirectory& directory,
    const format::DescriptorKind& kind, const LoadMessages& messages)
{
    return loadAll(
        children, directory, kind, messages, log(),
        [this](const FoundFile& file) { return Child(file, log(), localizer()); },
        [&](const Child& child, long id) {
            child.noteStringIds(kind);
            maxId = std::max(maxId, id);
        });
}
