#include "files/CLocalizer.h"

#include "files/nextId.h"
#include "format/numbers.h"

#include <algorithm>

CLocalizer::CLocalizer(CFilePath path, const CLog& log)
    : CDbFile(std::move(path), log)
{
    CKeyMap::Entry entry;
    for (std::size_t position = 0; keys().next(position, entry);) {
        texts_.push_back(entry);
    }
}

std::string_view CLocalizer::getLocalString(std::string_view key, std::string_view defaultValue) const
{
    const Place place = find(key);
    return place == Place::none ? defaultValue : textAt(place);
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

CLocalizer::Place CLocalizer::find(std::string_view key) const
{
    const auto found = std::ranges::lower_bound(texts_, key, {}, &CKeyMap::Entry::key);
    return found != texts_.end() && found->key == key ? static_cast<Place>(found - texts_.begin())
                                                      : Place::none;
}
