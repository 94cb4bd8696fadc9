#include "model/CPhaseChange.h"

#include "qmdatabase/status.h"

namespace {

constexpr HeadMessages headMessages = {
    "Start to search for phase change parameters",
    "Phase change parameter head has been added to database: ",
    "Phase change parameters have been added, ",
};

} // namespace

CPhaseChange::CPhaseChange(const FoundFile& file, const CLog& log, CLocalizer& localizer)
    : CEntity(file, log, localizer)
{
    if (status == QMDB_OK) {
        requireKeys({ s_IDKey, s_NameKey, s_Phase1Key, s_Phase2Key });
    }
    if (status == QMDB_OK) {
        status = file.withDirectoryPart(
            [&](CDirectory& directory) { return heads.load(directory, log, headMessages); });
    }
}
