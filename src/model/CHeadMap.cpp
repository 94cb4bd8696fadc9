#include "model/CHeadMap.h"

#include "model/lists.h"
#include "model/saving.h"

int CHeadMap::load(CDirectory& directory, const CLog& log, const LoadMessages& messages)
{
    return loadAll(
        heads_, directory, format::headKind, messages, log,
        [&log](const FoundFile& file) { return CParameterData(file, log); }, [](const CParameterData&) {});
}

int CHeadMap::list(PARAMETER*& params, int& count) const
{
    return listRecords(heads_, params, count, [](const CParameterData& head, PARAMETER& record) {
        record.type = head.getType();
        record.vector = head.isVector();
    });
}

int CHeadMap::getParamData(long paramId, IDbData*& value) const
{
    const CParameterData* head = nullptr;
    const int code = find(heads_, paramId, head);
    return code == QMDB_OK ? head->getData(value) : code;
}

int CHeadMap::saveAndInsert(CParameterData head, const CDirectory& directory)
{
    return ::saveAndInsert(heads_, std::move(head), directory);
}
