#pragma once

#include "files/CDbFile.h"
#include "qmdatabase/values.h"
#include "values/plainValues.h"

#include <string>

/// Reading and writing the data files of the six kinds of value.
///
/// `head` is the parameter head that names the data file: faults are written to its log, and its path
/// stands in the message about a file that cannot be written.
namespace values {

/// Each load fills an empty value and returns 0, or a code after writing the reason to the log; what
/// was filled by then belongs to the value.
int load(const CDbFile& head, const std::string& path, IDbDataConst& value);
int load(const CDbFile& head, const std::string& path, IDbDataConstVector& value);
int load(const CDbFile& head, const std::string& path, IDbDataTable& value);
int load(const CDbFile& head, const std::string& path, IDbDataTableVector& value);
int load(const CDbFile& head, const std::string& path, IDbDataTable2D& value);
int load(const CDbFile& head, const std::string& path, IDbDataTable2DVector& value);

enum class SaveResult {
    Saved, ///< the file is on the disk, complete
    NotOpened, ///< nothing was written; what stood there, if anything, is as it was
    NotWritten, ///< the file is gone again, or, where a link leads to it, empty
};

/// Each save writes the data file `name` of an open directory in place and flushes it to the disk; faults are
/// logged. Nothing is checked: rows are written as they are.
SaveResult save(
    const CDbFile& head, const CDirectory& directory, const std::string& name, const PlainConst& value);
SaveResult save(
    const CDbFile& head, const CDirectory& directory, const std::string& name, const PlainConstVector& value);
SaveResult save(const CDbFile& head, const CDirectory& directory, const std::string& name,
    const PlainTable<TABLEROW>& value);
SaveResult save(const CDbFile& head, const CDirectory& directory, const std::string& name,
    const PlainTable<TABLEROWVECT>& value);
SaveResult save(const CDbFile& head, const CDirectory& directory, const std::string& name,
    const PlainTable2D<SUBTABLECONST>& value);
SaveResult save(const CDbFile& head, const CDirectory& directory, const std::string& name,
    const PlainTable2D<SUBTABLEVECT>& value);

} // namespace values
