#include "files/CLocalizer.h"

#include "files/nextId.h"
#include "format/numbers.h"

CLocalizer::CLocalizer(CFilePath path, const CLog& log)
    : CDbFile(std::move(path), log)
{
    CKeyMap::Entry entry;
    for (std::size_t position = 0; keys().next(position, entry);) {
        texts_.emplace(entry.key, entry.value);
    }
}

std::string_view CLocalizer::getLocalString(std::string_view key, std::string_view defaultValue) const
{
    const auto found = texts_.find(key);
    return found == texts_.end() ? defaultValue : found->second;
}

void CLocalizer::updateMaxStringID(long id)
{
    maxStringID_ = std::max(maxStringID_, id);
}

long CLocalizer::increaseMaxStringID()
{
    do {
        maxStringID_ = nextId(maxStringID_);
    } while (!getLocalString(format::long2wstr(static_cast<unsigned long>(maxStringID_)), {}).empty());
    return maxStringID_;
}

std::string_view CLocalizer::textOf(const CDbFile& object, format::Key idKey, format::Key textKey) const
{
    // An absent string ID looks the empty key up, which a table line that begins with "=" has.
    const auto found = texts_.find(object.getParametr(idKey));
    return found == texts_.end() ? object.getParametr(textKey) : found->second;
}
