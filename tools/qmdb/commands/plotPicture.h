#pragma once

#include "annotations/Annotations.h"
#include "database/Database.h"
#include "output/picture.h"

#include <string>
#include <vector>

namespace tool {

/// One value in a picture.
struct Drawn {
    Substance substance;
    Owner owner;
    Parameter parameter;
    Table table;
    ParameterNotes notes;

    bool isConstant() const { return table.arguments == 0; }
};

/// The curves of the values, with labels and a title in the language; axes are not fitted yet. Throws Failure
/// when the values do not fit into one picture.
Picture pictureOf(const std::vector<Drawn>& values, const std::string& language);

} // namespace tool
