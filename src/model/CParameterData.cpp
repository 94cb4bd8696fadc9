#include "model/CParameterData.h"

#include "qm/CQMFileSystem.h"
#include "qmdatabase/status.h"
#include "values/CDataFile.h"
#include "values/formats.h"

#include <memory>

namespace {

template <class Value>
int loadAs(const CParameterData& head, const std::string& path, PARAM_TYPE type, IDbData*& result)
{
    auto value = std::make_unique<Value>();
    value->type = type;
    value->isVector = head.isVector();
    const int code = values::load(head, path, *value);
    if (code == QMDB_OK) {
        result = value.release();
    }
    return code;
}

template <class Plain>
int saveAs(const CParameterData& head, const values::DataFilePlace& place, const IDbData& value)
{
    return values::save(head, place, values::plainCopy<Plain>(value));
}

} // namespace

CParameterData::CParameterData(const FoundFile& file, const CLog& log)
    : CDbFile(file, log)
{
    if (status == QMDB_OK) {
        requireKeys({ s_IDKey, s_VectorKey, s_TypeKey, s_DataKey });
    }
}

int CParameterData::getData(IDbData*& result) const
{
    result = nullptr;
    const std::string dataPath = dataFilePath();
    const PARAM_TYPE type = getType();
    switch (type) {
    case PARAM_TYPE_CONSTANT:
        return isVector() ? loadAs<IDbDataConstVector>(*this, dataPath, type, result)
                          : loadAs<IDbDataConst>(*this, dataPath, type, result);
    case PARAM_TYPE_TABLE_T:
    case PARAM_TYPE_TABLE_P:
        return isVector() ? loadAs<IDbDataTableVector>(*this, dataPath, type, result)
                          : loadAs<IDbDataTable>(*this, dataPath, type, result);
    case PARAM_TYPE_TABLE2D_T:
    case PARAM_TYPE_TABLE2D_X:
        return isVector() ? loadAs<IDbDataTable2DVector>(*this, dataPath, type, result)
                          : loadAs<IDbDataTable2D>(*this, dataPath, type, result);
    default:
        // A missing file is told before a type that nothing reads.
        return qm::CQMFileSystem::Exists(dataPath) ? QMDB_E_NOT_FOUND : values::tellMissing(log(), dataPath);
    }
}

int CParameterData::setData(const IDbData& value, const qm::CQMDirectory& directory) const
{
    const values::DataFilePlace place { dataFilePath(), directory };
    switch (getType()) {
    case PARAM_TYPE_CONSTANT:
        return isVector() ? saveAs<values::PlainConstVector>(*this, place, value)
                          : saveAs<values::PlainConst>(*this, place, value);
    case PARAM_TYPE_TABLE_T:
    case PARAM_TYPE_TABLE_P:
        return isVector() ? saveAs<values::PlainTable<TABLEROWVECT>>(*this, place, value)
                          : saveAs<values::PlainTable<TABLEROW>>(*this, place, value);
    case PARAM_TYPE_TABLE2D_T:
    case PARAM_TYPE_TABLE2D_X:
        return isVector() ? saveAs<values::PlainTable2D<SUBTABLEVECT>>(*this, place, value)
                          : saveAs<values::PlainTable2D<SUBTABLECONST>>(*this, place, value);
    default:
        return QMDB_E_NOT_FOUND;
    }
}

std::string CParameterData::dataFilePath() const
{
    return joinPath(*path.directoryPart(), getDataFileName());
}
