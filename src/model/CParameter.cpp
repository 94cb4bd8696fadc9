#include "model/CParameter.h"

CParameter::CParameter(const FoundFile& file, const CLog& log, CLocalizer& localizer)
    : CEntity(file, log, localizer)
{
    constexpr format::KeySet required = format::descriptionKind.requiredKeys();
    requireKeys(required);
}
