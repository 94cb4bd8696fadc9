#include "model/CHeadMap.h"

#include "qmdatabase/status.h"

namespace {

constexpr std::string_view headExtension = "prh";

} // namespace

int CHeadMap::load(CDirectory& directory, const CLog& log, const HeadMessages& messages)
{
    log.info(messages.search);
    const std::vector<FoundFile> files = CDbFile::getFilesList(log, directory, headExtension);
    heads_.beginLoading(files.size());
    for (const FoundFile& file : files) {
        CParameterData head(file, log);
        if (head.status != QMDB_OK) {
            log.error("Cannot load parameter head file: ", head.path.text());
            return head.status;
        }
        const long id = head.getID();
        heads_.load(id, std::move(head));
        log.info(messages.added, id);
    }
    heads_.finishLoading();
    log.info(messages.total, heads_.size());
    return QMDB_OK;
}

int CHeadMap::list(PARAMETER*& params, int& count) const
{
    return heads_.list(params, count, [](const CParameterData& head, PARAMETER& record) {
        record.id = head.getID();
        record.type = head.getType();
        record.vector = head.isVector();
    });
}

int CHeadMap::getParamData(long paramId, IDbData*& value) const
{
    value = nullptr;
    const int code = heads_.check(paramId);
    return code == QMDB_OK ? heads_.find(paramId)->getData(value) : code;
}

int CHeadMap::saveAndAdd(CParameterData head, const qm::CQMDirectory& directory)
{
    return heads_.saveAndInsert(std::move(head), directory);
}
