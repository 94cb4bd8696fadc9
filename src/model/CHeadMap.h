#pragma once

#include "model/CIdMap.h"
#include "model/CParameter.h"
#include "model/CParameterData.h"
#include "model/loading.h"

/// The parameter heads of one owner, by parameter ID.
class CHeadMap {
public:
    /// Loads the heads that lie directly in the owner's directory.
    int load(CDirectory& directory, const CLog& log, const LoadMessages& messages);

    /// Lists the heads, with names and units as far as they are described; -9 when there is none.
    int list(const CIdMap<CParameter>& descriptions, PARAMETER*& params, int& count) const;

    /// Reads one value; -9 when there is no head at all, -2 when none has the ID.
    int getParamData(long paramId, IDbData*& value) const;

    bool has(long paramId) const { return heads_.find(paramId) != nullptr; }
    /// Saves a new head, whose data file has been written, and inserts it.
    int saveAndInsert(CParameterData head, const CDirectory& directory);

private:
    CIdMap<CParameterData> heads_;
};
