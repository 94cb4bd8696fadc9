#pragma once

#include "files/CDbFile.h"
#include "qmdatabase/values.h"
#include "values/formats.h"

/// The head of one parameter value: which parameter it is, of what type, and which data file beside
/// the head holds the numbers.
class CParameterData : public CDbFile {
public:
    static constexpr format::Key s_IDKey = format::Key::ID;
    static constexpr format::Key s_VectorKey = format::Key::Vector;
    static constexpr format::Key s_TypeKey = format::Key::Type;
    static constexpr format::Key s_DataKey = format::Key::Data;

    /// An empty head to be filled and saved.
    explicit CParameterData(const CLog& log) noexcept
        : CDbFile(log)
    {
    }
    /// Reads a head; `status` is the outcome.
    CParameterData(const FoundFile& file, const CLog& log);

    long getID() const { return getNumber(s_IDKey); }
    PARAM_TYPE getType() const { return static_cast<PARAM_TYPE>(getNumber(s_TypeKey)); }
    bool isVector() const noexcept { return getFlag(s_VectorKey); }
    std::string_view getDataFileName() const noexcept { return getParametr(s_DataKey); }

    void setID(long id) { setNumber(s_IDKey, id); }
    void setType(PARAM_TYPE type) { setNumber(s_TypeKey, type); }
    void setVector(bool vector) { setFlag(s_VectorKey, vector); }
    void setDataFileName(std::string_view name) { setParametr(s_DataKey, name); }

    /// Reads the data file into a new value, which belongs to the caller; on failure `result` stays.
    int getData(IDbData*& result) const;

    /// Writes the data file into `directory`, the head's own, which is open. The head's type and vector flag,
    /// which must be set, determine the value's class; the value's own fields are not looked at.
    values::SaveResult setData(const IDbData& value, const CDirectory& directory) const;

private:
    std::string dataFilePath() const;
};
