#include "model/CParameter.h"

#include "qmdatabase/status.h"

CParameter::CParameter(const FoundFile& file, const CLog& log, CLocalizer& localizer)
    : CEntity(file, log, localizer)
{
    if (status == QMDB_OK) {
        requireKeys({ s_IDKey, s_NameKey, s_UnitsKey, s_BinaryKey });
    }
}
