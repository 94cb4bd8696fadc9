#pragma once

#include "qmdatabase/values.h"

#include <cstring>

/// Values as plain structures. A value that a C host hands in is no object of the C++ classes, only of
/// the same layout, so it is copied out rather than looked at through them.
namespace values {

struct PlainHead {
    const void* reserved = nullptr;
    PARAM_TYPE type {};
    bool isVector = false;
};

struct PlainConst {
    PlainHead head;
    double value = 0;
};

struct PlainConstVector {
    PlainHead head;
    double x = 0;
    double y = 0;
    double z = 0;
};

template <class Row>
struct PlainTable {
    PlainHead head;
    const Row* rows = nullptr;
    long count = 0;
};

template <class Subtable>
struct PlainTable2D {
    PlainHead head;
    const Subtable* subtables = nullptr;
    long count = 0;
};

static_assert(sizeof(PlainHead) == sizeof(IDbData) && sizeof(PlainConst) == sizeof(IDbDataConst));
static_assert(sizeof(PlainConstVector) == sizeof(IDbDataConstVector));
static_assert(sizeof(PlainTable<TABLEROW>) == sizeof(IDbDataTable));
static_assert(sizeof(PlainTable2D<SUBTABLECONST>) == sizeof(IDbDataTable2D));

template <class Plain>
Plain plainCopy(const IDbData& value)
{
    Plain copy;
    std::memcpy(static_cast<void*>(&copy), static_cast<const void*>(&value), sizeof copy);
    return copy;
}

} // namespace values
