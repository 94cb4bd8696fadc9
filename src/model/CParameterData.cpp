#include "model/CParameterData.h"

#include "format/innerText.h"
#include "format/paths.h"
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
values::SaveResult saveAs(const CParameterData& head, const CDirectory& directory, const IDbData& value)
{
    return values::save(
        head, directory, std::string(head.getDataFileName()), values::plainCopy<Plain>(value));
}

} // namespace

CParameterData::CParameterData(const FoundFile& file, const CLog& log)
    : CDbFile(file, log)
{
    constexpr format::KeySet required = format::headKind.requiredKeys();
    requireKeys(required);
}

int CParameterData::getData(IDbData*& result) const
{
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
        // A missing file is reported before a type that nothing reads.
        return qm::CQMFileSystem::Exists({ AT_FDCWD, format::text::toLocale(dataPath) })
            ? QMDB_E_NOT_FOUND
            : values::reportMissing(log(), dataPath);
    }
}

values::SaveResult CParameterData::setData(const IDbData& value, const CDirectory& directory) const
{
    switch (getType()) {
    case PARAM_TYPE_CONSTANT:
        return isVector() ? saveAs<values::PlainConstVector>(*this, directory, value)
                          : saveAs<values::PlainConst>(*this, directory, value);
    case PARAM_TYPE_TABLE_T:
    case PARAM_TYPE_TABLE_P:
        return isVector() ? saveAs<values::PlainTable<TABLEROWVECT>>(*this, directory, value)
                          : saveAs<values::PlainTable<TABLEROW>>(*this, directory, value);
    case PARAM_TYPE_TABLE2D_T:
    case PARAM_TYPE_TABLE2D_X:
        return isVector() ? saveAs<values::PlainTable2D<SUBTABLEVECT>>(*this, directory, value)
                          : saveAs<values::PlainTable2D<SUBTABLECONST>>(*this, directory, value);
    default:
        return values::SaveResult::NotOpened; // no description allows such a type
    }
}

std::string CParameterData::dataFilePath() const
{
    return format::joinPath(*path.directoryPart(), getDataFileName());
}
