#pragma once

#include "files/CDbFile.h"

#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

/// The string table of a database: texts by string ID, and the highest string ID in use.
class CLocalizer : public CDbFile {
public:
    /// A table that is missing or cannot be read is empty.
    CLocalizer(CFilePath path, const CLog& log);

    std::string_view getLocalString(std::string_view key, std::string_view defaultValue) const;

    void updateMaxStringID(long id);

    /// Advances the highest string ID to the next one that has no text, and returns it.
    long increaseMaxStringID();

    /// Where a text stands in the table.
    enum class Place : std::uint32_t { none = std::numeric_limits<std::uint32_t>::max() };

    Place find(std::string_view key) const;
    std::string_view textAt(Place place) const noexcept
    {
        return texts_[static_cast<std::size_t>(place)].value;
    }

private:
    std::vector<CKeyMap::Entry> texts_; ///< views into the key map, in its order
    long maxStringID_ = -1;
};
