#pragma once

#include "support/OpenDatabase.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace test {

/// Copies a text into a field, cut to it; a text as long as the field leaves no terminator.
template <std::size_t size>
void fill(wchar_t (&field)[size], std::wstring_view text)
{
    std::fill(field + text.copy(field, size), field + size, L'\0');
}

struct NewMatter {
    std::wstring_view name;
    std::wstring_view comment = {};
    long mixture = 0;
    std::vector<COMPONENT> parts = {};
};

inline int addMatter(long database, NewMatter added)
{
    MATTER record {};
    record.id = 77;
    fill(record.name, added.name);
    fill(record.comment, added.comment);
    record.mixture = added.mixture;
    record.compositionCount = static_cast<long>(added.parts.size());
    record.composition = added.parts.data();
    const int code = qmdbAddMatter(database, &record);
    record.composition = nullptr; // belongs to the vector
    return code;
}

inline int addPhase(long database, long matter, std::wstring_view name, int aggreg)
{
    PHASE record {};
    record.id = 77;
    record.aggreg = static_cast<MATTER_STATE>(aggreg);
    fill(record.name, name);
    return qmdbAddPhase(database, matter, &record);
}

inline int addPhaseChange(long database, long matter, std::wstring_view name, long phase1, long phase2)
{
    PHASECHANGE record {};
    record.id = 77;
    record.phase1 = phase1;
    record.phase2 = phase2;
    fill(record.name, name);
    return qmdbAddPhaseChange(database, matter, &record);
}

struct NewParam {
    long id;
    int type = PARAM_TYPE_CONSTANT;
    bool vector = false;
};

/// Adds to the phase given, or to the substance itself.
inline int addParam(long database, const Owner& owner, const NewParam& added, const IDbData* value)
{
    PARAMETER record {};
    record.id = added.id;
    record.type = static_cast<PARAM_TYPE>(added.type);
    record.vector = added.vector;
    return owner.phase == -1 ? qmdbAddMatterParam(database, owner.matter, &record, value)
                             : qmdbAddPhaseParam(database, owner.matter, owner.phase, &record, value);
}

} // namespace test
