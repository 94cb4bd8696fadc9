#pragma once

#include "files/CDbFile.h"
#include "qmdatabase/values.h"

/// The head of one parameter value: which parameter it is, of what type, and which data file beside
/// the head holds the numbers.
class CParameterData : public CDbFile {
public:
    static constexpr CKey s_IDKey = "ID";
    static constexpr CKey s_VectorKey = "Vector";
    static constexpr CKey s_TypeKey = "Type";
    static constexpr CKey s_DataKey = "Data";

    /// An empty head to be filled and saved.
    explicit CParameterData(const CLog& log) noexcept
        : CDbFile(log)
    {
    }
    /// Reads a head; `status` tells how it went.
    CParameterData(const FoundFile& file, const CLog& log);

    long getID() const { return getNumber(s_IDKey); }
    PARAM_TYPE getType() const { return static_cast<PARAM_TYPE>(getNumber(s_TypeKey)); }
    bool isVector() const noexcept { return getFlag(s_VectorKey); }
    std::string_view getDataFileName() const noexcept { return getParametr(s_DataKey); }

    void setID(long id) { setNumber(s_IDKey, id); }
    void setType(PARAM_TYPE type) { setNumber(s_TypeKey, type); }
    void setVector(bool vector) { setParametr(s_VectorKey, vector ? "1" : "0"); }
    void setDataFileName(std::string_view name) { setParametr(s_DataKey, name); }

    /// Reads the data file into a new value, which belongs to the caller; null on failure.
    int getData(IDbData*& result) const;

    /// Writes the data file into `directory`, the head's own. The head's type and vector flag, which must be
    /// set, tell the value's class; the value's own fields are not looked at.
    int setData(const IDbData& value, const qm::CQMDirectory& directory) const;

private:
    std::string dataFilePath() const;
};
