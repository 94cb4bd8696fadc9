#include "model/CPhaseChange.h"

#include "qmdatabase/status.h"

namespace {

constexpr LoadMessages headMessages = {
    "Start to search for phase change parameters",
    "Cannot load parameter head file: ",
    "Phase change parameter head has been added to database: ",
    "Phase change parameters have been added, ",
};

} // namespace

CPhaseChange::CPhaseChange(const FoundFile& file, const CLog& log, CLocalizer& localizer)
    : CEntity(file, log, localizer)
{
    constexpr format::KeySet required = format::phaseChangeKind.requiredKeys();
    requireKeys(required);
    if (status == QMDB_OK) {
        std::optional<CDirectory> other;
        status = heads.load(file.neighbours(other), log, headMessages);
    }
}
