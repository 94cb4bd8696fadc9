#pragma once

#include "files/CLocalizer.h"

/// What substances, phases, phase changes and parameter descriptions share: an ID and a name that the
/// string table may localise. `localizer` must outlive the object.
class CEntity : public CDbFile {
public:
    static constexpr format::Key s_IDKey = format::Key::ID;
    static constexpr format::Key s_NameKey = format::Key::Name;
    static constexpr format::Key s_NameIDKey = format::Key::NameID;

    CEntity(const CLog& log, CLocalizer& localizer) noexcept
        : CDbFile(log)
        , localizer_(&localizer)
    {
    }
    CEntity(const FoundFile& file, const CLog& log, CLocalizer& localizer)
        : CDbFile(file, log)
        , localizer_(&localizer)
    {
    }

    long getID() const { return getNumber(s_IDKey); }
    std::string_view getName() const { return localizer_->textOf(*this, s_NameIDKey, s_NameKey); }

    void setID(long id) { setNumber(s_IDKey, id); }
    void setName(std::string_view name) { setParametr(s_NameKey, name); }
    void setNameID(long id) { setNumber(s_NameIDKey, id); }

    /// Raises the highest string ID to those that the descriptor holds.
    void noteStringIds(const format::DescriptorKind& kind) const
    {
        for (const format::KeyRule& rule : kind.keys) {
            if (rule.value == format::ValueKind::StringId) {
                localizer_->updateMaxStringID(getNumber(rule.key)); // an absent one counts as 0
            }
        }
    }

protected:
    CLocalizer& localizer() const noexcept { return *localizer_; }

private:
    CLocalizer* localizer_;
};
