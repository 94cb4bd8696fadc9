#include "model/CParameter.h"

#include "format/recordText.h"

CParameter::CParameter(const FoundFile& file, const CLog& log, CLocalizer& localizer)
    : CEntity(file, log, localizer)
{
    constexpr format::KeySet required = format::descriptionKind.requiredKeys();
    requireKeys(required);
}

const PARAMETER& CParameter::described() const
{
    if (!described_) {
        auto described = std::make_unique<PARAMETER>();
        format::copyWStringToWtchar(getName(), described->name);
        format::copyWStringToWtchar(getUnits(), described->units);
        described_ = std::move(described);
    }
    return *described_;
}
