#pragma once

#include <span>
#include <string_view>

namespace tool {

struct CommonUnits {
    long id = 0; ///< string ID
    std::string_view text;
    std::string_view russianText;
};

/// A parameter description that a new database begins with.
struct CommonParameter {
    long id = 0;
    std::string_view file; ///< name of its file without the extension
    std::string_view name;
    std::string_view russianName;
    long units = 0; ///< string ID
    std::string_view types;
    std::string_view states;
    bool vector = false; ///< vectors are allowed beside scalars
    std::string_view symbol;
    std::string_view argumentUnits; ///< empty when values have no arguments
    std::string_view remark;

    long nameId() const { return 100 + id; }
};

std::span<const CommonParameter> commonParameters();
std::span<const CommonUnits> commonUnits();
const CommonUnits& unitsOf(const CommonParameter& parameter);

} // namespace tool
