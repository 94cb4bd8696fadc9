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
        , namePlace_(placeOf(s_NameIDKey))
    {
    }

    long getID() const { return getNumber(s_IDKey); }
    /// The table's text under the string ID, else the descriptor's own.
    std::string_view getName() const { return textOf(namePlace_, s_NameKey); }

    void setID(long id) { setNumber(s_IDKey, id); }
    void setName(std::string_view name) { setParametr(s_NameKey, name); }
    void setNameID(long id)
    {
        setNumber(s_NameIDKey, id);
        namePlace_ = placeOf(s_NameIDKey);
    }

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

    /// Where the text under a string ID stands in the table, which is looked up once. An absent string ID
    /// looks the empty key up, which a table line that begins with "=" has.
    CLocalizer::Place placeOf(format::Key stringId) const { return localizer_->find(getParametr(stringId)); }

    std::string_view textOf(CLocalizer::Place place, format::Key ownText) const
    {
        return place == CLocalizer::Place::none ? getParametr(ownText) : localizer_->textAt(place);
    }

private:
    CLocalizer* localizer_;
    CLocalizer::Place namePlace_ = CLocalizer::Place::none;
};
