#pragma once

#include "model/CIdMap.h"
#include "model/CParameterData.h"

/// What a substance, a phase and a phase change each say while they load their heads.
struct HeadMessages {
    std::string_view search;
    std::string_view added; ///< the ID follows
    std::string_view total; ///< the number of heads follows
};

/// The parameter heads of one owner, by parameter ID.
class CHeadMap {
public:
    /// Loads the heads that lie directly in the owner's directory; stops at the first bad one and
    /// returns its code. Of heads with one ID the last stands.
    int load(CDirectory& directory, const CLog& log, const HeadMessages& messages);

    /// Lists the heads; -9 when there is none. Names and units stay empty.
    int list(PARAMETER*& params, int& count) const;

    /// Reads one value; -9 when there is no head at all, -2 when none has the ID.
    int getParamData(long paramId, IDbData*& value) const;

    bool has(long paramId) const { return heads_.find(paramId) != nullptr; }
    /// Saves a new head, whose data file has been written, and adds it.
    int saveAndAdd(CParameterData head, const qm::CQMDirectory& directory);

private:
    CIdMap<CParameterData> heads_;
};
