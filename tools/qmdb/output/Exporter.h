#pragma once

#include "database/Database.h"

#include <memory>
#include <string>

namespace tool {

/// Takes a database piece by piece, each substance before what belongs to it.
class Exporter {
public:
    virtual ~Exporter() = default;
    virtual void addSubstance(const Substance&) { }
    virtual void addOwner(const Substance&, const Owner&) { }
    virtual void addValue(
        const Substance& substance, const Owner& owner, const Parameter& parameter, const Table& table)
        = 0;
    virtual void finish() = 0;
};

} // namespace tool
