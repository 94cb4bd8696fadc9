#pragma once

#include "files/CDbFile.h"

#include <string_view>
#include <unordered_map>

/// The string table of a database: texts by string ID, and the highest string ID in use.
class CLocalizer : public CDbFile {
public:
    /// A table that is missing or cannot be read is empty.
    CLocalizer(CFilePath path, const CLog& log);

    std::string_view getLocalString(std::string_view key, std::string_view defaultValue) const;

    void updateMaxStringID(long id);

    /// Advances the highest string ID to the next one that has no text, and returns it.
    long increaseMaxStringID();

    /// The display text of an object: the table's text under the string ID that the object's `idKey`
    /// holds, else the object's own text under `textKey`.
    std::string_view textOf(const CDbFile& object, format::Key idKey, format::Key textKey) const;

private:
    /// Views into the key map.
    std::unordered_map<std::string_view, std::string_view> texts_;
    long maxStringID_ = -1;
};
