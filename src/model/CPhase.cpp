#include "model/CPhase.h"

#include "qmdatabase/status.h"

namespace {

constexpr LoadMessages headMessages = {
    "Start to search for phase parameters",
    "Cannot load parameter head file: ",
    "Phase parameter head has been added to database: ",
    "Phase parameters have been added, ",
};

} // namespace

CPhase::CPhase(const FoundFile& file, const CLog& log, CLocalizer& localizer)
    : CEntity(file, log, localizer)
{
    constexpr format::KeySet required = format::phaseKind.requiredKeys();
    requireKeys(required);
    if (status == QMDB_OK) {
        std::optional<CDirectory> other;
        status = heads.load(file.neighbours(other), log, headMessages);
    }
}
