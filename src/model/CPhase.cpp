#include "model/CPhase.h"

#include "qmdatabase/status.h"

namespace {

constexpr HeadMessages headMessages = {
    "Start to search for phase parameters",
    "Phase parameter head has been added to database: ",
    "Phase parameters have been added, ",
};

} // namespace

CPhase::CPhase(const FoundFile& file, const CLog& log, CLocalizer& localizer)
    : CEntity(file, log, localizer)
{
    if (status == QMDB_OK) {
        requireKeys({ s_IDKey, s_NameKey, s_AggregKey });
    }
    if (status == QMDB_OK) {
        status = file.withDirectoryPart(
            [&](CDirectory& directory) { return heads.load(directory, log, headMessages); });
    }
}
