#include "model/CHeadMap.h"

#include "model/lists.h"
#include "model/saving.h"

int CHeadMap::load(CDirectory& directory, const CLog& log, const LoadMessages& messages)
{
    return loadAll(
        heads_, directory, format::headKind, messages, log,
        [&log](const FoundFile& file) { return CParameterData(file, log); },
        [](const CParameterData&, long) {});
}

int CHeadMap::list(const CIdMap<CParameter>& descriptions, PARAMETER*& params, int& count) const
{
    const auto fill = [&](long id, const CParameterData& head, PARAMETER& record) {
        const CParameter* const description = descriptions.find(id);
        record = description ? description->described() : PARAMETER {};
        record.id = id;
        record.type = head.getType();
        record.vector = head.isVector();
    };
    return listRecords(heads_, params, count, fill);
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
